#include "ranges/percent_gap.h"

#include <charconv>

namespace pokermath {
namespace {

struct WholeBand {
  int from;
  int to;
  std::string_view rest;
};

// "15%" off the front, up to 100.
std::optional<int> TakeWholePercent(std::string_view& text) {
  int percent = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
  if (error != std::errc{} || stop == text.data() + text.size() || *stop != '%') {
    return std::nullopt;
  }
  text.remove_prefix(static_cast<std::size_t>(stop - text.data()) + 1);
  return percent > 0 && percent <= 100 ? std::optional(percent) : std::nullopt;
}

std::optional<WholeBand> ReadWholeBand(std::string_view piece) {
  const std::optional<int> first = TakeWholePercent(piece);
  if (!first) return std::nullopt;
  if (!piece.starts_with('-')) return WholeBand{0, *first, piece};
  piece.remove_prefix(1);
  const std::optional<int> second = TakeWholePercent(piece);
  if (!second || *second <= *first) return std::nullopt;
  return WholeBand{*first, *second, piece};
}

}  // namespace

std::optional<std::string> CloseGap(std::string_view before, std::string_view piece) {
  const std::optional<WholeBand> first = ReadWholeBand(before);
  const std::optional<WholeBand> second = ReadWholeBand(piece);
  if (!first || !second || first->to + 1 != second->from || first->rest != second->rest) {
    return std::nullopt;
  }
  std::string closed = std::to_string(first->to);
  closed += "%-";
  closed += std::to_string(second->to);
  closed += '%';
  closed += second->rest;
  return closed;
}

std::string WithoutWholePercent(std::string_view piece) {
  std::string text(piece);
  return text.insert(text.find('%'), ".0");
}

}  // namespace pokermath
