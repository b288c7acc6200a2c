// Which vector instructions this machine has. Kernels are compiled once for each level and the
// best one is chosen when the program runs.

#ifndef POKERMATH_PLATFORM_ISA_H_
#define POKERMATH_PLATFORM_ISA_H_

namespace pokermath {

enum class Isa { kBaseline, kAvx2, kAvx512 };

/// The best level of this machine.
Isa BestIsa();

#if defined(__x86_64__)
#define POKERMATH_TARGET_AVX2 __attribute__((target("avx2,bmi,bmi2,popcnt")))
#define POKERMATH_TARGET_AVX512 \
  __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl,avx2,bmi,bmi2,popcnt")))
#else
#define POKERMATH_TARGET_AVX2
#define POKERMATH_TARGET_AVX512
#endif

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_ISA_H_
