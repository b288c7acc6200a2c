// Equity against a range: every function against plain loops over boards and holdings.

#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;

bool Holds(const Cards& cards, int card) { return std::ranges::count(cards, card) != 0; }

int ValueOf(const int* hand, const Cards& board, std::size_t street) {
  Cards cards(board.begin(), board.begin() + static_cast<std::ptrdiff_t>(street));
  cards.insert(cards.end(), hand, hand + 2);
  return EvaluateCards(cards.data(), static_cast<int>(cards.size()));
}

struct Score {
  double won = 0;
  double cases = 0;
  double Share() const { return won / cases; }

  // One board, of which the first `street` cards are played and all are dead.
  void Add(const Cards& hand, const Cards& board, std::size_t street, const Spec& spec) {
    const int value = ValueOf(hand.data(), board, street);
    for (const auto& [first, second] : spec.combinations()) {
      const int opponent[2] = {first, second};
      if (Holds(hand, first) || Holds(hand, second) || Holds(board, first) ||
          Holds(board, second)) {
        continue;
      }
      const int other = ValueOf(opponent, board, street);
      won += value > other ? 1.0 : value == other ? 0.5 : 0.0;
      cases += 1;
    }
  }
};

// Every way to complete the board to a street.
Score Plain(const Cards& hand, Cards board, std::size_t street, const Spec& spec, int first = 0) {
  Score score;
  if (board.size() == street) {
    score.Add(hand, board, street, spec);
    return score;
  }
  for (int card = first; card < 52; ++card) {
    if (Holds(hand, card) || Holds(board, card)) continue;
    Cards longer = board;
    longer.push_back(card);
    const Score part = Plain(hand, longer, street, spec, card + 1);
    score.won += part.won;
    score.cases += part.cases;
  }
  return score;
}

// Random boards from the same draws.
double PlainSample(PokerLogic& logic, const Cards& hand, const Cards& known, std::size_t street,
                   const Spec& spec) {
  Score score;
  for (int trial = 0; trial < logic.trialCount; ++trial) {
    Cards board = known;
    while (board.size() < street) {
      const int card = std::rand() % 52;
      if (!Holds(hand, card) && !Holds(board, card)) board.push_back(card);
    }
    score.Add(hand, board, street, spec);
  }
  return score.Share();
}

// A few random holdings: some are blocked, some stored both ways.
Spec RandomRange(Dealer& dealer, int holdings) {
  Spec spec;
  for (int i = 0; i < holdings; ++i) {
    const Cards cards = dealer.Deal(2);
    spec.Insert(cards[0], cards[1]);
    if (i % 5 == 0) spec.Insert(cards[1], cards[0]);
  }
  return spec;
}

TEST(HandVsRange, ExactStreetsAreThePlainCount) {
  PokerLogic logic;
  Dealer dealer(21);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 12; ++trial) {
    Cards cards = dealer.Deal(7);
    Cards hand(cards.begin(), cards.begin() + 2);
    Cards board(cards.begin() + 2, cards.end());
    const Cards flop(board.begin(), board.begin() + 3);
    const Cards turn(board.begin(), board.begin() + 4);
    const Spec spec = RandomRange(dealer, 40);
    EXPECT_EQ(logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), 3, spec),
              Plain(hand, flop, 5, spec).Share());
    EXPECT_EQ(logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), 4, spec),
              Plain(hand, turn, 5, spec).Share());
    EXPECT_EQ(logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), 5, spec),
              Plain(hand, board, 5, spec).Share());
    EXPECT_EQ(logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), board.data(), 3, spec, 4),
              Plain(hand, flop, 4, spec).Share());
    if (trial % 4 == 0) {
      EXPECT_EQ(logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), board.data(), 0, spec, 3),
                Plain(hand, {}, 3, spec).Share());
    }
    // More known cards than the street: the first are played, all are dead.
    Score first_three;
    first_three.Add(hand, board, 3, spec);
    EXPECT_EQ(logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), board.data(), 5, spec, 3),
              first_three.Share());
  }
}

TEST(HandVsRange, EmptyBoardSumsUpTheMatchupsForAnyNumberOfWorkers) {
  PokerLogic logic;
  Cards hand = ParseCards("AhKd").cards;
  Spec spec = ParseRange("QQ-99,AK,76s,KdQd").range;
  spec.Insert(6, 19);
  double wins = 0, boards = 0, turn_wins = 0, turn_boards = 0;
  for (const auto& [first, second] : spec.combinations()) {
    if (Holds(hand, first) || Holds(hand, second)) continue;
    int opponent[2] = {first, second};
    double won, counted;
    logic.getProbabilityOfWinWithNoBoard(hand.data(), opponent, won, counted);
    wins += won;
    boards += counted;
    logic.getProbabilityOfWinWithNoBoardToTurn(hand.data(), opponent, won, counted);
    turn_wins += won;
    turn_boards += counted;
  }
  for (const int workers : {1, 2, 7}) {
    omp_set_num_threads(workers);
    EXPECT_EQ(logic.getProbabilityOfWinBySpectr(hand.data(), nullptr, 0, spec), wins / boards);
  }
  EXPECT_EQ(logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), nullptr, 0, spec, 4),
            turn_wins / turn_boards);
  // A loaded table answers, in the order asked.
  const Spec one = ParseRange("QcJs").range;
  logic.equityTable[{24 * 64 + 38, 10 * 64 + 48}] = 1712304;
  EXPECT_EQ(logic.getProbabilityOfWinBySpectrWithNoBoard(hand.data(), one), 0.5);
  logic.equityTurnTable[{24 * 64 + 38, 10 * 64 + 48}] = 194580 / 2;
  EXPECT_EQ(logic.getProbabilityOfWinBySpectrWithNoBoardToTurn(hand.data(), one), 0.25);
}

TEST(HandVsRange, SampledBoardsAreThoseOfTheDraws) {
  PokerLogic logic;
  logic.trialCount = 500;
  Dealer dealer(22);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 20; ++trial) {
    Cards cards = dealer.Deal(4);
    Cards hand(cards.begin(), cards.begin() + 2);
    const Spec spec = RandomRange(dealer, 20);
    for (const int known : {1, 2}) {
      Cards board(cards.begin() + 2, cards.begin() + 2 + known);
      const auto seeded = [&](auto ask) {
        std::srand(static_cast<unsigned>(trial));
        return ask();
      };
      const double expected = seeded([&] { return PlainSample(logic, hand, board, 5, spec); });
      const int next = std::rand();
      EXPECT_EQ(seeded([&] {
                  return logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), known, spec);
                }),
                expected);
      EXPECT_EQ(std::rand(), next) << "another number of draws";
      for (const int street : {3, 4}) {
        EXPECT_EQ(seeded([&] {
                    return logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), board.data(), known,
                                                                  spec, street);
                  }),
                  seeded([&] {
                    return PlainSample(logic, hand, board, static_cast<std::size_t>(street), spec);
                  }));
      }
    }
  }
}

TEST(HandVsRange, FreeFunctionCountsWhatTheMembersShare) {
  PokerLogic logic;
  Dealer dealer(23);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 6; ++trial) {
    Cards cards = dealer.Deal(6);
    Cards hand(cards.begin(), cards.begin() + 2);
    Cards board(cards.begin() + 2, cards.end());
    const Spec spec = RandomRange(dealer, 30);
    const auto count = [&](std::size_t known, Street street) {
      return HoldemHandVsRange(std::span<const int, 2>(hand), spec,
                               std::span<const int>(board).first(known), street);
    };
    EXPECT_EQ(count(0, Street::kRiver).Equity(),
              logic.getProbabilityOfWinBySpectrWithNoBoard(hand.data(), spec));
    EXPECT_EQ(count(0, Street::kTurn).Equity(),
              logic.getProbabilityOfWinBySpectrWithNoBoardToTurn(hand.data(), spec));
    EXPECT_EQ(count(0, Street::kFlop).Equity(),
              logic.getProbabilityOfWinBySpectrWithNoBoardToFlop(hand.data(), spec));
    EXPECT_EQ(count(4, Street::kRiver).Equity(),
              logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), 4, spec));
    const Score two = Plain(hand, {board[0], board[1]}, 4, spec);
    EXPECT_EQ(count(2, Street::kTurn).Equity(), two.Share());
    EXPECT_EQ(count(4, Street::kFlop), Tally{}) << "a board longer than the street";
  }
}

TEST(HandVsRange, EveryHandIsCountedAsByItself) {
  Dealer dealer(24);
  SCOPED_TRACE(dealer.Trace());
  const auto compare = [](const Spec& spec, const Cards& board, Street street) {
    const std::vector<HandTally> hands = HoldemEveryHandVsRange(spec, board, street);
    const auto live = 52 - board.size();
    ASSERT_EQ(hands.size(), live * (live - 1) / 2);
    EXPECT_TRUE(std::ranges::is_sorted(hands, {}, &HandTally::hand));
    for (const auto& [hand, tally] : hands) {
      const int cards[2] = {hand.first, hand.second};
      ASSERT_EQ(tally, HoldemHandVsRange(cards, spec, board, street))
          << CardNames(cards) << " on " << CardNames(board);
    }
  };
  for (int trial = 0; trial < 30; ++trial) {
    const Cards board = dealer.Deal(3 + trial % 3);
    Spec spec = RandomRange(dealer, 1 + dealer.Below(200));
    if (trial == 0) spec.MakeRandom();
    compare(spec, board, Street::kRiver);
    if (trial % 3 == 0) compare(spec, board, Street::kTurn);
    if (trial % 3 == 0) compare(spec, board, Street::kFlop);
  }
  for (const Street street : {Street::kFlop, Street::kTurn, Street::kRiver}) {
    compare(ParseRange("22+,A9s,AsKh").range, {}, street);
  }
  compare(ParseRange("AA").range, {0}, Street::kFlop);
  EXPECT_TRUE(HoldemEveryHandVsRange(Spec(), Cards{0, 1, 2, 3}, Street::kFlop).empty());
}

// Sums up the matchups of a hand with every live holding.
template <typename HandVsHand>
Tally SumOfMatchups(const Cards& hand, const Spec& spec, const Cards& board, HandVsHand count) {
  Tally sum;
  for (const auto& [first, second] : spec.combinations()) {
    if (Holds(hand, first) || Holds(hand, second) || Holds(board, first) || Holds(board, second)) {
      continue;
    }
    const int opponent[2] = {first, second};
    sum += count(std::span<const int, 2>(hand), std::span<const int, 2>(opponent));
  }
  return sum;
}

TEST(HandVsRange, IsTheSumOfItsMatchups) {
  Dealer dealer(25);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 400; ++trial) {
    const int known = trial % 20 == 0  ? 1 + dealer.Below(2)
                      : trial % 2 == 0 ? 0
                                       : 3 + dealer.Below(3);
    const Cards cards = dealer.Deal(2 + known);
    const Cards hand(cards.begin(), cards.begin() + 2);
    const Cards board(cards.begin() + 2, cards.end());
    const auto street = static_cast<Street>(std::max(known, 3 + dealer.Below(3)));
    const Spec spec = RandomRange(dealer, 12);
    EXPECT_EQ(HoldemHandVsRange(std::span<const int, 2>(hand), spec, board, street),
              SumOfMatchups(hand, spec, board,
                            [&](auto hand1, auto hand2) {
                              return HoldemHandVsHand(hand1, hand2, board, street);
                            }))
        << CardNames(cards);
  }
}

TEST(HandVsRange, WhatOneSideWinsTheOtherLoses) {
  Dealer dealer(26);
  SCOPED_TRACE(dealer.Trace());
  Spec everything;
  everything.MakeRandom();
  for (int trial = 0; trial < 12; ++trial) {
    const Cards board = dealer.Deal(trial == 0 ? 0 : 3 + trial % 2);
    const auto street = trial == 0 ? Street::kFlop : Street::kRiver;
    Tally all;
    for (const HandTally& hand : HoldemEveryHandVsRange(everything, board, street)) {
      all += hand.tally;
    }
    EXPECT_EQ(all.wins, all.cases - all.wins - all.ties) << CardNames(board);
    EXPECT_GT(all.wins, 0);
  }
}

TEST(HandVsRange, BlockedRangesAndBadCounts) {
  PokerLogic logic;
  Cards hand = ParseCards("AhAd").cards;
  Cards board = ParseCards("AsAc2d3h4s").cards;
  const Spec aces = ParseRange("AA").range;
  for (const int known : {2, 3, 4, 5}) {
    EXPECT_TRUE(
        std::isnan(logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), known, aces)));
  }
  EXPECT_TRUE(std::isnan(logic.getProbabilityOfWinBySpectrWithNoBoard(hand.data(), Spec())));
  EXPECT_TRUE(std::isnan(logic.getProbabilityOfWinBySpectrWithNoBoardToTurn(hand.data(), Spec())));
  for (const int known : {-1, 6}) {
    EXPECT_EQ(logic.getProbabilityOfWinBySpectr(hand.data(), board.data(), known, aces), 0.0);
    EXPECT_EQ(logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), board.data(), known, aces, 3),
              0.0);
  }
  EXPECT_EQ(logic.getProbOfWinBySpectrToFlopOrTurn(hand.data(), board.data(), 3, aces, 5), 0.0);
}

}  // namespace
}  // namespace pokermath
