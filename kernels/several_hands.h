// Two hands and more before the flop: who shares the pot on how many boards.

#ifndef POKERMATH_KERNELS_SEVERAL_HANDS_H_
#define POKERMATH_KERNELS_SEVERAL_HANDS_H_

#include <cstdint>
#include <span>

#include "kernels/decks.h"
#include "kernels/hole_cards.h"
#include "platform/isa.h"
#include "pokermath/card_set.h"
#include "pokermath/equity.h"

namespace pokermath {

inline constexpr std::size_t kMostHands = 10;

/// Counts all boards of a street that the hands and the dead cards leave.
///
/// @param isa    instructions to use; the machine must have them
/// @param hands  2 to kMostHands of two cards each, all different
/// @param dead   other cards that cannot come
/// @param times  [sharers], a bit for each hand: boards that they share are added
void CountSeveralHands(Isa isa, Deck deck, std::span<const CardSet> hands, CardSet dead,
                       Street street, std::span<std::int64_t> times);

/// A hand by its ranks, and the one or two of these that it has of a suit.
struct RankedHand {
  int rank_class = 0;
  RankSet held = 0;
};

// The same to the river of a full deck, taken apart: what hands would do if there were no suits,
// and what each of the four suits changes. That depends on the ranks of all cards and on who has
// which of them in the suit, but not on the suits of the others.

/// Counts all boards as if nobody ever flushed.
void CountByRanks(Isa isa, std::span<const RankedHand> hands, std::span<std::int64_t> times);

/// Adds what a suit changes: the boards on which somebody flushes in it, less the same boards by
/// ranks.
void CountSuit(Isa isa, std::span<const RankedHand> hands, std::span<std::int64_t> times);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_SEVERAL_HANDS_H_
