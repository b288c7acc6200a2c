// Omaha hands by percentages. The built-in order is unpacked once; what is kept is how many hands
// come no later than those of each class. A range is then a walk through the classes, whatever
// their order.

#include "ranges/omaha/order.h"

#include <algorithm>
#include <bit>
#include <functional>

#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/classes.h"

namespace pokermath {
namespace {

int BitsOfNumber(int hand_size) {
  return static_cast<int>(std::bit_width(static_cast<unsigned>(OmahaClassCount(hand_size) - 1)));
}

struct Strengths {
  std::vector<OmahaClass> classes;  // in the order of their numbers
  std::vector<int> within;          // hands of this class and of stronger ones
  int strongest = 0;                // hands of the strongest class
};

Strengths UnpackStrengths(int hand_size) {
  Strengths strengths = {OmahaClasses(hand_size), {}};
  strengths.within.resize(strengths.classes.size());
  int hands = 0;
  for (const std::uint32_t number : UnpackOmahaOrder(hand_size, BuiltInOmahaOrder(hand_size))) {
    hands += HandsOf(strengths.classes[number]);
    strengths.within[number] = hands;
  }
  strengths.strongest = std::ranges::min(strengths.within);
  return strengths;
}

template <int cards>
const Strengths& StrengthsOf() {
  static const Strengths strengths = UnpackStrengths(cards);
  return strengths;
}

template <int cards>
double PercentileOf(std::span<const int> hand) {
  const auto& [classes, within, strongest] = StrengthsOf<cards>();
  const auto place = std::ranges::lower_bound(classes, OmahaClassOf(hand), ComesBefore);
  return 100.0 * within[static_cast<std::size_t>(place - classes.begin())] /
         OmahaSpec<cards>::kAllHands;
}

}  // namespace

std::size_t PackedOmahaOrderSize(int hand_size) {
  return static_cast<std::size_t>((OmahaClassCount(hand_size) * BitsOfNumber(hand_size) + 7) / 8);
}

std::vector<std::uint8_t> PackOmahaOrder(int hand_size, std::span<const std::uint32_t> order) {
  std::vector<std::uint8_t> packed;
  std::uint32_t bits = 0;
  int count = 0;
  for (const std::uint32_t number : order) {
    bits |= number << count;
    for (count += BitsOfNumber(hand_size); count >= 8; count -= 8) {
      packed.push_back(static_cast<std::uint8_t>(bits));
      bits >>= 8;
    }
  }
  if (count > 0) packed.push_back(static_cast<std::uint8_t>(bits));
  return packed;
}

std::vector<std::uint32_t> UnpackOmahaOrder(int hand_size, std::span<const std::uint8_t> packed) {
  const int width = BitsOfNumber(hand_size);
  std::vector<std::uint32_t> order(static_cast<std::size_t>(OmahaClassCount(hand_size)));
  std::uint32_t bits = 0;
  int count = 0;
  auto next = packed.begin();
  for (std::uint32_t& number : order) {
    for (; count < width; count += 8) bits |= static_cast<std::uint32_t>(*next++) << count;
    number = bits & ((1u << width) - 1);
    bits >>= width;
    count -= width;
  }
  return order;
}

template <int cards>
void OmahaSpec<cards>::AddPercent(double from, double to) {
  const Strengths& strengths = StrengthsOf<cards>();
  const auto is_within = [&strengths](int hands, double percent) {
    if (hands == strengths.strongest) return percent > 0;
    return 100.0 * hands / kAllHands <= percent;
  };
  for (std::size_t i = 0; i < strengths.classes.size(); ++i) {
    if (!is_within(strengths.within[i], to) || is_within(strengths.within[i], from)) continue;
    ForEachHandOf<cards>(strengths.classes[i], [this](const Hand& hand) { Insert(hand); });
  }
}

template void OmahaSpec<4>::AddPercent(double, double);
template void OmahaSpec<5>::AddPercent(double, double);

double OmahaPercentile(std::span<const int> hand) {
  return hand.size() == 4 ? PercentileOf<4>(hand) : PercentileOf<5>(hand);
}

}  // namespace pokermath
