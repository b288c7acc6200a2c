// Every matchup at once: hand against hand before the flop for all ordered pairs of disjoint hands,
// 1,624,350 in Hold'em and 353,430 in the short deck.

#ifndef POKERMATH_KERNELS_ALL_MATCHUPS_H_
#define POKERMATH_KERNELS_ALL_MATCHUPS_H_

#include <cstdint>
#include <vector>

#include "kernels/decks.h"
#include "kernels/known_matchups.h"
#include "pokermath/equity.h"

namespace pokermath {

/// 2 * wins + ties of every matchup: those to the river are known, others are worked out on demand.
/// Suits are interchangeable and the two hands mirror each other, so 47,086 counts serve all of
/// Hold'em.
class MatchupValues {
 public:
  MatchupValues(Deck deck, Street street);

  /// Value of hand (a, b) against hand (c, d), all different.
  int Get(int a, int b, int c, int d);

 private:
  int Count(ClassedHand classed1, const int* hand1, ClassedHand classed2, const int* hand2);

  Deck deck_;
  Street street_;
  const KnownMatchups& known_;
  MatchupPlaces places_;
  std::vector<std::int32_t> values_;  // by place, -1 = not yet; none to the river
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_ALL_MATCHUPS_H_
