#include "calculator/solvers.h"

namespace pokermath {

std::span<const Solver> Solvers() {
  static constexpr Solver kSolvers[] = {
      {MatchupsCost, StartMatchups},
      {ClassesCost, StartClasses},
      {BoardsCost, StartBoards},
      {RankBoardsCost, StartRankBoards},
      {ThreeRangesCost, StartThreeRanges},
      {ThreeWayCost, StartThreeWay},
      {HandsCost, StartHands},
      {OmahaHandsCost, StartOmahaHands},
      {OmahaAgainstEveryCost, StartOmahaAgainstEvery},
      {OmahaAgainstRangeCost, StartOmahaAgainstRange},
      {OmahaBeforeFlopCost, StartOmahaBeforeFlop},
      {NextBoardsCost, StartNextBoards},
      {MadeCost, StartMade},
      {MadeOfTwoCost, StartMadeOfTwo},
      {OmahaRangesCost, StartOmahaRanges},
      {OmahaThreeCost, StartOmahaThree},
      {PlainCost, StartPlain},
  };
  return kSolvers;
}

SolverChoice CheapestFor(const CheckedQuestion& question) {
  SolverChoice cheapest;
  for (const Solver& solver : Solvers()) {
    const std::optional<double> cost = solver.cost(question);
    if (cost && *cost < cheapest.cost) cheapest = {&solver, *cost};
  }
  return cheapest;
}

}  // namespace pokermath
