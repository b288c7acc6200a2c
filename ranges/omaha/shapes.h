// How the suits of an Omaha hand fall, and what range text calls that.
//
// A split is the way the cards are spread over suits: 2-2, 2-1-1. A shape is what players ask for:
// one split, or some where a hand can have a shape in several ways (3-2 is double-suited and has
// three of a suit).

#ifndef POKERMATH_RANGES_OMAHA_SHAPES_H_
#define POKERMATH_RANGES_OMAHA_SHAPES_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "pokermath/game.h"

namespace pokermath {

/// A bit for each split.
using Splits = unsigned;

struct SuitSplit {
  int cards;               // of each suit as digits, the most first: 22, 211
  std::string_view words;  // as the end of a hand's name
};

struct SuitShape {
  std::string_view letters;  // behind a colon
  Splits splits;
};

template <int cards>
inline constexpr auto kSuitSplits = std::array<SuitSplit, 0>{};
template <>
inline constexpr auto kSuitSplits<4> = std::to_array<SuitSplit>({
    {1111, "rainbow"},
    {211, "single-suited"},
    {22, "double-suited"},
    {31, "three of a suit"},
    {4, "four of a suit"},
});
template <>
inline constexpr auto kSuitSplits<5> = std::to_array<SuitSplit>({
    {2111, "single-suited"},
    {221, "double-suited"},
    {311, "three of a suit"},
    {32, "double-suited with three of a suit"},
    {41, "four of a suit"},
    {5, "five of a suit"},
});
template <>
inline constexpr auto kSuitSplits<6> = std::to_array<SuitSplit>({
    {2211, "double-suited"},
    {222, "triple-suited"},
    {3111, "three of a suit"},
    {321, "double-suited with three of a suit"},
    {33, "double-suited with three of each"},
    {411, "four of a suit"},
    {42, "double-suited with four of a suit"},
    {51, "five of a suit"},
    {6, "six of a suit"},
});

template <int cards>
inline constexpr Splits kAllSplits = (1U << kSuitSplits<cards>.size()) - 1;

template <int cards>
inline constexpr auto kSuitShapes = std::array<SuitShape, 0>{};
template <>
inline constexpr auto kSuitShapes<4> = std::to_array<SuitShape>(
    {{"ds", 0b00100}, {"ss", 0b00010}, {"r", 0b00001}, {"3", 0b01000}, {"4", 0b10000}});
template <>
inline constexpr auto kSuitShapes<5> = std::to_array<SuitShape>(
    {{"ds", 0b001010}, {"ss", 0b000001}, {"3", 0b001100}, {"4", 0b010000}, {"5", 0b100000}});
template <>
inline constexpr auto kSuitShapes<6> = std::to_array<SuitShape>({{"ds", 0b001011001},
                                                                 {"ts", 0b000000010},
                                                                 {"3", 0b000011100},
                                                                 {"4", 0b001100000},
                                                                 {"5", 0b010000000},
                                                                 {"6", 0b100000000}});

template <int cards>
constexpr bool ShapesNameAllSplits() {
  Splits named = 0;
  for (const SuitShape& shape : kSuitShapes<cards>) named |= shape.splits;
  return named == kAllSplits<cards>;
}
#define POKERMATH_CHECK_SHAPES(cards) static_assert(ShapesNameAllSplits<cards>());
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_CHECK_SHAPES)
#undef POKERMATH_CHECK_SHAPES

/// Cards of each suit, three bits a suit.
using SuitCounts = unsigned;
constexpr SuitCounts OneOfSuit(int suit) { return 1U << 3 * suit; }

/// [SuitCounts of all the cards]: the place of the split in kSuitSplits.
template <int cards>
inline constexpr auto kSplitOfCounts = [] {
  std::array<std::uint8_t, 1 << 12> split_of{};
  for (unsigned counts = 0; counts < split_of.size(); ++counts) {
    std::array digits = {counts & 7, counts >> 3 & 7, counts >> 6 & 7, counts >> 9};
    if (digits[0] + digits[1] + digits[2] + digits[3] != cards) continue;
    std::ranges::sort(digits, std::greater());
    int split = 0;
    for (const unsigned digit : digits) {
      if (digit > 0) split = 10 * split + static_cast<int>(digit);
    }
    while (kSuitSplits<cards>[split_of[counts]].cards != split) ++split_of[counts];
  }
  return split_of;
}();

/// Place of a hand's split in kSuitSplits.
template <int cards>
std::size_t SplitOf(std::span<const int, cards> hand) {
  SuitCounts counts = 0;
  for (const int card : hand) counts += OneOfSuit(card / 13);
  return kSplitOfCounts<cards>[counts];
}

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_SHAPES_H_
