#include "platform/decimal.h"

#if !defined(__cpp_lib_to_chars)
#include <cstdlib>
#include <string>
#endif

namespace pokermath {

std::from_chars_result ReadDecimal(std::string_view text, double& number,
                                   std::chars_format format) {
#if defined(__cpp_lib_to_chars)
  return std::from_chars(text.data(), text.data() + text.size(), number, format);
#else
  // What strtod would read beyond that, such as a plus or "inf", is not for it.
  const bool fixed = format == std::chars_format::fixed;
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  if (text.substr(sign).starts_with('+')) return {text.data(), std::errc::invalid_argument};
  const std::string digits(
      text.substr(0, text.find_first_not_of(fixed ? "0123456789." : "0123456789.eE+-", sign)));
  char* end = nullptr;
  const double read = std::strtod(digits.c_str(), &end);
  const auto length = static_cast<std::size_t>(end - digits.c_str());
  if (length <= sign) return {text.data(), std::errc::invalid_argument};
  number = read;
  return {text.data() + length, std::errc{}};
#endif
}

}  // namespace pokermath
