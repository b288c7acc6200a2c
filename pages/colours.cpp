#include "pages/colours.h"

#include <fmt/format.h>

#include "pokermath/cards.h"

namespace pokermath {

std::string CardsText(std::span<const int> cards) {
  std::string text;
  for (const int card : cards) text += CardName(card);
  return text;
}

std::string Colours::Strong(std::string_view text) const { return Paint("1", text); }

std::string Colours::Faint(std::string_view text) const { return Paint("2", text); }

std::string Colours::Class(std::string_view text, int kind) const {
  return Paint(kind == 0 ? "1;33" : kind < 0 ? "1;32" : "1;34", text);
}

std::string Colours::Out(std::string_view text, bool nuts) const {
  return Paint(nuts ? "1;32" : "1;33", text);
}

std::string Colours::Cards(std::span<const int> cards) const {
  // Green, blue and red for clubs, diamonds and hearts; spades as the text around them.
  static constexpr const char* kSuitCodes[4] = {"32", "34", "31", "39"};
  std::string text;
  for (const int card : cards) text += Paint(kSuitCodes[card / 13], CardName(card));
  return text;
}

std::string Colours::Paint(std::string_view code, std::string_view text) const {
  return on_ ? fmt::format("\x1b[{}m{}\x1b[0m", code, text) : std::string(text);
}

}  // namespace pokermath
