// Omaha hands against each other on every board that they leave.

#ifndef POKERMATH_KERNELS_OMAHA_MATCHUP_H_
#define POKERMATH_KERNELS_OMAHA_MATCHUP_H_

#include <span>

#include "platform/isa.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Counts every way to complete a board to five cards.
///
/// @param isa        instructions to use; the machine must have them
/// @param cards      1 to 11 hands, one behind the other
/// @param hand_size  one of kOmahaHandSizes
/// @param dead       cards that nobody holds and that cannot come
/// @param board      0, 3, 4 or 5 known cards; all cards different
SharedTally CountOmahaMatchup(Isa isa, std::span<const int> cards, int hand_size,
                              std::span<const int> dead, std::span<const int> board);

/// The same where the pot is split between high and low.
HighLowTally CountHighLowMatchup(Isa isa, std::span<const int> cards, int hand_size,
                                 std::span<const int> dead, std::span<const int> board);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_MATCHUP_H_
