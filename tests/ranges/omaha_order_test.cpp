// Omaha hands by percentages: the classes, the built-in order, ranges and percentiles from it.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/classes.h"
#include "ranges/omaha/order.h"

namespace pokermath {
namespace {

using Classes = std::vector<OmahaClass>;

template <int cards>
std::size_t NumberOf(const Classes& classes, const typename OmahaSpec<cards>::Hand& hand) {
  const auto place = std::ranges::lower_bound(classes, OmahaClassOf(hand), ComesBefore);
  return static_cast<std::size_t>(place - classes.begin());
}

template <int cards>
OmahaSpec<cards> AllHands() {
  OmahaSpec<cards> all;
  all.MakeRandom();
  return all;
}

template <int cards>
OmahaSpec<cards> Within(double from, double to) {
  OmahaSpec<cards> range;
  range.AddPercent(from, to);
  return range;
}

template <typename Size>
class OmahaOrderOf : public testing::Test {};
using Sizes = testing::Types<std::integral_constant<int, 4>, std::integral_constant<int, 5>>;
TYPED_TEST_SUITE(OmahaOrderOf, Sizes);

TYPED_TEST(OmahaOrderOf, EveryHandIsInAClassOfTheRightSize) {
  constexpr int kCards = TypeParam::value;
  const Classes classes = OmahaClasses(kCards);
  ASSERT_EQ(classes.size(), kCards == 4 ? 16432u : 134459u);
  EXPECT_EQ(std::ranges::adjacent_find(classes, std::not_fn(ComesBefore)), classes.end());
  std::vector<int> hands(classes.size());
  for (const auto& hand : AllHands<kCards>().Hands()) {
    const std::size_t number = NumberOf<kCards>(classes, hand);
    ASSERT_TRUE(number < classes.size() && classes[number] == OmahaClassOf(hand));
    ++hands[number];
  }
  std::vector<int> sizes;
  std::ranges::transform(classes, std::back_inserter(sizes), HandsOf);
  EXPECT_EQ(hands, sizes);
}

// There are too many hands of six to look at each.
TEST(OmahaOrder, ClassesOfSixCardsAreAllHands) {
  const Classes classes = OmahaClasses(6);
  EXPECT_EQ(classes.size(), static_cast<std::size_t>(OmahaClassCount(6)));
  EXPECT_EQ(std::ranges::adjacent_find(classes, std::not_fn(ComesBefore)), classes.end());
  int hands = 0;
  for (const OmahaClass& one : classes) hands += HandsOf(one);
  for (std::size_t i = 0; i < classes.size(); i += 17) {
    ASSERT_EQ(OmahaClassOf(CardsOf(classes[i])), classes[i]);
  }
  EXPECT_EQ(hands, OmahaSpec<6>::kAllHands);
}

// What has no order is not asked for a percentage, and says so where it is.
template <int cards>
concept HasPercentages = requires(OmahaSpec<cards>& range) {
  range.AddPercent(0, 10);
};
static_assert(HasPercentages<4> && HasPercentages<5> && !HasPercentages<6>);

TEST(OmahaOrder, SixCardsHaveNone) {
  const Result<double> six = OmahaPercentile(std::array{0, 1, 2, 3, 4, 5});
  ASSERT_FALSE(six);
  EXPECT_EQ(six.error().text, "omaha6 has no order of strength yet");
  EXPECT_TRUE(BuiltInOmahaOrder(6).empty());
  EXPECT_FALSE(OmahaPercentile(std::array{0, 1, 2}));
}

TYPED_TEST(OmahaOrderOf, BuiltInOrderHasEveryClassOnce) {
  constexpr int kCards = TypeParam::value;
  const auto packed = BuiltInOmahaOrder(kCards);
  ASSERT_EQ(packed.size(), PackedOmahaOrderSize(kCards));
  std::vector<std::uint32_t> order = UnpackOmahaOrder(kCards, packed);
  EXPECT_TRUE(std::ranges::equal(PackOmahaOrder(kCards, order), packed));
  std::vector<std::uint32_t> numbers(order.size());
  std::iota(numbers.begin(), numbers.end(), 0u);
  std::ranges::sort(order);
  EXPECT_EQ(order, numbers);
}

// Against a walk through the order, class by class.
TYPED_TEST(OmahaOrderOf, PercentagesAreAsManyClassesAsFit) {
  constexpr int kCards = TypeParam::value;
  const Classes classes = OmahaClasses(kCards);
  const auto order = UnpackOmahaOrder(kCards, BuiltInOmahaOrder(kCards));
  for (const double percent : {0.0, 1e-9, 0.004, 0.1, 10.0, 33.3, 99.999, 100.0}) {
    std::vector<bool> expected(classes.size());
    int hands = 0;
    int room = static_cast<int>(percent * OmahaSpec<kCards>::kAllHands / 100);
    for (std::size_t i = 0; i < order.size(); ++i) {
      room -= HandsOf(classes[order[i]]);
      if (room < 0 && (i > 0 || percent == 0)) break;
      expected[order[i]] = true;
      hands += HandsOf(classes[order[i]]);
    }
    const auto range = Within<kCards>(0, percent);
    EXPECT_EQ(range.Count(), hands) << percent;
    int wrong = 0;
    for (std::size_t i = 0; i < classes.size(); ++i) {
      wrong += range.Contains(HandOfSuits<kCards>(classes[i].suits)) != expected[i] ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0) << percent;
    EXPECT_EQ(Within<kCards>(0, range.Percent()), range) << percent;
  }
}

TYPED_TEST(OmahaOrderOf, PercentilesSayWhoComesWithin) {
  constexpr int kCards = TypeParam::value;
  const auto range = Within<kCards>(0, 12.5);
  auto rest = AllHands<kCards>();
  rest.Subtract(range);
  for (const auto& hand : range.Hands()) ASSERT_LE(*OmahaPercentile(hand), 12.5);
  for (const auto& hand : rest.Hands()) ASSERT_GT(*OmahaPercentile(hand), 12.5);

  EXPECT_EQ(Within<kCards>(12.5, 100), rest);
  auto together = Within<kCards>(0, 5);
  together.AddPercent(5, 12.5);
  EXPECT_EQ(together, range);
  EXPECT_TRUE(Within<kCards>(5, 5).Empty());
}

TEST(OmahaOrder, EndsAreTheBestAndTheWorstHand) {
  const auto percentile = [](const char* hand) {
    return *OmahaPercentile(ParseCards(hand).cards) * 270725 / 100;
  };
  EXPECT_DOUBLE_EQ(percentile("TdAcTcAd"), 6);
  EXPECT_DOUBLE_EQ(percentile("2c2d2h2s"), 270725);
  EXPECT_EQ(Within<4>(0, 1e-9).Count(), 6);
  EXPECT_TRUE(Within<4>(0, 1e-9).Contains(std::array{51, 38, 47, 34}));
}

}  // namespace
}  // namespace pokermath
