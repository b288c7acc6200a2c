// A Hold'em hand against the holdings of a range.

#ifndef POKERMATH_KERNELS_RANGE_COUNT_H_
#define POKERMATH_KERNELS_RANGE_COUNT_H_

#include <array>
#include <cstdint>
#include <span>

#include "kernels/decks.h"
#include "kernels/showdown_counts.h"
#include "pokermath/combination_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Opponents of a hand, gathered so that those which are alike are counted once. Without an
/// opponent that shares a card with the hand or the board.
class OpponentGroups {
 public:
  OpponentGroups(const ShowdownCounts& counts, std::span<const int, 2> hand);

  void Add(const Combination& opponent);
  /// Whether there is an opponent of a rank class.
  bool Has(int rank_class) const { return holdings_[static_cast<std::size_t>(rank_class)] != 0; }
  /// The hand against all opponents of a class.
  Tally Count(int rank_class) const;
  /// The hand against all opponents.
  Tally Count() const;

 private:
  static constexpr int kNone = 4;

  // Suits that see the hand alike, where that makes them equal: one of them stands for all.
  struct SuitGroup {
    int suits = 0;
    std::array<std::uint16_t, kSuitViews> opponents{};  // by view; nothing for views without a card
  };

  const ShowdownCounts& counts_;
  int rank_class_;
  std::array<int, 4> views_;                            // of the hand, by suit
  std::array<std::size_t, 4> group_of_;                 // by suit
  std::array<std::uint16_t, kRankClasses> holdings_{};  // opponents by rank class
  std::array<SuitGroup, 5> groups_{};                   // the last one is not looked at
};

/// Counts a hand against holdings over every way to complete a board.
///
/// @param board  0 up to the street's number of cards
/// Short-deck hands and boards may have cards below six: to the river these are worth nothing, to
/// the turn what the other cards make, as the evaluators say.
/// Holdings with a card that is not in the deck are left out.
Tally CountAgainst(Deck deck, std::span<const int, 2> hand, std::span<const Combination> opponents,
                   std::span<const int> board, Street street);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_RANGE_COUNT_H_
