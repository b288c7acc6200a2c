// What Omaha hands make with boards of five by ranks alone, and their flushes by rank sets.
//
// A hand plays two cards, so what it makes is the largest of what its pairs of cards make: rows of
// the same boards, one for each pair of ranks. Lows are numbers that are larger for the better one,
// so they are the same with another table.

#ifndef POKERMATH_KERNELS_OMAHA_RANK_VALUES_H_
#define POKERMATH_KERNELS_OMAHA_RANK_VALUES_H_

#include <array>
#include <cstdint>
#include <vector>

#include "eval/rank_sets.h"
#include "kernels/hole_cards.h"
#include "platform/made_once.h"
#include "pokermath/large_table.h"

namespace pokermath {

/// The next multiple of a number.
constexpr int Padded(int size, int to) { return (size + to - 1) / to * to; }

/// Boards of a row: first all multisets of five ranks, by their numbers; then those with three
/// cards of a suit or more, by the set of ranks in that suit and the multiset of the other ranks.
struct OmahaRow {
  static constexpr int kMultisets = Padded(MultisetsOf(5), 32);
  /// Of sets with three, four and five ranks: how many there are, the places that each takes for
  /// the others, and where they stand. Places behind the last multiset weigh nothing.
  static constexpr std::array kSets = {Choose(13, 3), Choose(13, 4), Choose(13, 5)};
  static constexpr std::array kRests = {Padded(MultisetsOf(2), 32), Padded(MultisetsOf(1), 16), 1};
  static constexpr std::array kFirst = {kMultisets, kMultisets + kSets[0] * kRests[0],
                                        kMultisets + kSets[0] * kRests[0] + kSets[1] * kRests[1]};
  static constexpr int kSize = Padded(kFirst[2] + kSets[2], 32);
};

/// Rows of 0.1 MB, each built when it is first asked for, by any thread.
class OmahaRankValues {
 public:
  using Row = LargeTable<std::int16_t>;
  /// What two hole cards and three of the board make, by their ranks.
  using Value = int (*)(int hole1, int hole2, const std::array<int, 3>& board);

  /// Ascending values.
  static const OmahaRankValues& High();
  /// Strengths of lows, 0 for none.
  static const OmahaRankValues& Low();

  /// By the rank class of a pair of cards.
  const Row& Of(int rank_class) const;

 private:
  explicit OmahaRankValues(Value value) : value_(value) {}
  void Build(int rank_class, Row& row) const;

  Value value_;
  MadeOnce<Row> rows_{kRankClasses};
};

/// Multisets of five ranks and the ways to draw them.
class RankWays {
 public:
  static const RankWays& Get();

  /// [multiset]: cards of a rank in it.
  const std::int16_t* CountsOf(int rank) const {
    return &counts_[static_cast<std::size_t>(rank * OmahaRow::kMultisets)];
  }

 private:
  RankWays();
  LargeTable<std::int16_t> counts_;
};

/// The sets of three ranks of a suit, then those of four, then of five.
class OmahaSuitSets {
 public:
  static constexpr int kSize = OmahaRow::kSets[0] + OmahaRow::kSets[1] + OmahaRow::kSets[2];
  using Flushes = std::array<std::int16_t, kSize>;

  static const OmahaSuitSets& Get();

  const std::vector<RankSet>& sets() const { return sets_; }
  /// The best flush of a hand with each set that shares no rank with it, 0 where it has none.
  ///
  /// @param held  ranks of the suit in the hand
  void AddFlushes(RankSet held, Flushes& flushes) const;

 private:
  OmahaSuitSets();

  const Flushes& OfPair(int high, int low) const;

  std::vector<RankSet> sets_;
  std::vector<std::uint16_t> place_of_;  // [set]
  // [high * (high - 1) / 2 + low], built when it is first asked for.
  static constexpr int kPairs = Choose(13, 2);
  MadeOnce<Flushes> of_pairs_{kPairs};
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_RANK_VALUES_H_
