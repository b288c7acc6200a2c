// Counts of one hand against another when one or two board cards are still to come.

#ifndef POKERMATH_KERNELS_RUNOUTS_H_
#define POKERMATH_KERNELS_RUNOUTS_H_

#include <array>
#include <cstdint>
#include <span>

#include "kernels/decks.h"
#include "kernels/showdown_counts.h"
#include "platform/isa.h"

namespace pokermath {

/// A rank as a lane, 13 of 16, and once more behind the first time: what is loaded from `rank` on
/// are the ranks that follow it in a circle.
using RankLanes = std::array<std::int16_t, 32>;

class FlushBlocks;

/// Board cards that are known, as the kernel needs them.
struct KnownBoard {
  struct Suit {
    RankSet held = 0;  ///< board cards of the suit
    int held_count = 0;
    RankLanes others{};  ///< unseen cards of a rank in the three other suits
  };

  int to_come = 0;
  int live = 0;  ///< cards that two hands and the board leave
  std::array<const std::int16_t*, kRankClasses> values{};  ///< of a rank class, run-out by run-out
  RankLanes unseen{};                                      ///< unseen cards of a rank
  std::array<Suit, 4> suits{};
  RankSet absent = 0;              ///< ranks that are not in the deck
  FlushBlocks* flushes = nullptr;  ///< kept by all boards
};

class Runouts final : public ShowdownCounts {
 public:
  /// @param isa     instructions to use; the machine must have them
  /// @param board   three known cards, or four
  /// @param street  board cards to complete it to, 4 or 5: one or two more
  /// @param classes  those of the hands that will be asked for
  Runouts(Isa isa, Deck deck, std::span<const int> board, int street,
          const RankClassSet& classes = RankClassSet().set());

  Counts CountRanks(int class1, int class2) const override;
  Counts CorrectSuit(int suit, const SuitView& view1, const SuitView& view2) const override;
  int CardsToFlush(int suit) const override;
  int LikeSuit(int suit) const override { return suit; }
  int Boards() const override;

 private:
  Isa isa_;
  KnownBoard board_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_RUNOUTS_H_
