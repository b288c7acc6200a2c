// Two ranges against each other before the flop, or with one or two board cards to come.

#ifndef POKERMATH_KERNELS_RANGE_MATCHUPS_H_
#define POKERMATH_KERNELS_RANGE_MATCHUPS_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kernels/showdown_counts.h"
#include "kernels/weighted_hands.h"

namespace pokermath {

/// Hand against hand, for all pairs that share no card. Every rank class of the first range is a
/// step of its own; steps may be taken in several threads at once.
class RangeMatchups {
 public:
  /// @param counts  has to outlive this; no hand shares a card with its board
  RangeMatchups(const ShowdownCounts& counts, const TwoRanges& ranges);

  /// Rank classes of the first range.
  std::size_t steps() const { return classes1_.size(); }
  /// Adds one class of the first range against all of the second.
  void Count(std::size_t step, const TwoTallies& tallies) const;

 private:
  struct Hand {
    CardSet cards;
    std::int32_t weight;
    std::size_t place;                  // in its range
    std::array<std::uint8_t, 4> views;  // by suit, without the class
  };
  struct Class {
    int number = 0;
    std::vector<Hand> hands;
  };
  // What suits change, by suit and the views of both hands.
  using Corrections = std::array<std::array<std::array<Counts, 4>, 4>, 4>;

  static std::vector<Class> ClassesOf(std::span<const WeightedPair> hands);
  void Correct(const Class& class1, const Class& class2, Corrections& corrections) const;

  const ShowdownCounts& counts_;
  std::vector<Class> classes1_, classes2_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_RANGE_MATCHUPS_H_
