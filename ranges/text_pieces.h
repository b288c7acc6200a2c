// Range text in pieces: where they begin and end, what is wrong with one, and how that is said.

#ifndef POKERMATH_RANGES_TEXT_PIECES_H_
#define POKERMATH_RANGES_TEXT_PIECES_H_

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pokermath {

inline constexpr std::string_view kRankLetters = "23456789TJQKA";
inline constexpr std::string_view kSuitLetters = "cdhs";

/// What stands between the pieces of a list.
inline constexpr std::string_view kSeparators = " ,;\t\r\n";

/// What is wrong with a piece: where in it, and what was expected there.
struct Fault {
  std::size_t position;
  std::string expected;
};

/// The place in the whole text, and the line that is shown.
struct TextError {
  std::size_t position;
  std::string message;
};

bool EqualsIgnoringCase(std::string_view text, std::string_view lower);

/// What is within `to` percent of all hands and not within `from` percent.
struct PercentBand {
  double from = 0;
  double to = 0;

  bool operator==(const PercentBand&) const = default;
};

/// Reads one piece from the left.
class PieceCursor {
 public:
  explicit PieceCursor(std::string_view piece) : piece_(piece) {}

 protected:
  std::string_view Piece() const { return piece_; }
  std::string_view Rest() const { return piece_.substr(place_); }
  std::size_t Place() const { return place_; }
  bool AtEnd() const { return place_ == piece_.size(); }
  /// What comes next, in lower case; 0 at the end.
  char Peek() const;
  void Advance(std::size_t count) { place_ += count; }
  bool Skip(char lower);
  Fault Here(std::string expected) const { return {place_, std::move(expected)}; }

  /// One of 23456789TJQKA or 10.
  std::optional<int> ReadRank();
  std::optional<int> ReadSuit();
  /// A number above 0 and up to 100 with a percent sign. Nothing is read otherwise.
  std::optional<double> ReadPercent();
  /// "10%" or "5%-20%", or what is wrong with it.
  std::optional<Fault> ReadBand(PercentBand& band);

 private:
  std::string_view piece_;
  std::size_t place_ = 0;
};

/// A piece as a message quotes it: on one line, valid and short.
std::string QuotedPiece(std::string_view piece);

/// The error that a piece's fault makes.
///
/// @param place  of the piece in the whole text
TextError ErrorOf(const Fault& fault, std::string_view piece, std::size_t place);

/// Calls `read` with every piece between commas, semicolons and blanks, until one has a fault.
template <typename Read>
std::optional<TextError> ReadPieces(std::string_view text, const Read& read) {
  std::size_t place = text.find_first_not_of(kSeparators);
  while (place != text.npos) {
    const std::size_t end = std::min(text.find_first_of(kSeparators, place), text.size());
    const std::string_view piece = text.substr(place, end - place);
    if (const std::optional<Fault> fault = read(piece)) return ErrorOf(*fault, piece, place);
    place = text.find_first_not_of(kSeparators, end);
  }
  return std::nullopt;
}

}  // namespace pokermath

#endif  // POKERMATH_RANGES_TEXT_PIECES_H_
