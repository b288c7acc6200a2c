// The rank keys of the compact evaluator by themselves, for kernels that sum them up in their own
// way.

#ifndef POKERMATH_EVAL_COMPACT_KEYS_H_
#define POKERMATH_EVAL_COMPACT_KEYS_H_

#include <cstdint>

#include "pokermath/evaluators.h"

namespace pokermath {

/// Key of each rank, below 2^24; the deuce's is 0. The keys of seven cards sum up to less than
/// 2^26.
extern const std::uint32_t kRankKeys[13];

/// Ascending value of `count` cards (5..7) that are no flush, by the sum of their rank keys.
template <int count>
inline int ValueOfRanks(std::uint32_t key) {
  const std::uint16_t row = kCompactTables.rows[count - 5][key >> CompactTables::kColumnBits];
  return kCompactTables.values[count - 5][row + (key & (CompactTables::kColumns - 1))];
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_COMPACT_KEYS_H_
