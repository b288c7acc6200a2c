// Which game a question is about.

#ifndef POKERMATH_CLI_GAME_H_
#define POKERMATH_CLI_GAME_H_

#include <cstddef>
#include <span>
#include <string>

#include "pokermath/game.h"

namespace pokermath::cli {

/// The game of a name; throws UsageError unless it is one of those that a question has answers for.
Game ReadGame(const std::string& name, std::span<const Game> accepted);
/// The name that ReadGame reads.
inline const char* NameOf(Game game) { return RulesOf(game).name; }
/// "Texas Hold'em", "five-card Omaha".
inline const char* TitleOf(Game game) { return RulesOf(game).title; }

inline bool IsHighLow(Game game) { return RulesOf(game).high_low; }
inline bool IsOmaha(Game game) { return RulesOf(game).IsOmaha(); }
/// Hole cards.
inline std::size_t HandSize(Game game) { return static_cast<std::size_t>(RulesOf(game).hand_size); }

/// Throws UsageError if one of the cards is not in the deck.
void CheckDeck(bool short_deck, std::span<const int> cards);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_GAME_H_
