#include "ranges/text_pieces.h"

#include <charconv>

#include "cards/card_text.h"
#include "platform/decimal.h"
#include "platform/text.h"

namespace pokermath {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return Lower(a) == b; });
}

char PieceCursor::Peek() const { return AtEnd() ? '\0' : Lower(piece_[place_]); }

bool PieceCursor::Skip(char lower) {
  if (AtEnd() || Peek() != lower) return false;
  ++place_;
  return true;
}

std::optional<int> PieceCursor::ReadRank() {
  if (Rest().starts_with("10")) {
    place_ += 2;
    return 8;
  }
  if (AtEnd()) return std::nullopt;
  for (std::size_t rank = 0; rank < kRankLetters.size(); ++rank) {
    if (Lower(kRankLetters[rank]) != Peek()) continue;
    ++place_;
    return static_cast<int>(rank);
  }
  return std::nullopt;
}

std::optional<int> PieceCursor::ReadSuit() {
  const SuitAt read = ReadSuitAt(Rest());
  if (read.suit < 0) return std::nullopt;
  place_ += read.length;
  return read.suit;
}

std::optional<double> PieceCursor::ReadPercent() {
  double percent = 0;
  const std::string_view rest = Rest();
  const auto [stop, error] = ReadDecimal(rest, percent);
  if (error != std::errc{} || stop == rest.data() + rest.size() || *stop != '%' ||
      !(percent > 0 && percent <= 100)) {
    return std::nullopt;
  }
  Advance(static_cast<std::size_t>(stop - rest.data()) + 1);
  return percent;
}

std::optional<Fault> PieceCursor::ReadBand(PercentBand& band) {
  constexpr const char* kExpected =
      "a percentage above 0 and up to 100, like 10%, or a run of two, like 5%-20%";
  const std::optional<double> first = ReadPercent();
  if (!first) return Here(kExpected);
  band = {0, *first};
  if (!Skip('-')) return std::nullopt;
  const std::size_t second_place = Place();
  const std::optional<double> second = ReadPercent();
  if (!second) return Here(kExpected);
  if (*second <= *first) return Fault{second_place, "a larger percentage behind the dash"};
  band = {*first, *second};
  return std::nullopt;
}

std::string QuotedPiece(std::string_view piece) {
  constexpr std::size_t kLongest = 40;
  std::wstring text = OnOneLine(FromUtf8(piece.substr(0, 4 * kLongest + 4)));
  const bool cut = text.size() > kLongest;
  if (cut) text.resize(kLongest);
  std::string quoted = "'";
  quoted += ToUtf8(text);
  quoted += cut ? "...'" : "'";
  return quoted;
}

TextError ErrorOf(const Fault& fault, std::string_view piece, std::size_t place) {
  const std::size_t position = place + fault.position;
  std::string message = QuotedPiece(piece);
  message += " at position " + std::to_string(position + 1) + ": expected ";
  message += fault.expected;
  return {position, std::move(message)};
}

}  // namespace pokermath
