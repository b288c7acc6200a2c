// An Omaha hand on a board, as the questions about one read it.

#ifndef POKERMATH_PAGES_OMAHA_HAND_H_
#define POKERMATH_PAGES_OMAHA_HAND_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"

namespace pokermath {

/// A hand, a board, and the best that they make.
struct OmahaHand {
  std::vector<int> hand;
  std::vector<int> board;
  std::vector<int> hole;        // the two that play
  std::vector<int> from_board;  // the three that play
  int value;                    // ascending

  /// "omaha", by the number of hole cards; "omaha-hilo" of a question about the low.
  const char* Game(bool high_low) const;
  /// "flush Ace high".
  std::string Words() const;
  int Unseen() const { return 52 - static_cast<int>(hand.size() + board.size()); }
  /// "AhKhQsJs on Th9h2h".
  std::string Cards(const Colours& colours) const;
};

/// The best of two hole cards or more on a board of three to five; not checked.
OmahaHand BestOfOmaha(std::vector<int> hand, std::vector<int> board);

/// A line that says what the hand is and which cards play.
std::string OmahaHeadline(const OmahaHand& hand, const Colours& colours);

/// Game, hand and board as the first keys of an answer; of one about the low, the game is Hi/Lo.
Json OmahaJson(const OmahaHand& hand, bool high_low = false);

/// The words of a question about one.
struct OmahaQuestion {
  std::string hand, board;
  std::optional<std::string> game;     ///< otherwise the hand has four to six cards
  bool low = false;                    ///< it is about the low hand, and games may be Hi/Lo
  const char* game_option = "--game";  ///< what `game` is called where the words come from
};

/// Refuses cards that are no such hand with a board of three to `most_board`.
OmahaHand ReadOmahaHand(const OmahaQuestion& question, std::size_t most_board);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_OMAHA_HAND_H_
