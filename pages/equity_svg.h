// Pictures of what --by shows.

#ifndef POKERMATH_PAGES_EQUITY_SVG_H_
#define POKERMATH_PAGES_EQUITY_SVG_H_

#include <string>

#include "pages/equity_run.h"
#include "pages/equity_words.h"

namespace pokermath {

/// Of hands, of classes, and of what comes next where that is one card.
bool HasPicture(const AskedEquity& asked, By by);

/// A stand-alone SVG document: heat maps of classes, decks of next cards, or the curves of all
/// hands' equities.
std::string DetailSvg(const AskedEquity& asked, const EquityRun& run, By by);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_SVG_H_
