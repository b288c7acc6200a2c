// The two kinds of error that a question may end with, and how text of the user is quoted in them.

#ifndef POKERMATH_PAGES_ERRORS_H_
#define POKERMATH_PAGES_ERRORS_H_

#include <stdexcept>
#include <string>
#include <string_view>

namespace pokermath {

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

/// The text in single quotes, fit for one line: control characters become '?', long text is cut.
std::string Quoted(std::string_view text);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_ERRORS_H_
