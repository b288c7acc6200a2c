// The two kinds of error that a question may end with, and how text of the user is quoted in them.

#ifndef POKERMATH_PAGES_ERRORS_H_
#define POKERMATH_PAGES_ERRORS_H_

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace pokermath {

/// The user asked wrongly. The text names the argument, the reason and what is accepted.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& text, std::string field = "")
      : std::runtime_error(text), field_(std::move(field)) {}

  /// What of a question is wrong: a key of its JSON object, with a place in a list where it has one
  /// ("board", "players/1"); empty where it is nothing in particular.
  const std::string& field() const { return field_; }

 private:
  std::string field_;
};

/// The question was right, but the work could not be done.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Ends the work on a question that was asked wrongly: throws a UsageError of these. Where there
/// are no exceptions, the program brings its own way out (web/module).
[[noreturn]] void Refuse(const std::string& text, std::string_view field = "");

/// Why a call of the system failed: "No space left on device".
std::string SystemReason(int error_number);

/// A Failure that ends with the system's reason, for example "cannot write 'a/b': No space left on
/// device".
Failure SystemFailure(const std::string& what, int error_number);

/// The text in single quotes, fit for one line: control characters become '?', long text is cut.
std::string Quoted(std::string_view text);

/// What is accepted: "flop, turn or river".
std::string OneOf(std::span<const std::string_view> words);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_ERRORS_H_
