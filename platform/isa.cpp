#include "platform/isa.h"

namespace pokermath {

Isa BestIsa() {
#if defined(__x86_64__)
  static const Isa best = [] {
    __builtin_cpu_init();
    const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
    const bool avx512 = avx2 && __builtin_cpu_supports("avx512f") &&
                        __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
                        __builtin_cpu_supports("avx512vl");
    return avx512 ? Isa::kAvx512 : avx2 ? Isa::kAvx2 : Isa::kBaseline;
  }();
  return best;
#else
  return Isa::kBaseline;
#endif
}

}  // namespace pokermath
