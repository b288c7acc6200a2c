#include "pages/card_words.h"

#include <fmt/format.h>

#include <algorithm>

#include "pages/errors.h"
#include "pokermath/cards.h"

namespace pokermath {

std::vector<int> ReadCards(std::string_view text, std::string_view field) {
  CardsResult read = ParseCards(text);
  if (!read.error.empty()) Refuse(read.error, field);
  return std::move(read.cards);
}

std::vector<int> ReadCards(std::string_view text, std::size_t least, std::size_t most,
                           std::string_view accepted, std::string_view field) {
  std::vector<int> cards = ReadCards(text, field);
  if (cards.size() < least || cards.size() > most) {
    Refuse(fmt::format("{}: {}", CountOfCards(text, cards.size()), accepted), field);
  }
  return cards;
}

std::vector<int> InOrder(CardSet cards) {
  std::vector<int> codes(cards.begin(), cards.end());
  std::ranges::sort(codes, comparefun);
  return codes;
}

std::string CountOfCards(std::string_view text, std::size_t count) {
  return fmt::format("{} has {} {}", Quoted(text), count, count == 1 ? "card" : "cards");
}

}  // namespace pokermath
