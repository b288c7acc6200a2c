// Short-deck hands: 36 cards, six and better.
//
// A flush beats a full house, three of a kind beats a straight, and A-6-7-8-9 is the lowest
// straight.

#ifndef POKERMATH_EVAL_SHORT_DECK_H_
#define POKERMATH_EVAL_SHORT_DECK_H_

namespace pokermath {

inline constexpr int kLowestShortDeckCard = 4;  ///< its rank, the six

/// Puts the ascending value 1..7462 of five short-deck cards into short-deck order.
constexpr int ToShortDeckOrder(int value) {
  // A-9-8-7-6, a high card or a flush with 52 cards.
  if (value == 853) value = 5854;
  if (value == 6716) value = 7453;
  if (value >= 5854 && value <= 5863) return value - 858;   // straight
  if (value >= 4996 && value <= 5853) return value + 10;    // three of a kind
  if (value >= 7141 && value <= 7296) return value - 1277;  // full house
  if (value >= 5864 && value <= 7140) return value + 156;   // flush
  return value;
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_SHORT_DECK_H_
