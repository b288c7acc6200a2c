// Three ranges against each other on complete boards.

#ifndef POKERMATH_KERNELS_THREE_RANGES_H_
#define POKERMATH_KERNELS_THREE_RANGES_H_

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "kernels/weighted_hands.h"
#include "platform/isa.h"
#include "pokermath/game.h"

namespace pokermath {

using ThreeRanges = std::array<std::span<const WeightedPair>, 3>;

/// What a hand makes of all hands of two opponents, those that share a card with it or with each
/// other left out. A case counts as often as their weights multiplied say; the hand's own weight is
/// not in it.
struct ThreeTally {
  std::int64_t wins = 0;     ///< better than both
  std::int64_t shares2 = 0;  ///< as good as one of them, better than the other
  std::int64_t shares3 = 0;  ///< as good as both
  std::int64_t cases = 0;    ///< all, whatever the board

  bool operator==(const ThreeTally&) const = default;
};

/// Counts one board after the other. Not for several threads at once.
class ThreeRangesSweep {
 public:
  /// Boards whose sums are sure to fit, each as often as it counts, and how often that may be.
  static constexpr std::int64_t kMostBoards = 50'000;
  static constexpr int kMostTimes = 24;

  /// @param isa     instructions that the machine has
  /// @param ranges  weights 1 to 10,000, no hand twice in a range
  ThreeRangesSweep(Isa isa, const GameRules& rules, const ThreeRanges& ranges);
  ~ThreeRangesSweep();

  /// Adds one board of three to five cards, so many times. Hands that share a card with it are left
  /// out.
  void Count(CardSet board, int times = 1);
  /// Adds to the cases of all hands as if there was no board. Every case leaves as many cards for
  /// the board as any other, so that this need not be done for each.
  void CountCases();

  /// What was added for a hand of a range.
  ThreeTally Of(std::size_t player, std::size_t hand) const;

 private:
  class Sweep;
  template <typename Number>
  class NumberSweep;

  std::array<std::size_t, 3> seats_;                  // of the players in the sweep
  std::array<std::vector<std::uint16_t>, 3> places_;  // of their hands, by seat
  std::unique_ptr<Sweep> sweep_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_THREE_RANGES_H_
