// Numbers of Omaha hands: 0.. in the order of their largest cards, then of the next ones.

#ifndef POKERMATH_RANGES_OMAHA_NUMBERS_H_
#define POKERMATH_RANGES_OMAHA_NUMBERS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "eval/rank_sets.h"

namespace pokermath {

/// [place][card]: what the card adds to a hand's number at its place in rising order.
inline constexpr auto kOmahaPlaces = [] {
  std::array<std::array<int, 52>, 5> places{};
  for (std::size_t i = 0; i < 5; ++i) {
    for (std::size_t card = i; card < 52; ++card) {
      places[i][card] = Choose(static_cast<int>(card), static_cast<int>(i) + 1);
    }
  }
  return places;
}();

/// @param hand  different card codes in any order
template <std::size_t cards>
int OmahaNumber(std::span<const int, cards> hand) {
  std::array<int, cards> sorted;
  std::ranges::copy(hand, sorted.begin());
  std::ranges::sort(sorted);
  int number = 0;
  for (std::size_t i = 0; i < cards; ++i) {
    number += kOmahaPlaces[i][static_cast<std::size_t>(sorted[i])];
  }
  return number;
}

/// The hand of a number, cards in rising order.
template <std::size_t cards>
std::array<int, cards> OmahaHandOf(int number) {
  std::array<int, cards> hand;
  for (std::size_t i = cards; i-- > 0;) {
    const auto& place = kOmahaPlaces[i];
    const auto above =
        std::upper_bound(place.begin() + static_cast<std::ptrdiff_t>(i), place.end(), number);
    hand[i] = static_cast<int>(above - place.begin()) - 1;
    number -= place[static_cast<std::size_t>(hand[i])];
  }
  return hand;
}

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_NUMBERS_H_
