#include "calculator/solvers.h"

namespace pokermath {

std::span<const Solver> Solvers() {
  static constexpr Solver kSolvers[] = {
      {PlainCost, StartPlain},
  };
  return kSolvers;
}

}  // namespace pokermath
