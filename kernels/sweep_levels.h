// The inner loops of a sweep over the hands of two ranges, weakest first.
//
// Hands are kept as rank classes with a lane for each pair of suits. Boards come in groups that
// share one order of values: their cards are known but for one or two, which may be any of some
// suits.

#ifndef POKERMATH_KERNELS_SWEEP_LEVELS_H_
#define POKERMATH_KERNELS_SWEEP_LEVELS_H_

#include <array>
#include <cstdint>
#include <span>

#include "kernels/suit_lanes.h"
#include "platform/isa.h"
#include "pokermath/large_table.h"

namespace pokermath {

/// A rank class that one of the ranges has.
struct SweptClass {
  std::uint8_t high, low;  ///< ranks
  std::uint16_t ranks;     ///< as a set
};

/// The weights of a class in both ranges, and what was counted for its hands, modulo 2^32.
struct SweptHands {
  SuitLanes weights[2];
  SuitLanes wins[2];
  SuitLanes ties[2];
};

/// Some pairs of suits of all classes.
struct SuitsView {
  struct Sums {
    SuitLanes of[2];  ///< LaneSums of the weights in each range; and in the first one's last place:

    /// Boards on which these hands tied with no others, not yet in ties.
    std::uint32_t& alone() { return of[0].at[15]; }
    bool Has(int side) const { return of[side].at[8] != 0; }
    bool IsEmpty() const { return !Has(0) && !Has(1); }
  };
  const SuitLanes* mask = nullptr;  ///< all bits of a lane, or none
  std::span<SweptHands> hands;      ///< of the classes, with what was counted for this view
  LargeTable<Sums> classes;         ///< empty until it is used
};

/// The hands of a class that a view has, which are worth the same.
struct SweptItem {
  std::int16_t value;
  std::uint8_t place;  ///< of the class
  std::uint8_t view;
};

/// Boards of one order. Cards that come to the known board are dead, alike on all of these boards,
/// or free: any card of a rank and some suits.
struct BoardGroup {
  std::array<std::uint8_t, 13> dead{};   ///< suits of dead cards, a bit each, by rank
  std::array<std::uint8_t, 13> free1{};  ///< suits that the first free card may have
  std::array<std::uint8_t, 13> free2{};
  unsigned touched = 0;      ///< ranks that are in one of these
  std::uint32_t count1 = 0;  ///< how many cards the first may be, or both if they are of one rank
  std::uint32_t count2 = 0;
  /// Numbers that are kept of the hands below: 1 without free cards, 2 with one, 4 with two of
  /// different ranks, 3 with two of the same.
  int terms = 1;
};

struct SweepTables {
  std::span<const SweptClass> classes;
  std::span<SuitsView> views;
  bool both = true;  ///< whether hands of the second range are counted as well as of the first
};

class SweepKernels {
 public:
  /// @param isa  the machine must have it
  explicit SweepKernels(Isa isa) : isa_(isa) {}

  /// Fills in the sums of a view.
  void Use(SuitsView& view) const;
  /// Counts a group of boards.
  /// @param items  of all hands, rising by value; their views are in use
  void Count(const SweepTables& tables, const BoardGroup& group,
             std::span<const SweptItem> items) const;
  /// Brings what a view knows of ties into those of the classes.
  void Settle(const SweepTables& tables, SuitsView& view) const;

 private:
  Isa isa_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_SWEEP_LEVELS_H_
