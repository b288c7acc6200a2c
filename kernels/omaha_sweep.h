// Two weighted ranges of four-card Omaha hands against each other, every hand of both, on one
// complete board after the other.

#ifndef POKERMATH_KERNELS_OMAHA_SWEEP_H_
#define POKERMATH_KERNELS_OMAHA_SWEEP_H_

#include <array>
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

/// Counts one board after the other; sums are kept for every hand. Not for several threads at once.
class OmahaSweep {
 public:
  /// @param isa     instructions to use; the machine must have them
  /// @param ranges  has to outlive this; the weights of a range add up to less than 2^32
  OmahaSweep(Isa isa, const OmahaTensors& ranges);
  ~OmahaSweep();

  /// Adds a board of three to five cards. Hands that share a card with it get nothing.
  void Count(CardSet board);

  /// Adds one without any cards on which all hands tie.
  void CountAll();

  /// What was added so far, for every hand of a range.
  std::vector<OmahaCounts> CountsOf(std::size_t side);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_SWEEP_H_
