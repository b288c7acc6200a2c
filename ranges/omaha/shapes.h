// How the suits of an Omaha hand fall, and what range text calls that.
//
// A split is the way the cards are spread over suits: 2-2, 2-1-1. A shape is what players ask for:
// one split, or two where five cards can have a shape in two ways (3-2 is double-suited and has
// three of a suit).

#ifndef POKERMATH_RANGES_OMAHA_SHAPES_H_
#define POKERMATH_RANGES_OMAHA_SHAPES_H_

#include <array>
#include <span>
#include <string_view>

#include "pokermath/omaha_ranges.h"

namespace pokermath {

/// A bit for each split.
using Splits = unsigned;

struct SuitSplit {
  int squares;             // the sum of the squares of the counts tells splits apart
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
    {4, "rainbow"},           // 1-1-1-1
    {6, "single-suited"},     // 2-1-1
    {8, "double-suited"},     // 2-2
    {10, "three of a suit"},  // 3-1
    {16, "four of a suit"},   // 4
});
template <>
inline constexpr auto kSuitSplits<5> = std::to_array<SuitSplit>({
    {7, "single-suited"},                        // 2-1-1-1
    {9, "double-suited"},                        // 2-2-1
    {11, "three of a suit"},                     // 3-1-1
    {13, "double-suited with three of a suit"},  // 3-2
    {17, "four of a suit"},                      // 4-1
    {25, "five of a suit"},                      // 5
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

/// Place of a hand's split in kSuitSplits.
template <int cards>
std::size_t SplitOf(std::span<const int, cards> hand) {
  std::array<int, 4> counts{};
  for (const int card : hand) ++counts[static_cast<std::size_t>(card / 13)];
  int squares = 0;
  for (const int count : counts) squares += count * count;
  std::size_t split = 0;
  while (kSuitSplits<cards>[split].squares != squares) ++split;
  return split;
}

/// All hands of a split. Built at first use, 5 sets of 34 KB and 6 of 325 KB.
template <int cards>
const OmahaSpec<cards>& HandsOfSplit(std::size_t split);

/// All hands of some splits.
template <int cards>
OmahaSpec<cards> HandsOfSplits(Splits splits);

extern template const OmahaSpec<4>& HandsOfSplit<4>(std::size_t);
extern template const OmahaSpec<5>& HandsOfSplit<5>(std::size_t);
extern template OmahaSpec<4> HandsOfSplits<4>(Splits);
extern template OmahaSpec<5> HandsOfSplits<5>(Splits);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_SHAPES_H_
