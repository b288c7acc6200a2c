// A Hold'em hand against the holdings of a range on one complete board after the other.
//
// A board's part of the evaluator's sum is worked out once; a holding then costs one addition and
// two look-ups. The cards as bits of a number say both who shares a card and, 13 bits a suit, which
// ranks a flush has.

#ifndef POKERMATH_KERNELS_BOARD_JUDGE_H_
#define POKERMATH_KERNELS_BOARD_JUDGE_H_

#include <cstdint>
#include <span>
#include <vector>

#include "pokermath/combination_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// A hand and holdings, ready to be judged on any complete board.
class BoardJudge {
 public:
  /// Holdings that share a card with the hand are left out.
  BoardJudge(std::span<const int, 2> hand, std::span<const Combination> opponents);

  /// Adds the hand's wins and ties on one board of 3, 4 or 5 cards to a tally, one case for every
  /// holding that shares no card with the board or with `dead`.
  ///
  /// @param dead  a bit for each card code that nobody holds, beside hand and board
  void Judge(std::span<const int> board, std::uint64_t dead, Tally& tally) const;

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

#endif  // POKERMATH_KERNELS_BOARD_JUDGE_H_
