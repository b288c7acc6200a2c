// Two ranges against each other before the flop, to the river.

#ifndef POKERMATH_KERNELS_PREFLOP_RANGES_H_
#define POKERMATH_KERNELS_PREFLOP_RANGES_H_

#include "kernels/decks.h"
#include "kernels/weighted_hands.h"
#include "platform/isa.h"

namespace pokermath {

/// Hand against hand, for all pairs that share no card, from the table of all matchups.
///
/// @param isa  instructions to use; the machine must have them
/// @param deck  any
/// @param ranges  every hand once, weights up to 10,000
void CountPreflopRanges(Isa isa, Deck deck, const TwoRanges& ranges, const TwoTallies& tallies);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_PREFLOP_RANGES_H_
