// Exact Hold'em count of one hand against another when board cards are known.

#ifndef POKERMATH_EQUITY_KERNELS_RUNOUTS_H_
#define POKERMATH_EQUITY_KERNELS_RUNOUTS_H_

#include <span>

#include "pokermath/equity.h"

namespace pokermath {

/// Deals every way to complete the board, which is no longer than the street's; with a complete
/// board there is one case.
Tally CountRunouts(std::span<const int, 2> hand1, std::span<const int, 2> hand2,
                   std::span<const int> board, Street street);

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_RUNOUTS_H_
