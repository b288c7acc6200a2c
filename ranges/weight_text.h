// Weights in range text: ten-thousandths as decimals.

#ifndef POKERMATH_RANGES_WEIGHT_TEXT_H_
#define POKERMATH_RANGES_WEIGHT_TEXT_H_

#include <optional>
#include <string>
#include <string_view>

#include "ranges/text_pieces.h"

namespace pokermath {

/// What a weight is written in; the value is how many decimals that takes.
enum class WeightUnit : int { kPercent = 2, kOne = 4 };

/// Reads a decimal number that is all of a text as a weight, rounded to ten-thousandths; 0 is one,
/// a positive number that is rounded to 0 is not.
std::optional<Fault> ReadWeight(std::string_view text, WeightUnit unit, int& weight);

/// The shortest decimal: "0.5", "12.34", "100".
std::string WeightText(int weight, WeightUnit unit);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_WEIGHT_TEXT_H_
