/// @file
/// The games, and how their rules differ.

#ifndef POKERMATH_GAME_H_
#define POKERMATH_GAME_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "pokermath/card_set.h"
#include "pokermath/export.h"

namespace pokermath {

/// With how many hole cards Omaha is played. Whatever is there for each of these numbers is made
/// from this list, so that none can be forgotten: apply(4) and so on.
#define POKERMATH_OMAHA_HAND_SIZES(apply) apply(4) apply(5) apply(6)

/// @cond
#define POKERMATH_NUMBER(number) number,
/// @endcond
/// The same numbers as a list: 4, 5, 6.
inline constexpr std::array kOmahaHandSizes = {POKERMATH_OMAHA_HAND_SIZES(POKERMATH_NUMBER)};
#undef POKERMATH_NUMBER

/// Whether Omaha is played with so many hole cards.
constexpr bool IsOmahaHandSize(int size) {
  for (const int known : kOmahaHandSizes) {
    if (size == known) return true;
  }
  return false;
}

/// The games. A value that is none of these is undefined wherever a game is taken.
enum class Game {
  kHoldem,              ///< Texas Hold'em
  kShortDeck,           ///< a flush beats a full house, three of a kind a straight
  kShortDeckStraights,  ///< a flush beats a full house, a straight three of a kind
  kOmaha,               ///< four hole cards, two of which play with three of the board
  kOmaha5,              ///< the same with five
  kOmaha6,              ///< the same with six
  kOmahaHighLow,        ///< Omaha where the best high and the best low hand share the pot
  kOmaha5HighLow,       ///< the same with five hole cards
  kOmaha6HighLow,       ///< the same with six
};

/// Up to which board the hands are compared; the value is the number of board cards.
enum class Street : int {
  kFlop = 3,   ///< hands of five cards
  kTurn = 4,   ///< hands of six cards
  kRiver = 5,  ///< hands of seven cards
};

/// How a game is played.
struct GameRules {
  Game game;                 ///< which one
  const char* name;          ///< as FindGame reads it: "omaha-hilo"
  const char* title;         ///< as a sentence has it: "Omaha Hi/Lo"
  int hand_size;             ///< hole cards
  int lowest_rank;           ///< of the deck, 0 = deuce, 4 = six
  int hole_cards_played;     ///< exactly so many; 0 for any
  bool high_low;             ///< the best low of eight or below takes half of the pot
  bool straight_over_trips;  ///< of the short decks

  /// The cards of the deck, 52 or 36.
  constexpr CardSet Deck() const {
    constexpr std::uint64_t kOfEverySuit =
        1 | std::uint64_t{1} << 13 | std::uint64_t{1} << 26 | std::uint64_t{1} << 39;
    const std::uint64_t ranks = std::uint64_t{0x1FFF} >> lowest_rank << lowest_rank;
    return CardSet::OfBits(ranks * kOfEverySuit);
  }
  /// Whether it has 36 cards.
  constexpr bool IsShortDeck() const { return lowest_rank > 0; }
  /// Whether a fixed number of hole cards plays.
  constexpr bool IsOmaha() const { return hole_cards_played > 0; }
};

/// The rules of every game, in the order of the enumeration.
inline constexpr std::array<GameRules, 9> kGames = {{
    {Game::kHoldem, "holdem", "Texas Hold'em", 2, 0, 0, false, true},
    {Game::kShortDeck, "shortdeck", "short deck", 2, 4, 0, false, false},
    {Game::kShortDeckStraights, "shortdeck-straights", "short deck, straight over three of a kind",
     2, 4, 0, false, true},
    {Game::kOmaha, "omaha", "Omaha", 4, 0, 2, false, true},
    {Game::kOmaha5, "omaha5", "five-card Omaha", 5, 0, 2, false, true},
    {Game::kOmaha6, "omaha6", "six-card Omaha", 6, 0, 2, false, true},
    {Game::kOmahaHighLow, "omaha-hilo", "Omaha Hi/Lo", 4, 0, 2, true, true},
    {Game::kOmaha5HighLow, "omaha5-hilo", "five-card Omaha Hi/Lo", 5, 0, 2, true, true},
    {Game::kOmaha6HighLow, "omaha6-hilo", "six-card Omaha Hi/Lo", 6, 0, 2, true, true},
}};

/// The rules of a game.
constexpr const GameRules& RulesOf(Game game) { return kGames[static_cast<std::size_t>(game)]; }

/// The game of a name of kGames, case matters; nothing for any other text. Any number of threads.
POKERMATH_EXPORT std::optional<Game> FindGame(std::string_view name);
/// The names that FindGame reads, with commas between them, as an error lists them.
POKERMATH_EXPORT std::string_view GameNames();

}  // namespace pokermath

#endif  // POKERMATH_GAME_H_
