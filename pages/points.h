// Points of Omaha starting hands, as text and JSON.

#ifndef POKERMATH_PAGES_POINTS_H_
#define POKERMATH_PAGES_POINTS_H_

#include <string>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"

namespace pokermath {

struct PointsAnswer {
  bool high_low = false;
  std::vector<std::vector<int>> hands;
  std::vector<double> points;  ///< of each hand
};

/// The Hutchison count of hands of four cards.
PointsAnswer FindPoints(std::vector<std::vector<int>> hands, bool high_low);

std::string PointsText(const PointsAnswer& answer, const Colours& colours);
Json PointsJson(const PointsAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_POINTS_H_
