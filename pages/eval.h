// The value of five to seven cards, as text and JSON.

#ifndef POKERMATH_PAGES_EVAL_H_
#define POKERMATH_PAGES_EVAL_H_

#include <array>
#include <string>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"
#include "pages/omaha_hand.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// What five to seven cards are worth.
struct EvalAnswer {
  bool short_deck = false;
  std::vector<int> hand;
  std::string words;  ///< of 52 cards
  std::array<int, 5> playing;
  int ascending;   ///< of 7462, or of 1404 in the short deck
  int hand_ranks;  ///< of 52 cards

  int Descending() const { return 7463 - ascending; }
  const char* Category() const {
    return short_deck ? ShortDeckCategoryName(ascending) : CategoryName(ascending);
  }
};

/// @param hand  five to seven cards; refuses those that the short deck has not
EvalAnswer Evaluate(bool short_deck, std::vector<int> hand);

/// "AhKd2c7dTh: high card, Ah Kd Th 7d 2c", a line.
std::string EvalHeadline(const EvalAnswer& answer, const Colours& colours);
std::string EvalText(const EvalAnswer& answer, const Colours& colours);
/// One line for a list.
std::string EvalLine(const EvalAnswer& answer);
Json EvalJson(const EvalAnswer& answer);

/// Which of two hands of two cards is better on a board of three to five cards, or of none.
///
/// @return 1 if the first one is the better one, -1 if the second one is, 0 if they are equal
int Judge(bool short_deck, std::vector<int> first, std::vector<int> second, std::vector<int> board);

/// What an Omaha hand makes with its board.
std::string OmahaEvalText(const OmahaHand& hand, const Colours& colours);
Json OmahaEvalJson(const OmahaHand& hand);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EVAL_H_
