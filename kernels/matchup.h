// Exact Hold'em count of one hand against another before the flop.

#ifndef POKERMATH_KERNELS_MATCHUP_H_
#define POKERMATH_KERNELS_MATCHUP_H_

#include <memory>

#include "kernels/decks.h"
#include "kernels/showdown_counts.h"
#include "platform/isa.h"
#include "pokermath/card_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Counts of all three-, four- or five-card boards, of any deck.
///
/// @param isa  instructions to use; the machine must have them
const ShowdownCounts& EmptyBoardCounts(Isa isa, Deck deck, Street street);

/// The same of boards without some cards of the deck, which no hand has.
std::unique_ptr<const ShowdownCounts> EmptyBoardCountsWithout(CardSet dead, Isa isa, Deck deck,
                                                              Street street);

/// Counts every board of a street that the two hands leave.
///
/// @param hand1,hand2  two card codes each, all different
Tally CountMatchup(Isa isa, Deck deck, const int* hand1, const int* hand2, Street street);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_MATCHUP_H_
