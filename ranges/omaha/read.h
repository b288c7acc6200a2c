// Pieces of Omaha range text without weights.

#ifndef POKERMATH_RANGES_OMAHA_READ_H_
#define POKERMATH_RANGES_OMAHA_READ_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "ranges/omaha/term.h"
#include "ranges/text_pieces.h"

namespace pokermath {

/// What one text may cost: some seconds.
inline constexpr std::int64_t kRowsOfText = 250'000'000;

/// Adds what a piece says to `hands` or takes it off them, or says what is wrong.
///
/// @param hands  an OmahaSpec or a WeightSheet
template <int cards, typename Hands>
std::optional<Fault> ReadOmahaPiece(std::string_view piece, Budget& budget, Hands& hands);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_READ_H_
