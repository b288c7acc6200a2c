// What hands of two cards make with a complete board, weakest first.
//
// Where nobody flushes, the ranks of the board alone put the 91 rank classes in order, so that
// there are few different orders: 6,188 on the river. Of a suit that three board cards share, the
// ranks that hand and board hold of it decide. Both orders are put in order when they are first
// asked for and kept, 4 MB a game if all of them are.

#ifndef POKERMATH_KERNELS_BOARD_ORDER_H_
#define POKERMATH_KERNELS_BOARD_ORDER_H_

#include <array>
#include <cstdint>
#include <span>

#include "kernels/hole_cards.h"
#include "pokermath/card_set.h"
#include "pokermath/game.h"

namespace pokermath {

/// Rank classes that the board leaves, rising by what they make without a flush; those of equal
/// value stand together.
struct RankOrder {
  std::array<std::int16_t, kRankClasses> values;   ///< [place], comparable with those of flushes
  std::array<std::uint8_t, kRankClasses> classes;  ///< [place]
  std::uint8_t size;
};

/// The ranks that a hand may hold of the suit of three and more board cards so that it flushes,
/// rising by value: two of them, one, or none beside five on the board.
struct FlushOrder {
  static constexpr std::size_t kMost = 45;
  std::array<std::int16_t, kMost> values;
  std::array<RankSet, kMost> held;
  std::uint8_t size;
};

struct BoardOrder {
  const RankOrder* ranks;
  int suit = -1;                        ///< in which hands can flush, -1 for none
  const FlushOrder* flushes = nullptr;  ///< nothing without a suit
};

/// @param rules  of a game of two cards
/// @param board  three to five cards of its deck
/// May run in several threads at once; what it returns stays.
BoardOrder OrderOf(const GameRules& rules, CardSet board);

/// The two parts of it, for those who walk many boards.
///
/// @param ranks  of three to five board cards, rising; no five are equal
const RankOrder& RankOrderOf(const GameRules& rules, std::span<const int> ranks);
/// @param suited  ranks of the board's cards of a suit, three to five
const FlushOrder& FlushOrderOf(const GameRules& rules, RankSet suited);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_BOARD_ORDER_H_
