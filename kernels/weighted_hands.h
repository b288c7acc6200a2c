// Two-card hands with weights, against each other.

#ifndef POKERMATH_KERNELS_WEIGHTED_HANDS_H_
#define POKERMATH_KERNELS_WEIGHTED_HANDS_H_

#include <cstdint>
#include <span>

#include "pokermath/card_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Card codes, the lower one first.
struct WeightedPair {
  int card1;
  int card2;
  std::int32_t weight;

  CardSet cards() const { return {card1, card2}; }
  bool operator==(const WeightedPair&) const = default;
};

/// Two ranges and, for every hand, a tally of its cases: each counts as often as the other hand
/// weighs. The hand's own weight is not in it.
struct TwoRanges {
  std::span<const WeightedPair> hands1;
  std::span<const WeightedPair> hands2;
};
struct TwoTallies {
  std::span<Tally> of1;  ///< as many as hands1, added to
  /// The same of hands2; or none where the totals are enough: what the one wins the other loses.
  std::span<Tally> of2;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_WEIGHTED_HANDS_H_
