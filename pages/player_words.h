// A player as a user words him: a hand, a range, or anybody.

#ifndef POKERMATH_PAGES_PLAYER_WORDS_H_
#define POKERMATH_PAGES_PLAYER_WORDS_H_

#include <string>
#include <string_view>
#include <vector>

#include "pokermath/hand_range.h"

namespace pokermath {

/// The pieces of a list with a comma between them.
std::string Pieces(std::string_view text);

/// The texts of players from words: each word is a player, but for words that are cards only and
/// together exactly one hand: Ah Kd 7s 7c.
std::vector<std::string> PlayerTexts(const std::vector<std::string>& words, Game game);

struct PlayerReading {
  HandRange range;
  std::string name;  ///< the cards of a hand, or the pieces of a range with commas between them
  std::vector<std::string> warnings;  ///< about what reads well but may be meant otherwise
};

/// Reads one player; refuses a text that is none, as `field`.
PlayerReading ReadPlayer(std::string_view text, Game game, std::string_view field = "");

}  // namespace pokermath

#endif  // POKERMATH_PAGES_PLAYER_WORDS_H_
