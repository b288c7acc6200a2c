// Hand against hand before the flop, to the river: every matchup, counted beforehand, as data of
// the library. A look-up needs nothing to be made or loaded.

#ifndef POKERMATH_KERNELS_KNOWN_MATCHUPS_H_
#define POKERMATH_KERNELS_KNOWN_MATCHUPS_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "kernels/decks.h"
#include "kernels/matchup_classes.h"
#include "kernels/matchups.h"
#include "kernels/showdown_counts.h"
#include "pokermath/combination_set.h"

namespace pokermath {

/// Where the matchups of a deck are: each class against itself and those behind it, by how their
/// suits lie to each other.
class MatchupPlaces {
 public:
  constexpr explicit MatchupPlaces(Deck deck) : classes_(ClassesOfShapes(deck)) {
    for (std::size_t shape1 = 0; shape1 < kShapes; ++shape1) {
      for (std::size_t shape2 = shape1; shape2 < kShapes; ++shape2) {
        starts_[shape1][shape2] = size_;
        const std::size_t pairs = shape1 == shape2 ? classes_[shape1] * (classes_[shape1] + 1) / 2
                                                   : classes_[shape1] * classes_[shape2];
        size_ += pairs * kSuitPatterns[shape1][shape2].count;
      }
    }
  }

  constexpr std::size_t size() const { return size_; }
  /// Where those of two classes begin, one place for each way that suits lie.
  ///
  /// @param number1  of a class that is not behind the other one
  std::size_t OfClasses(std::size_t number1, std::size_t number2) const {
    const Shape shape1 = ShapeOf(number1);
    const Shape shape2 = ShapeOf(number2);
    const std::size_t class1 = number1 - kShapesOfClasses[shape1].first;
    const std::size_t class2 = number2 - kShapesOfClasses[shape2].first;
    const std::size_t before =
        shape1 == shape2 ? class2 * (class2 + 1) / 2 : class2 * classes_[shape1];
    return starts_[shape1][shape2] + (before + class1) * kSuitPatterns[shape1][shape2].count;
  }
  /// @param hand1  of a class that is not behind the one of hand2
  std::size_t Of(ClassedHand hand1, ClassedHand hand2) const {
    return OfClasses(hand1.number, hand2.number) +
           kSuitPatterns[ShapeOf(hand1.number)][ShapeOf(hand2.number)]
               .of[hand1.suiting][hand2.suiting];
  }

 private:
  std::array<std::size_t, kShapes> classes_;
  std::array<std::array<std::size_t, kShapes>, kShapes> starts_{};
  std::size_t size_ = 0;
};

class KnownMatchups {
 public:
  static constexpr std::size_t kBytes = 6;  ///< of a record: wins and ties, the lowest byte first
  static_assert(std::endian::native == std::endian::little);
  static_assert(BoardsOf(Street::kRiver) < 1 << 24);

  /// Of any deck.
  static const KnownMatchups& Of(Deck deck);

  /// The hand of two cards of the deck, in any order.
  ClassedHand Class(int card1, int card2) const {
    return Classed(card1 - lowest_, card2 - lowest_);
  }
  /// Boards that two hands leave.
  int boards() const { return boards_; }

  /// A hand against one that shares no card with it; with shared cards, any number.
  Counts Count(ClassedHand hand1, ClassedHand hand2) const {
    return CountsOf(Record(hand1, hand2), hand1.number <= hand2.number);
  }
  /// A class against another, pattern by pattern: calls visit with the number of each pattern in
  /// which they share no card, and its counts.
  template <typename Visit>
  void ForEachPattern(std::size_t number1, std::size_t number2, const Visit& visit) const {
    const bool in_order = number1 <= number2;
    const SuitPatterns& patterns = kSuitPatterns[ShapeOf(number1)][ShapeOf(number2)];
    const SuitPatterns& turned = kSuitPatterns[ShapeOf(number2)][ShapeOf(number1)];
    const std::size_t first =
        in_order ? places_.OfClasses(number1, number2) : places_.OfClasses(number2, number1);
    for (std::size_t i = 0; i < patterns.count; ++i) {
      const auto [of1, of2] = patterns.first[i];
      const std::uint64_t record = RecordAt(first + (in_order ? i : turned.of[of2][of1]));
      if (record != 0) visit(i, CountsOf(record, in_order));
    }
  }
  /// Two card codes each.
  Tally Count(const int* hand1, const int* hand2) const {
    Tally tally{.cases = boards_};
    AddTimes(Count(Class(hand1[0], hand1[1]), Class(hand2[0], hand2[1])), 1, tally);
    return tally;
  }
  /// A hand of the deck against those of some holdings that are in the deck and share no card with
  /// it.
  Tally CountAgainst(std::span<const int, 2> hand, std::span<const Combination> opponents) const;

 private:
  KnownMatchups(Deck deck, const std::uint8_t* data);

  std::uint64_t Record(ClassedHand hand1, ClassedHand hand2) const {
    return RecordAt(hand1.number <= hand2.number ? places_.Of(hand1, hand2)
                                                 : places_.Of(hand2, hand1));
  }
  // Of the hand whose class stands first, or else of the other one.
  Counts CountsOf(std::uint64_t record, bool of_first) const {
    const int wins = static_cast<int>(record & 0xFFFFFF);
    const int ties = static_cast<int>(record >> 24);
    return {of_first ? wins : boards_ - wins - ties, ties};
  }
  std::uint64_t RecordAt(std::size_t place) const {
    std::uint64_t record;  // and two bytes behind it, which are there
    std::memcpy(&record, data_ + place * kBytes, sizeof record);
    return record & ~(~std::uint64_t{0} << 8 * kBytes);
  }

  Deck deck_;
  int lowest_;
  int boards_;
  MatchupPlaces places_;
  const std::uint8_t* data_;
};

/// Whether two hands are four different cards of a deck, so that a look-up knows them.
inline bool AreMatchup(Deck deck, const int* hand1, const int* hand2) {
  std::uint64_t cards = 0;
  for (const int card : {hand1[0], hand1[1], hand2[0], hand2[1]}) {
    if (static_cast<unsigned>(card) > 51) return false;
    cards |= Bit(card);
  }
  return std::popcount(cards & ~AbsentCards(deck)) == 4;
}

/// A hand against another on an empty board: looked up where that is known, else counted.
Tally CountBeforeFlop(Deck deck, const int* hand1, const int* hand2, Street street);

/// A file of kernels/data, counted anew: wins and ties of all matchups by their places, three bytes
/// each, the lowest one first; 0 of hands that share a card.
std::vector<std::uint8_t> CountKnownMatchups(Deck deck);
/// That file as a part of the library; two bytes behind it may be read.
std::span<const std::uint8_t> BuiltInMatchups(Deck deck);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_KNOWN_MATCHUPS_H_
