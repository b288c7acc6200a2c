// Sets of Omaha hands against std::set.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>

#include "pokermath/omaha_ranges.h"

namespace pokermath {
namespace {

template <int cards>
typename OmahaSpec<cards>::Hand RandomHand(std::mt19937& random) {
  typename OmahaSpec<cards>::Hand hand;
  std::set<int> held;
  // The ends of the deck often, where rows of bits end.
  const auto card = [&] {
    return static_cast<int>(random() % 2 == 0 ? random() % 52
                                              : (random() % 8 < 4 ? 0 : 48) + random() % 4);
  };
  while (held.size() < cards) held.insert(card());
  std::ranges::copy(held, hand.begin());
  std::ranges::shuffle(hand, random);
  return hand;
}

template <int cards>
void CompareWithStdSet() {
  std::mt19937 random(3);
  OmahaSpec<cards> range;
  std::set<std::set<int>> plain;
  for (int i = 0; i < 20'000; ++i) {
    const auto hand = RandomHand<cards>(random);
    const std::set<int> held(hand.begin(), hand.end());
    ASSERT_EQ(range.Contains(hand), plain.contains(held));
    if (random() % 3 == 0) {
      range.Erase(hand);
      plain.erase(held);
    } else {
      range.Insert(hand);
      plain.insert(held);
    }
  }
  ASSERT_EQ(range.Combinations(), plain);
  ASSERT_EQ(range.Count(), static_cast<int>(plain.size()));

  OmahaSpec<cards> live;
  auto first = RandomHand<cards>(random);
  live.Insert(first);  // stays, dead or not
  range.Exclude({51, 0, 17, 50, 17}, live);
  std::erase_if(plain, [](const std::set<int>& held) {
    return held.contains(51) || held.contains(0) || held.contains(17) || held.contains(50);
  });
  plain.emplace(first.begin(), first.end());
  EXPECT_EQ(live.Combinations(), plain);

  OmahaSpec<cards> all, none;
  all.MakeRandom();
  EXPECT_EQ(all.Count(), OmahaSpec<cards>::kAllHands);
  all.Exclude({}, none);
  EXPECT_EQ(all, none);
  none.Subtract(all);
  EXPECT_TRUE(none.Empty());
}

TEST(OmahaSpec, IsASetOfHands) {
  CompareWithStdSet<4>();
  CompareWithStdSet<5>();
  CompareWithStdSet<6>();
}

}  // namespace
}  // namespace pokermath
