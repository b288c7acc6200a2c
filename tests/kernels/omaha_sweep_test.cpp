// Two weighted Omaha ranges on a board: every hand against plain loops, and large ranges against
// the count of one hand.

#include "kernels/omaha_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "eval/worth.h"
#include "kernels/omaha_range.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

CardSet Cards(std::string_view text) { return CardSet(ParseCards(text).cards); }
std::vector<int> ListOf(CardSet cards) { return {cards.begin(), cards.end()}; }

// Different hands of some cards, which share many of them.
std::vector<WeightedHand> RandomHands(std::mt19937& random, CardSet of, std::size_t count) {
  std::vector<int> deck = ListOf(of);
  std::map<CardSet, int> hands;
  while (hands.size() < count) {
    std::ranges::shuffle(deck, random);
    hands[CardSet(std::span(deck).first(4))] = 1 + static_cast<int>(random() % 10000);
  }
  std::vector<WeightedHand> list;
  for (const auto& [cards, weight] : hands) list.push_back({cards, weight});
  return list;
}

// What `hands` win and tie on a board, added to counts.
void CountPlainly(std::span<const WeightedHand> hands, std::span<const WeightedHand> others,
                  CardSet board, std::vector<OmahaCounts>& counts) {
  const GameRules& rules = RulesOf(Game::kOmaha);
  const std::vector<int> board_cards = ListOf(board);
  const auto value = [&](CardSet hand) {
    return hand.Meets(board) ? 0 : WorthOf(rules, ListOf(hand), board_cards).high;
  };
  std::vector<int> values;
  for (const WeightedHand& other : others) values.push_back(value(other.cards));
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const int own = value(hands[i].cards);
    for (std::size_t j = 0; j < others.size() && own > 0; ++j) {
      if (values[j] == 0 || others[j].cards.Meets(hands[i].cards)) continue;
      const auto weight = static_cast<std::uint64_t>(others[j].weight);
      counts[i].below += own > values[j] ? weight : 0;
      counts[i].not_above += own >= values[j] ? weight : 0;
    }
  }
}

constexpr const char* kBoards[] = {
    "2c7dThJs3d", "2c2d7h7sTd", "7c7d7h7s2d",                // no flush
    "2c7cTcJs3d", "2c7cTcJc3d", "2c7cTcJcAc", "AcKc2c9d9h",  // flushes
    "7c7d7hTcJc", "7c7dTdThJd",                              // and full houses
    "4c6c8c9c2d", "5c6c7c8c9c", "Ac2c3cTcKc", "TcJcQcTdTh", "4c6c8c9c4d", "9c8c7c7d7h",
    "2c7dTh",     "7c8c9c",     "7c7dTh",     "9c8c7cTc",   "9d9h8d7d"};

TEST(OmahaSweep, EqualsHandByHandOnBoardsOfAllKinds) {
  std::mt19937 random(5);
  const CardSet deck = RulesOf(Game::kOmaha).Deck();
  // Cards among which straight flushes are frequent, and all.
  const CardSet near = Cards("Ac2c3c4c5c6c7c8c9cTcJcQcKc7d7h9d9h8dTdTh");
  for (const CardSet of : {near, deck}) {
    const std::vector<WeightedHand> hands[2] = {RandomHands(random, of, 400),
                                                RandomHands(random, of, 600)};
    const OmahaTensors ranges(hands[0], hands[1]);
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2}) {
      if (isa > BestIsa()) continue;
      OmahaSweep all(isa, ranges);
      std::vector<OmahaCounts> expected_of_all[2];
      for (const char* const text : kBoards) {
        SCOPED_TRACE(text);
        OmahaSweep sweep(isa, ranges);
        sweep.Count(Cards(text));
        all.Count(Cards(text));
        for (const std::size_t side : {0u, 1u}) {
          std::vector<OmahaCounts> expected(hands[side].size());
          CountPlainly(hands[side], hands[1 - side], Cards(text), expected);
          ASSERT_EQ(sweep.CountsOf(side), expected);
          expected_of_all[side].resize(expected.size());
          CountPlainly(hands[side], hands[1 - side], Cards(text), expected_of_all[side]);
        }
      }
      for (const std::size_t side : {0u, 1u}) ASSERT_EQ(all.CountsOf(side), expected_of_all[side]);
      OmahaSweep deals(isa, ranges);
      deals.CountAll();
      const std::vector<OmahaCounts> dealt = deals.CountsOf(0);
      for (std::size_t i = 0; i < dealt.size(); ++i) {
        std::uint64_t fit = 0;
        for (const WeightedHand& other : hands[1]) {
          if (!other.cards.Meets(hands[0][i].cards)) fit += static_cast<unsigned>(other.weight);
        }
        ASSERT_EQ(dealt[i].not_above, fit);
        ASSERT_EQ(dealt[i].below, 0u);
      }
    }
  }
}

// Weights so large that 32 bits have no room for all rivers of a turn.
TEST(OmahaSweep, EqualsHandsAgainstALargeRangeOnATurn) {
  const Result<RangeReading> reading = ReadRange(Game::kOmaha, "10%");
  const HandRange& range = reading->range;
  const CardSet turn = Cards("8c9cTc8d");
  std::vector<WeightedHand> hands;
  for (const WeightedHand& hand : range.hands()) {
    if (!hand.cards.Meets(turn))
      hands.push_back({hand.cards, hands.size() % 3 == 0 ? 9999 : 10000});
  }
  const OmahaTensors ranges(hands, hands);
  OmahaSweep sweep(BestIsa(), ranges);
  for (const int river : RulesOf(Game::kOmaha).Deck() - turn) sweep.Count(turn | CardSet{river});
  const std::vector<OmahaCounts> counts = sweep.CountsOf(0);
  EXPECT_EQ(sweep.CountsOf(1), counts);
  for (std::size_t i = 7; i < hands.size(); i += hands.size() / 12) {
    std::map<int, std::vector<std::array<int, 4>>> by_weight;
    for (const WeightedHand& other : hands) {
      std::ranges::copy(other.cards, by_weight[other.weight].emplace_back().begin());
    }
    std::uint64_t wins = 0, ties = 0;
    for (const auto& [weight, others] : by_weight) {
      const OmahaRangeContest<4> contest(ListOf(hands[i].cards), others, ListOf(turn),
                                         Street::kRiver);
      const Tally tally = contest.Count(BestIsa());
      wins += static_cast<std::uint64_t>(weight * tally.wins);
      ties += static_cast<std::uint64_t>(weight * tally.ties);
    }
    ASSERT_EQ(counts[i], (OmahaCounts{wins, wins + ties}));
  }
}

}  // namespace
}  // namespace pokermath
