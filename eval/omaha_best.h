// The best five of an Omaha hand, and which cards they are.

#ifndef POKERMATH_EVAL_OMAHA_BEST_H_
#define POKERMATH_EVAL_OMAHA_BEST_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "eval/best_pair.h"
#include "pokermath/card_set.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// A choice of two hole cards and three board cards, as indexes, rising.
struct OmahaChoice {
  int value = 0;  ///< ascending, 1..7462
  int hole[2] = {};
  int board[3] = {};
};

/// The best choice; of equal ones the first, hole cards before board cards.
///
/// @param hand   two card codes or more, up to 64
/// @param board  three to five
OmahaChoice FindBestOmaha(std::span<const int> hand, std::span<const int> board);

/// The value of the best choice alone.
int BestOmahaValue(std::span<const int> hand, std::span<const int> board);

/// The same for a board of five, by the cards and the sums of their words of the compact evaluator.
int BestOmahaValue(CardSet hand, std::uint64_t hand_words, CardSet board,
                   std::uint64_t board_words);

/// Ranks as bits, an ace as a one too, below the deuce.
constexpr unsigned FromAce(unsigned ranks) { return ranks << 1 | ranks >> 12; }
/// The lowest ranks of five in a row.
constexpr unsigned FiveInRow(unsigned from_ace) {
  const unsigned two = from_ace & from_ace >> 1;
  return two & two >> 2 & from_ace >> 4;
}

/// The highest bits of a number that has so many; if it has fewer, with the lowest one.
template <int bits>
inline unsigned Highest(unsigned number) {
  unsigned highest = 0;
  for (int i = 0; i < bits; ++i) highest |= 1u << (31 ^ __builtin_clz((number & ~highest) | 1));
  return highest;
}

/// The best straight flush of two hole cards and three board cards of a suit, 0 for none; arguments
/// as of BestOmahaFlush.
int BestOmahaStraightFlush(unsigned holes, unsigned board);
/// The best flush of two hole cards and three board cards of a suit, by their ranks as bits.
///
/// @param holes  two ranks and more
/// @param board  three and more, others
inline int BestOmahaFlush(unsigned holes, unsigned board) {
  if (FiveInRow(FromAce(holes | board)) != 0) [[unlikely]] {
    if (const int value = BestOmahaStraightFlush(holes, board); value != 0) return value;
  }
  return kCompactTables.flush_values[Highest<2>(holes) | Highest<3>(board)];
}

/// What every pair of hole cards makes with a board of three to five cards.
class OmahaPairValues {
 public:
  explicit OmahaPairValues(std::span<const int> board);
  /// @param ranks   of the board
  /// @param suit    of which there are three board cards and more, or -1
  /// @param suited  their ranks, as bits
  OmahaPairValues(std::span<const int> ranks, int suit, unsigned suited);

  /// Ascending value of two hole cards that are not on the board.
  int Of(int card1, int card2) const {
    const int plain =
        plain_[static_cast<std::size_t>(card1 % 13)][static_cast<std::size_t>(card2 % 13)];
    if (card1 / 13 != suit_ || card2 / 13 != suit_) return plain;
    return std::max(plain, FlushOf(card1 % 13, card2 % 13));
  }
  /// The suit of which there are three board cards and more, or -1.
  int suit() const { return suit_; }
  /// The best pair of a hand.
  int Best(std::span<const int> hand) const { return BestPair(*this, hand); }

 private:
  int FlushOf(int rank1, int rank2) const;

  void AddPlain(const std::array<int, 5>& ranks, std::size_t size);

  std::array<std::array<std::uint16_t, 13>, 13> plain_;
  int suit_ = -1;             // of which there are three board cards
  unsigned board_ranks_ = 0;  // of that suit
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_BEST_H_
