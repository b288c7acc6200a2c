// What beats an Omaha hand, and the nuts, as text and JSON.

#ifndef POKERMATH_PAGES_NUTS_H_
#define POKERMATH_PAGES_NUTS_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"
#include "pages/omaha_hand.h"

namespace pokermath {

/// How many there are, and how many of them beat the hand.
struct Beaten {
  std::int64_t by = 0;
  std::int64_t of = 0;

  double Percent() const { return 100.0 * static_cast<double>(by) / static_cast<double>(of); }
};

/// What beats a hand, and the best that two unseen cards make.
struct NutsAnswer {
  OmahaHand hand;
  Beaten by_hands;  ///< of as many cards
  Beaten by_pairs;
  int nut_value;
  std::string nut_words;
  std::map<int, std::vector<std::string>> nuts;  ///< by class, its matrix cell

  bool IsNuts() const { return by_pairs.by == 0; }
};

NutsAnswer FindNuts(OmahaHand hand);

std::string NutsText(const NutsAnswer& answer, const Colours& colours);
Json NutsJson(const NutsAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_NUTS_H_
