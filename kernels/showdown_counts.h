// How a count of one hand against another is put together, whatever board cards are known.

#ifndef POKERMATH_KERNELS_SHOWDOWN_COUNTS_H_
#define POKERMATH_KERNELS_SHOWDOWN_COUNTS_H_

#include "kernels/hole_cards.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Boards that the first of two hands wins alone, and those that they share; or what is to be added
/// to these.
struct Counts {
  int wins = 0;
  int ties = 0;
};

/// Adds counts to a tally, `times` times.
inline void AddTimes(const Counts& counts, std::int64_t times, Tally& tally) {
  tally.wins += times * counts.wins;
  tally.ties += times * counts.ties;
}

/// The boards that complete some known cards, none or several. A hand's wins are those of its ranks
/// against the other's ranks, and a correction for each suit:
///
///   CountRanks(class1, class2) + sum over suits of CorrectSuit(suit, view1, view2)
///
/// so that all holdings of a class share the first term, and all that a suit sees alike the second.
/// Hands that share a card with each other or the known cards give numbers without meaning, but
/// always the same.
class ShowdownCounts {
 public:
  virtual ~ShowdownCounts() = default;

  /// Wins and ties as if nobody could make a flush.
  virtual Counts CountRanks(int class1, int class2) const = 0;
  /// What flushes in a suit change.
  virtual Counts CorrectSuit(int suit, const SuitView& view1, const SuitView& view2) const = 0;
  /// Hole cards of a suit without which a hand cannot make a flush in it; 3 and more means never.
  /// Where neither hand has them nothing is to be corrected.
  virtual int CardsToFlush(int suit) const = 0;
  /// The lowest suit for which CorrectSuit gives the same as for this one.
  virtual int LikeSuit(int suit) const = 0;
  /// Boards that two hands leave.
  virtual int Boards() const = 0;
};

/// All boards of a hand against another: two card codes each.
Tally CountHands(const ShowdownCounts& counts, const int* hand1, const int* hand2);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_SHOWDOWN_COUNTS_H_
