// Every matchup at once: hand against hand before the flop for all ordered pairs of disjoint hands,
// 1,624,350 in Hold'em and 353,430 in the short deck.

#ifndef POKERMATH_KERNELS_ALL_MATCHUPS_H_
#define POKERMATH_KERNELS_ALL_MATCHUPS_H_

#include <cstdint>
#include <vector>

#include "kernels/decks.h"
#include "kernels/matchups.h"
#include "pokermath/equity.h"

namespace pokermath {

/// 2 * wins + ties of every matchup, worked out on demand: suits are interchangeable and the two
/// hands mirror each other, so 47,008 counts serve all of Hold'em.
class MatchupValues {
 public:
  MatchupValues(Deck deck, Street street)
      : deck_(deck), street_(street), values_(kHands * kHands, -1) {}

  /// Value of hand (a, b) against hand (c, d); a < b, c < d, all different.
  int Get(int a, int b, int c, int d);

 private:
  Deck deck_;
  Street street_;
  std::vector<std::int32_t> values_;  // [hand][hand], -1 = not yet
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_ALL_MATCHUPS_H_
