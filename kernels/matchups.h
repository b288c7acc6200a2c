// How equity tables name hands and matchups, and how many there are.

#ifndef POKERMATH_KERNELS_MATCHUPS_H_
#define POKERMATH_KERNELS_MATCHUPS_H_

#include <algorithm>

#include "pokermath/equity.h"

namespace pokermath {

inline constexpr int kHands = 1326;
inline constexpr int kMatchups = 1624350;  ///< ordered pairs of disjoint hands

inline constexpr int kShortDeckMatchups = 353430;

/// Boards of a street that two hands leave.
constexpr int BoardsOf(Street street) { return street == Street::kRiver ? 1712304 : 194580; }
inline constexpr int kShortDeckBoards = 201376;  ///< of the river

/// Smaller card code * 64 + larger card code.
constexpr int HandKey(int card1, int card2) {
  return card1 < card2 ? card1 * 64 + card2 : card2 * 64 + card1;
}

/// Whether two hands are equal but for their suits in a way that makes them equally good: pairs of
/// one rank, or two suited hands of the same ranks.
inline bool AreTwins(const int* hand1, const int* hand2) {
  const auto [low1, high1] = std::minmax({hand1[0] % 13, hand1[1] % 13});
  const auto [low2, high2] = std::minmax({hand2[0] % 13, hand2[1] % 13});
  if (low1 != low2 || high1 != high2) return false;
  return low1 == high1 || (hand1[0] / 13 == hand1[1] / 13 && hand2[0] / 13 == hand2[1] / 13);
}

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_MATCHUPS_H_
