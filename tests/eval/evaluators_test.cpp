#include "pokermath/evaluators.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "eval/batch.h"
#include "eval/short_deck.h"
#include "platform/isa.h"
#include "pokermath/cards.h"
#include "pokermath/hand_sum.h"
#include "tests/cards/dealer.h"
#include "tests/eval/oracle.h"

namespace pokermath {
namespace {

const CPokerDeck kWords;

// Every function for five cards on every hand: the total proof on which the other tests rest.
TEST(FiveCards, AllHandsAreInTheOrderOfTheRules) {
  ASSERT_EQ(oracle::AllStrengths().size(), 7462u);
  std::array<int, 10> hands{};
  int c[5];
  for (c[0] = 0; c[0] < 48; ++c[0])
    for (c[1] = c[0] + 1; c[1] < 49; ++c[1])
      for (c[2] = c[1] + 1; c[2] < 50; ++c[2])
        for (c[3] = c[2] + 1; c[3] < 51; ++c[3])
          for (c[4] = c[3] + 1; c[4] < 52; ++c[4]) {
            const int strength = oracle::Strength(c);
            const int value = 7462 - oracle::Places(strength);
            int w[5];
            for (int i = 0; i < 5; ++i) w[i] = kWords[c[i]];
            ++hands[static_cast<std::size_t>(strength >> 20)];
            if (eval_5cards(w[0], w[1], w[2], w[3], w[4]) != value ||
                eval_5hand_fast(w[4], w[3], w[2], w[1], w[0]) != value || eval_5hand(w) != value ||
                EvaluateCards<5>(c) != 7463 - value) {
              FAIL() << CardNames(c) << " should be " << value;
            }
          }
  EXPECT_EQ(hands,
            (std::array<int, 10>{0, 1302540, 1098240, 123552, 54912, 10200, 5108, 3744, 624, 40}));
}

TEST(FiveCards, ScalesAndWordsAreTheContracts) {
  for (int value = 1; value <= 7462; ++value) {
    const int strength = oracle::AllStrengths()[static_cast<std::size_t>(value - 1)];
    const int category = strength >> 20;
    ASSERT_EQ(HandRanksFromAscending(value),
              category * 4096 + value - oracle::Places(category << 20));
  }
  EXPECT_EQ(kWords[0], 0x00018002);
  EXPECT_EQ(kWords[23], 0x04004A1F);
  EXPECT_EQ(kWords[51], 0x10001C29);
  const auto value_of = [](const char* text) {
    return 7463 - EvaluateCards<5>(ParseCards(text).cards.data());
  };
  EXPECT_EQ(value_of("AhKhQhJhTh"), 1);
  EXPECT_EQ(value_of("5s4s3s2sAs"), 10);
  EXPECT_EQ(value_of("2c2d2h2s3c"), 166);
  EXPECT_EQ(value_of("Ac2d3h4s5c"), 1609);
  EXPECT_EQ(value_of("7c5d4h3s2c"), 7462);
}

TEST(FiveCards, NoHandIsReportedAndWorthNothing) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(eval_5cards(kWords[0], kWords[13], kWords[26], kWords[39], kWords[0]), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "ERROR:  no match found; key = 32\n");
}

TEST(SixAndSevenCards, AreWorthTheirBestFive) {
  Dealer dealer(3);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 200'000; ++trial) {
    std::vector<int> cards = dealer.Deal(7);
    int words[7];
    for (std::size_t i = 0; i < 7; ++i) words[i] = kWords[cards[i]];
    int values[8] = {};
    for (std::size_t count = 5; count <= 7; ++count) {
      values[count] = oracle::Ascending(std::span(cards).first(count));
    }
    ASSERT_EQ(EvaluateCards<7>(cards.data()), values[7]) << CardNames(cards);
    ASSERT_EQ(EvaluateCards<6>(cards.data()), values[6]) << CardNames(cards);
    ASSERT_EQ(eval_7hand(words), 7463 - values[7]) << CardNames(cards);
    ASSERT_EQ(eval_6hand(words), 7463 - values[6]) << CardNames(cards);

    const int count = 5 + trial % 3;
    ASSERT_EQ(EvaluateCards(cards.data(), count), values[count]);
    int best[5];
    FindBestFive(cards.data(), count, best);
    ASSERT_TRUE(best[0] >= 0 && best[4] < count && std::is_sorted(best, best + 5));
    for (int& place : best) place = cards[static_cast<std::size_t>(place)];
    ASSERT_EQ(oracle::Ascending(best), values[count]) << CardNames(cards) << CardNames(best);
  }
  int cards[8] = {0, 1, 2, 3, 4, 5, 6, 7};
  for (const int count : {-1, 0, 4, 8}) EXPECT_EQ(EvaluateCards(cards, count), 0);
}

TEST(Words, OfValuesAndHands) {
  const struct {
    const char* cards;
    const char* category;
    const char* short_deck;
    const char* words;
  } cases[] = {{"AhKhQhJhTh6c7d", "royal flush", "royal flush", "royal flush"},
               {"9h8h7h6hAhTc", "flush", "straight flush", "flush Ace high"},
               {"9h8h7h6hThTc", "straight flush", "straight flush", "straight flush 10 high"},
               {"7c7d7h7s9cTdJh", "four of a kind", "four of a kind", "four of a kind 7"},
               {"KcKdKh7s7cTd", "full house", "full house", "full house King over 7"},
               {"9c8d7h6sTc", "straight", "straight", "10 high straight"},
               {"9c8d7h6sAc", "high card", "straight", "high card Ace high"},
               {"7c7d7hAsKcTd", "three of a kind", "three of a kind",
                "three of a kind 7 kicker Ace kicker King"},
               {"AcAdKhKs7c", "two pair", "two pair", "two pair Ace King kicker 7"},
               {"AcAdKhQs7c", "one pair", "one pair", "pair of Ace kicker King kicker Queen"}};
  for (const auto& [text, category, short_deck, words] : cases) {
    const std::vector<int> cards = ParseCards(text).cards;
    const int count = static_cast<int>(cards.size());
    EXPECT_STREQ(CategoryName(EvaluateCards(cards.data(), count)), category) << text;
    EXPECT_STREQ(ShortDeckCategoryName(EvaluateShortDeck(cards.data(), count)), short_deck) << text;
    EXPECT_EQ(HandInWords(cards), words);
  }
  for (const int value : {-1, 0, 7463}) EXPECT_STREQ(CategoryName(value), "") << value;
  for (const int value : {-1, 0, 1405}) EXPECT_STREQ(ShortDeckCategoryName(value), "") << value;
  for (const char* text : {"", "AcAdKhKs", "AcAdKhKs2c3c4c5c"}) {
    EXPECT_EQ(HandInWords(ParseCards(text).cards), "") << text;
  }
}

// So many cards of rank `lowest` and better.
std::vector<int> DealFrom(Dealer& dealer, int count, int lowest) {
  std::vector<int> cards;
  while (cards.size() < static_cast<std::size_t>(count)) {
    cards = dealer.Deal(20);
    std::erase_if(cards, [lowest](int card) { return card % 13 < lowest; });
  }
  cards.resize(static_cast<std::size_t>(count));
  return cards;
}

// A deck's evaluators, all of which are to agree with the one for a count known at run time.
struct DeckEvaluators {
  int lowest_rank;
  int (*value)(const int* cards, int count);
  void (*batch)(int count, const std::uint8_t* cards, std::size_t hands, std::uint16_t* values);
  void (*batch_of)(Isa isa, int count, const std::uint8_t* cards, std::size_t hands,
                   std::uint16_t* values);
};
const DeckEvaluators kFull = {0, EvaluateCards, EvaluateBatch, EvaluateBatch};
const DeckEvaluators kShort = {kLowestShortDeckCard, EvaluateShortDeck, EvaluateShortDeckBatch,
                               EvaluateShortDeckBatch};

// Ints, bytes, and a sum that cards are added to and taken from.
template <typename Sum, int count>
void CheckSingle(const auto& tables, const DeckEvaluators& deck, Dealer& dealer) {
  const std::vector<int> cards = DealFrom(dealer, count + 1, deck.lowest_rank);
  const int value = deck.value(cards.data(), count);
  ASSERT_EQ(tables.template ValueOf<count>(cards.data()), value) << CardNames(cards);
  const std::vector<std::uint8_t> bytes(cards.begin(), cards.begin() + count);
  ASSERT_EQ(tables.template ValueOf<count>(bytes.data()), value) << CardNames(cards);
  Sum sum;
  for (const int card : cards) sum.Add(card);
  ASSERT_EQ(sum.Evaluate(), deck.value(cards.data(), count + 1));
  sum.Remove(cards.back());
  ASSERT_EQ(sum.Evaluate(), value) << CardNames(cards);
  ASSERT_EQ(sum.cards(), CardSet(std::span(cards).first(count)));
  ASSERT_EQ(sum.size(), count);
  const auto half = std::span(cards).first(static_cast<std::size_t>(dealer.Below(count)));
  ASSERT_EQ(Sum(sum.cards() - CardSet(half)).With(Sum(CardSet(half))).Evaluate(), value);
}

TEST(Single, EveryWayToGiveTheCardsIsWorthTheSame) {
  Dealer dealer(5);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 20'000 && !HasFatalFailure(); ++trial) {
    CheckSingle<HandSum, 5>(kCompactTables, kFull, dealer);
    CheckSingle<HandSum, 6>(kCompactTables, kFull, dealer);
    CheckSingle<HandSum, 7>(kCompactTables, kFull, dealer);
    CheckSingle<ShortDeckHandSum, 5>(kShortDeckTables, kShort, dealer);
    CheckSingle<ShortDeckHandSum, 6>(kShortDeckTables, kShort, dealer);
    CheckSingle<ShortDeckHandSum, 7>(kShortDeckTables, kShort, dealer);
  }
}

// The buffers have exactly the bytes that the contract asks for: under AddressSanitizer a read or
// a write beyond them is seen.
TEST(Batch, EveryLengthAndAlignmentStaysInItsBuffers) {
  Dealer dealer(4);
  SCOPED_TRACE(dealer.Trace());
  std::vector<std::size_t> lengths = {511, 512, 513, 514, 515, 516, 517, 1023, 1024, 1025, 5001};
  for (std::size_t length = 0; length < 70; ++length) lengths.push_back(length);
  for (const std::size_t length : lengths) {
    const DeckEvaluators& deck = length % 2 == 0 ? kFull : kShort;
    const int count = 5 + static_cast<int>(length / 2 % 3);
    const std::size_t shift = length % 8;
    std::vector<std::uint8_t> bytes(shift);
    std::vector<std::uint16_t> expected;
    for (std::size_t hand = 0; hand < length; ++hand) {
      const std::vector<int> cards = DealFrom(dealer, count, deck.lowest_rank);
      bytes.insert(bytes.end(), cards.begin(), cards.end());
      expected.push_back(static_cast<std::uint16_t>(deck.value(cards.data(), count)));
    }
    bytes.shrink_to_fit();
    const auto check = [&](auto evaluate) {
      std::vector<std::uint16_t> values(length);
      evaluate(count, bytes.data() + shift, length, values.data());
      ASSERT_EQ(values, expected) << length << " hands of " << count;
    };
    check(deck.batch);
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512}) {
      SCOPED_TRACE("level " + std::to_string(static_cast<int>(isa)));
      if (isa <= BestIsa()) check([&](auto... all) { deck.batch_of(isa, all...); });
    }
  }
  std::uint16_t values[2] = {7, 7};
  EvaluateBatch(4, nullptr, 2, values);
  EXPECT_EQ(values[0] + values[1], 0) << "no such count";
}

}  // namespace
}  // namespace pokermath
