// Which vector instructions this machine has. Kernels are compiled once for each level and the
// best one is chosen when the program runs.

#ifndef POKERMATH_PLATFORM_ISA_H_
#define POKERMATH_PLATFORM_ISA_H_

#include <string>

namespace pokermath {

enum class Isa { kBaseline, kAvx2, kAvx512 };

/// The best level of this machine.
Isa BestIsa();

/// "baseline", "AVX2", "AVX-512".
const char* IsaName(Isa isa);

/// Those of the instruction sets above the baseline that kernels are compiled for and this machine
/// has: "popcnt bmi bmi2 avx2"; empty for none.
std::string UsableInstructionSets();

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
