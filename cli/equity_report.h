// How the answer to a question of equity is printed.

#ifndef POKERMATH_CLI_EQUITY_REPORT_H_
#define POKERMATH_CLI_EQUITY_REPORT_H_

#include <string>
#include <vector>

#include "cli/equity_answer.h"
#include "cli/equity_question.h"
#include "cli/output.h"

namespace pokermath::cli {

/// A few lines with a table, for a person.
std::string EquityPage(const EquityQuestion& question, const EquityAnswer& answer,
                       const Colours& colours);

/// A table of classes, to go below the page.
std::string ClassTable(const std::vector<ClassAnswer>& answers, const Colours& colours);

/// The matrix of classes as a heat map: a stand-alone SVG document.
std::string ClassSvg(const EquityQuestion& question, const EquityAnswer& answer,
                     const std::vector<ClassAnswer>& answers);

/// A list of objects.
Json ClassJson(const std::vector<ClassAnswer>& answers);

/// One compact line: the question, then names and values.
std::string EquityLine(const EquityQuestion& question, const EquityAnswer& answer);

Json EquityJson(const EquityQuestion& question, const EquityAnswer& answer);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_REPORT_H_
