// What ends a command that the system would not let do its work, and the line that says so.

#ifndef POKERMATH_CLI_ERRORS_H_
#define POKERMATH_CLI_ERRORS_H_

#include <string>
#include <string_view>

#include "pages/errors.h"

namespace pokermath::cli {

/// Why a call of the system failed: "No space left on device".
std::string SystemReason(int error_number);

/// A Failure that ends with the system's reason, for example "cannot write 'a/b': No space left on
/// device".
Failure SystemFailure(const std::string& what, int error_number);

/// One line on standard error, after the program's name.
void PrintError(std::string_view text);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_ERRORS_H_
