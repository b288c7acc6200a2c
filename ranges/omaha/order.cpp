// Omaha hands by percentages. The built-in order is unpacked once, and with it how many hands come
// no later than those of each class. A range is then a walk through the order.

#include "ranges/omaha/order.h"

#include <algorithm>
#include <bit>

#include "cards/omaha_sizes.h"

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
requires(HasOmahaOrder(cards)) double PercentileOf(std::span<const int> hand) {
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
  // Four bytes at a time hold any number; the last four are there for the last ones.
  std::size_t bit = 0;
  for (std::uint32_t& number : order) {
    const std::size_t byte = std::min(bit / 8, packed.size() - 4);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i) bits |= std::uint32_t{packed[byte + i]} << 8 * i;
    number = bits >> (bit - 8 * byte) & ((1u << width) - 1);
    bit += static_cast<std::size_t>(width);
  }
  return order;
}

template <int cards>
requires(HasOmahaOrder(cards)) const OmahaStrengths& StrengthsOf() {
  static const OmahaStrengths strengths = UnpackStrengths(cards);
  return strengths;
}

template <int cards>
requires(HasOmahaOrder(cards)) void AddBand(const PercentBand& band, Splits splits,
                                            OmahaSpec<cards>& range) {
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
void OmahaSpec<cards>::AddPercent(double from, double to) requires(HasOmahaOrder(cards)) {
  AddBand({from, to}, kAllSplits<cards>, *this);
}

#define POKERMATH_ORDER(cards)                                          \
  template const OmahaStrengths& StrengthsOf<cards>();                  \
  template void AddBand(const PercentBand&, Splits, OmahaSpec<cards>&); \
  template void OmahaSpec<cards>::AddPercent(double, double);
POKERMATH_OMAHA_ORDERS(POKERMATH_ORDER)

std::string NoOmahaOrder(int hand_size) {
  return "omaha" + std::to_string(hand_size) + " has no order of strength yet";
}

Result<double> OmahaPercentile(std::span<const int> hand) {
  const auto size = static_cast<int>(hand.size());
  if (!IsOmahaHandSize(size)) {
    return Error{ErrorCode::kHand, "a hand of " + std::to_string(size) + " cards: no Omaha hand"};
  }
  return ForOmahaSize(size, [hand](auto cards) -> Result<double> {
    if constexpr (HasOmahaOrder(cards)) {
      return PercentileOf<cards>(hand);
    } else {
      return Error{ErrorCode::kHand, NoOmahaOrder(cards)};
    }
  });
}

}  // namespace pokermath
