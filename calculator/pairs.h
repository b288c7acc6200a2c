// Two-card hands of a question as kernels see them.

#ifndef POKERMATH_CALCULATOR_PAIRS_H_
#define POKERMATH_CALCULATOR_PAIRS_H_

#include <vector>

#include "calculator/question.h"
#include "kernels/weighted_hands.h"

namespace pokermath {

/// The hands of a player, their weights in his units.
inline std::vector<WeightedPair> PairsOf(const Side& side) {
  std::vector<WeightedPair> pairs;
  pairs.reserve(side.range.size());
  for (const WeightedHand& hand : side.range.hands()) {
    auto card = hand.cards.begin();
    const int low = *card;
    pairs.push_back({low, *++card, hand.weight / side.unit});
  }
  return pairs;
}

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_PAIRS_H_
