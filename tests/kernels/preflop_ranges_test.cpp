// The table of all matchups and what is summed up from it, against the kernel that counts them.

#include "kernels/preflop_ranges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "calculator/choices.h"
#include "eval/worth.h"
#include "kernels/known_matchups.h"
#include "kernels/matchup.h"
#include "kernels/range_matchups.h"

namespace pokermath {
namespace {

constexpr Deck kDecks[] = {Deck::kFull, Deck::kShort, Deck::kShortStraights};

// The cards of a deck's highest ranks.
std::vector<int> HighCards(int ranks) {
  std::vector<int> cards;
  for (int suit = 0; suit < 4; ++suit) {
    for (int rank = 0; rank < ranks; ++rank) cards.push_back(suit * 13 + 12 - rank);
  }
  return cards;
}

TEST(KnownMatchups, AreThoseThatAreCounted) {
  std::mt19937 random(1);
  for (int trial = 0; trial < 20000; ++trial) {
    const Deck deck = kDecks[trial % 3];
    // Of few ranks, so that hands of one class and shared ranks are among them.
    std::vector<int> cards = HighCards(trial % 2 == 0 ? 3 : CardsOf(deck) / 4);
    std::shuffle(cards.begin(), cards.end(), random);
    ASSERT_TRUE(AreMatchup(deck, &cards[0], &cards[2]));
    ASSERT_EQ(KnownMatchups::Of(deck).Count(&cards[0], &cards[2]),
              CountMatchup(BestIsa(), deck, &cards[0], &cards[2], Street::kRiver))
        << cards[0] << cards[1] << cards[2] << cards[3];
  }
}

// What no look-up knows is counted as if nothing were known.
TEST(KnownMatchups, AreOfFourCardsOfTheDeck) {
  for (const auto& [a, b, c, d] : {std::array{0, 1, 1, 2}, {3, 3, 4, 5}, {0, 1, 2, 52}}) {
    const int hand1[2] = {a, b};
    const int hand2[2] = {c, d};
    EXPECT_FALSE(AreMatchup(Deck::kFull, hand1, hand2));
    EXPECT_EQ(CountBeforeFlop(Deck::kFull, hand1, hand2, Street::kRiver),
              CountMatchup(BestIsa(), Deck::kFull, hand1, hand2, Street::kRiver));
  }
  const int low[2] = {3, 12};
  const int high[2] = {10, 11};
  EXPECT_FALSE(AreMatchup(Deck::kShort, low, high));
  EXPECT_TRUE(AreMatchup(Deck::kFull, low, high));
}

// Hands of every kind of class: all with one weight, some of them, all with weights of their own.
std::vector<WeightedPair> RandomRange(std::mt19937& random, Deck deck) {
  std::array<std::size_t, kPreflopClasses> kinds;
  const std::size_t most = 3 + random() % 30;
  for (std::size_t& kind : kinds) kind = random() % most;
  const auto weight = [&] { return 1 + static_cast<int>(random() % 10000); };
  std::array<int, kPreflopClasses> weights;
  for (int& one : weights) one = weight();
  std::vector<WeightedPair> range;
  for (int card1 = 0; card1 < 52; ++card1) {
    for (int card2 = card1 + 1; card2 < 52; ++card2) {
      if (std::min(card1 % 13, card2 % 13) < LowestRank(deck)) continue;
      const std::size_t number = Classed(card1, card2).number;
      if (kinds[number] == 0) range.push_back({card1, card2, weights[number]});
      if (kinds[number] == 1) range.push_back({card1, card2, weight()});
      if (kinds[number] == 2 && random() % 3 == 0) range.push_back({card1, card2, weight()});
    }
  }
  return range;
}

TEST(PreflopRanges, EqualHandAgainstHandAtAllInstructionLevels) {
  std::mt19937 random(2);
  for (int trial = 0; trial < 18; ++trial) {
    SCOPED_TRACE(trial);
    const Deck deck = kDecks[trial % 3];
    std::vector<WeightedPair> hands1 = RandomRange(random, deck);
    std::vector<WeightedPair> hands2 = RandomRange(random, deck);
    if (trial / 3 == 1) hands1.resize(1);
    if (trial / 3 == 2) hands2.resize(1);
    std::shuffle(hands2.begin(), hands2.end(), random);
    const TwoRanges ranges{hands1, hands2};
    std::vector<Tally> plain1(hands1.size()), plain2(hands2.size());
    const RangeMatchups matchups(EmptyBoardCounts(BestIsa(), deck, Street::kRiver), ranges);
    for (std::size_t step = 0; step < matchups.steps(); ++step) {
      matchups.Count(step, {plain1, plain2});
    }
    for (const Isa isa : IsasOfMachine()) {
      std::vector<Tally> tallies1(hands1.size()), tallies2(hands2.size());
      CountPreflopRanges(isa, deck, ranges, {tallies1, tallies2});
      EXPECT_EQ(tallies1, plain1) << IsaName(isa);
      EXPECT_EQ(tallies2, plain2) << IsaName(isa);
    }
  }
}

void CountPlainly(const GameRules& rules, const TwoRanges& ranges, CardSet board,
                  const TwoTallies& tallies) {
  const auto worth = [&, cards = ListOf(board)](const WeightedPair& hand) {
    const int hole[2] = {hand.card1, hand.card2};
    return hand.cards().Meets(board) ? 0 : WorthOf(rules, hole, cards).high;
  };
  std::vector<int> worths2;
  for (const WeightedPair& hand : ranges.hands2) worths2.push_back(worth(hand));
  for (std::size_t i = 0; i < ranges.hands1.size(); ++i) {
    const WeightedPair& hand1 = ranges.hands1[i];
    const int worth1 = worth(hand1);
    for (std::size_t j = 0; j < worths2.size() && worth1 > 0; ++j) {
      const WeightedPair& hand2 = ranges.hands2[j];
      if (worths2[j] == 0 || hand1.cards().Meets(hand2.cards())) continue;
      const int wins = worth1 > worths2[j] ? 1 : 0;
      const int ties = worth1 == worths2[j] ? 1 : 0;
      tallies.of1[i] += {hand2.weight * wins, hand2.weight * ties, hand2.weight};
      tallies.of2[j] += {hand1.weight * (1 - wins - ties), hand1.weight * ties, hand1.weight};
    }
  }
}

// Dead cards, many of one rank or suit at times, against every board that they leave.
TEST(EmptyBoard, LeavesOutDeadCards) {
  std::mt19937 random(3);
  for (int trial = 0; trial < 18; ++trial) {
    SCOPED_TRACE(trial);
    constexpr Game kGamesOfDecks[] = {Game::kHoldem, Game::kShortDeck, Game::kShortDeckStraights};
    const Deck deck = kDecks[trial % 3];
    const GameRules& rules = RulesOf(kGamesOfDecks[trial % 3]);
    const CardSet all = rules.Deck();
    std::vector<int> cards(all.begin(), all.end());
    std::shuffle(cards.begin(), cards.end(), random);
    if (trial % 2 == 0) {
      std::ranges::stable_sort(cards, {}, [](int card) { return card % 13 % 3 == 0; });
    }
    const auto street = static_cast<Street>(3 + trial / 3 % 3);
    const int left = street == Street::kFlop ? 34 : street == Street::kTurn ? 30 : 26;
    const std::span<const int> live = std::span(cards).first(static_cast<std::size_t>(left));
    std::vector<WeightedPair> hands1, hands2;
    for (std::size_t i = 0; i < 14; ++i) {
      const auto [low, high] = std::minmax(live[i], live[i + 1 + i % 3]);
      (i % 2 == 0 ? hands1 : hands2).push_back({low, high, 1 + static_cast<int>(i)});
    }
    const TwoRanges ranges{hands1, hands2};
    std::vector<Tally> plain1(hands1.size()), plain2(hands2.size());
    Choice choice(0, left, static_cast<int>(street));
    for (std::int64_t i = ChoicesOf(left, static_cast<int>(street)); i > 0; --i) {
      CountPlainly(rules, ranges, choice.Of(live), {plain1, plain2});
      choice.MoveToNext();
    }
    for (const Isa isa : IsasOfMachine()) {
      const auto counts = EmptyBoardCountsWithout(all - CardSet(live), isa, deck, street);
      const RangeMatchups matchups(*counts, ranges);
      std::vector<Tally> tallies1(hands1.size()), tallies2(hands2.size());
      for (std::size_t step = 0; step < matchups.steps(); ++step) {
        matchups.Count(step, {tallies1, tallies2});
      }
      EXPECT_EQ(tallies1, plain1) << IsaName(isa);
      EXPECT_EQ(tallies2, plain2) << IsaName(isa);
    }
  }
}

}  // namespace
}  // namespace pokermath
