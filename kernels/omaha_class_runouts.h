// Two weighted ranges of four-card Omaha hands over all run-outs of one or two cards, as if there
// were no flushes.

#ifndef POKERMATH_KERNELS_OMAHA_CLASS_RUNOUTS_H_
#define POKERMATH_KERNELS_OMAHA_CLASS_RUNOUTS_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kernels/omaha_sweep.h"
#include "kernels/omaha_tensors.h"
#include "platform/isa.h"
#include "pokermath/card_set.h"

namespace pokermath {

/// Counts when made.
class OmahaClassRunouts {
 public:
  /// @param isa       instructions to use; the machine must have them
  /// @param ranges    hands of live cards; has to outlive this; weights add up to less than 2^32
  /// @param board     of which one or two cards are missing to three, four or five
  /// @param live      cards that may come and that hands are of
  /// @param to_come   1 or 2
  /// @param high_low  whether there are lows
  OmahaClassRunouts(Isa isa, const OmahaTensors<4>& ranges, CardSet board, CardSet live,
                    int to_come, bool high_low);

  /// What OmahaSweep says of all these boards, were there no flushes.
  std::vector<OmahaCounts> CountsOf(std::size_t side, OmahaContest contest) const;

 private:
  // Sums of a contest for the hands of a side, by their places.
  using Counts = std::vector<OmahaCounts>;

  const OmahaTensors<4>& ranges_;
  std::array<std::array<Counts, kOmahaContests>, 2> counts_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_CLASS_RUNOUTS_H_
