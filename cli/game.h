// Which game a question is about.

#ifndef POKERMATH_CLI_GAME_H_
#define POKERMATH_CLI_GAME_H_

#include <span>
#include <string>

namespace pokermath::cli {

/// Whether a game is the short deck; throws UsageError unless it is "holdem" or "shortdeck".
bool IsShortDeck(const std::string& game);

/// Throws UsageError if one of the cards is not in the deck.
void CheckDeck(bool short_deck, std::span<const int> cards);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_GAME_H_
