// JSON as answers are written in it.

#ifndef POKERMATH_PAGES_JSON_H_
#define POKERMATH_PAGES_JSON_H_

#include <span>
#include <string>

#include "nlohmann/json_fwd.hpp"

namespace pokermath {

/// Keys stay in the order in which they are set.
using Json = nlohmann::ordered_json;

/// Version of the JSON layout, the key "schema" of every object.
inline constexpr int kJsonSchema = 1;

/// One object on one line. Bytes that are no UTF-8 become U+FFFD.
std::string JsonLine(const Json& object);

/// Card names as a list: ["Ah", "Kd"].
Json CardsJson(std::span<const int> cards);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_JSON_H_
