// Sets and multisets of ranks: what a suit sees of cards, and what remains of cards without suits.

#ifndef POKERMATH_EVAL_RANK_SETS_H_
#define POKERMATH_EVAL_RANK_SETS_H_

#include <array>
#include <cstdint>
#include <span>

namespace pokermath {

constexpr int Choose(int n, int k) {
  int result = 1;
  for (int i = 0; i < k; ++i) result = result * (n - i) / (i + 1);
  return result;
}

/// A bit for each rank.
using RankSet = std::uint16_t;
inline constexpr RankSet kAllRanks = 0x1FFF;

/// How many cards there are of each rank.
using RankCounts = std::array<std::int8_t, 13>;

inline constexpr int MultisetsOf(int size) { return Choose(12 + size, size); }

/// [place][rank]: what a card of the place in rising order adds to the number of a multiset.
inline constexpr auto kMultisetPlaces = [] {
  std::array<std::array<int, 13>, 6> places{};
  for (std::size_t i = 0; i < places.size(); ++i) {
    for (std::size_t rank = 0; rank < 13; ++rank) {
      places[i][rank] = Choose(static_cast<int>(rank + i), static_cast<int>(i) + 1);
    }
  }
  return places;
}();

/// The number of a multiset of up to six ranks among all of its size.
///
/// @param ranks  in rising order
template <typename Ranks>
int MultisetNumber(const Ranks& ranks) {
  int number = 0;
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    number += kMultisetPlaces[i][static_cast<std::size_t>(ranks[i])];
  }
  return number;
}

/// Visits every multiset of `ranks.size()` ranks that some cards hold, with the number of ways to
/// take it from them.
///
/// @param ranks  where the multiset is shown, in rising order
/// @param visit  called with the ways
template <typename Visit>
void ForEachMultiset(const RankCounts& counts, std::span<int> ranks, const Visit& visit,
                     int highest = 12, std::int64_t ways = 1) {
  if (ranks.empty()) return visit(ways);
  for (int rank = 0; rank <= highest; ++rank) {
    const int count = counts[static_cast<std::size_t>(rank)];
    for (std::size_t taken = 1; taken <= ranks.size() && static_cast<int>(taken) <= count;
         ++taken) {
      ranks[ranks.size() - taken] = rank;
      ForEachMultiset(counts, ranks.first(ranks.size() - taken), visit, rank - 1,
                      ways * Choose(count, static_cast<int>(taken)));
    }
  }
}

/// Visits every set of `size` ranks out of one.
template <typename Visit>
void ForEachSubset(RankSet of, int size, const Visit& visit, RankSet chosen = 0) {
  if (size == 0) return visit(chosen);
  for (unsigned rest = of; rest != 0; rest &= rest - 1) {
    const unsigned lowest = rest & -rest;
    ForEachSubset(static_cast<RankSet>(rest & ~lowest), size - 1, visit,
                  static_cast<RankSet>(chosen | lowest));
  }
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_RANK_SETS_H_
