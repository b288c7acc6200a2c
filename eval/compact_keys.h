// The rank keys of the compact evaluator by themselves, for kernels that sum them up in their own
// way.

#ifndef POKERMATH_EVAL_COMPACT_KEYS_H_
#define POKERMATH_EVAL_COMPACT_KEYS_H_

#include <cstddef>
#include <cstdint>

#include "pokermath/evaluators.h"

namespace pokermath {

/// Key of each rank, below 2^CompactTables::kKeyBits; the deuce's is 0. Of sums only those bits
/// count.
extern const std::uint32_t kRankKeys[13];
/// The same for the short deck; the keys of the six and of what is below it are 0.
extern const std::uint32_t kShortDeckKeys[13];

/// Ascending value of `count` cards (5..7) that are no flush, by the sum of their rank keys.
template <int count>
inline int ValueOfRanks(std::uint32_t key) {
  return kCompactTables.ValueOfRanks<count>(key);
}

/// A place for each multiset of five ranks that cards can have, by the sum of their rank keys.
inline std::size_t PlaceOfFive(std::uint64_t key) {
  key &= CompactTables::kKeys - 1;
  return kCompactTables.rows[0][key >> CompactTables::kColumnBits] +
         (key & (CompactTables::kColumns - 1));
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_COMPACT_KEYS_H_
