// Which players share the pot, on many boards at once.

#ifndef POKERMATH_KERNELS_SHARERS_H_
#define POKERMATH_KERNELS_SHARERS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/isa.h"

namespace pokermath {

/// Of so many deals side by side: a value of each, or a bit for each of up to ten players.
using DealValues = std::array<std::int16_t, 512>;

/// @param isa      instructions to use; the machine must have them
/// @param values   of every player, larger is better
/// @param sharers  out: the players who have the largest value
void FindSharers(Isa isa, std::span<const DealValues> values, DealValues& sharers);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_SHARERS_H_
