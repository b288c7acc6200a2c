// The outs of an Omaha hand, as text, JSON and a picture.

#ifndef POKERMATH_PAGES_OUTS_H_
#define POKERMATH_PAGES_OUTS_H_

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"
#include "pages/omaha_hand.h"

namespace pokermath {

/// Cards that make a category, or any higher one than now.
struct Outs {
  int value = 0;  ///< of the hand with one of them
  std::vector<int> cards;
  std::vector<int> nut_cards;
};

/// A suit with two cards of the hand and two of the board, or more.
struct FlushDraw {
  int suit;
  int in_hand, on_board;
};

/// The cards that lift a hand to a higher category when they come next.
struct OutsAnswer {
  OmahaHand hand;
  std::map<int, Outs> outs;  ///< by category
  Outs all;
  std::set<std::pair<int, int>> straights, held_straights;  ///< ranks
  int straight_holdings[2];                                 ///< of all cards, of unseen ones
  std::vector<FlushDraw> flush_draws;

  double Chance() const { return static_cast<double>(all.cards.size()) / hand.Unseen(); }
};

/// @param hand  with a board of three or four cards
OutsAnswer FindOuts(OmahaHand hand);

std::string OutsText(const OutsAnswer& answer, const Colours& colours);
Json OutsJson(const OutsAnswer& answer);
/// A stand-alone SVG document: the deck.
std::string OutsSvg(const OutsAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_OUTS_H_
