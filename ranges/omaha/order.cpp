// Omaha hands by percentages. The built-in order is unpacked once, and with it how many hands come
// no later than those of each class. A range is then a walk through the order.

#include "ranges/omaha/order.h"

#include <algorithm>
#include <bit>

namespace pokermath {
namespace {

int BitsOfNumber(int hand_size) {
  return static_cast<int>(std::bit_width(static_cast<unsigned>(OmahaClassCount(hand_size) - 1)));
}

OmahaStrengths UnpackStrengths(int hand_size) {
  OmahaStrengths strengths = {
      OmahaClasses(hand_size), UnpackOmahaOrder(hand_size, BuiltInOmahaOrder(hand_size)), {}};
  strengths.within.resize(strengths.classes.size());
  int hands = 0;
  for (const std::uint32_t number : strengths.order) {
    hands += HandsOf(strengths.classes[number]);
    strengths.within[number] = hands;
  }
  return strengths;
}

template <int cards>
double PercentileOf(std::span<const int> hand) {
  const auto& [classes, order, within] = StrengthsOf<cards>();
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
const OmahaStrengths& StrengthsOf() {
  static const OmahaStrengths strengths = UnpackStrengths(cards);
  return strengths;
}

template <int cards>
void AddBand(const PercentBand& band, Splits splits, OmahaSpec<cards>& range) {
  const OmahaStrengths& strengths = StrengthsOf<cards>();
  const int strongest = strengths.within[strengths.order[0]];
  const auto is_within = [strongest](int hands, double percent) {
    if (hands == strongest) return percent > 0;
    return 100.0 * hands / OmahaSpec<cards>::kAllHands <= percent;
  };
  for (const std::uint32_t number : strengths.order) {
    if (!is_within(strengths.within[number], band.to)) break;
    if (is_within(strengths.within[number], band.from)) continue;
    const OmahaClass& hands = strengths.classes[number];
    if (splits != kAllSplits<cards> && (splits >> SplitOfClass<cards>(hands) & 1) == 0) continue;
    ForEachHandOf<cards>(hands, [&range](const auto& hand) { range.Insert(hand); });
  }
}

template <int cards>
void OmahaSpec<cards>::AddPercent(double from, double to) {
  AddBand({from, to}, kAllSplits<cards>, *this);
}

template const OmahaStrengths& StrengthsOf<4>();
template const OmahaStrengths& StrengthsOf<5>();
template void AddBand(const PercentBand&, Splits, OmahaSpec<4>&);
template void AddBand(const PercentBand&, Splits, OmahaSpec<5>&);
template void OmahaSpec<4>::AddPercent(double, double);
template void OmahaSpec<5>::AddPercent(double, double);

double OmahaPercentile(std::span<const int> hand) {
  return hand.size() == 4 ? PercentileOf<4>(hand) : PercentileOf<5>(hand);
}

}  // namespace pokermath
