// An Omaha hand against every hand that its opponent may hold.

#ifndef POKERMATH_EQUITY_KERNELS_OMAHA_CLIQUES_H_
#define POKERMATH_EQUITY_KERNELS_OMAHA_CLIQUES_H_

#include <span>

#include "platform/isa.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Counts every opponent hand of the same size on a board as it stands.
///
/// @param isa    instructions to use; the machine must have them
/// @param hand   four or five card codes
/// @param board  three to five
/// @param dead   a card more that nobody holds, or -1
Tally CountOmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                           int dead = -1);

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_OMAHA_CLIQUES_H_
