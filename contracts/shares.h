// From what hosts pass to what kernels take, and from counts to what contracts promise.

#ifndef POKERMATH_CONTRACTS_SHARES_H_
#define POKERMATH_CONTRACTS_SHARES_H_

#include <span>

#include "pokermath/combination_set.h"
#include "pokermath/equity.h"
#include "pokermath/ranges.h"

namespace pokermath {

inline std::span<const int, 2> HandOf(const int* hand) { return std::span<const int, 2>(hand, 2); }

inline std::span<const Combination> HoldingsOf(const Spec& spec) {
  return {spec.combinations().begin(), spec.combinations().end()};
}

/// Wins, a tie as one half.
inline double WinsOf(const Tally& tally) {
  return static_cast<double>(tally.wins) + 0.5 * static_cast<double>(tally.ties);
}

/// The share of all cases; not a number when there are none, as when a range is wholly blocked.
inline double ShareOf(const Tally& tally) {
  return WinsOf(tally) / static_cast<double>(tally.cases);
}

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_SHARES_H_
