// How equity tables name hands and matchups, and how many there are.

#ifndef POKERMATH_EQUITY_MATCHUPS_H_
#define POKERMATH_EQUITY_MATCHUPS_H_

#include "pokermath/equity.h"

namespace pokermath {

inline constexpr int kHands = 1326;
inline constexpr int kMatchups = 1624350;  ///< ordered pairs of disjoint hands

/// Boards of a street that two hands leave.
constexpr int BoardsOf(Street street) { return street == Street::kRiver ? 1712304 : 194580; }

/// Smaller card code * 64 + larger card code.
constexpr int HandKey(int card1, int card2) {
  return card1 < card2 ? card1 * 64 + card2 : card2 * 64 + card1;
}

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_MATCHUPS_H_
