// Rows of card codes, as arrays have them: checked before evaluators see them.

#ifndef POKERMATH_PYTHON_ROWS_H_
#define POKERMATH_PYTHON_ROWS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace pokermath {

/// Most cards of a row: six hole cards and a board.
inline constexpr std::size_t kMostRowCards = 11;

/// Rows that are checked together; a multiple of what is compared at once.
inline constexpr std::size_t kBlockRows = 512;

/// Behind the last row of a block there have to be so many bytes that may be read.
inline constexpr std::size_t kRowPadding = 64;

/// Whether every row is of different cards of the deck.
///
/// @param width  cards of a row, 2 to kMostRowCards
/// @param rows   kBlockRows rows; changed behind the first `count` of them
bool AreHands(std::size_t width, bool short_deck, std::uint8_t* rows, std::size_t count);

/// What is wrong with a row; empty when nothing is.
std::string FaultOf(std::span<const std::uint8_t> row, bool short_deck);

}  // namespace pokermath

#endif  // POKERMATH_PYTHON_ROWS_H_
