// Answers a question of equity for somebody who may be waiting.

#ifndef POKERMATH_CLI_EQUITY_RUN_H_
#define POKERMATH_CLI_EQUITY_RUN_H_

#include "pages/equity_run.h"
#include "pages/equity_words.h"

namespace pokermath::cli {

/// @param threads   at most; the answer is the same for any number
/// @param attended  somebody waits: shows progress, and signals stop the work
///
/// Throws UsageError for a question that the calculator refuses, and Failure for a count that was
/// not finished.
EquityRun AnswerEquity(const AskedEquity& asked, int threads, bool attended);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_RUN_H_
