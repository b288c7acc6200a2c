// The best Omaha hand: values and records against the plain search, the table of combinations and
// its file, and the flush classifier.

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string>
#include <vector>

#include "eval/omaha_best.h"
#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/messages.h"
#include "pokermath/omaha.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"
#include "tests/eval/oracle.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;
using Record = std::array<int, 5>;

// Every choice in its order; a strictly better one replaces.
int Plain(const Cards& hand, const Cards& board, Record& indexes, Record& codes) {
  int best = 0;
  for (std::size_t i = 0; i < hand.size(); ++i)
    for (std::size_t j = i + 1; j < hand.size(); ++j)
      for (std::size_t a = 0; a < board.size(); ++a)
        for (std::size_t b = a + 1; b < board.size(); ++b)
          for (std::size_t c = b + 1; c < board.size(); ++c) {
            const int five[5] = {hand[i], hand[j], board[a], board[b], board[c]};
            const int strength = oracle::Strength(five);
            if (strength <= best) continue;
            best = strength;
            indexes = {static_cast<int>(i), static_cast<int>(j), static_cast<int>(a),
                       static_cast<int>(b), static_cast<int>(c)};
            std::ranges::copy(five, codes.begin());
          }
  return oracle::Places(best) + 1;
}

std::uint64_t WordsOf(const Cards& cards) {
  std::uint64_t words = 0;
  for (const int card : cards) words += kCompactTables.card_words[card];
  return words;
}

TEST(OmahaBest, EveryFunctionGivesValueAndFirstChoice) {
  PokerLogic logic;
  Dealer dealer(71);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 60000; ++trial) {
    const int holes = trial % 200 == 0 ? 2 + dealer.Below(40) : 4 + trial % 2;
    const int count = 3 + trial % 3;
    Cards cards = dealer.Deal(holes + count);
    Cards hand(cards.begin(), cards.begin() + holes);
    Cards board(cards.begin() + holes, cards.end());
    Record indexes, codes, record;
    const int value = Plain(hand, board, indexes, codes);
    const std::string trace = CardNames(hand) + " on " + CardNames(board);
    ASSERT_EQ(getCombinationOmahaFsm5Common(hand.data(), holes, board.data(), count, record.data()),
              value)
        << trace;
    ASSERT_EQ(record, indexes) << trace;
    ASSERT_EQ(
        logic.getCombinationOmahaCommon(hand.data(), holes, board.data(), count, record.data()),
        7463 - value);
    ASSERT_EQ(record, indexes) << trace;
    if (count == 5 && holes >= 4 && holes <= 6) {
      ASSERT_EQ(BestOmahaValue(CardSet(hand), WordsOf(hand), CardSet(board), WordsOf(board)), value)
          << trace;
    }
    if (holes != 4) continue;
    const auto states = count == 5   ? getCombinationOmahaFsm5
                        : count == 4 ? getCombinationOmahaTurnFsm5
                                     : getCombinationOmahaFlopFsm5;
    ASSERT_EQ(states(hand.data(), board.data(), record.data()), value);
    ASSERT_EQ(record, indexes) << trace;
    const auto member = count == 5   ? &PokerLogic::getCombinationOmaha
                        : count == 4 ? &PokerLogic::getCombinationOmahaTurn
                                     : &PokerLogic::getCombinationOmahaFlop;
    ASSERT_EQ((logic.*member)(hand.data(), board.data(), record.data()), 7463 - value);
    ASSERT_EQ(record, codes) << trace;
    const auto lookup = count == 5   ? &PokerLogic::LookupHandsOmaha
                        : count == 4 ? &PokerLogic::LookupHandsOmahaTurn
                                     : &PokerLogic::LookupHandsOmahaFlop;
    ASSERT_EQ((logic.*lookup)(cards.data()), oracle::HandRanks(Cards(codes.begin(), codes.end())));
    if (trial % 10 == 0) {
      CDeck deck, five;
      for (const int card : cards) deck.AddCard(card);
      for (const int card : codes) five.AddCard(card);
      deck.SetValueCombinationOmaha(logic);
      five.SetValueCombination(logic);
      ASSERT_EQ(deck.compareTo(five), 0) << trace;
    }
  }
  CDeck six;
  for (const int card : {0, 1, 2, 3, 4, 5}) six.AddCard(card);
  six.SetValueCombination(logic);
  six.SetValueCombinationOmaha(logic);
  EXPECT_EQ(six.value[0], 0) << "too few cards";
}

// Sets of ranks by their sizes.
std::vector<std::vector<unsigned>> SetsOfRanks() {
  std::vector<std::vector<unsigned>> sets(14);
  for (unsigned set = 0; set < 1u << 13; ++set) {
    sets[static_cast<std::size_t>(std::popcount(set))].push_back(set);
  }
  return sets;
}

TEST(OmahaBest, EveryFlushIsTheBestOfItsChoices) {
  const auto sets = SetsOfRanks();
  // What two hole cards make with a board.
  std::vector<int> of_two(1 << 13);
  for (std::size_t size = 3; size <= 5; ++size) {
    for (const unsigned board : sets[size]) {
      for (const unsigned two : sets[2]) {
        int& best = of_two[two] = 0;
        for (unsigned out = board; size > 3 && out != 0; out = (out - 1) & board) {
          if (static_cast<std::size_t>(std::popcount(out)) + 3 == size) {
            best = std::max<int>(best, kCompactTables.flush_values[two | (board & ~out)]);
          }
        }
        if (size == 3) best = kCompactTables.flush_values[two | board];
      }
      for (std::size_t holes = 2; holes <= 6; ++holes) {
        for (std::size_t i = board % 7; i < sets[holes].size(); i += 7) {
          const unsigned hand = sets[holes][i];
          if ((hand & board) != 0) continue;
          int best = 0;
          for (unsigned a = hand; a != 0; a &= a - 1) {
            for (unsigned b = a & (a - 1); b != 0; b &= b - 1) {
              best = std::max(best, of_two[(a & -a) | (b & -b)]);
            }
          }
          ASSERT_EQ(BestOmahaFlush(hand, board), best) << hand << " on " << board;
        }
      }
    }
  }
}

TEST(Combinations, TheFileIsTheGoldenTableAndLoadsBack) {
  ScratchFolder folder;
  const std::string path = folder / "VarnholtPC.dat";
  const CString name = FromUtf8(path);
  SetContent(path, "not a table");
  PokerLogic logic;
  Cards hand = ParseCards("AsKs4d4h").cards;
  Cards board = ParseCards("QsJsTs2c3d").cards;
  EXPECT_EQ(logic.eval_7handOmaha(hand.data(), board.data()), 999999) << "an empty table";
  EXPECT_EQ(logic.generate_PokerCombinations_table(name), 0);
  EXPECT_EQ(logic.PokerCombinations.size(), 2598960u);
  std::string bytes = ContentOf(path);
  ASSERT_EQ(bytes.size(), 20791680u);
  EXPECT_EQ(crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())),
            0x7a86dfc6u);
  EXPECT_EQ(logic.eval_7handOmaha(hand.data(), board.data()), 1);
  PokerLogic moved = std::move(logic);
  EXPECT_TRUE(logic.PokerCombinations.empty());
  Dealer dealer(72);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 2000; ++trial) {
    Cards cards = dealer.Deal(9);
    Record record;
    ASSERT_EQ(moved.eval_7handOmaha(&cards[0], &cards[4]),
              moved.getCombinationOmaha(&cards[0], &cards[4], record.data()));
  }

  // Values below 1 are shown and left out; the first record of a key counts.
  std::vector<CString> messages;
  SetMessageHandler([&messages](const CString& text) { messages.push_back(text); });
  const auto patch = [&bytes](std::size_t place, std::int32_t number) {
    std::memcpy(&bytes[place], &number, sizeof number);
  };
  std::int32_t first_key;
  std::memcpy(&first_key, bytes.data(), sizeof first_key);
  patch(4, 0);
  patch(16, first_key);
  patch(20, 77);
  SetContent(path, bytes);
  EXPECT_EQ(logic.generate_PokerCombinations_table(name), 1);
  SetMessageHandler({});
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], L"load_PokerCombinations_table " + std::to_wstring(first_key) + L" 0");
  EXPECT_EQ(logic.PokerCombinations.find(first_key), 77);
  EXPECT_EQ(logic.PokerCombinations.size(), 2598959u);

  // A value below 1 is left out whatever its key is.
  patch(800, 0);
  patch(804, 0);
  SetContent(path, bytes);
  EXPECT_EQ(logic.generate_PokerCombinations_table(name), 1);
  EXPECT_EQ(logic.PokerCombinations.size(), 2598959u - 1);

  // Keys that are no hands, and another length: worked out again.
  patch(804, 1);
  for (const std::int32_t key : {0, -1, first_key + 64, first_key | 1 << 30}) {
    patch(800, key);
    SetContent(path, bytes);
    EXPECT_EQ(logic.generate_PokerCombinations_table(name), 0) << key;
    EXPECT_EQ(logic.PokerCombinations.size(), 2598960u);
  }
  SetContent(path, bytes.substr(8));
  EXPECT_EQ(logic.generate_PokerCombinations_table(name), 0);
  EXPECT_EQ(logic.generate_PokerCombinations_table(name), 1);

  // Saving what is there, or nothing over nothing.
  FiveCardMap one;
  EXPECT_FALSE(one.insert(0, 5));
  EXPECT_FALSE(one.insert(first_key, 0));
  EXPECT_TRUE(one.insert(first_key, 5));
  EXPECT_FALSE(one.insert(first_key, 6));
  logic.PokerCombinations = one;
  EXPECT_EQ(logic.save_PokerCombinations_table(name), 1);
  EXPECT_EQ(ContentOf(path).size(), 8u);
  // What is missing counts as its key.
  Cards low = {0, 1, 20, 30};
  Cards low_board = {2, 3, 4, 41, 45};
  EXPECT_EQ(logic.eval_7handOmaha(low.data(), low_board.data()), 5);
  EXPECT_EQ(logic.save_PokerCombinations_table(FromUtf8(folder / "none/x")), 1);
}

TEST(Combinations, PlacesAreInTheOrderOfTheKeys) {
  std::size_t place = 0;
  int last = -1;
  for (int a = 0; a < 48; ++a)
    for (int b = a + 1; b < 49; ++b)
      for (int c = b + 1; c < 50; ++c)
        for (int d = c + 1; d < 51; ++d)
          for (int e = d + 1; e < 52; ++e, ++place) {
            const int key = FiveCardMap::KeyOf(a, b, c, d, e);
            ASSERT_GT(key, last);
            ASSERT_EQ(FiveCardMap::PlaceOf(key), place);
            last = key;
          }
  for (const int key :
       {FiveCardMap::KeyOf(1, 1, 2, 3, 4), FiveCardMap::KeyOf(4, 3, 2, 1, 0),
        FiveCardMap::KeyOf(1, 2, 3, 4, 52), FiveCardMap::KeyOf(63, 63, 63, 63, 63)}) {
    EXPECT_EQ(FiveCardMap::PlaceOf(key), FiveCardMap::kHands) << key;
  }
  FiveCardMap map;
  for (const int first : {40, 3, 17}) {
    map.insert(FiveCardMap::KeyOf(first, 44, 45, 46, 47), first);
  }
  Cards order;
  map.ForEach([&order](int, int number) { order.push_back(number); });
  EXPECT_EQ(order, (Cards{3, 17, 40}));
}

TEST(OmahaType, KnowsFlushesAsHostsDo) {
  const auto type = [](std::string_view hand_text, std::string_view board_text) {
    Cards hand = ParseCards(hand_text).cards;
    Cards board = ParseCards(board_text).cards;
    return CHandOmahaType(hand.data(), board.data(), static_cast<int>(board.size()));
  };
  EXPECT_EQ(type("AsKs2c3d", "QsJsTs2d4h").getOmahaHand(), 117);
  EXPECT_EQ(type("AsQs2c3d", "Ts2d4hJsKs").isRoyalFlushOmaha(), 1);
  EXPECT_EQ(type("AsKsQs3d", "JsTs9s").isRoyalFlushOmaha(), -1) << "three hole cards of it";
  EXPECT_EQ(type("AsKsQs3d", "JsTs9s").getOmahaHand(), 65);
  EXPECT_EQ(type("9s8s2c3d", "QsJsTs2d4h").getOmahaHand(), 65) << "a straight flush is a flush";
  EXPECT_EQ(type("As8h2c3d", "QsJsTs2d4h").getOmahaHand(), -1);
  const CHandOmahaType draw = type("4h2sAhKs", "Qs5s3hTh");
  int suits[4] = {};
  int count = 0;
  EXPECT_EQ(draw.isFlushDrawOmaha(suits, count), 2);
  EXPECT_EQ(count * 100 + suits[0] * 10 + suits[1], 223);
  EXPECT_EQ(draw.isFlushOmaha(), -1);
  EXPECT_EQ(draw.isStraightFlush(), -1);
  const CHandOmahaType flush = type("2h4hKhAd", "9c3h8hQhJh");
  EXPECT_EQ(flush.flushSuit, 2);
  EXPECT_EQ(Cards(flush.flushHoleRanks, flush.flushHoleRanks + flush.flushHoleCount),
            (Cards{11, 2, 0}));
  EXPECT_EQ(Cards(flush.flushBoardRanks, flush.flushBoardRanks + flush.flushBoardCount),
            (Cards{10, 9, 6, 1}));
  EXPECT_EQ(flush.holeCards[0], 25) << "the ace of diamonds is the highest";
  EXPECT_EQ(type("AsKsQsJs", "Ts9s").getOmahaHand(), -1) << "two board cards";
}

}  // namespace
}  // namespace pokermath
