// A Hold'em hand against every holding of a range, board by board.

#ifndef POKERMATH_EQUITY_KERNELS_RANGE_COUNT_H_
#define POKERMATH_EQUITY_KERNELS_RANGE_COUNT_H_

#include <cstdint>
#include <span>
#include <vector>

#include "pokermath/combination_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// The holdings of a range that a hand meets, ready to be judged on any board.
class RangeOpponents {
 public:
  /// Holdings that share a card with the hand are left out.
  RangeOpponents(std::span<const int, 2> hand, const CombinationSet& range);

  /// Adds the hand's wins and ties on one board of 3, 4 or 5 cards to a tally, one case for every
  /// holding that shares no card with the board or with `dead`.
  ///
  /// @param dead  a bit for each card code that nobody holds, beside hand and board
  void Judge(std::span<const int> board, std::uint64_t dead, Tally& tally) const;

  /// Judges every way to complete the known cards to a board of `cards` cards, 3 to 5.
  Tally Count(std::span<const int> known, int cards) const;

 private:
  struct Holding {
    std::uint64_t word;   // sum of the compact evaluator's words
    std::uint64_t cards;  // a bit for each card code
  };

  template <int kCards>
  void JudgeHoldings(std::span<const int> board, std::uint64_t dead, Tally& tally) const;

  Holding hero_;
  std::vector<Holding> opponents_;
};

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_RANGE_COUNT_H_
