// Pieces of two-card range text without weights.

#ifndef POKERMATH_RANGES_RANGE_TEXT_H_
#define POKERMATH_RANGES_RANGE_TEXT_H_

#include <optional>
#include <string_view>

#include "pokermath/ranges.h"
#include "ranges/text_pieces.h"

namespace pokermath {

/// Adds what a piece of ParseRange's text says to a range, or says what is wrong and adds nothing.
std::optional<Fault> ReadSpecPiece(std::string_view piece, const RangeOptions& options,
                                   Spec& range);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_RANGE_TEXT_H_
