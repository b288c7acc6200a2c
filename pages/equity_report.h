// How the answer to a question of equity is printed.

#ifndef POKERMATH_PAGES_EQUITY_REPORT_H_
#define POKERMATH_PAGES_EQUITY_REPORT_H_

#include <string>
#include <string_view>

#include "pages/colours.h"
#include "pages/equity_run.h"
#include "pages/equity_words.h"

namespace pokermath {

/// Version of the JSON layout of answers about equity.
inline constexpr int kEquitySchema = 2;

/// "before the flop to the river", "on the flop 2c3d4h to the turn".
std::string SituationText(const AskedEquity& asked, const Colours& colours);

/// A few lines with a table, for a person.
std::string EquityPage(const AskedEquity& asked, const EquityRun& run, const Colours& colours);

/// One compact line: the question, then names and values, one for each player.
std::string EquityLine(const AskedEquity& asked, const EquityRun& run);

/// A JSON object in a line of its own, its end included.
/// @param id  JSON of what the question came with; empty for none
std::string EquityJson(const AskedEquity& asked, const EquityRun& run, std::string_view id);

/// JSON of a number of cases: whole where weights are whole and it fits into 63 bits.
std::string CountJson(const CaseCount& count);
std::string CountText(const CaseCount& count);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_REPORT_H_
