// Numbers as people read and write them.

#ifndef POKERMATH_PAGES_NUMBER_TEXT_H_
#define POKERMATH_PAGES_NUMBER_TEXT_H_

#include <fmt/format.h>

#include <charconv>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "pages/errors.h"

namespace pokermath {

using Seconds = std::chrono::duration<double>;

/// With a comma between groups of three digits: "1,712,304". Not below 0.
std::string Grouped(std::int64_t number);

/// "1 trial", "1,000 trials": a number and what is counted, which takes an s.
std::string Counted(std::int64_t number, std::string_view what);

/// A short time with its unit: "0.004 ms", "12 ms", "3.21 s", "2:05 min".
std::string DurationText(Seconds duration);

/// About how many: "950", "12.3 thousand", "4.56 million".
std::string RoughCount(double number);

/// The value of an option; refuses what is no number from `low` to `high`, as `field`.
template <typename Number>
Number ReadNumber(const char* option, std::string_view text, Number low, Number high,
                  std::string_view field = "") {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || number < low || number > high) {
    Refuse(fmt::format("{} {} is not accepted: a whole number from {} to {}", option, Quoted(text),
                       low, high),
           field);
  }
  return number;
}

}  // namespace pokermath

#endif  // POKERMATH_PAGES_NUMBER_TEXT_H_
