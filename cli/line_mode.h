// Questions on standard input, one a line, and their answers on standard output, one a line.

#ifndef POKERMATH_CLI_LINE_MODE_H_
#define POKERMATH_CLI_LINE_MODE_H_

#include <functional>
#include <string>
#include <string_view>

#include "cli/output.h"
#include "pages/json.h"

namespace pokermath::cli {

/// Appends the answer to `line`, a line end included, to `out`; throws UsageError for a line that
/// is no question, or LineError, whose error is in JSON. May be called on several threads at once;
/// `threads` are how many of them are for this line.
using AnswerLine = std::function<void(std::string_view line, int threads, std::string& out)>;

/// What answers have in common.
struct LineForm {
  bool json = false;
  int schema = kJsonSchema;  ///< of errors in JSON
  int threads = 1;           ///< answer lines that are there at once; the order stays
};

/// Answers line by line until the input ends. Empty lines and lines that start with '#' have no
/// answer; a bad line has an error in the place of its answer and on standard error. Answers leave
/// the program whenever it waits for more questions.
/// @return the exit code: 1 if any line was bad
int AnswerLines(const LineForm& form, const AnswerLine& answer);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_LINE_MODE_H_
