// What a hand makes with a board, by the rules of any game.

#ifndef POKERMATH_EVAL_WORTH_H_
#define POKERMATH_EVAL_WORTH_H_

#include <span>

#include "pokermath/game.h"

namespace pokermath {

/// Values that compare hands of one game: larger is better.
struct Worth {
  int high = 0;
  int low = 0;  ///< 0 for none, and in games without lows

  bool operator==(const Worth&) const = default;
};

/// @param hand   as many card codes of the game's deck as its hands have
/// @param board  three to five, none of them in the hand
Worth WorthOf(const GameRules& rules, std::span<const int> hand, std::span<const int> board);

/// Category of a high value, by strength in the game's own order: 1 high card .. 10 royal flush.
int CategoryOf(const GameRules& rules, int high);
inline constexpr int kCategories = 11;  ///< with 0, which no hand has

}  // namespace pokermath

#endif  // POKERMATH_EVAL_WORTH_H_
