// Up to the names of suits there are 47,086 matchups of Hold'em. A class against a class has up to
// seven of them, by how their suits lie to each other; all have their place, those that share a
// card as well, so that a place is worked out by some sums.

#include "kernels/known_matchups.h"

#include "kernels/matchup.h"

namespace pokermath {
namespace {

// Cards by class and suiting.
using Cards = std::array<int, 2>;
std::vector<Cards> CardsOfHands(Deck deck) {
  const CardSet absent = CardSet::OfBits(AbsentCards(deck));
  std::vector<Cards> cards(kPlaces);
  for (int card1 = 0; card1 < 52; ++card1) {
    for (int card2 = 0; card2 < card1; ++card2) {
      if (absent.Meets({card1, card2})) continue;
      cards[Classed(card1 - LowestRank(deck), card2 - LowestRank(deck)).Place()] = {card1, card2};
    }
  }
  return cards;
}

// Calls visit with two hands for every matchup, by places.
template <typename Visit>
void ForEachMatchup(Deck deck, const Visit& visit) {
  const std::array<std::size_t, kShapes> classes = ClassesOfShapes(deck);
  const auto is_in_deck = [&](std::size_t number) {
    const Shape shape = ShapeOf(number);
    return number - kShapesOfClasses[shape].first < classes[shape];
  };
  for (std::size_t class1 = 0; class1 < kPreflopClasses; ++class1) {
    for (std::size_t class2 = class1; class2 < kPreflopClasses; ++class2) {
      if (!is_in_deck(class1) || !is_in_deck(class2)) continue;
      const SuitPatterns& patterns = kSuitPatterns[ShapeOf(class1)][ShapeOf(class2)];
      for (std::size_t i = 0; i < patterns.count; ++i) {
        visit(ClassedHand{static_cast<std::uint8_t>(class1), patterns.first[i].of1},
              ClassedHand{static_cast<std::uint8_t>(class2), patterns.first[i].of2});
      }
    }
  }
}

}  // namespace

std::vector<std::uint8_t> CountKnownMatchups(Deck deck) {
  const std::vector<Cards> cards = CardsOfHands(deck);
  const MatchupPlaces places(deck);
  std::vector<std::uint8_t> bytes(places.size() * KnownMatchups::kBytes);
  ForEachMatchup(deck, [&](ClassedHand hand1, ClassedHand hand2) {
    const Cards& cards1 = cards[hand1.Place()];
    const Cards& cards2 = cards[hand2.Place()];
    if (!AreMatchup(deck, cards1.data(), cards2.data())) return;
    const Tally tally = CountMatchup(BestIsa(), deck, cards1.data(), cards2.data(), Street::kRiver);
    const std::int64_t record = tally.wins | tally.ties << 24;
    for (std::size_t i = 0; i < KnownMatchups::kBytes; ++i) {
      bytes[places.Of(hand1, hand2) * KnownMatchups::kBytes + i] =
          static_cast<std::uint8_t>(record >> 8 * i & 0xFF);
    }
  });
  return bytes;
}

KnownMatchups::KnownMatchups(Deck deck, const std::uint8_t* data)
    : deck_(deck),
      lowest_(LowestRank(deck)),
      boards_(Choose(CardsOf(deck) - 4, 5)),
      places_(deck),
      data_(data) {}

const KnownMatchups& KnownMatchups::Of(Deck deck) {
  static const std::array<KnownMatchups, 3> matchups = {
      KnownMatchups(Deck::kFull, BuiltInMatchups(Deck::kFull).data()),
      KnownMatchups(Deck::kShort, BuiltInMatchups(Deck::kShort).data()),
      KnownMatchups(Deck::kShortStraights, BuiltInMatchups(Deck::kShortStraights).data())};
  return matchups[static_cast<std::size_t>(deck)];
}

Tally KnownMatchups::CountAgainst(std::span<const int, 2> hand,
                                  std::span<const Combination> opponents) const {
  const ClassedHand classed = Class(hand[0], hand[1]);
  constexpr std::uint64_t kCards = (std::uint64_t{1} << 52) - 1;
  const std::uint64_t taken = Bits(hand) | AbsentCards(deck_) | ~kCards;
  Tally tally;
  for (const Combination& opponent : opponents) {
    if ((Bits(opponent) & taken) != 0) continue;
    AddTimes(Count(classed, Class(opponent.first, opponent.second)), 1, tally);
    tally.cases += boards_;
  }
  return tally;
}

Tally CountBeforeFlop(Deck deck, const int* hand1, const int* hand2, Street street) {
  if (street == Street::kRiver && AreMatchup(deck, hand1, hand2)) {
    return KnownMatchups::Of(deck).Count(hand1, hand2);
  }
  return CountMatchup(BestIsa(), deck, hand1, hand2, street);
}

}  // namespace pokermath
