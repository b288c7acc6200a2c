// Hands by the rules of poker: CHand, CDeck and PokerLogic's rule tests, against the evaluators.

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"

namespace pokermath {
namespace {

using Value = std::vector<int>;

CDeck DeckOf(const std::vector<int>& cards) {
  CDeck deck;
  for (const int card : cards) deck.AddCard(card);
  return deck;
}

CDeck DeckOf(std::string_view cards) { return DeckOf(ParseCards(cards).cards); }

template <typename Hand>
Value ValueOf(const Hand& hand) {
  return {std::begin(hand.value), std::end(hand.value)};
}

int Sign(int number) { return number > 0 ? 1 : number < 0 ? -1 : 0; }

// Larger is better, for five to seven cards.
int Strength(const std::vector<int>& cards) {
  const CPokerDeck words;
  int hand[7];
  std::ranges::transform(cards, hand, [&words](int card) { return words[card]; });
  return -(cards.size() == 7   ? eval_7hand(hand)
           : cards.size() == 6 ? eval_6hand(hand)
                               : eval_5hand(hand));
}

TEST(Hand, EveryCategoryHasItsValueAndWords) {
  struct Case {
    std::string_view cards;
    Value value;
    CString words;
  };
  const Case cases[] = {
      {"KcAh9d4s2h", {1, 14, 13, 9, 4, 2}, L"high card Ace high"},
      {"KcKh9dAs2h", {2, 13, 14, 9, 2, 0}, L"pair of King's"},
      {"AcAh9dKs2h", {2, 1, 13, 9, 2, 0}, L"pair of Ace's"},
      {"Tc4hTd4sJh", {3, 10, 4, 11, 0, 0}, L"two pair 10 4"},
      {"AcKhAdKs2h", {3, 14, 13, 2, 0, 0}, L"two pair Ace King"},
      {"7c7h7dAs2h", {4, 7, 14, 2, 0, 0}, L"three of a kind 7's"},
      {"AcAhAdKs2h", {4, 1, 13, 2, 0, 0}, L"three of a kind Ace's"},
      {"Ac2h3d4s5h", {5, 5, 5, 4, 3, 2}, L"5 high straight"},
      {"AcKhQdJsTh", {5, 14, 13, 12, 11, 10}, L"Ace high straight"},
      {"JcTh9d8s7h", {5, 11, 10, 9, 8, 7}, L"Jack high straight"},
      {"QhAh9h4h2h", {6, 14, 12, 9, 4, 2}, L"flush Ace high"},
      {"2c2h2dKsKh", {7, 2, 13, 0, 0, 0}, L"full house 2 over King"},
      {"AcAhAdKsKh", {7, 1, 13, 0, 0, 0}, L"full house Ace over King"},
      {"9c9h9d9sAh", {8, 9, 14, 0, 0, 0}, L"four of a kind 9"},
      {"Ah2h3h4h5h", {9, 5, 5, 4, 3, 2}, L"straight flush 5 high"},
      {"AhKhQhJhTh", {9, 14, 13, 12, 11, 10}, L"straight flush Ace high"},
      // Not a straight: it does not go round the corner.
      {"KcAh2d3s4h", {1, 14, 13, 4, 3, 2}, L"high card Ace high"},
      // Too few and too many cards.
      {"AhKh2h3h", {1, 0, 0, 0, 0, 0}, L"high card Ace high"},
      {"AhKhQhJhTh9h", {1, 0, 0, 0, 0, 0}, L"high card Ace high"},
  };
  for (const auto& [cards, value, words] : cases) {
    const CHand hand{DeckOf(cards)};
    EXPECT_EQ(ValueOf(hand), value) << cards;
    EXPECT_EQ(hand.display(), words) << cards;
  }
  EXPECT_EQ(CHand(DeckOf("KcKh9dAs2h")).displayAll(), L"Kc Kh 9d As 2h: pair of King's");
  CDeck five_alike;
  for (int i = 0; i < 5; ++i) five_alike.AddCard(i * 13 % 52);
  EXPECT_EQ(CHand(five_alike).display(),
            L"error in Hand.display: m_value[0] contains invalid value");
}

TEST(Hand, ComparesAsTheEvaluatorsButForGroupsOfAces) {
  Dealer dealer(31);
  SCOPED_TRACE(dealer.Trace());
  const auto has_aces = [](const std::vector<int>& cards) {
    return std::ranges::count(cards, 12, GetCardRank) > 1;
  };
  int compared = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    const std::vector<int> cards1 = dealer.Deal(5);
    const std::vector<int> cards2 = dealer.Deal(5);
    const CHand hand1{DeckOf(cards1)};
    const CHand hand2{DeckOf(cards2)};
    EXPECT_EQ(hand1.compareTo(hand2), -hand2.compareTo(hand1));
    if ((has_aces(cards1) && hand1.value[0] != 3) || (has_aces(cards2) && hand2.value[0] != 3))
      continue;
    ++compared;
    EXPECT_EQ(hand1.compareTo(hand2), Sign(Strength(cards1) - Strength(cards2)))
        << CardNames(cards1) << " " << CardNames(cards2);
  }
  EXPECT_GT(compared, 10000);
  EXPECT_EQ(CHand(DeckOf("AcAhKdQsJh")).compareTo(CHand(DeckOf("2c2h3d4s5h"))), -1);
}

TEST(DeckValueSlow, OrdersDecksAsTheEvaluators) {
  Dealer dealer(32);
  SCOPED_TRACE(dealer.Trace());
  PokerLogic logic;
  const auto compare = [&](int size1, int size2) {
    const std::vector<int> cards1 = dealer.Deal(size1);
    const std::vector<int> cards2 = dealer.Deal(size2);
    CDeck deck1 = DeckOf(cards1);
    CDeck deck2 = DeckOf(cards2);
    deck1.SetValueCombination(logic);
    deck2.SetValueCombination(logic);
    ASSERT_EQ(deck1.compareTo(deck2), Sign(Strength(cards1) - Strength(cards2)))
        << CardNames(cards1) << " " << CardNames(cards2);
  };
  for (int trial = 0; trial < 1000000; ++trial) compare(7, 7);
  for (int trial = 0; trial < 200000; ++trial) compare(5 + dealer.Below(3), 5 + dealer.Below(3));
}

TEST(DeckValue, HasPlacesAndWords) {
  struct Case {
    std::string_view cards;
    Value value;
    CString words;
  };
  const Case cases[] = {
      {"AhKd9c7s5h3d2c", {1, 12, 11, 7, 5, 3}, L"high card Ace high"},
      {"AhAdKc7s5h3d2c", {2, 12, 11, 5, 3, 0}, L"pair of Ace kicker King kicker 7"},
      {"TcTd4h4s3c3dKh", {3, 8, 2, 11, 0, 0}, L"two pair 10 4 kicker King"},
      {"QcQdQh9s7c3d2h", {4, 10, 7, 5, 0, 0}, L"three of a kind Queen kicker 9 kicker 7"},
      {"Ac2h3d4s5h5d5c", {5, 3, 0, 0, 0, 0}, L"5 high straight"},
      {"Kh9h7h5h3h2hAd", {6, 11, 7, 5, 3, 1}, L"flush King high"},
      {"7c7d7h4s4c4dAh", {7, 5, 2, 0, 0, 0}, L"full house 7 over 4"},
      {"3c3d3hKsKcQdQh", {7, 1, 11, 0, 0, 0}, L"full house 3 over King"},
      {"6c6d6h6sAcAdAh", {8, 4, 12, 0, 0, 0}, L"four of a kind 6"},
      // The straight and the flush are not of the same cards; then they are.
      {"9h8h7h6hAh5dTd", {6, 12, 7, 6, 5, 4}, L"flush Ace high"},
      {"9h8h7h6h5hTdJd", {9, 7, 0, 0, 0, 0}, L"straight flush 9 high"},
      {"Ah2h3h4h5h6d7d", {9, 3, 0, 0, 0, 0}, L"straight flush 5 high"},
      {"AhKhQhJhTh9hAd", {10, 0, 0, 0, 0, 0}, L"RoyalFlush "},
      {"AhAdKc", {2, 12, 11, 0, 0, 0}, L"pair of Ace kicker King kicker 2"},
  };
  PokerLogic logic;
  for (const auto& [cards, value, words] : cases) {
    CDeck deck = DeckOf(cards);
    EXPECT_EQ(deck.display(), L"error in Hand.display: m_value[0] contains invalid value");
    deck.SetValueCombination(logic);
    EXPECT_EQ(ValueOf(deck), value) << cards;
    EXPECT_EQ(deck.display(), words) << cards;
    EXPECT_EQ(deck.isFlush(), value[0] == 6 || value[0] >= 9) << cards;
  }
  for (const CCard none : {CCard(), CCard(static_cast<Suit>(7), 1), CCard(clubs, 14)}) {
    CDeck deck = DeckOf("AhKhQhJh");
    deck.AddCard(none);
    deck.SetValueCombination(logic);
    EXPECT_EQ(ValueOf(deck), Value(6, 0)) << "a card that is none";
  }
}

TEST(RuleTests, KeepTheirOddities) {
  const PokerLogic logic;
  EXPECT_EQ(logic.isHighCard({}), -1);
  EXPECT_EQ(logic.isOnePair({5}), -1);
  EXPECT_EQ(logic.isOnePair({9, 7, 7, 3, 3}), 7);
  EXPECT_EQ(logic.isTwoPair({9, 7, 7, 3, 3}), 7);
  EXPECT_EQ(logic.isTwoPair({9, 7, 7, 4, 3}), -1);
  EXPECT_EQ(logic.isTwoPair({9, 7, 7, 7, 3}), 7) << "three of a kind";
  EXPECT_EQ(logic.isSet({9, 7, 7, 7, 3, 3, 3}), 7);
  EXPECT_EQ(logic.isQuads({9, 7, 7, 7, 7}), 7);
  EXPECT_EQ(logic.isQuads({9, 7, 7, 7, 3}), -1);
  EXPECT_EQ(logic.isFullHouse({9, 7, 7, 7, 3, 3, 3}), 3) << "the lower of two threes";
  EXPECT_EQ(logic.isFullHouse({9, 9, 7, 7, 7}), 7);
  EXPECT_EQ(logic.isFullHouse({9, 8, 7, 7, 7, 7}), -1);
  EXPECT_EQ(logic.isStraight({9, 8, 7, 6}), -1) << "four cards";
  EXPECT_EQ(logic.isStraight({12, 9, 9, 8, 7, 6, 5}), 9);
  EXPECT_EQ(logic.isStraight({12, 12, 3, 2, 2, 1, 0}), 3);
  EXPECT_EQ(logic.isStraight({12, 4, 3, 2, 1, 0}), 4);
  EXPECT_EQ(logic.isStraight({11, 3, 2, 1, 0}), -1);
  EXPECT_EQ(logic.isStraight({12, 11, 10, 1, 0}), -1);

  using RuleTest =
      int (PokerLogic::*)(const std::vector<int>&, const std::vector<int>&, const int*) const;
  const auto ask = [&logic](std::string_view text, RuleTest test) {
    std::vector<int> cards = ParseCards(text).cards;
    std::vector<int> ranks(cards.size()), suits(cards.size());
    int counts[4] = {};
    logic.sortHand(cards, ranks, suits, counts);
    return (logic.*test)(ranks, suits, counts);
  };
  EXPECT_EQ(ask("2hAd9h4hKh7h", &PokerLogic::isFlush), 11);
  EXPECT_EQ(ask("2hAd9h4hKh7c", &PokerLogic::isFlush), -1);
  EXPECT_EQ(ask("2hAd9h4hKh7c", &PokerLogic::isFlushDraw), 11);
  EXPECT_EQ(ask("2hAd9h4hKh7h", &PokerLogic::isFlushDraw), -1) << "it is one already";
  EXPECT_EQ(ask("6hTd9h8h7h5hJd", &PokerLogic::isStraightFlush), 7);
  EXPECT_EQ(ask("6hTd9h8h7h2hJd", &PokerLogic::isStraightFlush), -1);
  EXPECT_EQ(ask("AhKhQhJhTd9hTh", &PokerLogic::isRoyalFlush), 12);
  EXPECT_EQ(ask("AdKhQhJhTh9h8h", &PokerLogic::isRoyalFlush), -1);
  EXPECT_EQ(ask("AdKhQhJhTh9h8h", &PokerLogic::isStraightFlush), 11);

  std::vector<int> cards = {0, 13, 12}, ranks(3), suits(3);
  int counts[4] = {0, 5, 0, 0};
  logic.sortHand(cards, ranks, suits, counts);
  EXPECT_EQ(cards, (std::vector<int>{12, 13, 0}));
  EXPECT_EQ(ranks, (std::vector<int>{12, 0, 0}));
  EXPECT_EQ(suits, (std::vector<int>{0, 1, 0}));
  EXPECT_EQ(counts[0] * 10 + counts[1], 26) << "counts are added";
}

TEST(HoldemValues, AreThoseOfTheEvaluators) {
  PokerLogic logic;
  Dealer dealer(33);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 2000; ++trial) {
    std::vector<int> cards = dealer.Deal(7);
    const auto first = [&cards](std::ptrdiff_t count) {
      return std::vector<int>(cards.begin(), cards.begin() + count);
    };
    EXPECT_EQ(-logic.eval_5handHoldem(cards.data()), Strength(first(5)));
    EXPECT_EQ(-logic.eval_6handHoldem(cards.data()), Strength(first(6)));
    for (int board = 0; board <= 6; ++board) {
      const bool has_value = board >= 3 && board <= 5;
      EXPECT_EQ(-logic.getNewCombination(&cards[0], &cards[2], board),
                has_value ? Strength(first(2 + board)) : 0);
      CDeck deck = DeckOf(has_value ? first(2 + board) : std::vector<int>());
      deck.SetValueCombination(logic);
      EXPECT_EQ(logic.getCombination(&cards[0], &cards[2], board), has_value ? deck.value[0] : 0);
    }
  }
}

}  // namespace
}  // namespace pokermath
