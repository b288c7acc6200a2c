#include "platform/isa.h"

#include <utility>

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

const char* IsaName(Isa isa) {
  return isa == Isa::kAvx512 ? "AVX-512" : isa == Isa::kAvx2 ? "AVX2" : "baseline";
}

std::string UsableInstructionSets() {
  std::string names;
#if defined(__x86_64__)
  __builtin_cpu_init();
  const std::pair<const char*, bool> sets[] = {{"popcnt", __builtin_cpu_supports("popcnt")},
                                               {"bmi", __builtin_cpu_supports("bmi")},
                                               {"bmi2", __builtin_cpu_supports("bmi2")},
                                               {"avx2", __builtin_cpu_supports("avx2")},
                                               {"avx512f", __builtin_cpu_supports("avx512f")},
                                               {"avx512bw", __builtin_cpu_supports("avx512bw")},
                                               {"avx512dq", __builtin_cpu_supports("avx512dq")},
                                               {"avx512vl", __builtin_cpu_supports("avx512vl")}};
  for (const auto& [name, is_there] : sets) {
    if (is_there) names += (names.empty() ? "" : " ") + std::string(name);
  }
#endif
  return names;
}

}  // namespace pokermath
