// An Omaha hand against a given set of hands.

#ifndef POKERMATH_KERNELS_OMAHA_RANGE_H_
#define POKERMATH_KERNELS_OMAHA_RANGE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kernels/omaha_cliques.h"
#include "platform/isa.h"
#include "pokermath/equity.h"

namespace pokermath {

/// An Omaha hand, known cards, and the hands of a range that share no card with them.
///
/// A case is a way to complete the board and a hand that share no card with each other.
template <int cards>
class OmahaRangeContest {
 public:
  using Hand = std::array<int, static_cast<std::size_t>(cards)>;

  /// @param hand   as many card codes as the others have
  /// @param range  card codes in rising order
  /// @param board  known cards, no more than the street has
  /// @param dead   cards that nobody holds and that cannot come; all known cards different
  /// @param weights  how often each hand of the range counts, 1..10000; none: once
  OmahaRangeContest(std::span<const int> hand, std::span<const Hand> range,
                    std::span<const int> board, Street street, std::span<const int> dead = {},
                    std::span<const int> weights = {});

  /// Blocks of boards, which are counted one by one, in any order and on any thread.
  std::int64_t blocks() const;

  /// Wins and ties of the blocks first .. last - 1; the first one has the cases of all of them.
  ///
  /// @param isa  instructions to use; the machine must have them
  Tally Count(Isa isa, std::int64_t first, std::int64_t last) const;

  /// All of them.
  ///
  /// @param go_on  may be empty
  /// @return no cases if it was stopped
  Tally Count(Isa isa, const GoOn& go_on = {}) const;

 private:
  template <std::size_t words>
  Tally CountBlocks(Isa isa, std::int64_t first, std::int64_t last) const;

  std::vector<int> hand_, board_;
  Street street_;
  std::uint64_t taken_;
  std::vector<Hand> hands_;  // those that are left
  std::vector<int> weights_;
  std::int64_t weight_ = 0;  // of all of them
};

#define POKERMATH_EXTERN_CONTEST(cards) extern template class OmahaRangeContest<cards>;
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_EXTERN_CONTEST)
#undef POKERMATH_EXTERN_CONTEST

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_RANGE_H_
