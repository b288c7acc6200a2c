// The bits of a set of Omaha hands, for those who write many at once.

#ifndef POKERMATH_RANGES_OMAHA_BITS_H_
#define POKERMATH_RANGES_OMAHA_BITS_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/numbers.h"

namespace pokermath {

/// Hands that share all cards but the smallest have consecutive numbers: a row. Its bits are those
/// of the smallest card's code, the row begins at the number of code 0.
class OmahaBits {
 public:
  template <int cards>
  static std::vector<std::uint64_t>& Of(OmahaSpec<cards>& range) {
    return range.bits_;
  }
  template <int cards>
  static const std::vector<std::uint64_t>& Of(const OmahaSpec<cards>& range) {
    return range.bits_;
  }

  static void AddRow(std::vector<std::uint64_t>& bits, int number, std::uint64_t row) {
    const auto [word, shift] = PlaceOf(number);
    bits[word] |= row << shift;
    if (Spills(row, shift)) bits[word + 1] |= row >> (64 - shift);
  }

  static void RemoveRow(std::vector<std::uint64_t>& bits, int number, std::uint64_t row) {
    const auto [word, shift] = PlaceOf(number);
    bits[word] &= ~(row << shift);
    if (Spills(row, shift)) bits[word + 1] &= ~(row >> (64 - shift));
  }

  /// Those of the row's hands that are in the set.
  static std::uint64_t Common(const std::vector<std::uint64_t>& bits, int number,
                              std::uint64_t row) {
    const auto [word, shift] = PlaceOf(number);
    std::uint64_t found = bits[word] >> shift;
    if (Spills(row, shift)) found |= bits[word + 1] << (64 - shift);
    return found & row;
  }

 private:
  struct Place {
    std::size_t word;
    int shift;
  };
  static Place PlaceOf(int number) { return {static_cast<std::size_t>(number) / 64, number % 64}; }
  static bool Spills(std::uint64_t row, int shift) {
    return shift != 0 && (row >> (64 - shift)) != 0;
  }
};

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

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_BITS_H_
