#include "pages/json.h"

#include <nlohmann/json.hpp>

#include "pokermath/cards.h"

namespace pokermath {

std::string JsonLine(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json CardsJson(std::span<const int> cards) {
  Json list = Json::array();
  for (const int card : cards) list.push_back(CardName(card));
  return list;
}

}  // namespace pokermath
