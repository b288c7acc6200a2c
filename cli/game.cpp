#include "cli/game.h"

#include "cli/errors.h"
#include "pokermath/cards.h"
#include "ranges/hand_classes.h"

namespace pokermath::cli {

Game ReadGame(const std::string& name) {
  if (const std::optional<Game> game = FindGame(name)) return *game;
  throw UsageError("--game " + Quoted(name) + " is not known: " + std::string(GameNames()));
}

bool IsShortDeck(const std::string& game) {
  if (game == "shortdeck") return true;
  if (game == "holdem") return false;
  throw UsageError("--game " + Quoted(game) + " is not known: holdem or shortdeck");
}

void CheckDeck(bool short_deck, std::span<const int> cards) {
  if (!short_deck) return;
  for (const int card : cards) {
    if (GetCardRank(card) >= kLowestShortDeckRank) continue;
    throw UsageError(CardName(card) + " is not in the short deck, which has six to ace");
  }
}

}  // namespace pokermath::cli
