// Cards as the words of a question name them.

#ifndef POKERMATH_PAGES_CARD_WORDS_H_
#define POKERMATH_PAGES_CARD_WORDS_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/card_set.h"

namespace pokermath {

/// Any number of cards; refuses a text that is none, as `field`.
std::vector<int> ReadCards(std::string_view text, std::string_view field = "");

/// The same, and refuses with `accepted` if their number is not within the bounds.
std::vector<int> ReadCards(std::string_view text, std::size_t least, std::size_t most,
                           std::string_view accepted, std::string_view field = "");

/// As people write hands: the highest rank first.
std::vector<int> InOrder(CardSet cards);

/// "'AhKd7c' has 3 cards".
std::string CountOfCards(std::string_view text, std::size_t count);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_CARD_WORDS_H_
