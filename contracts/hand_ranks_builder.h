// Generating and checking the HandRanks state table.

#ifndef POKERMATH_CONTRACTS_HAND_RANKS_BUILDER_H_
#define POKERMATH_CONTRACTS_HAND_RANKS_BUILDER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pokermath/large_table.h"

namespace pokermath {

/// Entries of the table: 612,977 rows of 53 behind 53 unused entries.
inline constexpr std::size_t kHandRanksEntries = 32487834;
inline constexpr std::size_t kHandRanksBytes = kHandRanksEntries * sizeof(std::uint32_t);
/// Slots of the ID array: the 612,977 IDs and one that stays 0.
inline constexpr std::size_t kHandRanksSlots = 612978;

struct HandRanks {
  std::vector<std::uint64_t> ids;     ///< kHandRanksSlots, rising, the last one 0
  LargeTable<std::uint32_t> entries;  ///< kHandRanksEntries
};

/// Generates the table, about 0.2 s.
HandRanks BuildHandRanks();

/// Whether every entry is one that a table may hold in its place: a state of the next card count
/// (or the start state) in the rows of up to five cards, a hand value in the rows of six, and
/// nothing for no more cards than have been seen. A table that passes keeps every lookup inside the
/// array; one that a page of zeros has got into does not pass.
bool HandRanksAreSound(const std::uint32_t* entries);

/// Reads and checks a table file. False, with `entries` empty, unless it has exactly the right
/// length and is sound.
bool LoadHandRanks(const std::string& path, LargeTable<std::uint32_t>& entries);

/// Writes a table file through a temporary name; false if that fails (errno says why).
bool SaveHandRanks(const std::string& path, const LargeTable<std::uint32_t>& entries);

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_HAND_RANKS_BUILDER_H_
