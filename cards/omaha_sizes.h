// What to do for a number of hole cards that is known only while the program runs.

#ifndef POKERMATH_CARDS_OMAHA_SIZES_H_
#define POKERMATH_CARDS_OMAHA_SIZES_H_

#include <cstddef>
#include <type_traits>

#include "platform/require.h"
#include "pokermath/game.h"

namespace pokermath {

/// Calls visit(std::integral_constant<int, hand_size>()), which is made for all of kOmahaHandSizes.
///
/// @param hand_size  one of these; of others the last one is taken
template <std::size_t place = 0, typename Visit>
decltype(auto) ForOmahaSize(int hand_size, const Visit& visit) {
  if constexpr (place + 1 < kOmahaHandSizes.size()) {
    if (hand_size != kOmahaHandSizes[place]) return ForOmahaSize<place + 1>(hand_size, visit);
  }
  POKERMATH_REQUIRE(hand_size == kOmahaHandSizes[place]);
  return visit(std::integral_constant<int, kOmahaHandSizes[place]>());
}

}  // namespace pokermath

#endif  // POKERMATH_CARDS_OMAHA_SIZES_H_
