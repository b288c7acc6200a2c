// The order of the classes of Omaha hands by their exact equity against a random hand. Where
// HasOmahaOrder says no, there is none.

#ifndef POKERMATH_RANGES_OMAHA_ORDER_H_
#define POKERMATH_RANGES_OMAHA_ORDER_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/classes.h"
#include "ranges/omaha/shapes.h"
#include "ranges/text_pieces.h"

/// The sizes of hands that have an order, as POKERMATH_OMAHA_HAND_SIZES.
#define POKERMATH_OMAHA_ORDERS(apply) apply(4) apply(5)

namespace pokermath {

/// Numbers of classes, the strongest first, one behind the other in as many bits as the largest one
/// needs. The first bits are the lowest ones of the first byte.
std::vector<std::uint8_t> PackOmahaOrder(int hand_size, std::span<const std::uint32_t> order);

/// Bytes of a packed order.
std::size_t PackedOmahaOrderSize(int hand_size);

/// @param packed  of PackedOmahaOrderSize bytes, whatever they hold
std::vector<std::uint32_t> UnpackOmahaOrder(int hand_size, std::span<const std::uint8_t> packed);

/// The packed order that is part of the library; nothing for hands that have none.
std::span<const std::uint8_t> BuiltInOmahaOrder(int hand_size);

/// "omaha6 has no order of strength yet", of hands that have none.
std::string NoOmahaOrder(int hand_size);

struct OmahaStrengths {
  std::vector<OmahaClass> classes;   // in the order of their numbers
  std::vector<std::uint32_t> order;  // their numbers, the strongest first
  std::vector<int> within;           // by number: hands of this class and of stronger ones
};
/// From the built-in order, at the first use.
template <int cards>
requires(HasOmahaOrder(cards)) const OmahaStrengths& StrengthsOf();

/// As AddPercent, of hands of some splits.
template <int cards>
requires(HasOmahaOrder(cards)) void AddBand(const PercentBand& band, Splits splits,
                                            OmahaSpec<cards>& range);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_ORDER_H_
