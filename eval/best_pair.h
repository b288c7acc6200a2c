// The best pair of hole cards.

#ifndef POKERMATH_EVAL_BEST_PAIR_H_
#define POKERMATH_EVAL_BEST_PAIR_H_

#include <algorithm>
#include <cstddef>
#include <span>

namespace pokermath {

/// The largest of what pairs of a hand's cards are worth by `values.Of(card1, card2)`; 0 without a
/// pair.
template <typename Values>
int BestPair(const Values& values, std::span<const int> hand) {
  int best = 0;
  for (std::size_t i = 0; i < hand.size(); ++i) {
    for (std::size_t j = i + 1; j < hand.size(); ++j) {
      best = std::max(best, values.Of(hand[i], hand[j]));
    }
  }
  return best;
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_BEST_PAIR_H_
