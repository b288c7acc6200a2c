// Two weighted ranges of Omaha hands of four or five cards against each other, every hand of both,
// on one complete board after the other.

#ifndef POKERMATH_KERNELS_OMAHA_SWEEP_H_
#define POKERMATH_KERNELS_OMAHA_SWEEP_H_

#include <cstdint>
#include <memory>
#include <vector>

#include "kernels/omaha_tensors.h"
#include "platform/isa.h"

namespace pokermath {

/// What the hands of the other range weigh that share no card with a hand and are below it, or not
/// above it.
struct OmahaCounts {
  std::uint64_t below = 0;
  std::uint64_t not_above = 0;

  bool operator==(const OmahaCounts&) const = default;
};

/// On which boards a hand is compared, with whom, and by what.
enum class OmahaContest {
  kWholePot,  ///< by high hands, on boards that allow no low; in games without lows on all
  // The others on boards that allow a low:
  kHigh,        ///< by high hands
  kLow,         ///< of a hand with a low: by lows, none being below all
  kNoLow,       ///< of a hand without a low: by high hands, with those that have none either
  kHighAndLow,  ///< of a hand with a low: below, or not above, in both
};
inline constexpr std::size_t kOmahaContests = 5;

/// Which contests are counted. What flushes change is the difference of the other two.
enum class OmahaSweepPart { kAll, kButLow, kButLowWithoutFlushes };

/// Counts one board after the other; sums are kept for every hand. Not for several threads at once.
template <std::size_t hand_size>
class OmahaSweep {
 public:
  /// @param isa       instructions to use; the machine must have them
  /// @param ranges    has to outlive this; the weights of a range add up to less than 2^32
  /// @param high_low  whether there are lows
  OmahaSweep(Isa isa, const OmahaTensors<hand_size>& ranges, bool high_low,
             OmahaSweepPart part = OmahaSweepPart::kAll);
  ~OmahaSweep();

  /// Adds a board of three to five cards. Hands that share a card with it get nothing.
  void Count(CardSet board);

  /// Adds one without any cards on which all hands tie, to kWholePot.
  void CountAll();

  /// What was added so far, for every hand of a range.
  std::vector<OmahaCounts> CountsOf(std::size_t side, OmahaContest contest);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_SWEEP_H_
