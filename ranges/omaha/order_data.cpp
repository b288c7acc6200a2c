// The files of ranges/data as a part of the program. The assembler takes them in: compilers are
// slow with arrays of that size.

#include "cards/omaha_sizes.h"
#include "ranges/omaha/order.h"

asm(R"(
  .pushsection .rodata
pokermath_omaha4_order:
  .incbin ")" POKERMATH_RANGES_DATA R"(/omaha4.order"
pokermath_omaha5_order:
  .incbin ")" POKERMATH_RANGES_DATA R"(/omaha5.order"
pokermath_omaha_orders_end:
  .popsection
)");

// Hidden, or the compiler would look for them in other libraries.
extern "C" [[gnu::visibility("hidden")]] const std::uint8_t pokermath_omaha4_order[];
extern "C" [[gnu::visibility("hidden")]] const std::uint8_t pokermath_omaha5_order[];
extern "C" [[gnu::visibility("hidden")]] const std::uint8_t pokermath_omaha_orders_end[];

namespace pokermath {
namespace {

template <int cards>
std::span<const std::uint8_t> Order() {
  static_assert(!HasOmahaOrder(cards), "which file is it?");
  return {};
}
template <>
std::span<const std::uint8_t> Order<4>() {
  return {pokermath_omaha4_order, pokermath_omaha5_order};
}
template <>
std::span<const std::uint8_t> Order<5>() {
  return {pokermath_omaha5_order, pokermath_omaha_orders_end};
}

}  // namespace

std::span<const std::uint8_t> BuiltInOmahaOrder(int hand_size) {
  return ForOmahaSize(hand_size, [](auto cards) { return Order<cards>(); });
}

}  // namespace pokermath
