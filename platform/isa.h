// Which vector instructions this machine has and kernels use. These are compiled once for each
// level (platform/dispatch.h), and one is chosen when the program runs (pokermath/instructions.h).

#ifndef POKERMATH_PLATFORM_ISA_H_
#define POKERMATH_PLATFORM_ISA_H_

#include <atomic>
#include <span>
#include <string>

namespace pokermath {

enum class Isa { kBaseline, kAvx2, kAvx512 };

/// All levels that this machine has, the baseline first.
std::span<const Isa> IsasOfMachine();

/// The level to run kernels at: the best one of this machine, or the one that was asked for.
Isa BestIsa();

namespace internal {
extern std::atomic<int> has_vbmi;
bool FindVbmi();
}  // namespace internal

/// 1, 0 or, before HasVbmi was asked first, -1: a single load for functions that take few
/// nanoseconds.
inline int KnownVbmi() { return internal::has_vbmi.load(std::memory_order_relaxed); }
/// Whether the level in use is AVX-512 and the machine can permute bytes (VBMI), as all but the
/// first ones of that level can.
inline bool HasVbmi() { return KnownVbmi() >= 0 ? KnownVbmi() != 0 : internal::FindVbmi(); }

/// "baseline", "AVX2", "AVX-512".
const char* IsaName(Isa isa);

/// Those of the instruction sets above the baseline that kernels are compiled for and this machine
/// has: "popcnt bmi bmi2 avx2"; empty for none.
std::string UsableInstructionSets();

#if defined(__x86_64__)
#define POKERMATH_TARGET_AVX2 __attribute__((target("avx2,bmi,bmi2,popcnt")))
#define POKERMATH_TARGET_AVX512 \
  __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl,avx2,bmi,bmi2,popcnt")))
#define POKERMATH_TARGET_VBMI \
  __attribute__((             \
      target("avx512f,avx512bw,avx512dq,avx512vl,avx512cd,avx512vbmi,avx2,bmi,bmi2,popcnt")))
#else
#define POKERMATH_TARGET_AVX2
#define POKERMATH_TARGET_AVX512
#define POKERMATH_TARGET_VBMI
#endif

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_ISA_H_
