// What every pair of hole ranks makes with a board of five, without suits.
//
// A row of 91 values for each multiset of five ranks that a board can have: a flush aside, a hand
// is worth the largest of what its pairs of cards find there. 1.3 MB, worked out at the first use
// in some 4 ms.

#ifndef POKERMATH_EVAL_OMAHA_ROWS_H_
#define POKERMATH_EVAL_OMAHA_ROWS_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "eval/compact_keys.h"
#include "pokermath/large_table.h"

namespace pokermath {

inline constexpr int kRankPairs = 91;

/// The number of a pair of ranks, in any order.
constexpr int PairOf(int rank1, int rank2) {
  const int high = rank1 > rank2 ? rank1 : rank2;
  const int low = rank1 > rank2 ? rank2 : rank1;
  return high * (high + 1) / 2 + low;
}

class OmahaRows {
 public:
  /// Three cache lines; what is behind the pairs is 0.
  static constexpr std::size_t kRow = 96;

  static const OmahaRows& Get() {
    static const OmahaRows rows;
    return rows;
  }

  /// [pair of ranks] ascending values for a board, by the sum of its rank keys.
  const std::uint16_t* OfKey(std::uint64_t key) const { return &values_[PlaceOfFive(key) * kRow]; }

 private:
  OmahaRows();
  void AddBoard(const std::array<int, 5>& ranks);

  LargeTable<std::uint16_t> values_;
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_ROWS_H_
