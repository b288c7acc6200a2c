// The answer to a Hold'em question: counted exactly, or sampled when opponents are random.

#ifndef POKERMATH_CLI_EQUITY_ANSWER_H_
#define POKERMATH_CLI_EQUITY_ANSWER_H_

#include <cstdint>
#include <functional>
#include <vector>

#include "cli/equity_question.h"
#include "cli/number_text.h"

namespace pokermath::cli {

struct EquityAnswer {
  std::int64_t wins =
      0;  ///< boards, cases of board and holding, or trials that the hand wins alone
  std::int64_t ties = 0;  ///< those in which it shares the pot
  std::int64_t cases = 0;
  double equity = 0;          ///< share of the pot, 0..1
  double standard_error = 0;  ///< of the equity; 0 when it is exact
  bool interrupted = false;   ///< fewer trials than asked for
  Seconds elapsed{};

  std::int64_t Losses() const { return cases - wins - ties; }
};

/// A class of a range, and how the hand does against it.
struct ClassAnswer {
  int cell;               ///< in the matrix of classes
  std::int64_t holdings;  ///< of the class that the known cards leave
  Tally tally;
};

/// Counts a hand against the classes of a range that are left, the hand's worst first.
std::vector<ClassAnswer> CountByClass(const EquityQuestion& question);

/// Counts a hand against a hand or a range; no cases when the range is wholly blocked.
EquityAnswer Count(const EquityQuestion& question);

/// Samples a hand against random hands.
///
/// @param go_on  called now and then with the trials done; returning false stops
EquityAnswer Sample(const EquityQuestion& question, const std::function<bool(std::int64_t)>& go_on);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_ANSWER_H_
