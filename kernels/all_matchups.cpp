#include "kernels/all_matchups.h"

#include <algorithm>
#include <array>

#include "kernels/matchup.h"

namespace pokermath {
namespace {

// All 24 ways to rename the suits.
std::vector<std::array<int, 4>> SuitOrders() {
  std::array<int, 4> order = {0, 1, 2, 3};
  std::vector<std::array<int, 4>> orders;
  do {
    orders.push_back(order);
  } while (std::ranges::next_permutation(order).found);
  return orders;
}

// Place of a hand in the order (0,1), (0,2) .. (50,51).
std::size_t IndexOf(int card1, int card2) {
  const auto [low, high] = std::minmax({card1, card2});
  return static_cast<std::size_t>(low * (103 - low) / 2 + high - low - 1);
}

}  // namespace

int MatchupValues::Get(int a, int b, int c, int d) {
  const std::size_t asked = IndexOf(a, b) * kHands + IndexOf(c, d);
  if (values_[asked] >= 0) return values_[asked];

  static const std::vector<std::array<int, 4>> orders = SuitOrders();
  const int hand1[2] = {a, b};
  const int hand2[2] = {c, d};
  const Tally tally = CountMatchup(BestIsa(), deck_, hand1, hand2, street_);
  const auto value = static_cast<std::int32_t>(2 * tally.wins + tally.ties);
  const auto mirrored = static_cast<std::int32_t>(2 * tally.cases) - value;
  for (const std::array<int, 4>& order : orders) {
    const auto renamed = [&order](int card) {
      return order[static_cast<std::size_t>(card / 13)] * 13 + card % 13;
    };
    const std::size_t index1 = IndexOf(renamed(a), renamed(b));
    const std::size_t index2 = IndexOf(renamed(c), renamed(d));
    values_[index1 * kHands + index2] = value;
    values_[index2 * kHands + index1] = mirrored;
  }
  return value;
}

}  // namespace pokermath
