// Three weighted ranges of four-card Omaha hands against each other on a complete board.

#ifndef POKERMATH_KERNELS_OMAHA_THREE_H_
#define POKERMATH_KERNELS_OMAHA_THREE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "kernels/three_ranges.h"
#include "platform/isa.h"
#include "pokermath/card_set.h"
#include "pokermath/hand_range.h"

namespace pokermath {

/// High hands of one board. Const members may run in any number of threads.
class OmahaThreeSweep {
 public:
  using Ranges = std::array<std::span<const WeightedHand>, 3>;

  /// @param isa     instructions that the machine has
  /// @param ranges  weights 1 to 10,000, no hand twice in a range; have to outlive this
  /// @param board   three to five cards; hands that share one with it are left out
  OmahaThreeSweep(Isa isa, const Ranges& ranges, CardSet board);

  /// Different hands that there are, in whatever range.
  std::size_t size() const { return holdings_.size(); }

  /// Whose hands are counted, and whose with their cases; for others these are 0.
  struct Asked {
    std::array<bool, 3> players{true, true, true};
    std::array<bool, 3> cases{true, true, true};
  };
  using Visit = std::function<void(std::size_t player, std::size_t hand, const ThreeTally& tally)>;
  /// Counts the hands first .. last - 1, and calls visit for each of those asked for.
  void Count(std::size_t first, std::size_t last, const Asked& asked, const Visit& visit) const;

 private:
  // A hand that is in one or several of the ranges.
  struct Holding {
    int value;
    std::array<std::uint8_t, 4> cards;      // of the live ones, rising
    std::array<std::int32_t, 3> weights{};  // 0 where it is not in a range
    std::array<std::uint32_t, 3> hands{};
  };
  class Inserted;

  Isa isa_;
  std::size_t live_;               // cards beside the board
  std::vector<Holding> holdings_;  // rising by their values
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_THREE_H_
