// Decimal numbers from text.

#ifndef POKERMATH_PLATFORM_DECIMAL_H_
#define POKERMATH_PLATFORM_DECIMAL_H_

#include <charconv>
#include <string_view>

namespace pokermath {

/// A number at the start of a text, rounded to the nearest double, as std::from_chars reads it,
/// which not every standard library has for doubles.
///
/// @param format  fixed, without an exponent, or general, which may have one
std::from_chars_result ReadDecimal(std::string_view text, double& number,
                                   std::chars_format format = std::chars_format::fixed);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_DECIMAL_H_
