// The best five of an Omaha hand, and which cards they are.

#ifndef POKERMATH_EVAL_OMAHA_BEST_H_
#define POKERMATH_EVAL_OMAHA_BEST_H_

#include <span>

namespace pokermath {

/// A choice of two hole cards and three board cards, as indexes, rising.
struct OmahaChoice {
  int value = 0;  ///< ascending, 1..7462
  int hole[2] = {};
  int board[3] = {};
};

/// The best choice; of equal ones the first, hole cards before board cards.
///
/// @param hand   two to eight card codes
/// @param board  three to five
OmahaChoice FindBestOmaha(std::span<const int> hand, std::span<const int> board);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_BEST_H_
