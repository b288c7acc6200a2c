// Ranges by percentage as range text means them.

#ifndef POKERMATH_RANGES_PERCENT_RANGES_H_
#define POKERMATH_RANGES_PERCENT_RANGES_H_

#include <map>

#include "pokermath/ranges.h"

namespace pokermath {

/// The ranges of a table by percent, the widest last. The short-deck table that hosts know files
/// one range far below its width; here it stands at its own.
std::map<double, Spec> RangesByPercent(PercentTable table, bool short_deck);

/// The widest of them that is no wider than `percent`; the first one for less than that. No other
/// range is built for it.
Spec RangeWithin(double percent, PercentTable table, bool short_deck);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_PERCENT_RANGES_H_
