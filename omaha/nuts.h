// Whether a hand can be beaten on a board.

#ifndef POKERMATH_OMAHA_NUTS_H_
#define POKERMATH_OMAHA_NUTS_H_

#include <cstdint>
#include <span>

#include "eval/omaha_best.h"
#include "pokermath/ranges.h"

namespace pokermath {

/// Two-card holdings of unseen cards that are worth more than a value.
///
/// @param known  cards that nobody else has, as bits
int CountBetterPairs(const OmahaPairValues& values, int value, std::uint64_t known);

/// Whether there is none.
bool IsNuts(const OmahaPairValues& values, int value, std::uint64_t known);

/// The two-card holdings of unseen cards that are worth the most, and what they are worth.
struct BestPairs {
  BestPairs(const OmahaPairValues& values, std::uint64_t known);

  int value = 0;
  Spec holdings;
};

}  // namespace pokermath

#endif  // POKERMATH_OMAHA_NUTS_H_
