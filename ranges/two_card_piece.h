// Pieces of weighted range text of two-card games: what ParseRange's pieces say, patterns, runs of
// connectors, bands of percentages and exclusions.

#ifndef POKERMATH_RANGES_TWO_CARD_PIECE_H_
#define POKERMATH_RANGES_TWO_CARD_PIECE_H_

#include <optional>
#include <string_view>

#include "pokermath/game.h"
#include "ranges/holding_set.h"
#include "ranges/text_pieces.h"

namespace pokermath {

/// Reads a piece, or says what is wrong with it.
///
/// @param hands  out: what the piece speaks of
/// @return       with `off`, whether these are taken off what stands in front of the piece
std::optional<Fault> ReadTwoCardPiece(std::string_view piece, const GameRules& rules,
                                      HoldingSet& hands, bool& off);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_TWO_CARD_PIECE_H_
