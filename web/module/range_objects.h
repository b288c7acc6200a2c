// Ranges as objects of JSON: what a text means, and a text for chosen hands.

#ifndef POKERMATH_WEB_MODULE_RANGE_OBJECTS_H_
#define POKERMATH_WEB_MODULE_RANGE_OBJECTS_H_

#include <string_view>

#include "pages/json.h"

namespace pokermath {

/// @param object  {"game":"holdem","text":"TT+,AQs+:0.5"}: a player of that game
/// @return {"name":"TT+,AQs+:0.5","every":false,"hands":34,"weights":[["AhAd",1],...],"cut":false,
///         "warnings":[]}; of hands with more than two cards the first 500, none of all of them
Json DescribedRange(std::string_view object);

/// @param object  {"game":"holdem","weights":[["AhAd",1],["AhKh",0.5]]}
/// @return {"text":"..."}, which reads back to the same range; empty for no hands
Json WrittenRange(std::string_view object);

}  // namespace pokermath

#endif  // POKERMATH_WEB_MODULE_RANGE_OBJECTS_H_
