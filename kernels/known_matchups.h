// Hold'em hand against hand before the flop, to the river: every matchup, counted beforehand.

#ifndef POKERMATH_KERNELS_KNOWN_MATCHUPS_H_
#define POKERMATH_KERNELS_KNOWN_MATCHUPS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kernels/showdown_counts.h"

namespace pokermath {

inline constexpr std::size_t kPreflopClasses =
    169;  ///< hands that differ in their suits alone are one
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

/// All matchups as numbers that multiply with weights.
class KnownMatchups {
 public:
  struct Matchup {
    double wins, ties;
  };

  /// A hand of a class against all hands of every class.
  struct AgainstClasses {
    static constexpr std::size_t kSize = 176;  ///< whole registers; 0 behind the last class
    std::array<double, kSize> wins{}, ties{};
  };

  /// Unpacked at the first call, which takes about 2 ms.
  static const KnownMatchups& Get();

  /// Of a hand against one that shares no card with it.
  Counts Of(ClassedHand hand1, ClassedHand hand2) const;
  /// Of a class against all classes of a shape: for each one as many as there are suit patterns, 0
  /// where cards are shared.
  const Matchup* Row(std::size_t number, Shape against) const {
    return &matchups_[rows_[number] + kStarts[ShapeOf(number)][against]];
  }
  const AgainstClasses& AgainstWhole(std::size_t number) const { return whole_[number]; }

 private:
  KnownMatchups();

  // Where the classes of a shape begin in a row of another.
  static constexpr std::array<std::array<std::size_t, kShapes + 1>, kShapes> kStarts = [] {
    std::array<std::array<std::size_t, kShapes + 1>, kShapes> starts{};
    for (std::size_t of = 0; of < kShapes; ++of) {
      for (std::size_t shape = 0; shape < kShapes; ++shape) {
        starts[of][shape + 1] =
            starts[of][shape] + kShapesOfClasses[shape].classes * kSuitPatterns[of][shape].count;
      }
    }
    return starts;
  }();

  void AddUpClasses();
  std::size_t PlaceOf(std::size_t class1, std::size_t class2, std::size_t pattern) const;

  std::array<std::size_t, kPreflopClasses> rows_;
  std::vector<Matchup> matchups_;
  std::vector<AgainstClasses> whole_;
};

/// The file of kernels/data, counted anew: wins and ties of all matchups that differ in more than
/// the names of suits, three bytes each, the lowest one first. In the order of the classes, the
/// second one not before the first, and of suit patterns, without those that share a card.
std::vector<std::uint8_t> CountKnownMatchups();
/// That file as a part of the library.
std::span<const std::uint8_t> BuiltInMatchups();

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_KNOWN_MATCHUPS_H_
