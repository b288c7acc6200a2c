// The plain way to count a hand against another: every board, one after the other.

#ifndef POKERMATH_TESTS_CONTRACTS_PLAIN_COUNT_H_
#define POKERMATH_TESTS_CONTRACTS_PLAIN_COUNT_H_

#include <algorithm>
#include <span>

#include "pokermath/equity.h"
#include "pokermath/evaluators.h"

namespace pokermath {

class PlainCount {
 public:
  static Tally Of(std::span<const int> hand1, std::span<const int> hand2,
                  std::span<const int> board, Street street) {
    PlainCount count;
    for (const auto cards : {hand1, hand2, board}) {
      for (const int card : cards) count.dead_[card] = true;
    }
    for (const auto& [hand, seven] : {std::pair(hand1, count.seven1_), {hand2, count.seven2_}}) {
      std::copy(board.begin(), board.end(), std::copy(hand.begin(), hand.end(), seven));
    }
    const int size = static_cast<int>(board.size()) + 2;
    if (street == Street::kRiver) {
      count.Deal<7>(size, 0);
    } else if (street == Street::kTurn) {
      count.Deal<6>(size, 0);
    } else {
      count.Deal<5>(size, 0);
    }
    return count.tally_;
  }

 private:
  template <int all>
  void Deal(int size, int first) {
    if (size == all) {
      const int value1 = EvaluateCards<all>(seven1_);
      const int value2 = EvaluateCards<all>(seven2_);
      ++tally_.cases;
      tally_.wins += value1 > value2 ? 1 : 0;
      tally_.ties += value1 == value2 ? 1 : 0;
      return;
    }
    for (int card = first; card < 52; ++card) {
      if (dead_[card]) continue;
      seven1_[size] = seven2_[size] = card;
      Deal<all>(size + 1, card + 1);
    }
  }

  bool dead_[52] = {};
  int seven1_[7] = {};
  int seven2_[7] = {};
  Tally tally_;
};

}  // namespace pokermath

#endif  // POKERMATH_TESTS_CONTRACTS_PLAIN_COUNT_H_
