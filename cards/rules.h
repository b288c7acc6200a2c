// What the rules of poker look for: groups of one rank, and the cards of a flush.

#ifndef POKERMATH_CARDS_RULES_H_
#define POKERMATH_CARDS_RULES_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace pokermath {

/// The two largest groups of equal ranks; of groups of one size the higher rank comes first. Sizes
/// are 1 where there is no group.
struct RankGroups {
  int same = 1;   ///< cards in the largest group
  int same2 = 1;  ///< cards in the other one
  int large = 0;  ///< rank of the largest group
  int small = 0;  ///< rank of the other one
};

/// @param count   cards of each rank
/// @param lowest  the rank that is looked at last, from 13 down
inline RankGroups FindRankGroups(const std::array<int, 14>& count, int lowest) {
  RankGroups groups;
  for (int rank = 13; rank >= lowest; --rank) {
    const int cards = count[static_cast<std::size_t>(rank)];
    if (cards > groups.same) {
      if (groups.same != 1) {
        groups.same2 = groups.same;
        groups.small = groups.large;
      }
      groups.same = cards;
      groups.large = rank;
    } else if (cards > groups.same2) {
      groups.same2 = cards;
      groups.small = rank;
    }
  }
  return groups;
}

/// Compares two values of six places, the first place first: 1, -1 or 0.
inline int CompareValues(const std::int32_t (&value)[6], const std::int32_t (&other)[6]) {
  const auto [mine, others] = std::ranges::mismatch(value, other);
  if (mine == std::end(value)) return 0;
  return *mine > *others ? 1 : -1;
}

/// Ranks of the suit of a flush, in their order; none without five cards of one suit.
std::vector<int> FlushRanks(const std::vector<int>& ranks, const std::vector<int>& suits,
                            const int* suit_counts);

}  // namespace pokermath

#endif  // POKERMATH_CARDS_RULES_H_
