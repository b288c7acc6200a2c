// Decimal numbers from text.

#ifndef POKERMATH_PLATFORM_DECIMAL_H_
#define POKERMATH_PLATFORM_DECIMAL_H_

#include <charconv>
#include <string_view>

namespace pokermath {

/// A number without an exponent at the start of a text, rounded to the nearest double, as
/// std::from_chars reads it, which not every standard library has for doubles.
std::from_chars_result ReadDecimal(std::string_view text, double& number);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_DECIMAL_H_
