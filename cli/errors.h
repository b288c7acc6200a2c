// The two kinds of error that end a command, and how text of the user is quoted in them.

#ifndef POKERMATH_CLI_ERRORS_H_
#define POKERMATH_CLI_ERRORS_H_

#include <stdexcept>
#include <string>
#include <string_view>

namespace pokermath::cli {

/// The user asked wrongly. The text names the argument, the reason and what is accepted.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The question was right, but the work could not be done.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Why a call of the system failed: "No space left on device".
std::string SystemReason(int error_number);

/// A Failure that ends with the system's reason, for example "cannot write 'a/b': No space left on
/// device".
Failure SystemFailure(const std::string& what, int error_number);

/// The text in single quotes, fit for one line: control characters become '?', long text is cut.
std::string Quoted(std::string_view text);

/// One line on standard error, after the program's name.
void PrintError(std::string_view text);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_ERRORS_H_
