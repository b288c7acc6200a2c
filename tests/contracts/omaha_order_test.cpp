// The built-in order of Omaha hands against exact equities that are counted one by one.

#include <gtest/gtest.h>

#include <vector>

#include "pokermath/equity.h"
#include "ranges/omaha/classes.h"
#include "ranges/omaha/order.h"

namespace pokermath {
namespace {

// Counts pairs of neighbours, from all over the order.
void ExpectNoneIsStronger(int hand_size, std::size_t pairs) {
  const std::vector<OmahaClass> classes = OmahaClasses(hand_size);
  const auto order = UnpackOmahaOrder(hand_size, BuiltInOmahaOrder(hand_size));
  std::int64_t last = INT64_MAX;
  for (std::size_t i = 0; i < pairs; ++i) {
    for (const std::size_t place : {std::size_t{0}, std::size_t{1}}) {
      const std::size_t at = i * (order.size() - 2) / (pairs - 1) + place;
      const OmahaClass& hands = classes[order[at]];
      const Tally tally = OmahaHandVsRandom(CardsOf(hands));
      const std::int64_t value = 2 * tally.wins + tally.ties;
      EXPECT_LE(value, last) << "place " << at;
      EXPECT_TRUE(value < last || order[at - 1] < order[at]) << "place " << at;
      last = value;
    }
  }
}

TEST(OmahaOrderSlow, EquitiesOfFourCardsFall) { ExpectNoneIsStronger(4, 10); }
TEST(OmahaOrderSlow, EquitiesOfFiveCardsFall) { ExpectNoneIsStronger(5, 6); }

}  // namespace
}  // namespace pokermath
