// Answers a question of equity for somebody who waits.

#ifndef POKERMATH_CLI_EQUITY_RUN_H_
#define POKERMATH_CLI_EQUITY_RUN_H_

#include "pages/equity_run.h"
#include "pages/equity_words.h"

namespace pokermath::cli {

/// Shows progress, and signals stop the work.
/// @param threads  at most; the answer is the same for any number
///
/// Throws UsageError for a question that the calculator refuses, and Failure for a count that was
/// not finished.
EquityRun AnswerEquity(const AskedEquity& asked, int threads);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_RUN_H_
