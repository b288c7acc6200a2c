// The line that says what ended a command.

#ifndef POKERMATH_CLI_ERRORS_H_
#define POKERMATH_CLI_ERRORS_H_

#include <string_view>

#include "pages/errors.h"

namespace pokermath::cli {

/// One line on standard error, after the program's name.
void PrintError(std::string_view text);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_ERRORS_H_
