// Which game a question is about.

#ifndef POKERMATH_PAGES_GAME_H_
#define POKERMATH_PAGES_GAME_H_

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/game.h"

namespace pokermath {

/// Omaha with all numbers of hole cards, with lows or without.
constexpr auto OmahaGames(bool high_low) {
  std::array<Game, kOmahaHandSizes.size()> games{};
  std::size_t next = 0;
  for (const GameRules& rules : kGames) {
    if (rules.IsOmaha() && rules.high_low == high_low) games[next++] = rules.game;
  }
  return games;
}

/// The games whose hands and ranges are looked at one by one: Hold'em, short deck, and Omaha
/// without lows.
inline constexpr auto kHighGames = [] {
  constexpr auto kOmaha = OmahaGames(false);
  std::array<Game, 2 + kOmaha.size()> games = {Game::kHoldem, Game::kShortDeck};
  for (std::size_t i = 0; i < kOmaha.size(); ++i) games[2 + i] = kOmaha[i];
  return games;
}();

inline constexpr auto kAllGames = [] {
  std::array<Game, kGames.size()> games{};
  for (std::size_t i = 0; i < games.size(); ++i) games[i] = kGames[i].game;
  return games;
}();

/// Their names, one by one.
std::vector<std::string_view> ListOf(std::span<const Game> games);
/// Their names for a person: "omaha, omaha5 or omaha6".
std::string NamesOf(std::span<const Game> games);

/// The game of a name; refuses all but those that a question has answers for.
///
/// @param option  what the name is called where it comes from
Game ReadGame(const std::string& name, std::span<const Game> accepted,
              const char* option = "--game");
/// The name that ReadGame reads.
inline const char* NameOf(Game game) { return RulesOf(game).name; }
/// "Texas Hold'em", "five-card Omaha".
inline const char* TitleOf(Game game) { return RulesOf(game).title; }

inline bool IsHighLow(Game game) { return RulesOf(game).high_low; }
inline bool IsOmaha(Game game) { return RulesOf(game).IsOmaha(); }
/// Hole cards.
inline std::size_t HandSize(Game game) { return static_cast<std::size_t>(RulesOf(game).hand_size); }

/// Refuses cards that are not in the deck.
void CheckDeck(bool short_deck, std::span<const int> cards, std::string_view field = "");

}  // namespace pokermath

#endif  // POKERMATH_PAGES_GAME_H_
