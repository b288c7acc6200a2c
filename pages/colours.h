// Text with or without the colours of a terminal.

#ifndef POKERMATH_PAGES_COLOURS_H_
#define POKERMATH_PAGES_COLOURS_H_

#include <span>
#include <string>
#include <string_view>

namespace pokermath {

/// Card names without blanks: "AhKd".
std::string CardsText(std::span<const int> cards);

/// Escape sequences for a text that may be shown on a terminal; all of them empty for any other
/// destination.
class Colours {
 public:
  explicit Colours(bool on) : on_(on) {}
  std::string Strong(std::string_view text) const;
  std::string Faint(std::string_view text) const;
  /// A class of hands in the colour of pairs (kind 0), suited (below 0) or offsuit hands.
  std::string Class(std::string_view text, int kind) const;
  /// A card that improves a hand, and one that makes it the nuts.
  std::string Out(std::string_view text, bool nuts) const;
  /// CardsText, each card in the colour of its suit.
  std::string Cards(std::span<const int> cards) const;

 private:
  std::string Paint(std::string_view code, std::string_view text) const;

  bool on_;
};

}  // namespace pokermath

#endif  // POKERMATH_PAGES_COLOURS_H_
