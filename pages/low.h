// The low of an Omaha Hi/Lo hand, as text and JSON.

#ifndef POKERMATH_PAGES_LOW_H_
#define POKERMATH_PAGES_LOW_H_

#include <string>

#include "pages/colours.h"
#include "pages/json.h"
#include "pages/omaha_hand.h"

namespace pokermath {

/// The low of a hand, what beats it, and the cards that make one.
struct LowAnswer {
  OmahaHand hand;
  int standing;  ///< why there is none
  int value;     ///< 0 for none
  int better;    ///< holdings of two unseen cards, of a low
  int outs = 0;  ///< with a card to come
  int nut_outs = 0;

  bool CardToCome() const { return hand.board.size() < 5; }
  double Chance() const { return static_cast<double>(outs) / hand.Unseen(); }
};

LowAnswer FindLow(OmahaHand hand);

std::string LowText(const LowAnswer& answer, const Colours& colours);
Json LowJson(const LowAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_LOW_H_
