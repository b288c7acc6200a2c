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

void FindBaseline(std::span<const DealValues> values, DealValues& sharers) {
  Find<Registers16>(values, sharers);
}
POKERMATH_TARGET_AVX2 void FindAvx2(std::span<const DealValues> values, DealValues& sharers) {
  Find<Registers32>(values, sharers);
}
POKERMATH_TARGET_AVX512 void FindAvx512(std::span<const DealValues> values, DealValues& sharers) {
  Find<Registers64>(values, sharers);
}

}  // namespace

void FindSharers(Isa isa, std::span<const DealValues> values, DealValues& sharers) {
  switch (isa) {
    case Isa::kAvx512:
      return FindAvx512(values, sharers);
    case Isa::kAvx2:
      return FindAvx2(values, sharers);
    default:
      return FindBaseline(values, sharers);
  }
}

}  // namespace pokermath
