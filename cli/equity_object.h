// A question of equity as a JSON object.

#ifndef POKERMATH_CLI_EQUITY_OBJECT_H_
#define POKERMATH_CLI_EQUITY_OBJECT_H_

#include "cli/equity_words.h"
#include "cli/output.h"

namespace pokermath::cli {

/// Parses the text of an object; throws UsageError for any other text.
Json ParseObject(std::string_view text);

/// The words of an object, and the options of `defaults` that it does not have itself; "id" is the
/// caller's. Throws UsageError that names a key that is none, or whose value cannot be read.
EquityWords ReadObject(const Json& object, const EquityWords& defaults);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_OBJECT_H_
