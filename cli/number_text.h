// Numbers as people read them.

#ifndef POKERMATH_CLI_NUMBER_TEXT_H_
#define POKERMATH_CLI_NUMBER_TEXT_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace pokermath::cli {

using Seconds = std::chrono::duration<double>;

/// With a comma between groups of three digits: "1,712,304". Not below 0.
std::string Grouped(std::int64_t number);

/// A short time with its unit: "0.004 ms", "12 ms", "3.21 s", "2:05 min".
std::string DurationText(Seconds duration);

/// About how many: "950", "12.3 thousand", "4.56 million".
std::string RoughCount(double number);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_NUMBER_TEXT_H_
