// An Omaha hand against a range: random ones against the plain count.

#include "kernels/omaha_range.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/omaha.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;

bool AreDisjoint(const Cards& one, const Cards& other) {
  return std::ranges::none_of(one, [&](int card) { return std::ranges::count(other, card) > 0; });
}

// Visits every way to complete a board of the cards behind `first`.
template <typename Visit>
void ForEachBoard(Cards& board, std::size_t size, const Cards& known, const Visit& visit,
                  int first = 0) {
  if (board.size() == size) return visit();
  for (int card = first; card < 52; ++card) {
    if (std::ranges::count(known, card) + std::ranges::count(board, card) > 0) continue;
    board.push_back(card);
    ForEachBoard(board, size, known, visit, card + 1);
    board.pop_back();
  }
}

struct Question {
  Cards hand, board, dead;
  Street street;

  std::string Trace() const {
    return CardNames(hand) + " on " + CardNames(board) + " to " +
           std::to_string(static_cast<int>(street)) + ", dead " + CardNames(dead);
  }
};

// Board by board and hand by hand, the best five of each.
template <int cards>
Tally Plain(const Question& question, const OmahaSpec<cards>& range) {
  Cards known = question.hand;
  known.insert(known.end(), question.dead.begin(), question.dead.end());
  std::vector<Cards> hands;
  for (const auto& other : range.Hands()) {
    Cards hand(other.begin(), other.end());
    if (AreDisjoint(hand, known) && AreDisjoint(hand, question.board)) hands.push_back(hand);
  }
  Cards board = question.board;
  const auto value = [&board](Cards& hand) {
    int record[5];
    return getCombinationOmahaFsm5Common(hand.data(), cards, board.data(),
                                         static_cast<int>(board.size()), record);
  };
  Tally plain;
  Cards hero = question.hand;
  ForEachBoard(board, static_cast<std::size_t>(question.street), known, [&] {
    const int hero_value = value(hero);
    for (Cards& hand : hands) {
      if (!AreDisjoint(hand, board)) continue;
      const int other = value(hand);
      plain.wins += hero_value > other ? 1 : 0;
      plain.ties += hero_value == other ? 1 : 0;
      ++plain.cases;
    }
  });
  return plain;
}

Question RandomQuestion(Dealer& dealer, int size, int known, Street street) {
  const Cards cards = dealer.Deal(size + known + dealer.Below(3));
  const auto at = [&cards](int place) { return cards.begin() + place; };
  return {Cards(at(0), at(size)), Cards(at(size), at(size + known)),
          Cards(at(size + known), cards.end()), street};
}

// Some hands, which may hold cards of the question.
template <int cards>
OmahaSpec<cards> RandomRange(Dealer& dealer, int count) {
  OmahaSpec<cards> range;
  while (count-- > 0) {
    const Cards hand = dealer.Deal(cards);
    range.Insert(std::span<const int, cards>(hand));
  }
  return range;
}

template <int cards>
void CompareWithPlain(Dealer& dealer, const Question& question, int count) {
  const OmahaSpec<cards> range = RandomRange<cards>(dealer, count);
  const Tally plain = Plain(question, range);
  EXPECT_EQ(OmahaHandVsRange(question.hand, range, question.board, question.street, question.dead),
            plain)
      << question.Trace();
  const OmahaRangeContest<cards> contest(question.hand, range.Hands(), question.board,
                                         question.street, question.dead);
  EXPECT_EQ(contest.Count(Isa::kBaseline), plain) << question.Trace();
}

TEST(OmahaRangeEquity, IsThePlainCount) {
  Dealer dealer(91);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 120; ++trial) {
    const auto street = static_cast<Street>(3 + trial % 3);
    const int known = 3 + dealer.Below(static_cast<int>(street) - 2);
    // A few hands are blocked by many boards.
    const int hands = trial % 5 == 0 ? 2 : 40;
    CompareWithPlain<4>(dealer, RandomQuestion(dealer, 4, known, street), hands);
    CompareWithPlain<5>(dealer, RandomQuestion(dealer, 5, known, street), hands);
    if (trial % 4 == 0) {
      CompareWithPlain<6>(dealer, RandomQuestion(dealer, 6, known, street), hands);
    }
  }
  CompareWithPlain<4>(dealer, RandomQuestion(dealer, 4, 0, Street::kFlop), 20);
  CompareWithPlain<5>(dealer, RandomQuestion(dealer, 5, 0, Street::kFlop), 1);
  CompareWithPlain<6>(dealer, RandomQuestion(dealer, 6, 0, Street::kFlop), 1);
  CompareWithPlain<4>(dealer, RandomQuestion(dealer, 4, 0, Street::kTurn), 2);
}

template <int cards>
void CompareWithEveryHand(Dealer& dealer) {
  OmahaSpec<cards> all;
  all.MakeRandom();
  for (const Street street : {Street::kFlop, Street::kTurn, Street::kRiver}) {
    for (int known = 3; known <= static_cast<int>(street); ++known) {
      const Question question = RandomQuestion(dealer, cards, known, street);
      EXPECT_EQ(OmahaHandVsRange(question.hand, all, question.board, street, question.dead),
                OmahaHandVsRandom(question.hand, question.board, street, question.dead))
          << question.Trace();
    }
  }
}

TEST(OmahaRangeEquity, AgainstAllHandsIsAgainstARandomHand) {
  Dealer dealer(92);
  SCOPED_TRACE(dealer.Trace());
  CompareWithEveryHand<4>(dealer);
  CompareWithEveryHand<5>(dealer);
  OmahaSpec<4> all;
  all.MakeRandom();
  const Cards hand = dealer.Deal(4);
  EXPECT_EQ(OmahaHandVsRange(hand, all, {}, Street::kFlop),
            OmahaHandVsRandom(hand, {}, Street::kFlop));
}

TEST(OmahaRangeEquity, CountsBlocksOneByOneWithWeights) {
  Dealer dealer(95);
  SCOPED_TRACE(dealer.Trace());
  const Cards hand = dealer.Deal(4);
  const auto hands = RandomRange<4>(dealer, 30).Hands();
  std::vector<int> weights;
  Tally each;
  for (const auto& other : hands) {
    weights.push_back(1 + dealer.Below(10000));
    const Tally of =
        OmahaRangeContest<4>(hand, std::span(&other, 1), {}, Street::kFlop).Count(Isa::kBaseline);
    each.wins += weights.back() * of.wins;
    each.ties += weights.back() * of.ties;
    each.cases += weights.back() * of.cases;
  }
  const OmahaRangeContest<4> contest(hand, hands, {}, Street::kFlop, {}, weights);
  ASSERT_GT(contest.blocks(), 10);
  Tally blocks;
  for (std::int64_t block = contest.blocks(); block-- > 0;) {
    const Tally of = contest.Count(BestIsa(), block, block + 1);
    blocks.wins += of.wins;
    blocks.ties += of.ties;
    blocks.cases += of.cases;
  }
  EXPECT_EQ(blocks, each);
  EXPECT_EQ(contest.Count(BestIsa()), each);
}

TEST(OmahaRangeEquity, AgainstOneHandIsHandAgainstHand) {
  Dealer dealer(93);
  SCOPED_TRACE(dealer.Trace());
  const Cards cards = dealer.Deal(8);
  OmahaSpec<4> range;
  range.Insert(std::span<const int, 4>(cards.data() + 4, 4));
  const SharedTally shared = OmahaHands(cards, 4);
  EXPECT_EQ(OmahaHandVsRange(std::span(cards).first(4), range),
            (Tally{shared.shared[0], shared.shared[1], shared.boards}));
}

TEST(OmahaRangeEquity, TakesTheSetsThatHostsPass) {
  const PokerLogic logic;
  Dealer dealer(94);
  SCOPED_TRACE(dealer.Trace());
  Cards hand = dealer.Deal(7);
  const OmahaSpec<4> range = RandomRange<4>(dealer, 500);
  int count = 0;
  const double percent =
      logic.FlopEquityHandVsRangeOnFlop(hand.data(), hand.data() + 4, range.Combinations(), count);
  const Tally tally =
      OmahaHandVsRange(std::span(hand).first(4), range, std::span(hand).subspan(4), Street::kFlop);
  EXPECT_EQ(tally.cases, count);
  EXPECT_DOUBLE_EQ(100 * tally.Equity(), percent);
}

TEST(OmahaRangeEquity, NoCasesWhereThereIsNothingToCount) {
  const Cards hand = ParseCards("AsKsQhJh").cards;
  const Cards turn = ParseCards("2c3d4hAh").cards;
  OmahaSpec<4> range;
  EXPECT_EQ(OmahaHandVsRange(hand, range, turn), Tally());
  const Cards blocked = ParseCards("AhTh9c8c").cards;
  range.Insert(std::span<const int, 4>(blocked));
  EXPECT_EQ(OmahaHandVsRange(hand, range, turn), Tally());
  range.MakeRandom();
  EXPECT_EQ(OmahaHandVsRange(hand, range, turn, Street::kFlop), Tally());
  EXPECT_EQ(OmahaHandVsRange(std::span(hand).first(3), range, turn), Tally());
  EXPECT_EQ(OmahaHandVsRange(hand, OmahaSpec<5>(), turn), Tally());
  // The dead cards leave the flop no third card beside a hand.
  Cards dead;
  for (int card = 0; dead.size() < 42; ++card) {
    if (std::ranges::count(hand, card) == 0) dead.push_back(card);
  }
  EXPECT_EQ(OmahaHandVsRange(hand, range, {}, Street::kFlop, dead), Tally());
  // A stopped count.
  int calls = 0;
  EXPECT_EQ(OmahaHandVsRange(hand, range, {}, Street::kFlop, {},
                             [&calls](std::int64_t, std::int64_t) { return ++calls < 3; }),
            Tally());
  EXPECT_EQ(calls, 3);
}

}  // namespace
}  // namespace pokermath
