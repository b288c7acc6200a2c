#include "pages/game.h"

#include <algorithm>
#include <iterator>

#include "pages/errors.h"
#include "pokermath/cards.h"
#include "ranges/hand_classes.h"

namespace pokermath {

std::vector<std::string_view> ListOf(std::span<const Game> games) {
  std::vector<std::string_view> names;
  for (const Game game : games) names.emplace_back(NameOf(game));
  return names;
}

std::string NamesOf(std::span<const Game> games) { return OneOf(ListOf(games)); }

Game ReadGame(const std::string& name, std::span<const Game> accepted, const char* option) {
  std::string names;
  for (const Game game : accepted) {
    if (name == NameOf(game)) return game;
    names += (names.empty() ? "" : ", ") + std::string(NameOf(game));
  }
  Refuse(std::string(option) + " " + Quoted(name) + " is not " +
         (FindGame(name) ? "for this question" : "known") + ": " + names);
}

void CheckDeck(bool short_deck, std::span<const int> cards, std::string_view field) {
  if (!short_deck) return;
  for (const int card : cards) {
    if (GetCardRank(card) >= kLowestShortDeckRank) continue;
    Refuse(CardName(card) + " is not in the short deck, which has six to ace", field);
  }
}

}  // namespace pokermath
