// Low hands of Omaha Hi/Lo: five different ranks of eight or below, the ace low.

#ifndef POKERMATH_EVAL_OMAHA_LOW_H_
#define POKERMATH_EVAL_OMAHA_LOW_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "eval/best_pair.h"

namespace pokermath {

/// Low ranks as bits: the ace is 1, the deuce 2 .. the eight 128; 0 for a higher rank.
constexpr unsigned LowBit(int rank) { return rank == 12 ? 1u : rank <= 6 ? 2u << rank : 0u; }

/// A low as a number that is larger for the better one, 0 for none. The sets of ranks themselves
/// are larger for the worse one, because the highest rank decides first.
constexpr int LowStrength(unsigned set) { return 256 - static_cast<int>(set); }

/// The best low of two ranks and three of a board, by their bits.
constexpr int BestLow(unsigned pair, unsigned board) {
  if (__builtin_popcount(pair) != 2) return 0;
  unsigned rest = board & ~pair;
  if (__builtin_popcount(rest) < 3) return 0;
  // The three lowest.
  unsigned low = pair;
  for (int i = 0; i < 3; ++i, rest &= rest - 1) low |= rest & -rest;
  return LowStrength(low);
}

/// 54321 for five to ace; 0 for none.
constexpr int LowValueOf(int strength) {
  if (strength == 0) return 0;
  int value = 0;
  for (int rank = 8; rank >= 1; --rank) {
    if ((LowStrength(0) - strength) >> (rank - 1) & 1) value = value * 10 + rank;
  }
  return value;
}

/// What every pair of hole cards makes with the ranks of a board.
class OmahaPairLows {
 public:
  explicit OmahaPairLows(std::span<const int> ranks) {
    unsigned board = 0;
    for (const int rank : ranks) board |= LowBit(rank);
    constexpr std::size_t kLowRanks[8] = {12, 0, 1, 2, 3, 4, 5, 6};
    for (const std::size_t rank1 : kLowRanks) {
      for (const std::size_t rank2 : kLowRanks) {
        const unsigned pair = LowBit(static_cast<int>(rank1)) | LowBit(static_cast<int>(rank2));
        lows_[rank1][rank2] = static_cast<std::uint8_t>(BestLow(pair, board));
      }
    }
  }

  /// The strength of two hole cards.
  int Of(int card1, int card2) const {
    return lows_[static_cast<std::size_t>(card1 % 13)][static_cast<std::size_t>(card2 % 13)];
  }
  /// The best pair of a hand.
  int Best(std::span<const int> hand) const { return BestPair(*this, hand); }

 private:
  std::array<std::array<std::uint8_t, 13>, 13> lows_{};
};

/// The best low of a hand on a board, 0 for none.
int BestOmahaLow(std::span<const int> hand, std::span<const int> board);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_LOW_H_
