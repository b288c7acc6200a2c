// Answers questions of equity on the threads of the machine.

#ifndef POKERMATH_CLI_EQUITY_RUN_H_
#define POKERMATH_CLI_EQUITY_RUN_H_

#include "cli/equity_words.h"
#include "cli/number_text.h"
#include "pokermath/calculator.h"

namespace pokermath::cli {

struct RunOptions {
  int threads = 1;        ///< at most; the answer is the same for any number
  bool attended = false;  ///< somebody waits: shows progress, and signals stop the work
};

/// An answer, and how its work went.
struct EquityRun {
  EquityAnswer answer;
  bool interrupted = false;  ///< by a signal: fewer trials than asked for
  bool out_of_time = false;  ///< fewer trials, since the time allowed no more
  Seconds elapsed{};
};

/// Throws UsageError for a question that the calculator refuses, and Failure for a count that was
/// not finished.
EquityRun Run(const AskedEquity& asked, const RunOptions& options);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_RUN_H_
