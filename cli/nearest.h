// What a mistyped word may have meant.

#ifndef POKERMATH_CLI_NEAREST_H_
#define POKERMATH_CLI_NEAREST_H_

#include <string>
#include <string_view>
#include <vector>

namespace pokermath::cli {

/// "; did you mean 'equity'?" where one of the words known is within one slip of the hand, two for
/// words of five letters and more; else nothing. Another digit is another word.
std::string NearestHint(std::string_view word, const std::vector<std::string>& known);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_NEAREST_H_
