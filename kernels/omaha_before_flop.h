// An Omaha hand against others before the flop, without dealing a board.

#ifndef POKERMATH_KERNELS_OMAHA_BEFORE_FLOP_H_
#define POKERMATH_KERNELS_OMAHA_BEFORE_FLOP_H_

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "kernels/omaha_rank_values.h"
#include "platform/isa.h"
#include "pokermath/card_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Who has the best low: nobody, the hero alone, both, the other one alone.
inline constexpr std::size_t kLowStates = 4;

/// Boards on which a hero has the better high hand or shares the best one, by who has the best low;
/// in games without lows nobody has.
struct OmahaDuel {
  std::array<std::int64_t, kLowStates> wins{}, ties{}, boards{};

  bool operator==(const OmahaDuel&) const = default;
  /// The same as the hero's tally.
  HighLowTally Tally() const;
};

/// A hero's hand on all boards of five. Const members may run in any number of threads.
class OmahaBeforeFlop {
 public:
  /// @param isa    instructions to use; the machine must have them
  /// @param hero   as many cards as one of kOmahaHandSizes
  /// @param dead   cards that nobody holds and that cannot come, none of them the hero's
  OmahaBeforeFlop(Isa isa, CardSet hero, CardSet dead, bool high_low);

  /// The duels with hands that have the same ranks, each as many cards as the hero's, none of his
  /// and none dead. The more hands there are together, the quicker it is for each.
  std::vector<OmahaDuel> Count(std::span<const CardSet> hands) const;

 private:
  struct Suit {
    RankSet hero = 0;  // ranks of the hero's cards of the suit
    RankSet dead = 0;
    OmahaSuitSets::Flushes flushes{};  // of the hero
    std::vector<std::uint16_t> live;   // sets that may come
  };
  using Row = OmahaRankValues::Row;

  template <typename Width, bool lows>
  struct Kernel;

  Isa isa_;
  bool high_low_;
  CardSet taken_;           // by the hero, or dead
  RankCounts left_;         // without them
  Row ways_;                // [multiset]
  std::array<Row, 2> row_;  // of the hero: high and low
  std::array<Suit, 4> suits_;
};

/// Places of hands that have the same ranks, together.
std::vector<std::vector<std::size_t>> AlikeByRanks(std::span<const CardSet> hands);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_BEFORE_FLOP_H_
