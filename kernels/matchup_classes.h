// The classes of two-card hands before the flop, and how the suits of two hands lie to each other.
//
// A short deck has the same classes with its ranks counted from its lowest card: of each shape the
// first ones.

#ifndef POKERMATH_KERNELS_MATCHUP_CLASSES_H_
#define POKERMATH_KERNELS_MATCHUP_CLASSES_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "kernels/decks.h"

namespace pokermath {

/// Hands that differ in their suits alone are one.
inline constexpr std::size_t kPreflopClasses = 169;
inline constexpr std::size_t kMostSuitings = 12;

enum Shape : std::size_t { kPair, kSuited, kOffsuit };
inline constexpr std::size_t kShapes = 3;
/// Classes of a shape: where they begin among all, how many they are, and the ways to choose suits
/// for each.
struct ShapeOfClasses {
  std::size_t first, classes, suitings;
};
inline constexpr std::array<ShapeOfClasses, kShapes> kShapesOfClasses = {
    {{0, 13, 6}, {13, 78, 4}, {91, 78, 12}}};
constexpr Shape ShapeOf(std::size_t number) {
  return number < kShapesOfClasses[kSuited].first    ? kPair
         : number < kShapesOfClasses[kOffsuit].first ? kSuited
                                                     : kOffsuit;
}

/// Classes of each shape that a deck has.
constexpr std::array<std::size_t, kShapes> ClassesOfShapes(Deck deck) {
  const auto ranks = static_cast<std::size_t>(13 - LowestRank(deck));
  return {ranks, ranks * (ranks - 1) / 2, ranks * (ranks - 1) / 2};
}

/// A hand as its class and which of the class's suits it has.
struct ClassedHand {
  std::uint8_t number;
  std::uint8_t suiting;

  /// Among kPlaces.
  constexpr std::size_t Place() const { return number * kMostSuitings + suiting; }
};

namespace internal {

constexpr ClassedHand Classify(int card1, int card2) {
  const bool in_order = card1 % 13 >= card2 % 13;
  const int high = in_order ? card1 : card2;
  const int low = in_order ? card2 : card1;
  const int suit1 = high / 13;
  const int suit2 = low / 13;
  const auto hand = [](int number, int suiting) {
    return ClassedHand{static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(suiting)};
  };
  if (high % 13 == low % 13) {
    const int more = suit1 > suit2 ? suit1 : suit2;
    return hand(high % 13, more * (more - 1) / 2 + suit1 + suit2 - more);
  }
  const int ranks = (high % 13) * (high % 13 - 1) / 2 + low % 13;
  if (suit1 == suit2) return hand(13 + ranks, suit1);
  return hand(91 + ranks, suit1 * 3 + (suit2 > suit1 ? suit2 - 1 : suit2));
}

inline constexpr auto kClassedHands = [] {
  std::array<std::array<ClassedHand, 52>, 52> hands{};
  for (std::size_t i = 0; i < 52; ++i) {
    for (std::size_t j = 0; j < 52; ++j) {
      if (i != j) hands[i][j] = Classify(static_cast<int>(i), static_cast<int>(j));
    }
  }
  return hands;
}();

}  // namespace internal

/// Of two different cards in any order.
constexpr ClassedHand Classed(int card1, int card2) {
  return internal::kClassedHands[static_cast<std::size_t>(card1)][static_cast<std::size_t>(card2)];
}

inline constexpr std::size_t kPlaces = kPreflopClasses * kMostSuitings;

/// How the suits of two hands lie to each other: of their names all that matters is which are the
/// same. Patterns are numbered by the first suitings that have them.
struct SuitPatterns {
  std::size_t count = 0;
  std::array<std::array<std::uint8_t, kMostSuitings>, kMostSuitings> of{};  ///< [suiting][suiting]
  struct Suitings {
    std::uint8_t of1, of2;
  };
  std::array<Suitings, 7> first{};
  /// Suitings of the second hand that have a pattern with each one of the first.
  std::array<int, 7> times{};
};

namespace internal {

/// What becomes of each suiting of a shape under each of the 24 ways to rename the suits.
using Renamings = std::array<std::array<std::uint8_t, kMostSuitings>, 24>;

constexpr std::array<Renamings, kShapes> MakeRenamings() {
  std::array<Renamings, kShapes> renamings{};
  std::size_t order = 0;
  for (int code = 0; code < 256; ++code) {
    const int suits[4] = {code & 3, code >> 2 & 3, code >> 4 & 3, code >> 6};
    int seen = 0;
    for (const int suit : suits) seen |= 1 << suit;
    if (seen != 15) continue;
    for (int suit1 = 0; suit1 < 4; ++suit1) {
      for (int suit2 = 0; suit2 < 4; ++suit2) {
        // An ace and a king have all suitings but those of pairs, which two aces have.
        for (int rank = 11; rank < 13; ++rank) {
          if (rank == 12 && suit1 == suit2) continue;
          const ClassedHand from = Classed(12 + 13 * suit1, rank + 13 * suit2);
          const ClassedHand to = Classed(12 + 13 * suits[suit1], rank + 13 * suits[suit2]);
          renamings[ShapeOf(from.number)][order][from.suiting] = to.suiting;
        }
      }
    }
    ++order;
  }
  return renamings;
}

constexpr std::array<std::array<SuitPatterns, kShapes>, kShapes> MakeSuitPatterns() {
  constexpr std::uint8_t kNone = 255;
  const std::array<Renamings, kShapes> renamings = MakeRenamings();
  std::array<std::array<SuitPatterns, kShapes>, kShapes> all{};
  for (std::size_t shape1 = 0; shape1 < kShapes; ++shape1) {
    for (std::size_t shape2 = 0; shape2 < kShapes; ++shape2) {
      SuitPatterns& patterns = all[shape1][shape2];
      for (auto& row : patterns.of) row.fill(kNone);
      for (std::size_t i = 0; i < kShapesOfClasses[shape1].suitings; ++i) {
        for (std::size_t j = 0; j < kShapesOfClasses[shape2].suitings; ++j) {
          if (patterns.of[i][j] != kNone) continue;
          patterns.first[patterns.count] = {static_cast<std::uint8_t>(i),
                                            static_cast<std::uint8_t>(j)};
          for (std::size_t order = 0; order < 24; ++order) {
            patterns.of[renamings[shape1][order][i]][renamings[shape2][order][j]] =
                static_cast<std::uint8_t>(patterns.count);
          }
          for (std::size_t k = 0; k < kShapesOfClasses[shape2].suitings; ++k) {
            patterns.times[patterns.count] += patterns.of[i][k] == patterns.count ? 1 : 0;
          }
          ++patterns.count;
        }
      }
    }
  }
  return all;
}

}  // namespace internal

inline constexpr auto kSuitPatterns = internal::MakeSuitPatterns();  ///< [shape][shape]

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_MATCHUP_CLASSES_H_
