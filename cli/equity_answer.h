// The answer to a question of equity: counted exactly, or sampled when opponents are random.

#ifndef POKERMATH_CLI_EQUITY_ANSWER_H_
#define POKERMATH_CLI_EQUITY_ANSWER_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "cli/equity_question.h"
#include "cli/number_text.h"

namespace pokermath::cli {

/// How one of the players does. In Hi/Lo he wins what he takes all of, and ties what he takes a
/// part of.
struct HandAnswer {
  std::int64_t wins = 0;  ///< boards, cases of board and holding, or trials that it wins alone
  std::int64_t ties = 0;  ///< those in which it shares the pot
  double equity = 0;      ///< share of the pot, 0..1
  double low = 0;         ///< in Hi/Lo, what of the equity comes from low hands
};

/// How the hand does.
struct EquityAnswer : HandAnswer {
  std::int64_t cases = 0;
  std::vector<HandAnswer> opponents;     ///< when it is exact; a range or a random hand is one
  std::int64_t range_hands = 0;          ///< of a range of Omaha
  std::int64_t range_left = 0;           ///< of these hands, beside the known cards
  std::int64_t blocked_boards = 0;       ///< exact: boards to come that leave none of them
  std::optional<double> standard_error;  ///< of the equity, if samples differ
  bool interrupted = false;              ///< fewer trials than asked for
  bool out_of_time = false;              ///< fewer trials, since the time allowed no more
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

/// Called now and then with the parts done and all parts; returning false stops.
using GoOnCounting = std::function<bool(std::int64_t done, std::int64_t all)>;

/// Counts what is exact; no cases when the range is wholly blocked.
///
/// @param go_on  may be empty; Failure is thrown when it stops the count
EquityAnswer Count(const EquityQuestion& question, const GoOnCounting& go_on = {});

/// Samples a hand against random hands or a range of Omaha until all trials are done or the time is
/// up.
///
/// @param go_on  called now and then with the trials done; returning false stops
EquityAnswer Sample(const EquityQuestion& question, const std::function<bool(std::int64_t)>& go_on);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_ANSWER_H_
