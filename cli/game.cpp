#include "cli/game.h"

#include <algorithm>
#include <iterator>

#include "cli/errors.h"
#include "pokermath/cards.h"
#include "ranges/hand_classes.h"

namespace pokermath::cli {

namespace {

struct GameNames {
  Game game;
  const char* name;
  const char* title;
};
constexpr GameNames kGames[] = {{Game::kHoldem, "holdem", "Texas Hold'em"},
                                {Game::kShortDeck, "shortdeck", "short deck"},
                                {Game::kOmaha, "omaha", "Omaha"},
                                {Game::kOmaha5, "omaha5", "five-card Omaha"},
                                {Game::kOmahaHighLow, "omaha-hilo", "Omaha Hi/Lo"},
                                {Game::kOmaha5HighLow, "omaha5-hilo", "five-card Omaha Hi/Lo"}};

const GameNames& NamesOf(Game game) { return kGames[static_cast<std::size_t>(game)]; }

}  // namespace

Game ReadGame(const std::string& name, std::span<const Game> accepted) {
  std::string names;
  for (const Game game : accepted) {
    if (name == NameOf(game)) return game;
    names += (names.empty() ? "" : ", ") + std::string(NameOf(game));
  }
  const bool known = std::ranges::find(kGames, name, &GameNames::name) != std::end(kGames);
  throw UsageError("--game " + Quoted(name) + " is not " + (known ? "for this question" : "known") +
                   ": " + names);
}

const char* NameOf(Game game) { return NamesOf(game).name; }
const char* TitleOf(Game game) { return NamesOf(game).title; }

void CheckDeck(bool short_deck, std::span<const int> cards) {
  if (!short_deck) return;
  for (const int card : cards) {
    if (GetCardRank(card) >= kLowestShortDeckRank) continue;
    throw UsageError(CardName(card) + " is not in the short deck, which has six to ace");
  }
}

}  // namespace pokermath::cli
