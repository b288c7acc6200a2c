// Every Hold'em matchup at once: hand against hand before the flop for all 1,624,350 ordered pairs
// of disjoint hands.

#ifndef POKERMATH_EQUITY_KERNELS_ALL_MATCHUPS_H_
#define POKERMATH_EQUITY_KERNELS_ALL_MATCHUPS_H_

#include <cstdint>
#include <vector>

#include "equity/matchups.h"
#include "pokermath/equity.h"

namespace pokermath {

/// 2 * wins + ties of every matchup, worked out on demand: suits are interchangeable and the two
/// hands mirror each other, so 47,008 counts serve all 1,624,350.
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
