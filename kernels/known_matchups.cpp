// Up to the names of suits there are 47,086 matchups, of which the library holds wins and ties. A
// class against a class has up to seven of them, by how their suits lie to each other.

#include "kernels/known_matchups.h"

#include <utility>

#include "kernels/matchup.h"
#include "kernels/matchups.h"
#include "platform/require.h"

namespace pokermath {
namespace {

constexpr std::size_t kBytes = 3;  // of a number
static_assert(BoardsOf(Street::kRiver) < 1 << 8 * kBytes);

// Cards by class and suiting.
using Cards = std::array<int, 2>;
std::vector<Cards> CardsOfHands() {
  std::vector<Cards> cards(kPreflopClasses * kMostSuitings);
  for (int card1 = 0; card1 < 52; ++card1) {
    for (int card2 = 0; card2 < card1; ++card2) {
      cards[Classed(card1, card2).Place()] = {card1, card2};
    }
  }
  return cards;
}

bool Meet(const Cards& hand1, const Cards& hand2) {
  return hand1[0] == hand2[0] || hand1[0] == hand2[1] || hand1[1] == hand2[0] ||
         hand1[1] == hand2[1];
}

// Calls visit with two hands for every matchup, in the order of the file.
template <typename Visit>
void ForEachMatchup(const Visit& visit) {
  const std::vector<Cards> cards = CardsOfHands();
  for (std::size_t class1 = 0; class1 < kPreflopClasses; ++class1) {
    for (std::size_t class2 = class1; class2 < kPreflopClasses; ++class2) {
      const SuitPatterns& patterns = kSuitPatterns[ShapeOf(class1)][ShapeOf(class2)];
      for (std::size_t i = 0; i < patterns.count; ++i) {
        const ClassedHand hand1{static_cast<std::uint8_t>(class1), patterns.first[i].of1};
        const ClassedHand hand2{static_cast<std::uint8_t>(class2), patterns.first[i].of2};
        const Cards& cards1 = cards[hand1.Place()];
        const Cards& cards2 = cards[hand2.Place()];
        if (!Meet(cards1, cards2)) visit(std::pair(hand1, cards1), std::pair(hand2, cards2));
      }
    }
  }
}

std::size_t PatternOf(ClassedHand hand1, ClassedHand hand2) {
  return kSuitPatterns[ShapeOf(hand1.number)][ShapeOf(hand2.number)]
      .of[hand1.suiting][hand2.suiting];
}

}  // namespace

std::vector<std::uint8_t> CountKnownMatchups() {
  std::vector<std::uint8_t> bytes;
  const auto write = [&bytes](std::int64_t number) {
    for (std::size_t i = 0; i < kBytes; ++i) {
      bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i & 0xFF));
    }
  };
  ForEachMatchup([&](const auto& hand1, const auto& hand2) {
    const Tally tally = CountMatchup(BestIsa(), Deck::kFull, hand1.second.data(),
                                     hand2.second.data(), Street::kRiver);
    write(tally.wins);
    write(tally.ties);
  });
  return bytes;
}

const KnownMatchups& KnownMatchups::Get() {
  static const KnownMatchups matchups;
  return matchups;
}

std::size_t KnownMatchups::PlaceOf(std::size_t class1, std::size_t class2,
                                   std::size_t pattern) const {
  const Shape shape1 = ShapeOf(class1);
  const Shape shape2 = ShapeOf(class2);
  return rows_[class1] + kStarts[shape1][shape2] +
         (class2 - kShapesOfClasses[shape2].first) * kSuitPatterns[shape1][shape2].count + pattern;
}

KnownMatchups::KnownMatchups() {
  std::size_t size = 0;
  for (std::size_t i = 0; i < kPreflopClasses; ++i) {
    rows_[i] = size;
    size += kStarts[ShapeOf(i)][kShapes];
  }
  matchups_.resize(size);
  const std::span<const std::uint8_t> bytes = BuiltInMatchups();
  std::size_t place = 0;
  const auto read = [&] {
    int number = 0;
    for (std::size_t i = 0; i < kBytes; ++i) number |= bytes[place++] << 8 * i;
    return number;
  };
  ForEachMatchup([&](const auto& of1, const auto& of2) {
    const ClassedHand hand1 = of1.first;
    const ClassedHand hand2 = of2.first;
    const int wins = read();
    const int ties = read();
    const int losses = BoardsOf(Street::kRiver) - wins - ties;
    matchups_[PlaceOf(hand1.number, hand2.number, PatternOf(hand1, hand2))] = {
        static_cast<double>(wins), static_cast<double>(ties)};
    matchups_[PlaceOf(hand2.number, hand1.number, PatternOf(hand2, hand1))] = {
        static_cast<double>(losses), static_cast<double>(ties)};
  });
  POKERMATH_REQUIRE(place == bytes.size());
  AddUpClasses();
}

void KnownMatchups::AddUpClasses() {
  whole_.resize(kPreflopClasses);
  for (std::size_t class1 = 0; class1 < kPreflopClasses; ++class1) {
    for (std::size_t class2 = 0; class2 < kPreflopClasses; ++class2) {
      const SuitPatterns& patterns = kSuitPatterns[ShapeOf(class1)][ShapeOf(class2)];
      for (std::size_t i = 0; i < patterns.count; ++i) {
        const Matchup& matchup = matchups_[PlaceOf(class1, class2, i)];
        whole_[class1].wins[class2] += patterns.times[i] * matchup.wins;
        whole_[class1].ties[class2] += patterns.times[i] * matchup.ties;
      }
    }
  }
}

Counts KnownMatchups::Of(ClassedHand hand1, ClassedHand hand2) const {
  const Matchup& matchup = matchups_[PlaceOf(hand1.number, hand2.number, PatternOf(hand1, hand2))];
  return {static_cast<int>(matchup.wins), static_cast<int>(matchup.ties)};
}

}  // namespace pokermath
