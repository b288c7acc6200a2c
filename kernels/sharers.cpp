#include "kernels/sharers.h"

#include <cstring>

#include "kernels/registers.h"

namespace pokermath {
namespace {

template <typename Width>
POKERMATH_KERNEL void Find(std::span<const DealValues> values, DealValues& sharers) {
  using Register = typename Width::Register;
  for (std::size_t deal = 0; deal < sharers.size(); deal += kLanes<Register>) {
    Register best{};
    for (const DealValues& of_player : values) {
      Register value;
      Load(value, &of_player[deal]);
      best = value > best ? value : best;
    }
    Register bits{};
    std::int16_t bit = 1;
    for (const DealValues& of_player : values) {
      Register value;
      Load(value, &of_player[deal]);
      bits |= (value == best) & bit;
      bit = static_cast<std::int16_t>(bit << 1);
    }
    std::memcpy(&sharers[deal], &bits, sizeof bits);
  }
}

}  // namespace

void FindSharers(Isa isa, std::span<const DealValues> values, DealValues& sharers) {
  Dispatch(isa, [&](auto level) POKERMATH_INLINE { Find<RegistersOf<level>>(values, sharers); });
}

}  // namespace pokermath
