// Random deals of a hand against players whose cards are unknown.
//
// A trial completes the board, then deals and judges one opponent after the other until one beats
// the hero. Cards are drawn by rejection: a card is drawn again while it is taken.
// What the caller draws with decides the deals, so two sources of the same numbers give the same
// trials.

#ifndef POKERMATH_EQUITY_KERNELS_TRIALS_H_
#define POKERMATH_EQUITY_KERNELS_TRIALS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "cards/card_list.h"
#include "eval/omaha_best.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// @tparam kHandSize  cards of a hand
/// @tparam evaluate   value of a hand and the five cards of the board behind it, larger is better
template <std::size_t kHandSize, int (*evaluate)(const int* cards)>
class Trials {
 public:
  using Hand = std::span<const int, kHandSize>;

  /// @param board    0 to 5 known board cards
  /// @param players  2..10, the hero included; the deck must have cards for all of them
  /// @param dead     cards that nobody holds and that cannot come
  Trials(Hand hand, std::span<const int> board, int players, std::span<const int> dead = {})
      : opponents_(players - 1), known_(board.size()) {
    std::ranges::copy(hand, hero_);
    std::ranges::copy(board, hero_ + kHandSize);
    for (std::size_t i = 0; i < kHandSize + known_; ++i) used_ |= Bit(hero_[i]);
    for (const int card : dead) used_ |= Bit(card);
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
    for (std::size_t i = kHandSize + known_; i < kHandSize + 5; ++i) hero_[i] = next();
    const int hero_value = evaluate(hero_);
    int opponent[kHandSize + 5];
    for (std::size_t i = kHandSize; i < kHandSize + 5; ++i) opponent[i] = hero_[i];
    int sharers = 1;
    for (int i = 0; i < opponents_; ++i) {
      for (std::size_t j = 0; j < kHandSize; ++j) opponent[j] = next();
      const int value = evaluate(opponent);
      if (value > hero_value) return 0;
      sharers += value == hero_value ? 1 : 0;
    }
    return sharers;
  }

 private:
  int opponents_;
  std::size_t known_;
  int hero_[kHandSize + 5] = {};  // hole cards, then the board
  std::uint64_t used_ = 0;
};

inline int EvaluateSeven(const int* cards) { return EvaluateCards<7>(cards); }
using HoldemTrials = Trials<2, EvaluateSeven>;

/// Of four or five cards.
template <std::size_t kHandSize>
int EvaluateOmaha(const int* cards) {
  return BestOmahaValue({cards, kHandSize}, {cards + kHandSize, 5});
}
template <std::size_t kHandSize>
using OmahaTrials = Trials<kHandSize, EvaluateOmaha<kHandSize>>;

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_TRIALS_H_
