// Hold'em equity: hand against hand, exactly and from tables, and by random deals.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "contracts/hand_ranks_builder.h"
#include "kernels/matchup.h"
#include "kernels/runouts.h"
#include "platform/isa.h"
#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"
#include "tests/contracts/plain_count.h"

namespace pokermath {

void PrintTo(const Tally& tally, std::ostream* out) {
  *out << tally.wins << " wins, " << tally.ties << " ties of " << tally.cases;
}

namespace {

using Hand = std::vector<int>;

Hand Cards(std::string_view text) { return ParseCards(text).cards; }

Tally Count(const Hand& hand1, const Hand& hand2, std::span<const int> board, Street street) {
  return HoldemHandVsHand(std::span<const int, 2>(hand1), std::span<const int, 2>(hand2), board,
                          street);
}

Tally Reversed(const Tally& tally) {
  return {.wins = tally.cases - tally.wins - tally.ties, .ties = tally.ties, .cases = tally.cases};
}

struct Matchup {
  Hand hand1;
  Hand hand2;
  Tally tally;
};

std::vector<Matchup> GoldenMatchups(const std::string& name) {
  std::ifstream in(std::string(POKERMATH_TEST_DATA) + "/" + name);
  std::string line;
  std::getline(in, line);  // the titles
  std::vector<Matchup> matchups;
  while (std::getline(in, line)) {
    std::replace(line.begin(), line.end(), ',', ' ');
    std::istringstream fields(line);
    std::string hand1, hand2;
    Tally tally;
    fields >> hand1 >> hand2 >> tally.cases >> tally.wins >> tally.ties;
    matchups.push_back({Cards(hand1), Cards(hand2), tally});
  }
  return matchups;
}

// Wins, a tie as one half, and boards.
using Wins = std::pair<double, double>;

Wins WinsOf(const Tally& tally) {
  return {static_cast<double>(tally.wins) + 0.5 * static_cast<double>(tally.ties),
          static_cast<double>(tally.cases)};
}

// What one of PokerLogic's members answers.
template <typename Member>
Wins Ask(const PokerLogic& logic, Member member, Hand hand1, Hand hand2) {
  Wins wins = {-1, -1};
  (logic.*member)(hand1.data(), hand2.data(), wins.first, wins.second);
  return wins;
}

constexpr auto kExactRiver = &PokerLogic::getProbabilityOfWinWithNoBoard;
constexpr auto kExactTurn = &PokerLogic::getProbabilityOfWinWithNoBoardToTurn;
constexpr auto kRiver = &PokerLogic::GetWinHandVsHand;
constexpr auto kTurn = &PokerLogic::GetWinHandVsHandToTurn;

TEST(HandVsHand, GoldenMatchupsInBothOrders) {
  const PokerLogic logic;
  const auto check = [&](const std::string& file, Street street, auto exact, auto cached) {
    const std::vector<Matchup> matchups = GoldenMatchups(file);
    EXPECT_EQ(matchups.size(), street == Street::kRiver ? 40u : 17u);
    for (const auto& [hand1, hand2, tally] : matchups) {
      SCOPED_TRACE(CardNames(hand1) + " vs " + CardNames(hand2));
      EXPECT_EQ(Count(hand1, hand2, {}, street), tally);
      EXPECT_EQ(Count(hand2, hand1, {}, street), Reversed(tally));
      EXPECT_EQ(Count({hand1[1], hand1[0]}, {hand2[1], hand2[0]}, {}, street), tally);
      EXPECT_EQ(Ask(logic, exact, hand1, hand2), WinsOf(tally));
      EXPECT_EQ(Ask(logic, exact, hand2, hand1), WinsOf(Reversed(tally)));
      EXPECT_EQ(Ask(logic, cached, hand1, hand2), WinsOf(tally));
    }
  };
  check("holdem_hand_vs_hand.csv", Street::kRiver, kExactRiver, kRiver);
  check("holdem_hand_vs_hand_turn.csv", Street::kTurn, kExactTurn, kTurn);
}

TEST(HandVsHand, EveryBoardLengthIsThePlainCount) {
  Dealer dealer(10);
  SCOPED_TRACE(dealer.Trace());
  const auto compare = [&](Street street, int known) {
    const Hand cards = dealer.Deal(4 + known);
    const Hand hand1(cards.begin(), cards.begin() + 2);
    const Hand hand2(cards.begin() + 2, cards.begin() + 4);
    const auto board = std::span(cards).subspan(4);
    EXPECT_EQ(Count(hand1, hand2, board, street), PlainCount::Of(hand1, hand2, board, street))
        << CardNames(hand1) << " vs " << CardNames(hand2) << " on " << CardNames(board);
  };
  // Plain counting takes its time where few cards are known.
  const int times_by_known[] = {6, 12, 30, 300, 300, 300};
  for (int known = 0; known <= 5; ++known) {
    for (int i = 0; i < times_by_known[known]; ++i) {
      compare(Street::kRiver, known);
      if (known < 5) compare(Street::kTurn, known);
      if (known < 4) compare(Street::kFlop, known);
    }
  }
  const Tally none = Count({12, 24}, {0, 14}, std::vector<int>{1, 2, 3, 4, 5}, Street::kTurn);
  EXPECT_EQ(none, Tally{}) << "a board longer than the street";
  EXPECT_EQ(none.Equity(), 0.0);
}

TEST(HandVsHand, AllInstructionLevelsCountTheSame) {
  Dealer dealer(11);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 6000; ++trial) {
    const Street street = trial % 4 == 0   ? Street::kTurn
                          : trial % 4 == 1 ? Street::kFlop
                                           : Street::kRiver;
    const int known =
        trial % 2 == 0 ? 0 : std::min(3 + dealer.Below(2), static_cast<int>(street) - 1);
    const Hand cards = dealer.Deal(4 + known);
    const auto count = [&](Isa isa, const int* hand1, const int* hand2) {
      if (known < 3) return CountMatchup(isa, Deck::kFull, hand1, hand2, street);
      const Runouts runouts(isa, Deck::kFull, std::span(cards).subspan(4),
                            static_cast<int>(street));
      return CountHands(runouts, hand1, hand2);
    };
    const Tally tally = count(Isa::kBaseline, &cards[0], &cards[2]);
    ASSERT_EQ(count(Isa::kBaseline, &cards[2], &cards[0]), Reversed(tally));
    for (const Isa isa : IsasOfMachine()) {
      ASSERT_EQ(count(isa, &cards[0], &cards[2]), tally)
          << CardNames(cards) << ", level " << static_cast<int>(isa);
    }
  }
}

TEST(EquityTable, AnswersTheMatchupsThatItHoldsInTheirOrder) {
  const Hand strong = Cards("AhKd");
  const Hand weak = Cards("JsQc");
  const int strong_key = 24 * 64 + 38;
  const int weak_key = 10 * 64 + 48;
  PokerLogic logic;
  logic.equityTable[{strong_key, weak_key}] = 7;
  logic.equityTurnTable[{weak_key, strong_key}] = 9;
  EXPECT_EQ(Ask(logic, kRiver, strong, weak), Wins(3.5, 1712304));
  EXPECT_EQ(Ask(logic, kRiver, weak, strong), Wins(611357, 1712304));
  EXPECT_EQ(Ask(logic, kTurn, weak, strong), Wins(4.5, 194580));
  EXPECT_EQ(Ask(logic, kTurn, strong, weak), Wins(133957, 194580));
  EXPECT_EQ(logic.equityTable.size() + logic.equityTurnTable.size(), 2u) << "an answer was kept";

  for (const auto& [hand1, hand2] : {std::pair("AhAs", "AdAc"), {"AhKh", "KdAd"}}) {
    EXPECT_EQ(Ask(logic, kRiver, Cards(hand1), Cards(hand2)), Wins(856152, 1712304));
    EXPECT_EQ(Ask(logic, kTurn, Cards(hand1), Cards(hand2)), Wins(97290, 194580));
  }
  logic.equityTable[{38 * 64 + 51, 12 * 64 + 25}] = 3;
  EXPECT_EQ(Ask(logic, kRiver, Cards("AhAs"), Cards("AdAc")), Wins(1.5, 1712304))
      << "the table goes before what is known without it";
  double wins = 0, boards = 0;
  Hand cards = Cards("AhKdQcJs");
  EXPECT_EQ(logic.GetWinHandVsHand(&cards[0], &cards[2], wins, boards), 1);
  EXPECT_EQ(logic.GetWinHandVsHandToTurn(&cards[0], &cards[2], wins, boards), 1);
}

// The trials as their contract tells them: a list of used cards, searched at every draw.
double PlainTrials(const PokerLogic& logic, const Hand& hand, const Hand& board, int players,
                   int trials) {
  double sum = 0;
  for (int trial = 0; trial < trials; ++trial) {
    Hand used = hand;
    used.insert(used.end(), board.begin(), board.end());
    const auto draw = [&used] {
      int card = std::rand() % 52;
      while (std::find(used.begin(), used.end(), card) != used.end()) card = std::rand() % 52;
      used.push_back(card);
      return card;
    };
    while (used.size() < 7) draw();
    std::array<int, 7> seven;
    std::copy(used.begin(), used.end(), seven.begin());
    const int hero = logic.LookupSingleHands(seven.data());
    int sharers = 1;
    for (int opponent = 1; opponent < players && sharers > 0; ++opponent) {
      seven[0] = draw();
      seven[1] = draw();
      const int value = logic.LookupSingleHands(seven.data());
      sharers = value > hero ? 0 : sharers + (value == hero ? 1 : 0);
    }
    if (sharers > 0) sum += 1.0 / sharers;
  }
  return sum / trials;
}

TEST(RandomDeals, AreThoseOfTheContractDrawByDraw) {
  PokerLogic logic;
  Hand hand = Cards("JhTh");
  EXPECT_EQ(logic.trialCount, 50000);
  EXPECT_EQ(logic.getProbabilityOfWin(hand.data(), nullptr, 0, 2), 0.0) << "no table loaded";
  logic.HR = BuildHandRanks().entries;
  for (const int trials : {1, 3000}) {
    logic.trialCount = trials;
    for (const int players : {2, 3, 6, 10}) {
      // The last board is a royal flush for everybody: each trial is shared by all.
      for (const char* cards : {"", "9h8h2c", "QsJsTd3d3c", "AsKsQsJsTs"}) {
        Hand board = Cards(cards);
        const unsigned seed = static_cast<unsigned>(players * 1000) + 7;
        std::srand(seed);
        const double expected = PlainTrials(logic, hand, board, players, trials);
        const int next = std::rand();
        std::srand(seed);
        EXPECT_EQ(logic.getProbabilityOfWin(hand.data(), board.data(),
                                            static_cast<int>(board.size()), players),
                  expected)
            << cards << ", " << players << " players, seed " << seed;
        EXPECT_EQ(std::rand(), next) << "another number of draws";
      }
    }
  }
  Hand board = Cards("AsKsQsJsTs");
  EXPECT_NEAR(logic.getProbabilityOfWin(hand.data(), board.data(), 5, 10), 0.1, 1e-12);
  board = Cards("2c3c4c5c6c7c");
  for (const auto& [count, players] : {std::pair(6, 2), {-1, 2}, {5, 1}, {5, 11}, {0, -3}}) {
    EXPECT_EQ(logic.getProbabilityOfWin(hand.data(), board.data(), count, players), 0.0);
  }
}

TEST(EasyRandom, DrawsFromItsInterval) {
  EasyRandom random(5, 3);
  for (const auto& [low, span] : {std::pair(0, 2), {-3, 7}, {51, 1}}) {
    if (span != 2) random.SetInterval(low, low + span - 1);
    std::srand(12);
    std::vector<int> expected(100), drawn(100);
    for (int& number : expected) number = std::rand() % span + low;
    std::srand(12);
    for (int& number : drawn) number = random.DrawRandomNumber();
    EXPECT_EQ(drawn, expected);
  }
  using Limits = std::numeric_limits<int>;
  EXPECT_GE(EasyRandom(0, Limits::max()).DrawRandomNumber(), 0);
  EXPECT_LT(EasyRandom(Limits::min(), Limits::max()).DrawRandomNumber(), 0);
}

}  // namespace
}  // namespace pokermath
