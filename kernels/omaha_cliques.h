// An Omaha hand against every hand that its opponent may hold.

#ifndef POKERMATH_KERNELS_OMAHA_CLIQUES_H_
#define POKERMATH_KERNELS_OMAHA_CLIQUES_H_

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "kernels/omaha_boards.h"
#include "platform/isa.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Called now and then with the parts that are done and all parts; returning false stops.
using GoOn = std::function<bool(std::int64_t done, std::int64_t all)>;

/// A hand against every opponent hand of the same size, by classes of boards that are alike. They
/// may be counted in any order and in several threads at once.
class OmahaAgainstAll {
 public:
  /// @param isa    instructions to use; the machine must have them
  /// @param hand   card codes, one of kOmahaHandSizes of them; has to outlive this
  /// @param board  known cards, no more than the street has
  /// @param dead   cards that nobody holds and that cannot come; all cards different
  OmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board, Street street,
                  std::span<const int> dead = {});

  std::int64_t classes() const;
  /// Adds the classes first .. last - 1.
  void Count(std::int64_t first, std::int64_t last, Tally& tally) const;
  void Count(std::int64_t first, std::int64_t last, HighLowTally& tally) const;

 private:
  template <typename Result>
  void Add(std::int64_t first, std::int64_t last, Result& result) const;

  Isa isa_;
  std::span<const int> hand_;
  OmahaBoards boards_;
  std::vector<OmahaBoardClass> classes_;
};

/// Counts every opponent hand of the same size on every way to complete a board.
///
/// @param isa    instructions to use; the machine must have them
/// @param hand   card codes, one of kOmahaHandSizes of them
/// @param board  known cards, no more than the street has
/// @param dead   cards that nobody holds and that cannot come; all cards different
/// @param go_on  may be empty
/// @return no cases if it was stopped
Tally CountOmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                           Street street, std::span<const int> dead = {}, const GoOn& go_on = {});

/// The same where the pot is split between high and low.
HighLowTally CountHighLowAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                                    Street street, std::span<const int> dead = {},
                                    const GoOn& go_on = {});

/// Counts the hands of the same size that beat one on a board of three to five cards.
std::int64_t CountOmahaBetter(Isa isa, std::span<const int> hand, std::span<const int> board);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_CLIQUES_H_
