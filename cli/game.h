// Which game a question is about.

#ifndef POKERMATH_CLI_GAME_H_
#define POKERMATH_CLI_GAME_H_

#include <cstddef>
#include <span>
#include <string>

namespace pokermath::cli {

enum class Game { kHoldem, kShortDeck, kOmaha, kOmaha5, kOmahaHighLow, kOmaha5HighLow };

inline constexpr Game kAllGames[] = {Game::kHoldem, Game::kShortDeck,    Game::kOmaha,
                                     Game::kOmaha5, Game::kOmahaHighLow, Game::kOmaha5HighLow};

/// The game of a name; throws UsageError unless it is one of those that a question has answers for.
Game ReadGame(const std::string& name, std::span<const Game> accepted);
/// The name that ReadGame reads.
const char* NameOf(Game game);
/// "Texas Hold'em", "five-card Omaha".
const char* TitleOf(Game game);

constexpr bool IsHighLow(Game game) {
  return game == Game::kOmahaHighLow || game == Game::kOmaha5HighLow;
}
constexpr bool IsOmaha(Game game) {
  return game == Game::kOmaha || game == Game::kOmaha5 || IsHighLow(game);
}
/// Hole cards.
constexpr std::size_t HandSize(Game game) {
  return !IsOmaha(game) ? 2 : game == Game::kOmaha || game == Game::kOmahaHighLow ? 4 : 5;
}

/// Throws UsageError if one of the cards is not in the deck.
void CheckDeck(bool short_deck, std::span<const int> cards);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_GAME_H_
