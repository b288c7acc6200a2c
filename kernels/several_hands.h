// Two hands and more before the flop: who shares the pot on how many boards.

#ifndef POKERMATH_KERNELS_SEVERAL_HANDS_H_
#define POKERMATH_KERNELS_SEVERAL_HANDS_H_

#include <cstdint>
#include <span>

#include "kernels/decks.h"
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

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_SEVERAL_HANDS_H_
