// The finite-state table of five cards from 52, constant data written at build time.

#ifndef POKERMATH_EVAL_FIVE_CARD_STATES_H_
#define POKERMATH_EVAL_FIVE_CARD_STATES_H_

#include <array>
#include <cstddef>
#include <cstdint>

namespace pokermath {

/// 6,736 rows of 52; the value of five cards is on the ascending scale, 0 for what cannot be.
inline constexpr std::size_t kFiveCardStateEntries = 6736 * 52;
extern const std::uint32_t kFiveCardStates[kFiveCardStateEntries];

/// Suits of the four cards of a rank in the order of a row.
inline constexpr std::array<int, 4> kFiveCardStateSuits = {0, 3, 1, 2};

/// Place of a card code in a row: rank * 4, plus 0 for clubs, 1 spades, 2 diamonds, 3 hearts.
constexpr std::uint32_t FiveCardStateIndex(int card) {
  constexpr std::uint32_t kPlaces[4] = {0, 2, 3, 1};
  return static_cast<std::uint32_t>(card % 13 * 4) + kPlaces[card / 13];
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_FIVE_CARD_STATES_H_
