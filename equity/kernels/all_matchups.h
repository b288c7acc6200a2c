// Every Hold'em matchup at once: hand against hand before the flop for all 1,624,350 ordered pairs
// of disjoint hands.

#ifndef POKERMATH_EQUITY_KERNELS_ALL_MATCHUPS_H_
#define POKERMATH_EQUITY_KERNELS_ALL_MATCHUPS_H_

#include <cstdint>
#include <vector>

#include "pokermath/equity.h"

namespace pokermath {

inline constexpr int kHands = 1326;
inline constexpr int kMatchups = 1624350;

/// Smaller card code * 64 + larger card code: how equity tables name a hand.
constexpr int HandKey(int card1, int card2) {
  return card1 < card2 ? card1 * 64 + card2 : card2 * 64 + card1;
}

/// Place of a hand in the order (0,1), (0,2) .. (50,51); card1 < card2.
constexpr int HandIndex(int card1, int card2) {
  return card1 * (103 - card1) / 2 + card2 - card1 - 1;
}

/// 2 * wins + ties of every matchup, worked out on demand: suits are interchangeable and the two
/// hands mirror each other, so about 25,000 counts serve all.
class MatchupValues {
 public:
  explicit MatchupValues(Street street) : street_(street), values_(kHands * kHands, -1) {}

  /// Value of hand (a, b) against hand (c, d); a < b, c < d, all different.
  int Get(int a, int b, int c, int d);

 private:
  Street street_;
  std::vector<std::int32_t> values_;  // [hand][hand], -1 = not yet
};

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_ALL_MATCHUPS_H_
