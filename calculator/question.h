// A question that has passed the gate: what kernels see.

#ifndef POKERMATH_CALCULATOR_QUESTION_H_
#define POKERMATH_CALCULATOR_QUESTION_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "pokermath/calculator.h"

namespace pokermath {

/// One player's hands, none of which any certain card blocks.
struct Side {
  HandRange range;
  /// All weights are multiples of it: kernels may count with weight / unit.
  std::int32_t unit = 1;

  /// Hands that are listed, not dealt from all cards that are left.
  bool IsListed() const { return !range.IsEvery(); }
  bool IsOneHand() const { return range.size() == 1; }
};

/// Every card is in the deck and certain at one place only, every range has hands, and some deal
/// fits.
class CheckedQuestion {
 public:
  const GameRules& rules() const { return RulesOf(question_.game); }
  /// The options; for ranges and dead cards see below.
  const EquityQuestion& asked() const { return question_; }

  const std::vector<Side>& players() const { return players_; }
  /// Without those who hold one certain hand, which is among the dead cards, or any hand.
  const std::vector<Side>& folded() const { return folded_; }
  CardSet board() const { return question_.board; }
  CardSet dead() const { return dead_; }
  /// Cards of the players who have one hand.
  CardSet certain() const;
  /// Cards that players hold or that can come.
  CardSet live() const { return rules().Deck() - board() - dead_; }
  int street() const { return static_cast<int>(question_.street); }
  int to_come() const { return street() - board().size(); }
  /// Board cards that come next: the rest of the flop, or one; 0 if nothing comes.
  int next_cards() const;

 private:
  friend Result<CheckedQuestion> Check(const EquityQuestion& question);
  explicit CheckedQuestion(EquityQuestion question);

  EquityQuestion question_;
  std::vector<Side> players_;
  std::vector<Side> folded_;
  CardSet dead_;
};

/// The one gate.
Result<CheckedQuestion> Check(const EquityQuestion& question);

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_QUESTION_H_
