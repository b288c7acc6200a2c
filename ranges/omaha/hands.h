// Numbers of hands, 0.. in the order of their largest cards, then of the next ones, and sets of
// hands as bits at their numbers.

#ifndef POKERMATH_RANGES_OMAHA_HANDS_H_
#define POKERMATH_RANGES_OMAHA_HANDS_H_

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "eval/rank_sets.h"
#include "pokermath/omaha_ranges.h"

namespace pokermath {

/// [place][card]: what the card adds to a hand's number at its place in rising order.
inline constexpr auto kHandPlaces = [] {
  std::array<std::array<int, 52>, 6> places{};
  for (std::size_t i = 0; i < places.size(); ++i) {
    for (std::size_t card = i; card < 52; ++card) {
      places[i][card] = Choose(static_cast<int>(card), static_cast<int>(i) + 1);
    }
  }
  return places;
}();

/// @param hand  different card codes in any order
template <std::size_t cards>
int HandNumber(std::span<const int, cards> hand) {
  std::array<int, cards> sorted;
  std::ranges::copy(hand, sorted.begin());
  std::ranges::sort(sorted);
  int number = 0;
  for (std::size_t i = 0; i < cards; ++i) {
    number += kHandPlaces[i][static_cast<std::size_t>(sorted[i])];
  }
  return number;
}

/// The hand of a number, cards in rising order.
template <std::size_t cards>
std::array<int, cards> HandOfNumber(int number) {
  std::array<int, cards> hand;
  for (std::size_t i = cards; i-- > 0;) {
    const auto& place = kHandPlaces[i];
    const auto above =
        std::upper_bound(place.begin() + static_cast<std::ptrdiff_t>(i), place.end(), number);
    hand[i] = static_cast<int>(above - place.begin()) - 1;
    number -= place[static_cast<std::size_t>(hand[i])];
  }
  return hand;
}

/// Calls `visit` with the number and the cards, in rising order, of every hand.
template <int cards, typename Visit>
void ForEachOmahaHand(const Visit& visit) {
  std::array<int, static_cast<std::size_t>(cards)> hand;
  for (std::size_t i = 0; i < hand.size(); ++i) hand[i] = static_cast<int>(i);
  for (int number = 0; number < Choose(52, cards); ++number) {
    visit(number, hand);
    std::size_t moved = 0;
    while (moved + 1 < hand.size() && hand[moved] + 1 == hand[moved + 1]) {
      hand[moved] = static_cast<int>(moved);
      ++moved;
    }
    ++hand[moved];
  }
}

/// The bits of a set, for those who write many at once.
///
/// Hands that share all cards but the smallest have consecutive numbers: a row. Its bits are those
/// of the smallest card's code, the row begins at the number of code 0.
class OmahaBits {
 public:
  template <int cards>
  static const std::vector<std::uint64_t>& Of(const OmahaSpec<cards>& range) {
    return range.bits_;
  }

  /// Calls `visit` with the cards, in rising order, of every hand of a set.
  template <int cards, typename Visit>
  static void ForEachHand(const OmahaSpec<cards>& range, const Visit& visit) {
    std::array<int, static_cast<std::size_t>(cards)> hand;
    for (std::size_t i = 0; i < hand.size(); ++i) hand[i] = static_cast<int>(i);
    for (std::size_t i = 0; i < range.bits_.size(); ++i) {
      for (std::uint64_t word = range.bits_[i]; word != 0; word &= word - 1) {
        GoTo(static_cast<int>(64 * i) + std::countr_zero(word), hand);
        visit(hand);
      }
    }
  }

  template <int cards>
  static void AddRow(OmahaSpec<cards>& range, int number, std::uint64_t row) {
    const auto [word, shift] = PlaceOf(number);
    range.bits_[word] |= row << shift;
    if (Spills(row, shift)) range.bits_[word + 1] |= row >> (64 - shift);
  }

  template <int cards>
  static void RemoveRow(OmahaSpec<cards>& range, int number, std::uint64_t row) {
    const auto [word, shift] = PlaceOf(number);
    range.bits_[word] &= ~(row << shift);
    if (Spills(row, shift)) range.bits_[word + 1] &= ~(row >> (64 - shift));
  }

  /// Those of the row's hands that are in the set.
  template <int cards>
  static std::uint64_t Common(const OmahaSpec<cards>& range, int number, std::uint64_t row) {
    const auto [word, shift] = PlaceOf(number);
    std::uint64_t found = range.bits_[word] >> shift;
    if (Spills(row, shift)) found |= range.bits_[word + 1] << (64 - shift);
    return found & row;
  }

 private:
  // From a hand to one with a larger number: the high cards stay or rise, the others start again
  // where a higher one rose.
  template <std::size_t cards>
  static void GoTo(int number, std::array<int, cards>& hand) {
    bool rose = false;
    for (std::size_t i = cards - 1; i > 0; --i) {
      const auto& place = kHandPlaces[i];
      auto card = static_cast<std::size_t>(rose ? static_cast<int>(i) : hand[i]);
      while (card + 1 < place.size() && place[card + 1] <= number) ++card;
      rose = rose || static_cast<int>(card) != hand[i];
      hand[i] = static_cast<int>(card);
      number -= place[card];
    }
    hand[0] = number;
  }

  struct Place {
    std::size_t word;
    int shift;
  };
  static Place PlaceOf(int number) { return {static_cast<std::size_t>(number) / 64, number % 64}; }
  static bool Spills(std::uint64_t row, int shift) {
    return shift != 0 && (row >> (64 - shift)) != 0;
  }
};

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_HANDS_H_
