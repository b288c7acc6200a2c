// Omaha range text against a matcher that tries every order of the cards, counts by arithmetic,
// text that reads back, and the names of hands.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/omaha_ranges.h"

namespace pokermath {
namespace {

template <int cards>
OmahaSpec<cards> Read(const std::string& text) {
  const OmahaRangeResult<cards> read = ParseOmahaRange<cards>(text);
  EXPECT_EQ(read.error, "") << text;
  return read.range;
}

int Count4(const std::string& text) { return Read<4>(text).Count(); }
int Count5(const std::string& text) { return Read<5>(text).Count(); }
int Count6(const std::string& text) { return Read<6>(text).Count(); }

template <int cards>
std::string Written(const OmahaSpec<cards>& range) {
  const CString text = range.MakeString();
  return std::string(text.begin(), text.end());
}

// An atom and what it stands for: ranks and suits as letters.
struct PlainAtom {
  std::string text, ranks, suits;

  bool Fits(int card) const {
    const std::string name = CardName(card);
    return ranks.find(name[0]) != ranks.npos && suits.find(name[1]) != suits.npos;
  }
};

PlainAtom RandomAtom(std::mt19937& random) {
  const std::string every = "23456789TJQKA";
  PlainAtom atom;
  const auto low = random() % 13, high = low + random() % (13 - low);
  switch (random() % 4) {
    case 0:
      atom = {random() % 2 == 0 ? "x" : "*", every, ""};
      break;
    case 1:
      atom = {"[" + every.substr(high, 1) + "-" + every.substr(low, 1) + "A]",
              every.substr(low, high - low + 1) + "A", ""};
      break;
    default:
      atom = {every.substr(low, 1), every.substr(low, 1), ""};
      if (atom.text == "T" && random() % 2 == 0) atom.text = "10";
  }
  atom.suits = random() % 4 == 0 ? std::string(1, "cdhs"[random() % 4]) : "";
  atom.text += atom.suits;
  if (atom.suits.empty()) atom.suits = "cdhs";
  return atom;
}

template <std::size_t cards>
bool FitsInSomeOrder(std::array<int, cards> hand, const std::array<PlainAtom, cards>& atoms) {
  do {
    std::size_t fitting = 0;
    while (fitting < cards && atoms[fitting].Fits(hand[fitting])) ++fitting;
    if (fitting == cards) return true;
  } while (std::ranges::next_permutation(hand).found);
  return false;
}

template <int cards>
typename OmahaSpec<cards>::Hand RandomHand(std::mt19937& random) {
  typename OmahaSpec<cards>::Hand hand;
  do {
    for (int& card : hand) card = static_cast<int>(random() % 52);
    std::ranges::sort(hand);
  } while (std::ranges::adjacent_find(hand) != hand.end());
  return hand;
}

// Random hands of random patterns, half of them changed so that they are near one that fits.
template <int cards>
void ComparePatterns(int trials) {
  std::mt19937 random(5);
  for (int trial = 0; trial < trials; ++trial) {
    std::array<PlainAtom, cards> atoms;
    std::string text;
    for (PlainAtom& atom : atoms) {
      atom = RandomAtom(random);
      text += atom.text;
    }
    const OmahaRangeResult<cards> read = ParseOmahaRange<cards>(text);
    const auto hands = read.range.Hands();
    for (int i = 0; i < 300; ++i) {
      auto hand = RandomHand<cards>(random);
      if (!hands.empty() && i % 3 != 0) hand = hands[random() % hands.size()];
      if (i % 3 == 2) {
        const int card = static_cast<int>(random() % 52);
        if (std::ranges::find(hand, card) == hand.end()) hand[random() % cards] = card;
        std::ranges::sort(hand);
      }
      ASSERT_EQ(read.range.Contains(hand), FitsInSomeOrder(hand, atoms)) << text;
    }
    if (!read.error.empty()) {
      ASSERT_NE(read.error.find("can have together"), std::string::npos) << read.error;
    }
  }
}

TEST(OmahaText, PatternsHoldTheHandsWhoseCardsFitInSomeOrder) {
  ComparePatterns<4>(300);
  ComparePatterns<5>(60);
  ComparePatterns<6>(4);
}

TEST(OmahaText, CountsAreThoseOfArithmetic) {
  EXPECT_EQ(Count4("AAxx"), 6 * 1128 + 4 * 48 + 1);
  EXPECT_EQ(Count4("aa**"), 6961);
  EXPECT_EQ(Count4("AAAx"), 4 * 48 + 1);
  EXPECT_EQ(Count4("AAxx!AAAx"), 6 * 1128);
  EXPECT_EQ(Count4("AAKK"), 36);
  EXPECT_EQ(Count4("KQJT"), 256);
  EXPECT_EQ(Count4("AsKsxx"), 50 * 49 / 2);
  EXPECT_EQ(Count4("10s9s8h7h"), 1);
  EXPECT_EQ(Count4("Axxx"), 270725 - 194580) << "all but C(48, 4)";
  EXPECT_EQ(Count4("[T-A][A-T]xx"), 270725 - 35960 - 20 * 4960) << "but none or one of 20 cards";
  EXPECT_EQ(Count4("[2-5A][2-5A][A2-5][A5-2]"), 4845);
  EXPECT_EQ(Count4("xsxsxsxs"), 715);
  EXPECT_EQ(Count4("random!Ahxxx"), 249900) << "C(51, 4)";
  EXPECT_EQ(Count5("AAxxx"), 6 * 17296 + 4 * 1128 + 48);
  EXPECT_EQ(Count5("AKQJT"), 1024);
  EXPECT_EQ(Count5("AsKsQsJsTs"), 1);
  EXPECT_EQ(Count5("xsxsxsxsxs"), 1287);
  EXPECT_EQ(Count5("random"), 2598960);

  EXPECT_EQ(Count4("xxxx:r"), 28561);
  EXPECT_EQ(Count4("xxxx:ss"), 158184);
  EXPECT_EQ(Count4("xxxx:DS"), 36504);
  EXPECT_EQ(Count4("random:3"), 44616);
  EXPECT_EQ(Count4("100%:4"), 2860);
  EXPECT_EQ(Count4("AAxx:ds"), 6 * 12 * 12);
  EXPECT_EQ(Count4("AAxx:r:4"), 6 * 144 + 4 * 12 + 1)
      << "no hand of four suited cards has two aces";
  const int split2111 = 4 * 78 * 2197, split221 = 12 * 78 * 78 * 13, split311 = 12 * 286 * 169,
            split32 = 12 * 286 * 78;
  EXPECT_EQ(Count5("xxxxx:ss"), split2111);
  EXPECT_EQ(Count5("xxxxx:ds"), split221 + split32);
  EXPECT_EQ(Count5("xxxxx:3"), split311 + split32);
  EXPECT_EQ(Count5("xxxxx:ds:3"), split221 + split311 + split32);
  EXPECT_EQ(Count5("xxxxx:4") + Count5("xxxxx:5"), 12 * 715 * 13 + 4 * 1287);

  EXPECT_EQ(Count6("AAxxxx"), 6 * 194580 + 4 * 17296 + 1128);
  EXPECT_EQ(Count6("AKQJT9"), 4096);
  EXPECT_EQ(Count6("AsKsQsJsTs9s,AsKsQsJsTs9h"), 2);
  EXPECT_EQ(Count6("random"), 20358520);
  // Suits that have so many cards, and ways to choose them; of a suit 13, 78, 286, 715, 1287, 1716.
  const int split2211 = 6 * 78 * 78 * 169, split222 = 4 * 78 * 78 * 78, split3111 = 4 * 286 * 2197,
            split321 = 24 * 286 * 78 * 13, split33 = 6 * 286 * 286, split411 = 12 * 715 * 169,
            split42 = 12 * 715 * 78;
  EXPECT_EQ(Count6("xxxxxx:ts"), split222);
  EXPECT_EQ(Count6("random:ds"), split2211 + split321 + split33 + split42);
  EXPECT_EQ(Count6("random:3"), split3111 + split321 + split33);
  EXPECT_EQ(Count6("random:4"), split411 + split42);
  EXPECT_EQ(Count6("random:5:6"), 12 * 1287 * 13 + 4 * 1716);
}

TEST(OmahaText, PiecesAreAddedAndTakenOffFromTheLeft) {
  EXPECT_EQ(Read<4>("AAxx; KKxx\tAAxx,,QQxx "), Read<4>("[A]AXX [K]Kxx QQ*x"));
  EXPECT_EQ(Read<4>("A♠[KQ]♥xx♢\uFE0F!x♣xxx"), Read<4>("As[KQ]hxxd!xcxxx"));
  EXPECT_EQ(Count4("AAKK,!AsAhxx,AsAhKsKh"), 36 - 6 + 1);
  EXPECT_EQ(Count4("!AAxx"), 0);
  EXPECT_EQ(Count4("AAxx!AAAx!AAKx:r,!KsAhxx"), Count4("AAxx,!AAAx!AAKx:r!KsAhxx"))
      << "behind a first mark all are taken off";
  EXPECT_EQ(Read<4>("").Count(), 0);
  OmahaSpec<4> run, ten, five;
  run.AddPercent(5, 20);
  EXPECT_EQ(Read<4>("5%-20%"), run);
  ten.AddPercent(0, 10);
  five.AddPercent(0, 5);
  OmahaSpec<4> dealt;
  ten.Subtract(five);
  ten.Exclude({51, 0}, dealt);
  EXPECT_EQ(Read<4>("10%!5%,!As***!2cxxx"), dealt);
  OmahaSpec<5> two_suits;
  two_suits.AddPercent(0, 12.5);
  two_suits.Intersect(Read<5>("xxxxx:ds"));
  EXPECT_EQ(Read<5>("12.5%:ds"), two_suits);
}

TEST(OmahaText, AnErrorSaysWhereWhatAndWhy) {
  struct Case {
    const char* text;
    std::size_t position;
    const char* piece;
  };
  const Case cases[] = {{"AAxx,AKx", 8, "'AKx' at position 9: expected four cards, with x"},
                        {"AAxxx", 4, "no more than four cards"},
                        {"AAxx:dd", 5, "ds, ss, r, 3, 4"},
                        {"AAxx:", 5, "a suit shape of four cards"},
                        {"AAxx:ds!", 8, "four cards (AsKsQhJh, AAxx"},
                        {"AAxx!!KKxx", 5, "four cards (AsKsQhJh, AAxx"},
                        {"AAAA:ds", 4, "a suit shape that a hand of the pattern has"},
                        {"KK,xx", 2, "'KK'"},
                        {"A[T-]xx", 4, "ranks like [T-A]"},
                        {"A[]xx", 2, "ranks like [T-A]"},
                        {"A[T-Axx", 5, "ranks like [T-A]"},
                        {"A[T-A", 5, "] behind ranks"},
                        {"A[KQ:ds", 4, "] behind ranks"},
                        {"AAxy", 3, "a rank (23456789TJQKA), x, or"},
                        {"7?", 1, "a rank"},
                        {"AsAsxx", 0, "cards that one hand can have together"},
                        {"xxxx!AsAsAs*", 5, "cards that one hand can have together"},
                        {"10%-5%", 4, "a larger percentage"},
                        {"10%-", 4, "a percentage above 0"},
                        {"0%", 0, "a percentage above 0"},
                        {"101%:ds", 0, "a percentage above 0"},
                        {"nan%", 0, "a percentage above 0"},
                        {"10%%", 3, "a shape (:ds)"},
                        {"randomly", 0, "'randomly'"},
                        {"AAxx\xE2\x80\xA8:ds", 4, "'AAxx?:ds'"}};
  for (const auto& [text, position, piece] : cases) {
    const OmahaRangeResult<4> read = ParseOmahaRange<4>(text);
    EXPECT_TRUE(read.range.Empty()) << text;
    EXPECT_NE(read.error.find(piece), std::string::npos) << text << ": " << read.error;
    EXPECT_NE(read.error.find("expected"), std::string::npos) << text << ": " << read.error;
    EXPECT_EQ(read.position, position) << text << ": " << read.error;
  }
  EXPECT_NE(ParseOmahaRange<5>("AAxxx:r").error.find("ds, ss, 3, 4, 5"), std::string::npos);
  EXPECT_EQ(ParseOmahaRange<5>("AAAAA").position, 0u);
  EXPECT_NE(ParseOmahaRange<5>("AAAAA").error, "");
  EXPECT_EQ(ParseOmahaRange<5>("AAxx").position, 4u);
  EXPECT_NE(ParseOmahaRange<6>("AAxxxx:ss").error.find("ds, ts, 3, 4, 5, 6"), std::string::npos);
  for (const auto& [text, position] :
       {std::pair("AAxxxx,15%", 7u), {"AAxxxx 5%-20%:ds", 7u}, {"AAxxxx!10%", 7u}}) {
    const OmahaRangeResult<6> read = ParseOmahaRange<6>(text);
    EXPECT_TRUE(read.range.Empty());
    EXPECT_NE(read.error.find("omaha6 has no order of strength yet"), std::string::npos) << text;
    EXPECT_EQ(read.position, position) << text;
  }
}

TEST(OmahaTextSlow, AHostileTextEndsWithAnError) {
  std::string text;
  for (int i = 0; i < 20'000; ++i) text += i % 2 == 0 ? "xxxxx!" : "[2-A][2-A]xxx,";
  EXPECT_NE(ParseOmahaRange<5>(text).error.find("less work"), std::string::npos);
  text = "random";
  for (int i = 0; i < 2'000; ++i) text += "!50%";
  EXPECT_NE(ParseOmahaRange<5>(text).error.find("less work"), std::string::npos);
  text.clear();
  for (int i = 0; i < 3'000; ++i) text += "[3-A]xxxx:ds:3:ss,";
  EXPECT_NE(ParseOmahaRange<5>(text).error.find("less work"), std::string::npos);
  const std::string open(100'000, '[');
  EXPECT_EQ(ParseOmahaRange<4>(open).position, 1u);
}

TEST(OmahaTextSlow, IsShort) {
  // As it is written again.
  const auto is_itself = [](const char* text) { EXPECT_EQ(Written(Read<4>(text)), text); };
  for (const char* text :
       {"", "random", "AAxx", "AAxx:ds", "AsKsxx", "AAxx!Ahxxx", "10%", "12.5%:ds", "5%-20%",
        "10%!Ahxxx", "15%!AAxx", "AAxx!AAAx", "[T-A][T-A]xx", "xxxx:ss", "random!AAxx:ds",
        "AsKsQhJh", "AAxx:ds:ss,AsKsQhJh", "AAxx:ds!xhxxx!7cxxx", "50%!Ah[2-K]xx!Kc[2-Q]xx"}) {
    is_itself(text);
  }
  for (const char* text :
       {"10%-20%,30%-40%", "5%,6%-10%", "15%:ss,25%:ds,AAxx", "10%:ds,AAxx,!Ahxxx",
        "15%:ss,25%:ds,!Ahxxx", "5%,20%-30%:ds,50%-60%:r", "9876:ds!9s8sxx", "AAxx!AsAhxx",
        "AAxx!AAAx:r", "AAxx!AAKK:ds", "AsKsxx,AhKhxx,AdKdxx,AcKcxx"}) {
    is_itself(text);
  }
  for (const char* text : {"random", "AAxxx:ds", "10%", "10%:ds!xxxxx:3", "AsKsxxx", "10%:ds,AAxxx",
                           "5%:ds,10%:ss", "5%:ss,10%:ds,30%:3", "AAxxx:ds,KKxxx:ds,QJT9x"}) {
    EXPECT_EQ(Written(Read<5>(text)), text);
  }
  EXPECT_EQ(Written(Read<4>("AA[2-K][2-K]")), "AAxx!AAAx");
  for (const char* text : {"random", "AAxxxx:ts", "KQJT9x:ds", "AsKsQsJsTs9h"}) {
    EXPECT_EQ(Written(Read<6>(text)), text);
  }
}

template <int cards>
void ReadBack(const OmahaSpec<cards>& range, const std::string& what) {
  const std::string text = Written(range);
  const OmahaRangeResult<cards> read = ParseOmahaRange<cards>(text);
  ASSERT_EQ(read.error, "") << what;
  ASSERT_TRUE(read.range == range) << what << ": " << text.substr(0, 200);
}

// Random lists of pieces, the sets that they are, and the same with hands knocked out or alone.
template <int cards>
void ReadBackRandomTexts(int trials) {
  std::mt19937 random(11);
  const std::array<const char*, 7> shapes = {"", "", "", ":ds", ":ss", ":3", ":ds:4"};
  for (int trial = 0; trial < trials; ++trial) {
    std::string text;
    for (auto pieces = 1 + random() % 4; pieces > 0; --pieces) {
      if (random() % 4 == 0) {
        text += std::to_string(1 + random() % 40) + "%";
      } else {
        for (int i = 0; i < cards; ++i) text += RandomAtom(random).text;
      }
      text += shapes[random() % shapes.size()];
      text += random() % 3 == 0 ? "!" : ",";
    }
    text += "A" + std::string(cards - 1, 'x');
    const OmahaRangeResult<cards> read = ParseOmahaRange<cards>(text);
    if (!read.error.empty()) continue;
    OmahaSpec<cards> range = read.range;
    ReadBack(range, text);
    if (trial % 4 == 0) {
      for (const auto& hand : range.Hands()) {
        if (random() % 1000 == 0) range.Erase(hand);
      }
      ReadBack(range, text + " without some");
    }
  }
}

TEST(OmahaTextSlow, EveryWrittenRangeReadsBack) {
  ReadBackRandomTexts<4>(60);
  ReadBackRandomTexts<5>(8);
  // Of six cards narrow ones, which are written fast, and the same with holes.
  for (const char* text : {"AKQJTx:ts,KKQQ99", "KKQQJ9:ds,AKQJT9!AsKhxxxx"}) {
    OmahaSpec<6> range = Read<6>(text);
    ReadBack(range, text);
    int number = 0;
    for (const auto& hand : range.Hands()) {
      if (++number % 1000 == 0) range.Erase(hand);
    }
    ReadBack(range, text);
  }
  std::mt19937 random(12);
  for (const unsigned share : {2U, 1000U, 100000U}) {
    OmahaSpec<4> range;
    OmahaSpec<4> all;
    all.MakeRandom();
    for (const auto& hand : all.Hands()) {
      if (random() % share == 0) range.Insert(hand);
    }
    ReadBack(range, "one of " + std::to_string(share));
  }
  // Very many patterns.
  std::string ranks = "23456789TJQKA";
  std::string text;
  for (int i = 0; i < 3000; ++i) {
    std::ranges::shuffle(ranks, random);
    text += ranks.substr(0, 5) + ":" + (i % 3 == 0 ? "ds" : i % 3 == 1 ? "3" : "ss") + " ";
  }
  ReadBack(Read<5>(text), "patterns");
}

TEST(OmahaHandName, UsesTheWordsOfPlayers) {
  const std::pair<const char*, const char*> names[] = {
      {"AsAhAdAc", "quad aces, rainbow"},
      {"AsAhAdKs", "trip aces, single-suited"},
      {"AsAhKsKh", "double pair of aces and kings, double-suited"},
      {"9s9h4s4d", "double pair of nines and fours, single-suited"},
      {"AsAh9s4h", "aces, double-suited"},
      {"AsAhQsJs", "aces with broadway cards, three of a suit"},
      {"AsAh7c6d", "aces with connectors, rainbow"},
      {"KsKh5c4d", "kings with wheel cards, rainbow"},
      {"9s9hTs8h", "pair of nines with connectors, double-suited"},
      {"QsJsThKh", "broadway rundown, double-suited"},
      {"AsJsThKh", "broadway cards, double-suited"},
      {"9s8s7s6s", "rundown, four of a suit"},
      {"As2s4h3h", "wheel rundown, double-suited"},
      {"As2s5h3h", "wheel cards, double-suited"},
      {"9s8s7h5h", "one-gap rundown, double-suited"},
      {"As6h4d3c", "two-gap rundown, rainbow"},
      {"Js9s5h3h", "unconnected cards, double-suited"},
      {"JsTs5h4h", "two connectors, double-suited"},
      {"As2h7d8c", "two connectors, rainbow"},
      {"KsQsJh4h", "rundown with a dangler, double-suited"},
      {"As2s3h9h", "rundown with a dangler, double-suited"},
      {"As4s2h9h", "ace with wheel cards, double-suited"},
      {"AsTs7h6h", "ace high, double-suited"},
      {"AsAhAdKsKh", "trip aces and kings, double-suited"},
      {"AsAhKsKhQd", "double pair of aces and kings, double-suited"},
      {"AsKsQsJhTh", "broadway rundown, double-suited with three of a suit"},
      {"9s9h8s7d6c", "pair of nines with connectors, single-suited"},
      {"As2s3s4s5s", "wheel rundown, five of a suit"},
      {"AsAhAdKsKhKd", "trip aces and trip kings, triple-suited"},
      {"AsAhKsKhQdQc", "triple pair of aces and kings and queens, double-suited"},
      {"9s9h8s7d6c5c", "pair of nines with connectors, double-suited"},
      {"AsAhAdAcKsKh", "quad aces and kings, double-suited"},
      {"Js9s8s7h6h5h", "one-gap rundown, double-suited with three of each"},
      {"As2s3s4s5s9h", "rundown with a dangler, five of a suit"},
      {"KsQsJsTs9s8s", "rundown, six of a suit"}};
  for (const auto& [cards, name] : names) {
    EXPECT_EQ(OmahaHandName(ParseCards(cards).cards), name) << cards;
  }
}

}  // namespace
}  // namespace pokermath
