// Pot and side pots, as text and JSON.

#ifndef POKERMATH_PAGES_POTS_H_
#define POKERMATH_PAGES_POTS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"
#include "pokermath/showdown.h"

namespace pokermath {

/// Who gets what; an entry a seat.
struct PotsAnswer {
  std::vector<int> stakes, scores;
  std::vector<Pot> pots;
  std::vector<std::int64_t> winnings;
};

/// Refuses too many seats, or not as many scores as stakes.
///
/// @param prefix  of the names of the two lists where they come from
PotsAnswer FindPots(std::vector<int> stakes, std::vector<int> scores, const char* prefix = "--");

std::string PotsText(const PotsAnswer& answer, const Colours& colours);
Json PotsJson(const PotsAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_POTS_H_
