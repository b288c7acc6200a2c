// Winners, pots and game names.

#include "pokermath/showdown.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"

namespace pokermath {
namespace {

using Chips = std::vector<int>;

Chips Result(Chips stakes, Chips scores) {
  Chips winnings(stakes.size());
  GameResult(stakes.data(), scores.data(), winnings.data(), static_cast<int>(stakes.size()));
  EXPECT_EQ(stakes, Chips(stakes.size())) << "stakes are left";
  return winnings;
}

// One pass after the other, as one would settle it at a table.
Chips Plain(Chips stakes, Chips scores) {
  Chips winnings(stakes.size());
  while (true) {
    int best = 0;
    for (std::size_t i = 0; i < stakes.size(); ++i) {
      if (stakes[i] != 0) best = std::max(best, scores[i]);
    }
    std::vector<std::size_t> winners;
    for (std::size_t i = 0; i < stakes.size(); ++i) {
      if (stakes[i] != 0 && scores[i] == best) winners.push_back(i);
    }
    if (winners.empty()) break;
    int most = stakes[winners[0]];
    if (winners.size() > 1) {
      most = 1000;
      for (const std::size_t winner : winners) most = std::min(most, stakes[winner]);
    }
    int pot = 0;
    for (int& stake : stakes) {
      const int paid = std::min(stake, most);
      pot += paid;
      stake -= paid;
    }
    const int share = pot / static_cast<int>(winners.size());
    for (const std::size_t winner : winners) {
      winnings[winner] += share;
      pot -= share;
      if (stakes[winner] == 0) scores[winner] = 0;
    }
    winnings[winners[0]] += pot;
  }
  for (std::size_t i = 0; i < stakes.size(); ++i) winnings[i] += stakes[i];
  return winnings;
}

TEST(Pots, AreSharedByTheRules) {
  EXPECT_EQ(Result({100, 50, 100}, {5, 9, 7}), (Chips{0, 150, 100}));
  EXPECT_EQ(Result({30, 30, 31}, {8, 8, 3}), (Chips{45, 45, 1}));
  EXPECT_EQ(Result({2, 33, 33, 33}, {0, 7, 7, 7}), (Chips{0, 35, 33, 33})) << "101 chips";
  EXPECT_EQ(Result({20, 20, 20, 20, 21}, {0, 7, 7, 7, 0}), (Chips{0, 34, 33, 33, 1}));
  EXPECT_EQ(Result({10, 50, 50}, {9, 0, 0}), (Chips{30, 40, 40})) << "who is paid gets no more";
  EXPECT_EQ(Result({10, 20, 30}, {-1, -5, -1}), (Chips{10, 20, 30})) << "goes back";
  EXPECT_EQ(Result({10, 20, 30}, {-1, 2, -1}), (Chips{0, 50, 10}));
  EXPECT_EQ(Result({}, {}), Chips());
  EXPECT_EQ(Result({0, 0}, {3, 4}), (Chips{0, 0}));
  EXPECT_EQ(Result({2'000'000'000, 2'000'000'000}, {3, 3}), (Chips{2'000'000'000, 2'000'000'000}));
  EXPECT_EQ(Result({700'000'001, 700'000'001, 600'000'000}, {3, 3, 1}),
            (Chips{1'000'000'001, 1'000'000'001, 0}));

  Chips winnings = {5, 6}, stakes = {10, 10}, scores = {1, 0};
  GameResult(stakes.data(), scores.data(), winnings.data(), 2);
  EXPECT_EQ(winnings, (Chips{25, 6})) << "it adds";
  Chips bets = {0, 1500, 70, 1200};
  Chips hands = {4, 4, 3, 4};
  EXPECT_EQ(GetMinVinnerBet(bets.data(), hands.data(), 4, 4), 1000);
  EXPECT_EQ(GetMinVinnerBet(bets.data(), hands.data(), 4, 3), 70);
  EXPECT_EQ(GetMinVinnerBet(bets.data(), hands.data(), 4, 9), 1000);
}

TEST(Pots, ConserveChipsAndAreThePlainPasses) {
  std::mt19937 random(41);
  const auto below = [&random](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  for (int trial = 0; trial < 20000; ++trial) {
    const auto seats = static_cast<std::size_t>(1 + below(10));
    const int most = trial % 3 == 0 ? 20 : trial % 3 == 1 ? 3000 : 100000;
    Chips stakes(seats), scores(seats);
    for (int& stake : stakes) stake = below(4) == 0 ? 0 : below(most);
    for (int& score : scores) score = below(trial % 2 == 0 ? 3 : 12) - (trial % 7 == 0 ? 2 : 0);
    const Chips winnings = Result(stakes, scores);
    const std::string trace = ::testing::PrintToString(stakes) + ::testing::PrintToString(scores);
    ASSERT_EQ(winnings, Plain(stakes, scores)) << trace;
    const std::int64_t staked = std::accumulate(stakes.begin(), stakes.end(), std::int64_t{0});
    ASSERT_EQ(std::accumulate(winnings.begin(), winnings.end(), std::int64_t{0}), staked) << trace;
    // The pots say the same, and nobody wins more of anybody than he himself staked.
    std::vector<std::int64_t> sums(seats);
    for (const Pot& pot : SplitPots(stakes, scores)) {
      ASSERT_EQ(std::accumulate(pot.paid.begin(), pot.paid.end(), std::int64_t{0}), pot.chips);
      ASSERT_EQ(std::accumulate(pot.won.begin(), pot.won.end(), std::int64_t{0}), pot.chips);
      for (std::size_t i = 0; i < seats; ++i) sums[i] += pot.won[i];
    }
    ASSERT_TRUE(std::ranges::equal(sums, winnings)) << trace;
    for (std::size_t i = 0; i < seats; ++i) {
      std::int64_t limit = 0;
      for (const int stake : stakes) limit += std::min(stake, stakes[i]);
      ASSERT_LE(winnings[i], limit) << trace << " seat " << i;
    }
  }
}

TEST(Pots, OfTheSameWinnersAreOne) {
  const std::vector<Pot> pots = SplitPots(Chips{100, 5000, 5000, 20}, Chips{9, 4, 4, 0});
  ASSERT_EQ(pots.size(), 2u);
  EXPECT_EQ(pots[0].winners, Chips{0});
  EXPECT_EQ(pots[0].chips, 320);
  EXPECT_EQ(pots[1].winners, (Chips{1, 2}));
  EXPECT_EQ(pots[1].paid, (std::vector<std::int64_t>{0, 4900, 4900, 0}));
  EXPECT_EQ(pots[1].won, (std::vector<std::int64_t>{0, 4900, 4900, 0}));
  const std::vector<Pot> back = SplitPots(Chips{7}, Chips{-1});
  ASSERT_EQ(back.size(), 1u);
  EXPECT_TRUE(back[0].winners.empty());
}

TEST(Winners, AreThoseOfTheRules) {
  PokerLogic logic;
  const auto better = [](std::string_view a, std::string_view b) {
    std::vector<int> hand1 = ParseCards(a).cards;
    std::vector<int> hand2 = ParseCards(b).cards;
    return WhatHandIsBetter(hand1.data(), hand2.data());
  };
  EXPECT_EQ(better("AhKd", "AsKc"), 0);
  EXPECT_EQ(better("2h2d", "AsKc"), 1);
  EXPECT_EQ(better("AhKd", "2s2c"), -1);
  EXPECT_EQ(better("AhAd", "KsKc"), 1);
  EXPECT_EQ(better("Ah3d", "Ac4c"), -1);
  EXPECT_EQ(better("KhQd", "Ac2c"), -1);
  Dealer dealer(42);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 5000; ++trial) {
    std::vector<int> cards = dealer.Deal(9);
    int* a = &cards[0];
    int* b = &cards[2];
    int* board = &cards[4];
    const int count = 3 + trial % 3;
    const int expected =
        logic.getNewCombination(b, board, count) - logic.getNewCombination(a, board, count);
    const int winner = FindMaxCombination(a, b, board, count, logic);
    ASSERT_EQ(winner, expected > 0 ? 1 : expected < 0 ? -1 : 0) << CardNames(cards);
    EXPECT_EQ(WhoIsWinner(a, b, board, count, logic), winner);
    EXPECT_EQ(WhoIsWinner(a, b, nullptr, 0, logic), WhatHandIsBetter(a, b));
  }
}

TEST(GameNames, HaveTheirCodes) {
  EXPECT_EQ(GetTypeGameHH(L"5 Card Omaha Pot Limit"), 13);
  EXPECT_EQ(GetTypeGameHH(L"5 Card Omaha Hi/Lo Pot Limit"), 14);
  EXPECT_EQ(GetTypeGameHH(L"Omaha Pot Limit"), 7);
  EXPECT_EQ(GetTypeGameHH(L"Omaha Pot Limit ($0.05/$0.10)"), 7);
  EXPECT_EQ(GetTypeGameHH(L"Omaha Hi/Lo Pot Limit"), -1);
  EXPECT_EQ(GetTypeGameHH(L"Hold'em No Limit"), 2);
  EXPECT_EQ(GetTypeGameHH(L"Hold'em No Limit ($1/$2)"), -1);
  EXPECT_EQ(GetTypeGameHH(L"hold'em no limit"), -1);
  EXPECT_EQ(GetTypeGameHH(L"Courchevel Pot Limit"), 16);
  EXPECT_EQ(GetTypeGameHH(L"5 Card Omaha Pot Limit "), -1);
  EXPECT_EQ(GetTypeGameHH(L""), -1);
}

}  // namespace
}  // namespace pokermath
