// A question of equity as a JSON object.

#ifndef POKERMATH_PAGES_EQUITY_OBJECT_H_
#define POKERMATH_PAGES_EQUITY_OBJECT_H_

#include "pages/equity_words.h"
#include "pages/json.h"

namespace pokermath {

/// Parses the text of an object; refuses any other text.
Json ParseObject(std::string_view text);

/// The words of an object, and the options of `defaults` that it does not have itself; "id" is the
/// caller's. Refuses a key that is none, and a value that cannot be read.
EquityWords ReadObject(const Json& object, const EquityWords& defaults);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_OBJECT_H_
