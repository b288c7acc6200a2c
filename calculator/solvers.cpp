#include "calculator/solvers.h"

namespace pokermath {

std::span<const Solver> Solvers() {
  static constexpr Solver kSolvers[] = {
      {ClassesCost, StartClasses},
      {BoardsCost, StartBoards},
      {HandsCost, StartHands},
      {OmahaHandsCost, StartOmahaHands},
      {OmahaAgainstEveryCost, StartOmahaAgainstEvery},
      {OmahaAgainstRangeCost, StartOmahaAgainstRange},
      {PlainCost, StartPlain},
  };
  return kSolvers;
}

}  // namespace pokermath
