#include "platform/decimal.h"

#if !defined(__cpp_lib_to_chars)
#include <cstdlib>
#include <string>
#endif

namespace pokermath {

std::from_chars_result ReadDecimal(std::string_view text, double& number) {
#if defined(__cpp_lib_to_chars)
  return std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
#else
  // What strtod would read beyond a decimal number, such as an exponent or "inf", is not for it.
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  const std::string digits(text.substr(0, text.find_first_not_of("0123456789.", sign)));
  char* end = nullptr;
  const double read = std::strtod(digits.c_str(), &end);
  const auto length = static_cast<std::size_t>(end - digits.c_str());
  if (length <= sign) return {text.data(), std::errc::invalid_argument};
  number = read;
  return {text.data() + length, std::errc{}};
#endif
}

}  // namespace pokermath
