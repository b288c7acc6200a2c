// The ways to answer a question, one line each in one table.

#ifndef POKERMATH_CALCULATOR_SOLVERS_H_
#define POKERMATH_CALCULATOR_SOLVERS_H_

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>

#include "calculator/question.h"
#include "calculator/sums.h"

namespace pokermath {

/// A question being answered: pure steps in any order, on any thread.
class Work {
 public:
  virtual ~Work() = default;
  virtual const char* name() const = 0;
  virtual Method method() const = 0;
  virtual std::int64_t steps() const = 0;
  /// Adds one step to sums of the question's layout, all but SumsLayout::kSteps.
  virtual void Do(std::int64_t step, std::span<Int128> sums) const = 0;
};

using QuestionPointer = std::shared_ptr<const CheckedQuestion>;

/// About the operations of a step, where work can be cut anywhere.
inline constexpr double kStepCost = 4e6;

/// A way to count.
struct Solver {
  /// Operations that it takes; nothing if it does not know such questions. About 4e8 take a second.
  std::optional<double> (*cost)(const CheckedQuestion& question);
  std::unique_ptr<const Work> (*start)(const QuestionPointer& question);
};

/// All of them.
std::span<const Solver> Solvers();

struct SolverChoice {
  const Solver* solver = nullptr;  ///< nothing where no solver knows the question
  double cost = std::numeric_limits<double>::infinity();
};
SolverChoice CheapestFor(const CheckedQuestion& question);

// Plain enumeration: every question, the slow way.
std::optional<double> PlainCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartPlain(const QuestionPointer& question);

// Two players of a two-card game: from the table of all matchups; by classes of hands; and board by
// board.
std::optional<double> MatchupsCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartMatchups(const QuestionPointer& question);
std::optional<double> ClassesCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartClasses(const QuestionPointer& question);
std::optional<double> BoardsCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartBoards(const QuestionPointer& question);
// What they make, board by board.
std::optional<double> MadeOfTwoCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartMadeOfTwo(const QuestionPointer& question);

// Three players of a two-card game, board by board.
std::optional<double> ThreeRangesCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartThreeRanges(const QuestionPointer& question);

// Three ranges of Hold'em before the flop, from the table of all matchups; where it is not there,
// those that are needed are counted, if boards would be.
bool KnowsThreeWay(const CheckedQuestion& question);
std::optional<double> ThreeWayCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartThreeWay(const QuestionPointer& question);

// One hand each, in games without lows: by the ranks of boards, before the flop of a two-card game;
// and board by board.
std::optional<double> RankBoardsCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartRankBoards(const QuestionPointer& question);
std::optional<double> HandsCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartHands(const QuestionPointer& question);

// By what comes next, each next board as a question of its own.
std::optional<double> NextBoardsCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartNextBoards(const QuestionPointer& question);

// What is made, each complete board as a question of its own.
std::optional<double> MadeCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartMade(const QuestionPointer& question);

// Omaha hands against each other; one against every hand; one against the hands of a range.
std::optional<double> OmahaHandsCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartOmahaHands(const QuestionPointer& question);
std::optional<double> OmahaAgainstEveryCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartOmahaAgainstEvery(const QuestionPointer& question);
std::optional<double> OmahaAgainstRangeCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartOmahaAgainstRange(const QuestionPointer& question);
std::optional<double> OmahaBeforeFlopCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartOmahaBeforeFlop(const QuestionPointer& question);

// Two ranges of Omaha, board by board.
std::optional<double> OmahaRangesCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartOmahaRanges(const QuestionPointer& question);

// Three ranges of four-card Omaha, high only, on a complete board.
std::optional<double> OmahaThreeCost(const CheckedQuestion& question);
std::unique_ptr<const Work> StartOmahaThree(const QuestionPointer& question);

// Random deals: every question.
std::unique_ptr<const Work> StartSampling(const QuestionPointer& question);

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_SOLVERS_H_
