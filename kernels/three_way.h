// Three hands before the flop, to the river of a full deck, taken apart so that a table can hold
// every matchup.
//
// The boards that hands share, by who shares them, are those of their ranks as if there were no
// suits, and for each of the four suits what it changes. This depends on which of the six cards are
// of the suit: 64 sets of cards at most.

#ifndef POKERMATH_KERNELS_THREE_WAY_H_
#define POKERMATH_KERNELS_THREE_WAY_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "kernels/decks.h"
#include "kernels/hole_cards.h"
#include "platform/isa.h"

namespace pokermath {

/// The rank classes of three hands, rising, some of them perhaps equal.
using RankTriple = std::array<int, 3>;
inline constexpr std::int64_t kRankTriples =
    std::int64_t{kRankClasses} * (kRankClasses + 1) * (kRankClasses + 2) / 6;

constexpr std::int64_t NumberOf(const RankTriple& triple) {
  const auto [a, b, c] = triple;
  return std::int64_t{c} * (c + 1) * (c + 2) / 6 + b * (b + 1) / 2 + a;
}
RankTriple RankTripleOf(std::int64_t number);

/// The sets of cards that a suit may have of three hands, rising: two bits for each hand, the first
/// for its lower card or that of a pair which is of the suit, the second for its higher one. There
/// are none where the hands need more than four cards of a rank.
class SuitSets {
 public:
  static constexpr std::size_t kMost = 64;

  static const SuitSets& Of(const RankTriple& triple);

  std::size_t size() const { return size_; }
  const std::uint8_t* begin() const { return sets_.data(); }
  const std::uint8_t* end() const { return begin() + size_; }

 private:
  void Find(const RankTriple& triple);

  std::array<std::uint8_t, kMost> sets_{};
  std::size_t size_ = 0;
};

/// Boards by who shares them: [a bit for each hand].
using ThreeWayTimes = std::array<std::int32_t, 8>;
inline constexpr int kThreeWayBoards = Choose(46, 5);

/// A suit changes no more boards than have three cards of it.
inline constexpr int kMostChange =
    Choose(13, 3) * Choose(33, 2) + Choose(13, 4) * Choose(33, 1) + Choose(13, 5);

struct ThreeWayCounts {
  const SuitSets& sets;
  ThreeWayTimes by_ranks;
  std::array<ThreeWayTimes, SuitSets::kMost> changes;  ///< [place in sets]
};

/// Where there are no sets nothing is counted.
ThreeWayCounts CountThreeWay(Isa isa, const RankTriple& triple);

/// What suits change together, each set as often as its weight says. Exact where all products and
/// sums are whole numbers below 2^53.
///
/// @param weights  [place in sets]
std::array<double, 8> SumChanges(Isa isa, const ThreeWayCounts& counts,
                                 std::span<const double> weights);

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_THREE_WAY_H_
