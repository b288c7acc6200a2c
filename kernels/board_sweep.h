// Two ranges against each other on complete boards.

#ifndef POKERMATH_KERNELS_BOARD_SWEEP_H_
#define POKERMATH_KERNELS_BOARD_SWEEP_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kernels/weighted_hands.h"
#include "pokermath/game.h"

namespace pokermath {

/// Counts one board after the other. What it is made with has to outlive it; not for several
/// threads at once.
class BoardSweep {
 public:
  BoardSweep(const GameRules& rules, const TwoRanges& ranges);

  /// Adds one board of three to five cards. Hands that share a card with it are left out.
  void Count(CardSet board, const TwoTallies& tallies);

 private:
  // A range while the board is swept: what is below the place that was reached.
  struct Side {
    std::span<const WeightedPair> hands;
    std::vector<std::int64_t> same;  // for each hand, what the same one weighs in the other range

    std::int64_t all = 0;                  // weight that fits the board
    std::array<std::int64_t, 52> holds{};  // the part of it that holds a card
    std::int64_t below = 0;
    std::array<std::int64_t, 52> below_holds{};
  };

  void Gather(std::uint32_t side, CardSet board, std::span<const int> board_cards);
  void Insert(std::span<const std::uint32_t> level);
  static std::int64_t Below(const Side& other, const WeightedPair& hand, std::int64_t same);

  const GameRules& rules_;
  std::array<Side, 2> sides_;
  std::vector<std::uint32_t> order_;  // value, side, hand
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_BOARD_SWEEP_H_
