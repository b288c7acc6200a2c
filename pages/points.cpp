#include "pages/points.h"

#include <fmt/format.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

#include "pokermath/ranges.h"

namespace pokermath {

PointsAnswer FindPoints(std::vector<std::vector<int>> hands, bool high_low) {
  PointsAnswer answer = {high_low, std::move(hands), {}};
  for (const std::vector<int>& hand : answer.hands) {
    answer.points.push_back(high_low ? HutchisonPointsOmahaHL(hand.data())
                                     : HutchisonPointsOmaha(hand.data()));
  }
  return answer;
}

std::string PointsText(const PointsAnswer& answer, const Colours& colours) {
  std::string text;
  for (std::size_t i = 0; i < answer.hands.size(); ++i) {
    text += fmt::format("{}  {:>6}\n", colours.Cards(answer.hands[i]), answer.points[i]);
  }
  return text;
}

Json PointsJson(const PointsAnswer& answer) {
  Json json = {{"schema", kJsonSchema}, {"count", answer.high_low ? "hilo" : "high"}};
  for (std::size_t i = 0; i < answer.hands.size(); ++i) {
    // The high count is whole.
    const double points = answer.points[i];
    json["hands"].push_back(
        {{"hand", CardsJson(answer.hands[i])},
         {"points", answer.high_low ? Json(points) : Json(static_cast<int>(points))}});
  }
  return json;
}

}  // namespace pokermath
