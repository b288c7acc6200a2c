// Range text with weights: counts by arithmetic, lists against each piece read alone, errors and
// their places, and text that reads back.

#include "pokermath/hand_range.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "pokermath/cards.h"

namespace pokermath {
namespace {

constexpr Game kHoldem = Game::kHoldem, kShort = Game::kShortDeckStraights, kOmaha = Game::kOmaha,
               kOmaha5 = Game::kOmaha5HighLow;

RangeReading Read(Game game, const std::string& text) {
  const Result<RangeReading> read = ReadRange(game, text);
  EXPECT_TRUE(read) << text << ": " << read.error().text;
  return read ? *read : RangeReading{HandRange(game), {}};
}

TEST(ReadRange, CountsAndWeights) {
  struct Case {
    Game game;
    const char* text;
    std::size_t hands;
    std::int64_t weights;  // of all hands together, in ten-thousandths
    std::size_t warnings = 0;
  };
  const Case cases[] = {
      {kHoldem, "", 0, 0},
      {kHoldem, "random", 1326, 13'260'000},
      {kShort, " RANDOM ", 630, 6'300'000},
      {kHoldem, "AA:0.5", 6, 30'000},
      {kHoldem, "AA@50;KK:1\tQQ:.25", 18, 30'000 + 60'000 + 15'000},
      {kHoldem, "[50]AA,KK[/50]QQ", 18, 60'000 + 60'000},
      {kHoldem, "[12.5]AKs,!AhKh[/12.5],AhAd", 4, 3 * 1250 + 10'000},
      {kHoldem, "AA,[50]KK,!AhXx[/50]", 12, 90'000},
      {kHoldem, "AA:0.12345,KK@12.344", 12, 6 * (1235 + 1234)},
      {kHoldem, "AA:0.99995,KK:0.0001,QQ:00.50", 18, 6 * (10'000 + 1 + 5000)},
      {kHoldem, "TT+,JJ:0.25,!KK", 24, 18 * 10'000 + 6 * 2500, 1},
      {kHoldem, "AA,KK,AA:0,[0]KhKd[/0],QQ:0", 5, 50'000, 2},
      {kHoldem, "AA,AA:0,AA:0.5", 6, 30'000, 2},
      {kHoldem, "AA:0.5,AA@50", 6, 30'000},
      {kHoldem, "random!AA", 1320, 13'200'000},
      {kHoldem, "AKs!AhKh!AsKs:0.5", 2, 10'000},
      {kHoldem, "random,!AA!KK,AhAd", 1326 - 11, 13'150'000},
      {kHoldem, "AhXx", 51, 510'000},
      {kHoldem, "ahX", 51, 510'000},
      {kHoldem, "AxXx", 198, 1'980'000},
      {kHoldem, "A*", 198, 1'980'000},
      {kHoldem, "KX!Ax", 198 - 16, 1'820'000},
      {kHoldem, "A*s", 48, 480'000},
      {kHoldem, "A*o", 144, 1'440'000},
      {kHoldem, "xxs", 312, 3'120'000},
      {kHoldem, "xhxh", 78, 780'000},
      {kHoldem, "Axkh", 4, 40'000},
      {kHoldem, "AxAx,10c*", 57, 570'000},
      {kHoldem, "T9s-65s", 20, 200'000},
      {kHoldem, "64s-T8s", 20, 200'000},
      {kHoldem, "KQo-54o", 9 * 12, 1'080'000},
      {kHoldem, "JT-98:0.5", 48, 240'000},
      {kHoldem, "5%-10%,5%", Read(kHoldem, "10%").range.size(),
       10'000 * static_cast<std::int64_t>(Read(kHoldem, "10%").range.size())},
      {kHoldem, "15%!AhXx", 166, 1'660'000},
      {kShort, "A*", 134, 1'340'000},
      {kShort, "T9s-76s", 16, 160'000},
      {kShort, "AhXx:0.5", 35, 175'000},
      {kOmaha, "random", 270'725, 2'707'250'000},
      {kOmaha, "AAxx:ds@50", 864, 4'320'000},
      {kOmaha, "AAxx!AAAx:r@25", 6912, 17'280'000},
      {kOmaha, "[25]AAx", 6 * (1128 - 780) + 4 * 8, 21'200'000},
      {kOmaha, "[25.0]AAxx,!Ahxxx[/25.0]", 3432, 8'580'000},
      {kOmaha, "[25][25]AAx[/25]", Read(kOmaha, "[25]AAx").range.size(),
       2500 * static_cast<std::int64_t>(Read(kOmaha, "[25]AAx").range.size())},
      {kOmaha, "AAKK@50,AAxx:r@0,!AsAhKsKh", 29, 145'000, 1},
      {kOmaha5, "random", 2'598'960, 25'989'600'000},
      {kOmaha5, "AAxxx@1", 108'336, 10'833'600},
  };
  for (const auto& [game, text, hands, weights, warnings] : cases) {
    const RangeReading read = Read(game, text);
    EXPECT_EQ(read.range.size(), hands) << text;
    std::int64_t sum = 0;
    for (const WeightedHand& hand : read.range.hands()) sum += hand.weight;
    EXPECT_EQ(sum, weights) << text;
    EXPECT_EQ(read.warnings.size(), warnings) << text;
  }
  EXPECT_TRUE(Read(kOmaha5, "random").range.IsEvery());
  EXPECT_TRUE(Read(kOmaha5, "AAxxx@50,random").range.IsEvery());
  EXPECT_TRUE(Read(kShort, "xx").range.IsEvery());
}

// Lists of pieces with weights, taken off or alone, against what each piece is when it stands
// alone.
TEST(ReadRange, TheLastPieceWins) {
  const std::vector<std::string> two_cards = {"TT+",     "AxXx",    "A*s",       "random",
                                              "K9s-K6s", "T8s-86s", "20%",       "8%-30%!QQ",
                                              "AhKd",    "xhxh",    "random!A*o"};
  const std::vector<std::string> omaha = {"AAxx",      "AAxx:ds",      "10%",
                                          "5%-20%:ss", "random!Ahxxx", "[T-A][52]Kx",
                                          "AsAhKsKh",  "xsxsxx!AAxx",  "KQJT"};
  std::mt19937 random(5);
  for (int trial = 0; trial < 240; ++trial) {
    const Game game = trial % 16 == 0 ? kOmaha : trial % 2 == 0 ? kShort : kHoldem;
    const auto& pieces = game == kOmaha ? omaha : two_cards;
    std::map<CardSet, int> expected;
    std::string text;
    std::size_t changed = 0;
    for (auto left = 1 + random() % 5; left > 0; --left) {
      const std::string& piece = pieces[random() % pieces.size()];
      const int weight = static_cast<int>(random() % 5) * 2500;
      const bool off = piece.find('!') == piece.npos && random() % 4 == 0;
      bool changes = false;
      const HandRange alone = Read(game, piece).range;
      for (const WeightedHand& hand : alone.hands()) {
        // Taken out with a weight of 0 is known; with a mark it is as if it never was in.
        const auto [place, is_new] = expected.try_emplace(hand.cards, weight);
        if (off) {
          expected.erase(place);
        } else if (!is_new) {
          changes |= std::exchange(place->second, weight) != weight;
        }
      }
      changed += changes;
      const std::string percent = std::to_string(weight / 100);
      if (off) {
        text += "!" + piece + ",";
      } else if (random() % 2 == 0) {
        text += piece + "@" + percent + " ";
      } else {
        text += "[" + percent + ".0]" + piece + "[/" + percent + ".0]";
      }
    }
    std::erase_if(expected, [](const auto& hand) { return hand.second == 0; });
    const RangeReading read = Read(game, text);
    ASSERT_EQ(read.range.size(), expected.size()) << text;
    auto hand = read.range.hands().begin();
    for (const auto& [cards, weight] : expected) {
      ASSERT_EQ(*hand++, (WeightedHand{cards, weight})) << text;
    }
    EXPECT_EQ(read.warnings.size(), changed) << text;
  }
}

TEST(ReadRange, WarnsInOneLineForAPiece) {
  EXPECT_EQ(Read(kHoldem, "TT+:0.5,QQ").warnings,
            std::vector<std::string>{"'QQ' at position 9 gives 6 hands another weight than "
                                     "'TT+:0.5' at position 1; the last one counts"});
  EXPECT_EQ(Read(kOmaha, "AAxx,[50]AsAhKsKh,KKxx[/50]").warnings,
            std::vector<std::string>{"'[50]' at position 6 gives 36 hands another weight than "
                                     "'AAxx' at position 1; the last one counts"});
  std::string text = "random";
  for (int i = 0; i < 1000; ++i) text += i % 2 == 0 ? ",AhKd:0.5" : ",AhKd";
  const std::vector<std::string> warnings = Read(kHoldem, text).warnings;
  ASSERT_EQ(warnings.size(), 21u);
  EXPECT_EQ(warnings.back(), "and 980 more");
}

TEST(ReadRange, BandsOfWholePercentsLeaveNoGap) {
  const auto same = [](Game game, const std::string& text, const std::string& meant) {
    const RangeReading read = Read(game, text);
    EXPECT_EQ(read.range, Read(game, meant).range) << text;
    return read.warnings;
  };
  EXPECT_EQ(same(kHoldem, "15%@10,16%-50%@5", "15%@10,15%-50%@5"),
            std::vector<std::string>{"'16%-50%' at position 8 is read as '15%-50%', from where "
                                     "'15%' ends"});
  EXPECT_EQ(same(kHoldem, "5%,6%-15%,16%-100%", "random").size(), 2u);
  EXPECT_EQ(same(kShort, "[10]5%!AA[/10],[5]6%-50%!AA[/5]", "5%!AA@10,5%-50%!AA@5").size(), 1u);
  EXPECT_EQ(same(kOmaha, "5%:ds@10,6%-8%:ds@5", "5%:ds@10,5%-8%:ds@5").size(), 1u);
  // Real numbers, other bands, other hands of them, and Omaha text as it is without weights.
  for (const char* text : {"15.0%,16%-50%", "15%,16.0%-50%", "15%,17%-50%", "15%!AA,16%-50%",
                           "15%,AA,16%-50%", "15%,16%", "15%-16%,16%-50%"}) {
    EXPECT_EQ(Read(kHoldem, text).warnings.size(), 0u) << text;
  }
  EXPECT_LT(Read(kHoldem, "15%,16.0%-50%").range.size(), Read(kHoldem, "50%").range.size());
  EXPECT_EQ(same(kOmaha, "5%@10,6%-8%@10", "[10]5%,6.0%-8%[/10]").size(), 0u);
  EXPECT_EQ(Read(kOmaha, "5%,6%-8%").range,
            HandRange(kOmaha, ParseOmahaRange<4>("5%,6%-8%").range));
}

TEST(ReadRange, AnErrorSaysWhereWhatAndWhy) {
  struct Case {
    Game game;
    const char* text;
    std::size_t position;
    const char* says;
  };
  const Case cases[] = {
      {kHoldem, "AA,KX:1.5", 6, "'KX:1.5' at position 7: expected a weight up to 1"},
      {kHoldem, "AA:1.00005", 3, "a weight up to 1"},
      {kHoldem, "AA:99999999999999999999", 3, "a weight up to 1"},
      {kHoldem, "AA@100.01", 3, "a weight up to 100"},
      {kHoldem, "AA:0.00004", 3, "a weight of 0.0001 or more, or 0"},
      {kHoldem, "AA@0.004", 3, "a weight of 0.01 or more, or 0"},
      {kHoldem, "AA:", 3, "a weight, like 0.5"},
      {kHoldem, "AA@-5", 3, "a weight in percent"},
      {kHoldem, "AA:.", 3, "a weight, like 0.5"},
      {kHoldem, "AA:1e-3", 3, "a weight, like 0.5"},
      {kHoldem, "AA:0,5", 6, "'5' at position 7"},
      {kHoldem, "AhKd:0.5:0.5", 5, "a weight, like 0.5"},
      {kHoldem, ":0.5", 0, "a class (AA"},
      {kHoldem, "!AA:0.5", 3, "no weight behind hands that are taken off"},
      {kHoldem, "[50]AA,KK:0.5[/50]", 9, "no weight of its own within [50]"},
      {kHoldem, "QQ,[50]AA", 7, "'[50]' at position 8: expected [/50] behind this"},
      {kHoldem, "AA[/50]", 2, "a beginning in front of an end"},
      {kHoldem, "[50]AA[/25]", 6, "'[/25]' at position 7: expected [/50]"},
      {kHoldem, "[50]AA,[25]KK[/25][/50]", 7, "a class (AA"},
      {kHoldem, "[]AA[/]", 1, "a weight in percent"},
      {kHoldem, "[101]AA[/101]", 1, "a weight up to 100"},
      {kHoldem, "[50,AA", 3, "] behind a weight"},
      {kHoldem, "AA!", 3, "a class (AA"},
      {kHoldem, "15%!!AA", 4, "a class (AA"},
      {kHoldem, "AA!AhAh", 3, "Ah is given twice"},
      {kHoldem, "15%%", 3, "an exclusion (!AA) or the end"},
      {kHoldem, "20%-10%", 4, "a larger percentage"},
      {kHoldem, "10%-10.01%", 0, "a band that is wide enough"},
      {kHoldem, "Ax+", 2, "s, o or the end"},
      {kHoldem, "A*q5", 3, "a suit or the end"},
      {kHoldem, "x", 1, "a rank (23456789TJQKA) or x"},
      {kHoldem, "AKx", 2, "s, o or the end"},
      {kHoldem, "AhXs+", 4, "a suit or the end"},
      {kHoldem, "T9s-64s", 4, "the same high card or the same gap"},
      {kHoldem, "T9s-65o", 4, "the same high card or the same gap"},
      {kHoldem, "JJ-T9s", 3, "another pair"},
      {kHoldem, "randomly", 0, "'randomly'"},
      {kShort, "AA,65s", 3, "6 to A"},
      {kShort, "T9s-54s", 4, "6 to A"},
      {kShort, "5*", 0, "6 to A"},
      {kShort, "random!AhXx!5h6h", 12, "6 to A"},
      {kOmaha, "AAxx:0.5", 5, "ds, ss, r, 3, 4; a weight is written behind @"},
      {kOmaha, "AAxx@50:ds", 5, "a weight in percent"},
      {kOmaha, "AAxx,!KKxx@50", 10, "no weight behind hands that are taken off"},
      {kOmaha, "[50]AAxx,KKxx", 2, "ranks like [T-A]"},
      {kOmaha, "[25]AAxx,KKxx[/50]", 7, "no more than four cards"},
      {kOmaha, "KKxx,[25]AAxx,[25]QQxx[/25]", 21, "no more than four cards"},
      {kOmaha, "[50]AAxx,KKxx@5[/50]", 13, "no weight of its own within [50]"},
      {kOmaha5, "AAxxx@50,AAxx", 13, "five cards, with x for any card"},
  };
  for (const auto& [game, text, position, says] : cases) {
    const Result<RangeReading> read = ReadRange(game, text);
    ASSERT_FALSE(read) << text;
    const Error& error = read.error();
    EXPECT_EQ(error.code, ErrorCode::kText);
    EXPECT_EQ(error.position, position) << text << ": " << error.text;
    EXPECT_NE(error.text.find(says), std::string::npos) << text << ": " << error.text;
    EXPECT_NE(error.text.find("expected"), std::string::npos) << text << ": " << error.text;
  }
}

TEST(ReadRangeSlow, AHostileTextEndsWithAnError) {
  std::string text;
  for (int i = 0; i < 20'000; ++i) text += i % 2 == 0 ? "random@50," : "[3-A]xxxx@25 ";
  const Result<RangeReading> read = ReadRange(kOmaha5, text);
  ASSERT_FALSE(read);
  EXPECT_NE(read.error().text.find("less work"), std::string::npos);
}

TEST(WeightedText, GroupsWhatHasOneWeight) {
  const auto written = [](Game game, const char* text) {
    return RangeText(Read(game, text).range);
  };
  // As it is written again.
  for (const char* text :
       {"", "random", "TT+:0.5,AKs,AhKd:0.25", "KK+,QQ:0.5,JJ-99,AKs:0.3333,AQs-ATs,A9s-A2s:0.0001",
        "AA,A2s+:0.25,ATo+:0.25,A9o,A8o-A2o:0.1", "AdAc,AhAc,AhAd:0.5,AsAd"}) {
    EXPECT_EQ(written(kHoldem, text), text);
  }
  EXPECT_EQ(written(kHoldem, "AK@12.34"), "AKs:0.1234,AKo:0.1234");
  EXPECT_EQ(written(kShort, "A*:0.5,66"), "AA:0.5,66,A6s+:0.5,A6o+:0.5");
  EXPECT_EQ(
      RangeText(HandRange(kShort, {{{51}}, {{0, 1}}, {{49, 50, 51}}, {{50, 51}, 0}, {{4, 5}}})),
      "7c6c")
      << "what the game has";
  EXPECT_EQ(RangeText(HandRange(kOmaha, {{{0, 1, 2, 3, 4}, 5000}, {{0, 1, 2, 3}, 5000}})),
            "5c4c3c2c@50");
  EXPECT_EQ(RangeText(HandRange::Every(kShort).Without({51, 4})), "random!6cXx!AsXx");
  for (const char* text :
       {"", "random", "random@50", "AAxx@12.34", "AAxx:ds,KKxx@50", "10%,10%-20%@50,20%-30%@0.01",
        "AAxx,[50.0]KKxx,QQxx,!Axxx[/50.0]", "5%@50,6.0%-10%@25", "[50.0]KKKx,5%,!Kxxx[/50.0]"}) {
    const HandRange range = Read(kOmaha, text).range;
    EXPECT_EQ(Read(kOmaha, RangeText(range)).range, range) << text;
  }
  EXPECT_EQ(written(kOmaha, "KKxx,AAxx:ds@50"), "KKxx!AAxx:ds,AAxx:ds@50");
  EXPECT_EQ(written(kOmaha, "5%@50,6.0%-10%@25"), "5%@50,6.0%-10%@25");
}

// Weights of whole classes and of some of their holdings.
HandRange RandomTwoCards(Game game, std::mt19937& random) {
  const auto weight = [&, palette = 1 + random() % 4] {
    constexpr std::array kSome = {10'000, 5000, 2500, 1};
    return random() % 20 == 0 ? 1 + static_cast<int>(random() % 10'000) : kSome[random() % palette];
  };
  const auto density = random() % 100, split = random() % 2 * (random() % 20);
  std::map<std::array<int, 3>, int> classes;  // high, low, suited
  std::vector<WeightedHand> hands;
  const HandRange every = HandRange::Every(game);
  for (const WeightedHand& hand : every.hands()) {
    const int low = *hand.cards.begin(), high = *++hand.cards.begin();
    const auto ranks = std::minmax({low % 13, high % 13});
    const auto [place, is_new] =
        classes.try_emplace({ranks.second, ranks.first, low / 13 == high / 13}, 0);
    if (is_new && random() % 100 < density) place->second = weight();
    const int own =
        random() % 100 < split ? weight() * static_cast<int>(random() % 2) : place->second;
    if (own != 0) hands.push_back({hand.cards, own});
  }
  return HandRange(game, std::move(hands));
}

TEST(WeightedText, EveryWrittenRangeOfTwoCardsReadsBack) {
  std::mt19937 random(7);
  for (int trial = 0; trial < 2'000; ++trial) {
    HandRange range = RandomTwoCards(trial % 3 == 0 ? kShort : kHoldem, random);
    if (trial % 100 == 0) {
      range = HandRange::Every(range.game()).Without({static_cast<int>(4 + random() % 9), 51});
    }
    const std::string text = RangeText(range);
    const Result<RangeReading> read = ReadRange(range.game(), text);
    ASSERT_TRUE(read) << trial << ": " << read.error().text;
    ASSERT_EQ(read->range, range) << trial << ": " << text;
    ASSERT_EQ(read->warnings.size(), 0u) << text;
  }
}

// Lists of pieces, their hands with weights of their own, and more weights than have patterns.
TEST(WeightedTextSlow, EveryWrittenRangeOfOmahaReadsBack) {
  std::mt19937 random(8);
  for (int trial = 0; trial < 24; ++trial) {
    const Game game = trial % 12 == 5 ? kOmaha5 : kOmaha;
    const std::string x = game == kOmaha5 ? "x" : "";
    const std::vector<std::string> pieces = {
        "AAxx" + x,       "KKxx" + x + ":ds", "[25]AA" + x + "x",         "5%",
        "6.0%-10%",       "10%!KKxx" + x,     "AsKsxx" + x + "!AAxx" + x, "JT98" + x,
        "!Ahxx" + x + "x"};
    std::string text;
    for (auto left = 1 + random() % 6; left > 0; --left) {
      const std::string& piece = pieces[random() % pieces.size()];
      text += "," + piece;
      if (piece[0] != '!') text += "@" + std::to_string(random() % 5 * 25);
    }
    const HandRange listed = Read(game, text).range;
    std::vector<WeightedHand> hands(listed.hands().begin(), listed.hands().end());
    for (WeightedHand& hand : hands) {
      const auto odds = trial % 4 == 0 ? 2U : 1000U;
      if (trial % 2 == 0 && random() % odds == 0) {
        hand.weight = 1 + static_cast<int>(random() % (trial % 4 == 0 ? 10'000 : 20));
      }
    }
    const HandRange range(game, std::move(hands));
    const std::string written = RangeText(range);
    const Result<RangeReading> read = ReadRange(game, written);
    ASSERT_TRUE(read) << text << ": " << read.error().text;
    ASSERT_EQ(read->range, range) << text << ": " << written.substr(0, 300);
    ASSERT_EQ(read->warnings.size(), 0u) << text << ": " << written.substr(0, 300);
  }
}

}  // namespace
}  // namespace pokermath
