// The finite-state tables that are loaded from files, and the process-wide objects that hold them.

#ifndef POKERMATH_EVAL_STATE_MACHINES_H_
#define POKERMATH_EVAL_STATE_MACHINES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "eval/state_table_builder.h"

/// Holds the short-deck tables.
class fsm5 {
 public:
  constexpr fsm5() = default;
  fsm5(const fsm5&) = delete;
  fsm5& operator=(const fsm5&) = delete;
  virtual ~fsm5();

  std::uint32_t* five_cards = nullptr;
  std::uint32_t* seven_cards = nullptr;
  /// Matchup of two hand keys → 2 * wins + ties of the first hand over 201,376 boards; null while
  /// nothing is loaded.
  std::unique_ptr<std::map<std::pair<int, int>, int>> equity;
};

/// Holds the Omaha table.
class ofsm_omaha7 {
 public:
  constexpr ofsm_omaha7() = default;
  ofsm_omaha7(const ofsm_omaha7&) = delete;
  ofsm_omaha7& operator=(const ofsm_omaha7&) = delete;
  virtual ~ofsm_omaha7();

  std::uint32_t* table = nullptr;
};

namespace pokermath {

// Without a constructor to run: an evaluator reaches them in one load.
extern fsm5 short_deck_tables;
extern ofsm_omaha7 omaha_table;

/// A kind of table file: a header of 32 bytes, then the entries.
struct StateFile {
  std::string_view name;   ///< of the file
  std::string_view magic;  ///< up to 16 characters
  StateTableShape shape;
  std::uint32_t best;          ///< the largest value
  std::uint64_t most_entries;  ///< more than any table of the kind needs
};
inline constexpr StateFile kSixPlus5File = {
    "six-plus-5.bin", "OFSM Six Plus 5", {36, 5, 0}, 1404, 1 << 22};
inline constexpr StateFile kSixPlus7File = {
    "six-plus-7.bin", "OFSM Six Plus 7", {36, 7, 0}, 1404, 1 << 26};
inline constexpr StateFile kOmaha7File = {"omaha7.bin", "OFSM Omaha 7", {52, 7, 1}, 7462, 1 << 28};

inline constexpr std::size_t kStateHeaderBytes = 32;
/// The header of a file with so many entries.
std::array<std::byte, kStateHeaderBytes> StateHeader(const StateFile& file, std::uint64_t entries);

/// Whether every state that cards can lead to is a row inside the table, and every value in the
/// rows of the last card is in the scale or 0.
bool StatesAreSound(const StateFile& file, const std::uint32_t* entries, std::size_t count);

/// An array for so many entries, for delete[], where the system has them on large pages.
std::uint32_t* NewStates(std::size_t count);

/// Reads and checks a table file.
///
/// @param path     UTF-8
/// @param missing  out: whether it could not be opened
/// @return a new array for delete[], null if the file is not sound
std::uint32_t* LoadStates(const StateFile& file, const std::string& path, bool& missing);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_STATE_MACHINES_H_
