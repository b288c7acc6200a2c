// Random deals of a hand against players whose cards are unknown.
//
// A trial completes the board, then deals and judges one opponent after the other until one beats
// the hero. Cards are drawn by rejection: a card is drawn again while it is taken.
// What the caller draws with decides the deals, so two sources of the same numbers give the same
// trials.

#ifndef POKERMATH_EQUITY_KERNELS_TRIALS_H_
#define POKERMATH_EQUITY_KERNELS_TRIALS_H_

#include <cstdint>
#include <span>

#include "pokermath/evaluators.h"

namespace pokermath {

/// @tparam evaluate  value of seven cards, larger is better
template <int (*evaluate)(const int* seven)>
class Trials {
 public:
  /// @param hand     two card codes
  /// @param board    0 to 5 known board cards
  /// @param players  2..10, the hero included
  Trials(std::span<const int, 2> hand, std::span<const int> board, int players)
      : opponents_(players - 1), known_(static_cast<int>(board.size())) {
    hero_[0] = hand[0];
    hero_[1] = hand[1];
    used_ = Bit(hand[0]) | Bit(hand[1]);
    for (int i = 0; i < known_; ++i) {
      hero_[2 + i] = board[static_cast<std::size_t>(i)];
      used_ |= Bit(hero_[2 + i]);
    }
  }

  /// Deals one trial.
  ///
  /// @param draw  callable, returns a uniform card code of the deck
  /// @return how many players share the pot, the hero among them (1 = the hero wins alone); 0 when
  ///         the hero lost
  template <typename Draw>
  int Deal(Draw&& draw) {
    std::uint64_t used = used_;
    const auto next = [&] {
      int card = draw();
      while ((used >> card & 1) != 0) card = draw();
      used |= Bit(card);
      return card;
    };
    for (int i = known_; i < 5; ++i) hero_[2 + i] = next();
    const int hero_value = evaluate(hero_);
    int opponent[7];
    for (int i = 2; i < 7; ++i) opponent[i] = hero_[i];
    int sharers = 1;
    for (int i = 0; i < opponents_; ++i) {
      opponent[0] = next();
      opponent[1] = next();
      const int value = evaluate(opponent);
      if (value > hero_value) return 0;
      sharers += value == hero_value ? 1 : 0;
    }
    return sharers;
  }

 private:
  static std::uint64_t Bit(int card) { return std::uint64_t{1} << card; }

  int opponents_;
  int known_;
  int hero_[7] = {};  // two hole cards, five board cards
  std::uint64_t used_ = 0;
};

inline int EvaluateSeven(const int* cards) { return EvaluateCards<7>(cards); }
using HoldemTrials = Trials<EvaluateSeven>;

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_TRIALS_H_
