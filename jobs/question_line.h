// A question of equity on a line of its own, and its answer on another.

#ifndef POKERMATH_JOBS_QUESTION_LINE_H_
#define POKERMATH_JOBS_QUESTION_LINE_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "jobs/run.h"
#include "pages/equity_run.h"
#include "pages/equity_words.h"
#include "pages/errors.h"

namespace pokermath {

/// A line that is no question but came with an id, which its error has too.
class LineError : public UsageError {
 public:
  /// @param id  JSON text; empty for none
  LineError(const UsageError& error, std::string id) : UsageError(error), id_(std::move(id)) {}
  const std::string& id() const { return id_; }

 private:
  std::string id_;
};

struct LineOptions {
  const EquityWords& defaults;          ///< for what a line does not say
  std::optional<std::uint64_t> seed{};  ///< where neither the line nor the defaults have one
  int threads = 1;                      ///< at most; the answer is the same for any number
  bool timed = true;                    ///< whether the answer has "elapsed_ms"
  /// Takes warnings, a line each; may be empty.
  std::function<void(const std::string& warning)> warn{};
  /// In the place of Run; may be empty.
  std::function<EquityRun(const Calculation& plan, RunOptions options)> run{};
};

/// Whether a line asks something: empty lines and those that start with '#' have no answer.
bool IsQuestion(std::string_view line);

/// The run that answers what was read from a line. Throws UsageError for a question that has no
/// answer, also where the work could not be done: the next line is read all the same.
EquityRun RunLine(const AskedEquity& asked, const LineOptions& options);

/// The answer to a JSON object, an object again with the same id, its line end included. Throws
/// LineError for a line that is no question or has no answer. Reentrant.
std::string AnswerObject(std::string_view line, const LineOptions& options);

/// The object that stands in the place of an answer, its line end included.
/// @param schema  of the answers
/// @param line    its number
/// @param id      JSON text; empty for none
std::string ErrorObject(int schema, std::int64_t line, const UsageError& error,
                        const std::string& id);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_QUESTION_LINE_H_
