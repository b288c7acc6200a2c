// A short-deck hand that holds cards below six.

#ifndef POKERMATH_KERNELS_WEAK_HAND_H_
#define POKERMATH_KERNELS_WEAK_HAND_H_

#include <span>

#include "pokermath/equity.h"

namespace pokermath {

/// Counts a hand against every hand of two short-deck cards over every board of five that the two
/// leave.
///
/// @param hand  two card codes, one or both below six: those are worth nothing, the hand makes what
///              the board and its other card make
Tally CountWeakHand(std::span<const int, 2> hand);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_WEAK_HAND_H_
