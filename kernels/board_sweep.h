// Two ranges against each other on all boards that some known cards can become.

#ifndef POKERMATH_KERNELS_BOARD_SWEEP_H_
#define POKERMATH_KERNELS_BOARD_SWEEP_H_

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "eval/worth.h"
#include "kernels/board_order.h"
#include "kernels/sweep_levels.h"
#include "kernels/weighted_hands.h"
#include "platform/isa.h"
#include "pokermath/game.h"

namespace pokermath {

/// What tallies of a sweep are of.
enum class SweepOf {
  kByHand,           ///< of each hand on all boards
  kFirstByHand,      ///< of each hand of the first range alone
  kByCategory,       ///< of each hand on the boards on which it makes a category
  kCasesByCategory,  ///< the same, but all hands tie: how many there are to compare with
};

/// Counts boards and gives tallies for all of them in the end. Not for several threads at once.
class BoardSweep {
 public:
  /// @param isa     instructions to use; the machine must have them
  /// @param ranges  have to outlive this; each hand once, weights up to kWholeWeight
  /// @param board   known cards; hands that share a card with them have no cases
  BoardSweep(Isa isa, const GameRules& rules, const TwoRanges& ranges, CardSet board,
             SweepOf of = SweepOf::kByHand);
  BoardSweep(const BoardSweep&) = delete;  // it has pointers into itself
  BoardSweep& operator=(const BoardSweep&) = delete;

  /// Counts the boards of the known cards, of others that come in any case, and of `to_come` cards
  /// out of a set, 0 to 2: three to five cards together.
  void Count(CardSet coming, CardSet from, int to_come);

  /// Adds wins and ties of all that was counted, once and in the end; and cases, `boards` for each
  /// two hands that share no card.
  ///
  /// @param category  of CategoryOf, but 0 where there are none
  void AddTo(std::int64_t boards, const TwoTallies& tallies, int category = 0);

 private:
  struct Known;
  struct Kind;
  struct Choice;

  bool HasCategories() const {
    return of_ == SweepOf::kByCategory || of_ == SweepOf::kCasesByCategory;
  }
  void Gather(std::size_t side, CardSet board, std::array<bool, kRankClasses>& held);
  void Use(std::size_t view);
  SuitsView& Prepare(std::size_t view);
  void Sweep(const BoardGroup& group, std::span<const SweptItem> items);
  void CountOneMore(const Known& known, CardSet from);
  void CountTwoMore(const Known& known, CardSet from);
  void CountChoice(const Known& known, const Choice& choice);
  void CountGroup(const BoardGroup& group, std::uint32_t boards, int suit, RankSet suited);
  void SetRanks(const Known& known, std::span<const int> more);
  void SetFlushes(int suit, RankSet suited);
  void Settle();
  void Spill();

  SweepKernels kernels_;
  const GameRules& rules_;
  CardSet board_;
  SweepOf of_;
  struct Side {
    std::span<const WeightedPair> hands;
    std::vector<std::uint16_t> lanes;  // of each hand: rank class * 16 + lane, or kNoLane
    std::array<std::uint32_t, 52> holds{};
    std::uint32_t total = 0;
  };
  std::array<Side, 2> sides_;
  std::vector<SweptClass> classes_;
  // Of the classes, by category: without them in the first place, and empty where none is.
  std::array<LargeTable<SweptHands>, kCategories> counted_;
  std::array<std::uint8_t, kRankClasses> places_;  // in classes_, or kNoPlace
  std::vector<SuitsView> views_;                   // by category, and then as kMasks
  // By view and rank class: places of classes with hands in it, once it is in use.
  std::vector<std::array<std::uint8_t, kRankClasses>> held_;
  SweepTables tables_;

  std::uint64_t spent_ = 0;  // more than this no count has come to since the last spill
  // Wins and ties as they stand in counted_.
  std::array<std::vector<std::uint64_t>, kCategories> spilled_;

  std::vector<SweptItem> plain_;    // all classes in the order of the board's ranks
  std::vector<SweptItem> flushes_;  // of these cards of a suit on the board:
  int flushes_suit_ = -1;
  RankSet flushes_suited_ = 0;
  std::vector<SweptItem> items_;
  std::vector<SweptItem> by_category_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_BOARD_SWEEP_H_
