// What the matchup kernel compares: values of hands by ranks alone, and flushes by rank sets.
//
// Values are ascending, 16 bits, and laid out in groups of 32: one register of 64 bytes or several
// narrower ones. Places behind the last value weigh nothing.

#ifndef POKERMATH_KERNELS_MATCHUP_TABLES_H_
#define POKERMATH_KERNELS_MATCHUP_TABLES_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kernels/decks.h"
#include "kernels/hole_cards.h"
#include "kernels/registers.h"
#include "platform/made_once.h"
#include "pokermath/large_table.h"

namespace pokermath {

/// Suited hole cards as a place among 92: none, one rank or two.
inline constexpr int kHoldings = 92;
inline int HoldingOf(RankSet ranks) {
  if (ranks == 0) return 0;
  const int low = __builtin_ctz(ranks);
  const int high = 31 - __builtin_clz(ranks);
  return low == high ? 1 + low : 14 + high * (high - 1) / 2 + low;
}

inline constexpr int kGroup = 32;
using Values = LargeTable<std::int16_t>;  // for its alignment

/// Up to five ranks in rising order, some of them perhaps equal.
class RankList {
 public:
  const std::int8_t* begin() const { return ranks_.data(); }
  const std::int8_t* end() const { return ranks_.data() + size_; }
  void Add(int rank) { ranks_[size_++] = static_cast<std::int8_t>(rank); }

 private:
  std::array<std::int8_t, 5> ranks_{};
  std::uint8_t size_ = 0;
};

/// Boards with `suited` cards of one suit: a set of ranks in that suit and the rest, a multiset of
/// ranks in the other suits.
struct SuitBoards {
  int suited = 0;
  int sets = 0;  ///< a multiple of kGroup
  std::vector<RankList> rests;
  Values set_ranks;  ///< [set]: the rank set itself, or kNoSet
  Values flushes;    ///< [holding][set]: the flush of set and hole cards, or 0
  // Sums of rank keys, to build the values of a class with.
  std::vector<std::uint32_t> set_keys;
  std::vector<std::uint32_t> rest_keys;
};

/// Ways to draw each rest from other suits.
///
/// @param others  cards of each rank that are left in them
POKERMATH_KERNEL void WeighRests(const SuitBoards& boards, const std::array<int, 13>& others,
                                 std::int16_t* weights) {
  for (const RankList& rest : boards.rests) {
    int weight = 1;
    int repeated = -1;
    for (const int rank : rest) {
      const int left = others[static_cast<std::size_t>(rank)];
      weight = rank == repeated ? left * (left - 1) / 2 : weight * left;
      repeated = rank;
    }
    *weights++ = static_cast<std::int16_t>(weight);
  }
}

/// What a rank class makes with every board, suits left aside.
struct ClassValues {
  Values by_multiset;
  std::array<Values, 3> by_suit_boards;  ///< [suited - 3]: [group][rest][set in group]
};

/// The tables for boards of kBoard cards, 3 to 5. 10 MB when all is built for the river; the values
/// of a class are built when they are first asked for, by any thread.
///
/// @tparam deck  the cards, kFull or kShort
template <Deck deck, int kBoard>
class MatchupTables {
 public:
  static constexpr int kMultisets = Choose(12 - LowestRank(deck) + kBoard, kBoard);
  static constexpr int kSize = (kMultisets + kGroup - 1) / kGroup * kGroup;

  /// @param rules  `deck`, or the same cards with another order of hands
  static const MatchupTables& Get(Deck rules = deck);

  const ClassValues& Of(int rank_class) const {
    return classes_.Get(static_cast<std::size_t>(rank_class),
                        [&](ClassValues& values) { Build(rank_class, values); });
  }
  /// [multiset]: ways to draw it from a full deck.
  const Values& weights() const { return weights_; }
  /// [multiset]: cards of that rank in it.
  const std::int16_t* CountsOf(int rank) const {
    return &counts_[static_cast<std::size_t>(rank * kSize)];
  }
  /// For three suited board cards and more.
  const std::array<SuitBoards, kBoard - 2>& suit_boards() const { return suit_boards_; }

 private:
  explicit MatchupTables(Deck rules);
  void Build(int rank_class, ClassValues& values) const;

  Deck rules_;
  Values weights_;
  Values counts_;
  std::vector<std::uint32_t> keys_;  // [multiset]
  std::array<SuitBoards, kBoard - 2> suit_boards_;
  MadeOnce<ClassValues> classes_{kRankClasses};
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_MATCHUP_TABLES_H_
