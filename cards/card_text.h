// A suit in the text of a card.

#ifndef POKERMATH_CARDS_CARD_TEXT_H_
#define POKERMATH_CARDS_CARD_TEXT_H_

#include <cstddef>
#include <string_view>

namespace pokermath {

/// The suit at the start of a text and how many bytes it takes; -1 if there is none.
struct SuitAt {
  int suit = -1;
  std::size_t length = 0;
};

/// Reads a letter of "cdhs" in either case, or a sign in UTF-8, filled or outlined (♥ or ♡), with
/// or without a variation selector behind it.
SuitAt ReadSuitAt(std::string_view text);

}  // namespace pokermath

#endif  // POKERMATH_CARDS_CARD_TEXT_H_
