// Every Hold'em hand against the holdings of a range.

#ifndef POKERMATH_KERNELS_EVERY_HAND_H_
#define POKERMATH_KERNELS_EVERY_HAND_H_

#include <span>
#include <vector>

#include "pokermath/combination_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Counts every hand that a board leaves against holdings, in the order of their cards.
std::vector<HandTally> CountEveryHand(std::span<const Combination> opponents,
                                      std::span<const int> board, Street street);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_EVERY_HAND_H_
