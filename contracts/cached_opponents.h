// A hand on an empty board against a range, with the help of an equity table.

#ifndef POKERMATH_CONTRACTS_CACHED_OPPONENTS_H_
#define POKERMATH_CONTRACTS_CACHED_OPPONENTS_H_

#include <map>
#include <span>
#include <utility>
#include <vector>

#include "kernels/decks.h"
#include "kernels/range_count.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Holdings of a range that share no card with the hand: those whose matchup an equity table knows
/// are summed up, the others are gathered to be counted.
class CachedOpponents {
 public:
  using Table = std::map<std::pair<int, int>, int>;  ///< hand keys → 2 * wins + ties

  CachedOpponents(Deck deck, std::span<const int, 2> hand, std::span<const Combination> holdings,
                  const Table& table, Street street);

  /// The hand against all of them, by the calling thread.
  Tally Count() const;
  /// The same, shared out among OpenMP's workers. The counts are integers, so the result does not
  /// depend on how many there are.
  Tally CountInParallel() const;

 private:
  OpponentGroups groups_;
  Tally known_;
  std::vector<int> classes_;  // of those to be counted
};

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_CACHED_OPPONENTS_H_
