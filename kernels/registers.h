// Vector registers of 16-bit and 64-bit numbers, by the compiler's vector extension.
//
// A kernel is a template that is inlined into one function for each level (platform/dispatch.h).

#ifndef POKERMATH_KERNELS_REGISTERS_H_
#define POKERMATH_KERNELS_REGISTERS_H_

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "platform/dispatch.h"

namespace pokermath {

// Registers, and the same for arithmetic modulo 2^16 and 2^64. Comparing two gives -1 in every lane
// where it is true.
struct Registers16 {
  using Register = std::int16_t __attribute__((vector_size(16)));
  using Modular = std::uint16_t __attribute__((vector_size(16)));
  using Modular64 = std::uint64_t __attribute__((vector_size(16)));
};
struct Registers32 {
  using Register = std::int16_t __attribute__((vector_size(32)));
  using Modular = std::uint16_t __attribute__((vector_size(32)));
  using Modular64 = std::uint64_t __attribute__((vector_size(32)));
};
struct Registers64 {
  using Register = std::int16_t __attribute__((vector_size(64)));
  using Modular = std::uint16_t __attribute__((vector_size(64)));
  using Modular64 = std::uint64_t __attribute__((vector_size(64)));
};

/// The widest that a level has.
template <Isa isa>
using RegistersOf =
    std::conditional_t<isa == Isa::kAvx512, Registers64,
                       std::conditional_t<isa == Isa::kAvx2, Registers32, Registers16>>;

template <typename Register>
constexpr int kLanes = sizeof(Register) / sizeof(std::int16_t);

/// Exact division by a number up to 4 modulo 2^16: a product with the inverse of its odd part, and
/// a shift. 0 gives 0.
inline constexpr std::uint16_t kInverses[5] = {0, 1, 1, 43691, 1};
inline constexpr int kShifts[5] = {0, 0, 1, 0, 2};

template <typename Register>
POKERMATH_KERNEL void Load(Register& to, const std::int16_t* from) {
  std::memcpy(&to, from, sizeof to);
}

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_REGISTERS_H_
