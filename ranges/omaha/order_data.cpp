// The files of ranges/data as a part of the program.

#include "cards/omaha_sizes.h"
#include "platform/embedded_file.h"
#include "ranges/omaha/order.h"

POKERMATH_EMBED_FILE(pokermath_omaha4_order, POKERMATH_RANGES_DATA "/omaha4.order", 0);
POKERMATH_EMBED_FILE(pokermath_omaha5_order, POKERMATH_RANGES_DATA "/omaha5.order", 0);

namespace pokermath {
namespace {

template <int cards>
std::span<const std::uint8_t> Order() {
  static_assert(!HasOmahaOrder(cards), "which file is it?");
  return {};
}
template <>
std::span<const std::uint8_t> Order<4>() {
  return POKERMATH_EMBEDDED(pokermath_omaha4_order);
}
template <>
std::span<const std::uint8_t> Order<5>() {
  return POKERMATH_EMBEDDED(pokermath_omaha5_order);
}

}  // namespace

std::span<const std::uint8_t> BuiltInOmahaOrder(int hand_size) {
  return ForOmahaSize(hand_size, [](auto cards) { return Order<cards>(); });
}

}  // namespace pokermath
