// Pictures of what --by shows.

#ifndef POKERMATH_CLI_EQUITY_SVG_H_
#define POKERMATH_CLI_EQUITY_SVG_H_

#include <string>

#include "cli/equity_run.h"
#include "cli/equity_words.h"

namespace pokermath::cli {

/// Throws UsageError if there is no picture of that.
void CheckPicture(const AskedEquity& asked, By by);

/// A stand-alone SVG document: heat maps of classes, decks of next cards, or the curves of all
/// hands' equities.
std::string DetailSvg(const AskedEquity& asked, const EquityRun& run, By by);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_SVG_H_
