// Ranges by percentage: the tables, look-ups, Sklansky groups, a user's points.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "pokermath/ranges.h"

namespace pokermath {
namespace {

struct Row {
  std::size_t holdings;
  CString text;
  bool operator==(const Row&) const = default;
};

Row At(const CStatSpectr& tables, double percent, int table = 0) {
  Spec range;
  CString text;
  tables.GetSpecByPercent(percent, range, text, table);
  return {range.combinations().size(), text};
}

Spec Read(const CString& text, RangeOptions options) {
  const RangeResult read = ParseRange(std::string(text.begin(), text.end()), options);
  EXPECT_EQ(read.error, "");
  return read.range;
}

Spec WithinPercent(double percent, RangeOptions options) {
  return Read(std::to_wstring(percent) + L"%", options);
}

TEST(Equilibrium, HoldemRowsAreThoseThatHostsKnow) {
  CStatSpectr tables;
  Spec range;
  CString text = L"as it was";
  tables.GetSpecByPercent(10, range, text, 0);
  EXPECT_EQ(text, L"as it was") << "an empty table";
  tables.InitEquil();
  EXPECT_EQ(At(tables, 0).text, L"AA");
  EXPECT_EQ(At(tables, 0.45).text, L"AA");
  EXPECT_EQ(At(tables, 0.9).text, L"KK+");
  EXPECT_EQ(At(tables, 2.6).text, L"TT+,AKs");
  EXPECT_EQ(At(tables, 4.2).text, L"99+,AQs+,AKo");
  EXPECT_EQ(At(tables, 4.49).text, L"99+,AQs+,AKo");
  EXPECT_EQ(At(tables, 4.5).text, L"99+,AJs+,AKo");
  EXPECT_EQ(At(tables, 9.2).text, L"88+,ATs+,KTs+,QJs,AJo+,KQo");
  const CString before = L"55+,A2s+,K3s+,Q6s+,J7s+,T7s+,97s+,A4o+,K8o+,Q9o+,J9o+,T9o";
  const CString with_87s = L"55+,A2s+,K3s+,Q6s+,J7s+,T7s+,97s+,87s,A4o+,K8o+,Q9o+,J9o+,T9o";
  EXPECT_EQ(At(tables, 34.7).text, before);
  EXPECT_EQ(At(tables, 34.9).text, with_87s) << "paired with its range by place";
  EXPECT_EQ(At(tables, 34.95), (Row{At(tables, 34.7).holdings + 4, with_87s}));
  const Row all = At(tables, 150);
  EXPECT_EQ(all.holdings, 1326u);
  EXPECT_TRUE(all.text.starts_with(L"22+,A2s+,K2s+,") && all.text.ends_with(L",42o+,32o"));
}

// Every row in steps of a hundredth of a percent: each range is as wide as its key says, is what
// range text means by it, and its text reads back to it.
TEST(Equilibrium, EveryTextIsItsRange) {
  CStatSpectr tables;
  tables.InitEquil();
  std::size_t last = 0;
  int rows = 0;
  for (int key = 45; key <= 10'000; ++key) {
    Spec range;
    CString text;
    tables.GetSpecByPercent(key / 100.0, range, text, 0);
    const std::size_t size = range.combinations().size();
    if (size == last) continue;
    last = size;
    ++rows;
    EXPECT_NEAR(static_cast<double>(size) / 13.26, key / 100.0, 0.1);
    EXPECT_EQ(Read(text, {}).combinations(), range.combinations()) << key;
    EXPECT_EQ(WithinPercent(key / 100.0, {}).combinations(), range.combinations()) << key;
  }
  EXPECT_EQ(rows, 169);
  EXPECT_EQ(WithinPercent(0.01, {}).combinations(), WithinPercent(0.89, {}).combinations());
}

TEST(Equilibrium, ShortDeckReplacesHoldemAndKeepsItsOddities) {
  CStatSpectr tables;
  tables.InitEquil();
  tables.InitEquil6Plus();
  EXPECT_EQ(At(tables, 0.95), (Row{6, L"AA"}));
  EXPECT_EQ(At(tables, 1.91).text, L"KK+");
  EXPECT_EQ(At(tables, 4.77).text, L"TT+");
  EXPECT_EQ(At(tables, 5.4).text, L"TT+,AKs");
  EXPECT_EQ(At(tables, 8.89).holdings, 56u);
  EXPECT_EQ(At(tables, 33.34).holdings, 210u);
  // The range that adds 87s is filed at 34.9, so texts run one row ahead up to 66.34.
  EXPECT_EQ(At(tables, 34.9).holdings, 406u);
  EXPECT_EQ(At(tables, 35.88).holdings, 226u);
  const auto text_says = [&](double percent) {
    return Read(At(tables, percent).text, {.short_deck = true}).combinations().size();
  };
  EXPECT_EQ(text_says(33.34), 210u);
  EXPECT_EQ(text_says(34.9), 226u);
  EXPECT_GT(text_says(35.88), 226u);
  EXPECT_EQ(text_says(64.44), 406u);
  EXPECT_EQ(text_says(66.34), text_says(64.44));
  EXPECT_EQ(text_says(66.35), At(tables, 66.35).holdings);
  EXPECT_EQ(At(tables, 100), (Row{630,
                                  L"66+,A6s+,K6s+,Q6s+,J6s+,T6s+,96s+,87s+,76s,"
                                  L"A6o+,K6o+,Q6o+,J6o+,T6o+,96o+,86o+,76o"}));
  EXPECT_NE(At(tables, 92.39).text.find(L",87s+,"), CString::npos);
  EXPECT_EQ(At(tables, 92.38).text.find(L"87s+"), CString::npos);
  // 47.94 is the text of the row of 302 holdings; its range is one row before.
  bool seen = false;
  for (int key = 4000; key < 5000; ++key) {
    seen =
        seen || At(tables, key / 100.0).text == L"66+,A2s+,K6s+,Q8s+,J8s+,T9s,A8o+,K9o+,QTo+,JTo";
  }
  EXPECT_TRUE(seen);
}

TEST(Corvelle, StepsAndTextsAgree) {
  CStatSpectr tables;
  tables.InitCorvelle();
  for (const double key :
       {0.3, 0.9, 3.0, 3.8, 4.7, 5.9, 7.1, 8.4, 10.0, 12.2, 14.3, 16.0, 20.1, 23.4, 30.0}) {
    Spec range;
    CString text;
    tables.GetSpecByPercent(key, range, text, 1);
    EXPECT_EQ(Read(text, {}).combinations(), range.combinations()) << key;
    EXPECT_EQ(WithinPercent(key + 0.01, {.percent_table = PercentTable::kCorvelle}).combinations(),
              range.combinations())
        << key;
  }
  EXPECT_EQ(At(tables, 7.2, 1).text, L"88+,AJ+,KQs");
  EXPECT_EQ(At(tables, 99, 1).holdings, At(tables, 40, 1).holdings);
  tables.Init();
  ASSERT_EQ(tables.base().size(), 15u);
  EXPECT_EQ(tables.base().at(0.9).combinations().size(), 12u);
  // The same steps but for the first one, and no 42s.
  EXPECT_EQ(tables.base().at(40.0).combinations().size() + 4, At(tables, 40, 1).holdings);
}

TEST(Sklansky, GroupsAndPercentages) {
  const auto group = [](const wchar_t* hand) {
    const CCard first(hand[0], hand[1]);
    const CCard second(hand[2], hand[3]);
    EXPECT_EQ(SklanskyGroup(first, second), SklanskyGroup(second, first));
    return SklanskyGroup(first, second);
  };
  EXPECT_EQ(group(L"AhAd"), 1);
  EXPECT_EQ(group(L"AhKh"), 1);
  EXPECT_EQ(group(L"AhKd"), 2);
  EXPECT_EQ(group(L"6h5h"), 5);
  EXPECT_EQ(group(L"Ah2h"), 5);
  EXPECT_EQ(group(L"Kh2h"), 7);
  EXPECT_EQ(group(L"5h4d"), 8);
  EXPECT_EQ(group(L"7h2d"), 0);
  const CStatSpectr tables;
  const auto in = [&tables](const wchar_t* hand, double percent) {
    return tables.numSklanskyGroup(CCard(hand[0], hand[1]), CCard(hand[2], hand[3]), percent);
  };
  EXPECT_EQ(in(L"KhKd", 0.5), 0);
  EXPECT_EQ(in(L"KhKd", 2.0), 1);
  EXPECT_EQ(in(L"AhAd", 0.5), 1);
  EXPECT_EQ(in(L"QhQd", 3.0), 0);
  EXPECT_EQ(in(L"QhQd", 3.1), 1);
  EXPECT_EQ(in(L"7h2d", 100), 0);
  EXPECT_EQ(in(L"Ah9d", 30.1), 0);
  EXPECT_EQ(in(L"Ah9d", 30.2), 1);
  EXPECT_EQ(in(L"AhKd", 4.71), 0);
  EXPECT_EQ(in(L"AhKd", 4.72), 1);
}

TEST(UserFolder, IsCompletedClassByClass) {
  for (const bool short_deck : {false, true}) {
    CUserFolder folder;
    const auto add = [&](double percent, const wchar_t* text) {
      folder.specs[percent] = Read(text, {});
      folder.texts[percent] = text;
    };
    add(0.5, L"AA");
    add(5.0, L"99+,AK");
    if (short_deck) {
      folder.MakeInterpolation6Plus();
    } else {
      folder.MakeInterpolation();
    }
    // KK QQ JJ TT 99 AKs AKo in the order of strength, then everything else.
    ASSERT_EQ(folder.specs.size(), folder.texts.size());
    EXPECT_EQ(folder.specs.size(), short_deck ? 2u + 80 : 2u + 168);
    EXPECT_EQ(folder.texts.at(0.5), L"AA");
    Spec range;
    CString text;
    folder.GetSpecByPercent(12 / (short_deck ? 6.3 : 13.26), range, text);
    EXPECT_EQ(text, L"KK+");
    folder.GetSpecByPercent(100, range, text);
    EXPECT_EQ(range.combinations().size(), short_deck ? 630u : 1326u);
  }
  // Ranges that are not nested must not keep it going for ever.
  CUserFolder odd;
  odd.specs[1.0] = Spec();
  odd.specs[2.0].AddCard(0, 13);
  odd.specs[2.0].AddCard(0, 26);
  odd.texts = {{1.0, L""}, {2.0, L"22"}};
  odd.MakeInterpolation();
  EXPECT_GT(odd.specs.size(), 100u);
}

TEST(Strategy, RangesAreFixed) {
  StrategyRanges strategy;
  strategy.MakeSrategyRanges();
  EXPECT_EQ(strategy.first.MakeString(),
            L"22+,A2s+,KTs+,QTs+,JTs,T9s,98s,87s,76s,A7+,KT+,QT+,JT,T9");
  EXPECT_EQ(strategy.second.MakeString(), L"22+,A7s+,KTs+,QTs+,AT+,KJ+,QJ");
}

}  // namespace
}  // namespace pokermath
