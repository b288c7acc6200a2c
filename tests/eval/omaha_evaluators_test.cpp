// The Omaha evaluators and lows against every choice of cards.

#include "pokermath/omaha_evaluators.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "eval/omaha_batch.h"
#include "pokermath/cards.h"
#include "pokermath/instructions.h"
#include "tests/cards/dealer.h"
#include "tests/eval/oracle.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;
using Bytes = std::vector<std::uint8_t>;

// The best of all choices by a function of five cards.
template <typename Worth>
int Best(const Cards& hand, const Cards& board, Worth worth) {
  int best = 0;
  for (std::size_t i = 0; i < hand.size(); ++i)
    for (std::size_t j = i + 1; j < hand.size(); ++j)
      for (std::size_t a = 0; a < board.size(); ++a)
        for (std::size_t b = a + 1; b < board.size(); ++b)
          for (std::size_t c = b + 1; c < board.size(); ++c) {
            best = std::max(best, worth({hand[i], hand[j], board[a], board[b], board[c]}));
          }
  return best;
}

int High(const Cards& hand, const Cards& board) {
  const int best = Best(hand, board, [](const int(&five)[5]) { return oracle::Strength(five); });
  return oracle::Places(best) + 1;
}

// The ranks of a low as digits, 87654 .. 54321; 0 for none.
int LowOfFive(const int (&five)[5]) {
  int ranks[5];
  for (int i = 0; i < 5; ++i) ranks[i] = five[i] % 13 == 12 ? 1 : five[i] % 13 + 2;
  std::sort(ranks, ranks + 5, std::greater<>());
  if (ranks[0] > 8 || std::unique(ranks, ranks + 5) != ranks + 5) return 0;
  return (((ranks[0] * 10 + ranks[1]) * 10 + ranks[2]) * 10 + ranks[3]) * 10 + ranks[4];
}

// The better low has the smaller number: as one that is larger.
int LowWorth(const int (&five)[5]) { return LowOfFive(five) == 0 ? 0 : 100000 - LowOfFive(five); }

int DigitsOf(int worth) { return worth == 0 ? 0 : 100000 - worth; }

// Deals of one number of hole cards, on a board each or all on one.
struct Deals {
  Bytes hands;
  Bytes boards;
  std::vector<std::uint16_t> values;
  Bytes lows;
};

template <int holes>
void CheckSingle(const Cards& hand, const Cards& board, Deals& deals) {
  const Bytes hand_bytes(hand.begin(), hand.end());
  const Bytes board_bytes(board.begin(), board.end());
  const std::string trace = CardNames(hand) + " on " + CardNames(board);
  const int value = High(hand, board);
  for (const std::string_view level : InstructionLevels()) {
    ASSERT_TRUE(UseInstructionLevel(level));
    ASSERT_EQ(EvaluateOmaha<holes>(hand.data(), board.data()), value) << trace << level;
    ASSERT_EQ(EvaluateOmaha<holes>(hand_bytes.data(), board_bytes.data()), value) << trace << level;
  }
  const int low = EvaluateOmahaLow<holes>(hand.data(), board.data());
  ASSERT_EQ(LowDigits(low), DigitsOf(Best(hand, board, LowWorth))) << trace;
  ASSERT_EQ(EvaluateOmahaLow<holes>(hand_bytes.data(), board_bytes.data()), low) << trace;
  deals.hands.insert(deals.hands.end(), hand_bytes.begin(), hand_bytes.end());
  deals.boards.insert(deals.boards.end(), board_bytes.begin(), board_bytes.end());
  deals.values.push_back(static_cast<std::uint16_t>(value));
  deals.lows.push_back(static_cast<std::uint8_t>(low));
}

template <int holes>
void CheckDeals(Dealer& dealer, int count) {
  Deals deals;
  for (int i = 0; i < count; ++i) {
    const Cards cards = dealer.Deal(holes + 5);
    CheckSingle<holes>(Cards(cards.begin(), cards.begin() + holes),
                       Cards(cards.begin() + holes, cards.end()), deals);
    if (testing::Test::HasFatalFailure()) return;
  }
  std::vector<std::uint16_t> values(deals.values.size());
  for (const Isa isa : {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512}) {
    if (isa > BestIsa()) continue;
    std::ranges::fill(values, std::uint16_t{0});
    EvaluateOmahaBatch(isa, holes, deals.hands.data(), deals.boards.data(), values.size(),
                       values.data());
    ASSERT_EQ(values, deals.values) << holes << " cards, level " << static_cast<int>(isa);
  }
  Bytes lows(deals.lows.size());
  EvaluateOmahaLowBatch(holes, deals.hands.data(), deals.boards.data(), lows.size(), lows.data());
  ASSERT_EQ(lows, deals.lows);
}

TEST(OmahaEvaluators, EveryWayToAskEqualsAllChoices) {
  const std::string before(InstructionLevel());
  Dealer dealer(81);
  SCOPED_TRACE(dealer.Trace());
  for (const int count : {0, 1, 7, 127, 128, 129, 1500}) {
    CheckDeals<4>(dealer, count);
    CheckDeals<5>(dealer, count);
    CheckDeals<6>(dealer, count);
    if (HasFatalFailure()) return;
  }
  ASSERT_TRUE(UseInstructionLevel(before));
  std::uint16_t value = 7;
  EvaluateOmahaBatch(3, nullptr, nullptr, 1, &value);
  EXPECT_EQ(value, 0) << "no such hands";
}

// Boards of three to five cards, and hands around the number that vectors take at once.
template <int holes>
void CheckBoard(Dealer& dealer, int count) {
  const Cards board = dealer.Deal(3 + dealer.Below(3));
  const OmahaBoardValues values_of(board);
  Bytes hands;
  std::vector<std::uint16_t> expected;
  for (int i = 0; i < count; ++i) {
    Cards hand = dealer.Deal(20);
    std::erase_if(hand, [&](int card) { return std::ranges::count(board, card) > 0; });
    hand.resize(holes);
    hands.insert(hands.end(), hand.begin(), hand.end());
    expected.push_back(static_cast<std::uint16_t>(High(hand, board)));
    ASSERT_EQ(values_of.Evaluate<holes>(hand.data()), expected.back())
        << CardNames(hand) << " on " << CardNames(board);
  }
  for (const Isa isa : {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512}) {
    if (isa > BestIsa()) continue;
    std::vector<std::uint16_t> values(expected.size());
    OmahaBoardKernels::Evaluate(isa, values_of, holes, hands.data(), values.size(), values.data());
    ASSERT_EQ(values, expected) << holes << " cards on " << CardNames(board) << ", level "
                                << static_cast<int>(isa);
  }
}

TEST(OmahaEvaluators, ManyHandsOnOneBoardEqualAllChoices) {
  Dealer dealer(82);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 60; ++trial) {
    const int count = trial % 4 == 0 ? 131 : 60 + trial % 9;
    CheckBoard<4>(dealer, count);
    CheckBoard<5>(dealer, count);
    CheckBoard<6>(dealer, count);
    if (HasFatalFailure()) return;
  }
}

template <int count>
void CheckLows(Dealer& dealer, std::map<int, int>& digits) {
  Bytes bytes;
  Bytes expected;
  for (int trial = 0; trial < 3000; ++trial) {
    const Cards cards = dealer.Deal(count);
    bytes.insert(bytes.end(), cards.begin(), cards.end());
    const int best = oracle::BestStrength(cards, LowWorth);
    const int low = EvaluateLow<count>(cards.data());
    ASSERT_EQ(LowDigits(low), DigitsOf(best)) << CardNames(cards);
    ASSERT_EQ(EvaluateLow<count>(&bytes[bytes.size() - count]), low) << CardNames(cards);
    expected.push_back(static_cast<std::uint8_t>(low));
    digits[low] = LowDigits(low);
  }
  Bytes lows(expected.size());
  EvaluateLowBatch(count, bytes.data(), lows.size(), lows.data());
  ASSERT_EQ(lows, expected);
}

TEST(Lows, AreTheBestOfAllChoicesAndTheirNumbersTheirOrder) {
  Dealer dealer(83);
  SCOPED_TRACE(dealer.Trace());
  std::map<int, int> digits;
  CheckLows<5>(dealer, digits);
  CheckLows<6>(dealer, digits);
  CheckLows<7>(dealer, digits);
  EXPECT_EQ(digits.size(), 57u) << "all lows and none";
  digits.erase(0);
  EXPECT_EQ(digits.begin()->second, 87654);
  EXPECT_EQ(digits.rbegin()->second, 54321);
  EXPECT_TRUE(
      std::ranges::is_sorted(digits, std::greater<>(), [](auto& low) { return low.second; }));
  for (const int none : {-1, 0, 57}) EXPECT_EQ(LowDigits(none), 0);
}

}  // namespace
}  // namespace pokermath
