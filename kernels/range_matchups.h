// Two ranges against each other before the flop, or with one or two board cards to come.

#ifndef POKERMATH_KERNELS_RANGE_MATCHUPS_H_
#define POKERMATH_KERNELS_RANGE_MATCHUPS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
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
  std::size_t steps() const { return side1_.classes.size(); }
  /// Adds one class of the first range against all of the second.
  void Count(std::size_t step, const TwoTallies& tallies) const;

 private:
  struct Hand {
    CardSet cards;
    std::int32_t weight;
    std::uint16_t place;                // in its range
    std::array<std::uint8_t, 4> views;  // by suit, without the class
  };
  struct Class {
    int number = 0;
    std::span<const Hand> hands;
    std::array<std::uint8_t, 4> seen{};  // by suit, a bit for each view that some hand has
  };
  // The hands of a range class by class.
  struct Side {
    explicit Side(std::span<const WeightedPair> hands);
    std::vector<Hand> hands;
    std::vector<Class> classes;
  };
  // Two counts in one number: wins, and 2^32 times ties.
  using Packed = std::int64_t;
  // What a suit changes, by the views of both hands.
  using Correction = std::array<std::array<Packed, 4>, 4>;
  // Those of the suits that change anything.
  struct Corrections {
    std::array<Correction, 4> of;
    std::array<std::size_t, 4> suits;
    std::size_t size = 0;
  };

  void Correct(const Class& class1, const Class& class2, Corrections& corrections) const;
  template <std::size_t suits>
  void Add(const Class& class1, const Class& class2, Packed ranks, const Corrections& corrections,
           const TwoTallies& tallies) const;

  const ShowdownCounts& counts_;
  Side side1_, side2_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_RANGE_MATCHUPS_H_
