// Bands of whole percents: 15%,16%-50%.
//
// Who writes percentages in whole numbers counts them: 1 to 15, then 16 to 50. As real numbers they
// leave out what is between 15 and 16 percent.

#ifndef POKERMATH_RANGES_PERCENT_GAP_H_
#define POKERMATH_RANGES_PERCENT_GAP_H_

#include <optional>
#include <string>
#include <string_view>

namespace pokermath {

/// A piece that begins a percent above the end of the one before it, both in whole numbers and with
/// the same shapes and exclusions behind them, written as it is meant; nothing for all others.
std::optional<std::string> CloseGap(std::string_view before, std::string_view piece);

/// The piece with the percentage that it begins with as a number with a decimal: "16.0%-50%".
std::string WithoutWholePercent(std::string_view piece);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_PERCENT_GAP_H_
