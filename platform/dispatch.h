// One kernel for every level of instructions: it is compiled once for each and the machine's is
// run.
//
//   const Counts counts = Dispatch(isa, [&](auto level) POKERMATH_INLINE {
//     return Count<RegistersOf<level>>(hand1, hand2);
//   });
//
// What the lambda calls has to be inlined into it (POKERMATH_KERNEL), or it stays at the baseline.
// What is written anew for a level is chosen by Versions.

#ifndef POKERMATH_PLATFORM_DISPATCH_H_
#define POKERMATH_PLATFORM_DISPATCH_H_

#include <type_traits>

#include "platform/isa.h"

namespace pokermath {

#define POKERMATH_KERNEL [[gnu::always_inline]] inline
/// The same of a lambda, behind its parameters.
#define POKERMATH_INLINE __attribute__((always_inline))

/// A level as a type, which turns into a constant.
template <Isa isa>
using IsaLevel = std::integral_constant<Isa, isa>;

namespace internal {

template <typename Kernel>
auto RunBaseline(const Kernel& kernel) {
  return kernel(IsaLevel<Isa::kBaseline>());
}
template <typename Kernel>
POKERMATH_TARGET_AVX2 auto RunAvx2(const Kernel& kernel) {
  return kernel(IsaLevel<Isa::kAvx2>());
}
template <typename Kernel>
POKERMATH_TARGET_AVX512 auto RunAvx512(const Kernel& kernel) {
  return kernel(IsaLevel<Isa::kAvx512>());
}

}  // namespace internal

/// Runs a kernel at a level that the machine must have.
///
/// @tparam most    the highest level that the kernel is compiled for, not the baseline
/// @param  kernel  called with an IsaLevel
template <Isa most = Isa::kAvx512, typename Kernel>
auto Dispatch([[maybe_unused]] Isa isa, const Kernel& kernel) {
#if defined(__x86_64__)
  if constexpr (most == Isa::kAvx512) {
    if (isa == Isa::kAvx512) return internal::RunAvx512(kernel);
  }
  if (isa != Isa::kBaseline) return internal::RunAvx2(kernel);
#endif
  return internal::RunBaseline(kernel);
}

/// Functions that do the same in different ways, for levels that are too far apart for one kernel.
/// Where one is not there, the one before it serves.
template <typename Function>
struct Versions {
  Function* baseline;
  Function* avx2 = nullptr;
  Function* vbmi = nullptr;  ///< AVX-512 with its permutations of bytes

  /// The one for a level that the machine must have.
  Function* At(Isa isa) const {
    if (isa == Isa::kAvx512 && vbmi != nullptr && HasVbmi()) return vbmi;
    return isa != Isa::kBaseline && avx2 != nullptr ? avx2 : baseline;
  }
};

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_DISPATCH_H_
