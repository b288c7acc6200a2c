#include "platform/isa.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <utility>

#include "pokermath/instructions.h"

namespace pokermath {
namespace {

constexpr std::array<Isa, 3> kIsas = {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512};
constexpr std::array<std::string_view, kIsas.size()> kNames = {"baseline", "avx2", "avx512"};

Isa IsaOfMachine() {
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

// How many levels the machine has.
std::size_t LevelsOfMachine() { return static_cast<std::size_t>(IsaOfMachine()) + 1; }

// Of the machine; nullptr for any other name.
const Isa* FindIsa(std::string_view name) {
  const auto names = InstructionLevels();
  const auto place = std::ranges::find(names, name);
  return place == names.end() ? nullptr : &kIsas[static_cast<std::size_t>(place - names.begin())];
}

std::atomic<Isa>& ChosenIsa() {
  static std::atomic<Isa> chosen = [] {
    const char* name = std::getenv("POKERMATH_ISA");
    const Isa* isa = name != nullptr ? FindIsa(name) : nullptr;
    return isa != nullptr ? *isa : IsaOfMachine();
  }();
  return chosen;
}

}  // namespace

std::span<const Isa> IsasOfMachine() { return std::span(kIsas).first(LevelsOfMachine()); }

Isa BestIsa() { return ChosenIsa().load(std::memory_order_relaxed); }

std::span<const std::string_view> InstructionLevels() {
  return std::span(kNames).first(LevelsOfMachine());
}

std::string_view InstructionLevel() { return kNames[static_cast<std::size_t>(BestIsa())]; }

bool UseInstructionLevel(std::string_view name) {
  const Isa* isa = FindIsa(name);
  if (isa == nullptr) return false;
  ChosenIsa().store(*isa);
  internal::FindVbmi();
  return true;
}

namespace internal {

constinit std::atomic<int> has_vbmi = -1;

// Once more if another thread has changed the level meanwhile: the last one stays.
bool FindVbmi() {
  Isa isa;
  bool found = false;
  do {
    isa = ChosenIsa().load();
#if defined(__x86_64__)
    found = isa == Isa::kAvx512 && __builtin_cpu_supports("avx512cd") &&
            __builtin_cpu_supports("avx512vbmi");
#endif
    has_vbmi.store(found ? 1 : 0);
  } while (ChosenIsa().load() != isa);
  return found;
}

}  // namespace internal

const char* IsaName(Isa isa) {
  return isa == Isa::kAvx512 ? "AVX-512" : isa == Isa::kAvx2 ? "AVX2" : "baseline";
}

std::string UsableInstructionSets() {
  std::string names;
#if defined(__x86_64__)
  __builtin_cpu_init();
  const std::pair<const char*, bool> sets[] = {
      {"popcnt", __builtin_cpu_supports("popcnt")},
      {"bmi", __builtin_cpu_supports("bmi")},
      {"bmi2", __builtin_cpu_supports("bmi2")},
      {"avx2", __builtin_cpu_supports("avx2")},
      {"avx512f", __builtin_cpu_supports("avx512f")},
      {"avx512bw", __builtin_cpu_supports("avx512bw")},
      {"avx512dq", __builtin_cpu_supports("avx512dq")},
      {"avx512vl", __builtin_cpu_supports("avx512vl")},
      {"avx512cd", __builtin_cpu_supports("avx512cd")},
      {"avx512vbmi", __builtin_cpu_supports("avx512vbmi")}};
  for (const auto& [name, is_there] : sets) {
    if (is_there) names += (names.empty() ? "" : " ") + std::string(name);
  }
#endif
  return names;
}

}  // namespace pokermath
