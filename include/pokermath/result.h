/// @file
/// A value, or what kept it from being one: how the newer functions report failure.
///
///     const auto board = pokermath::ReadCardSet(text);
///     if (!board) return Complain(board.error().text);
///     use(*board);

#ifndef POKERMATH_RESULT_H_
#define POKERMATH_RESULT_H_

#include <cstddef>
#include <string>
#include <utility>
#include <variant>

namespace pokermath {

/// What kind of thing is wrong.
enum class ErrorCode {
  kText,     ///< a text that cannot be read; `position` says where
  kGame,     ///< something that the game does not have
  kPlayers,  ///< too few or too many
  kHand,     ///< a hand of the wrong size, or none
  kCard,     ///< a card where it cannot be; `card` says which
  kBoard,    ///< too many cards, or a detail that the board does not allow
  kBlocked,  ///< the cards leave no deal
  kLimit,    ///< a limit out of its range
  kStopped,  ///< the work was not finished
};

/// What is wrong, in one line for a person and in fields for a program.
struct Error {
  ErrorCode code = ErrorCode::kText;  ///< what kind of thing is wrong
  std::string text;                   ///< one line that names the bad thing and what is expected
  int player = -1;                    ///< 0 for the first one; -1 where it is nobody's
  int card = -1;                      ///< card code; -1 where it is no card
  std::size_t position = 0;           ///< in a text, in bytes
  int folded = -1;  ///< 0 for the first folded player; -1 where it is none of theirs
};

/// A value or an error; which one has to be looked at first. Asked for what it does not hold, it
/// throws std::bad_variant_access.
template <typename T>
class [[nodiscard]] Result {
 public:
  /// Holds a value.
  Result(T value) : held_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
  /// Holds an error.
  Result(Error error) : held_(std::move(error)) {}  // NOLINT(google-explicit-constructor)

  /// Whether it holds a value.
  explicit operator bool() const { return held_.index() == 0; }
  /// The value.
  const T& value() const& { return std::get<0>(held_); }
  /// The value, moved out.
  T value() && { return std::get<0>(std::move(held_)); }
  /// The value.
  const T& operator*() const& { return value(); }
  /// The value, moved out.
  T operator*() && { return std::move(*this).value(); }
  /// A member of the value.
  const T* operator->() const& { return &value(); }
  /// Of a temporary it would be gone.
  const T* operator->() const&& = delete;
  /// The error.
  const Error& error() const& { return std::get<1>(held_); }
  /// The error, moved out.
  Error error() && { return std::get<1>(std::move(held_)); }

 private:
  std::variant<T, Error> held_;
};

}  // namespace pokermath

#endif  // POKERMATH_RESULT_H_
