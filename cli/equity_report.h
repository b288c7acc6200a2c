// How the answer to a Hold'em question is printed.

#ifndef POKERMATH_CLI_EQUITY_REPORT_H_
#define POKERMATH_CLI_EQUITY_REPORT_H_

#include <string>

#include "cli/equity_answer.h"
#include "cli/equity_question.h"
#include "cli/output.h"

namespace pokermath::cli {

/// A few lines with a table, for a person.
std::string EquityPage(const EquityQuestion& question, const EquityAnswer& answer,
                       const Colours& colours);

/// One compact line: the question, then names and values.
std::string EquityLine(const EquityQuestion& question, const EquityAnswer& answer);

Json EquityJson(const EquityQuestion& question, const EquityAnswer& answer);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_REPORT_H_
