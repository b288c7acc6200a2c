// What the rules of poker look for: groups of one rank, and the cards of a flush.

#ifndef POKERMATH_CARDS_RULES_H_
#define POKERMATH_CARDS_RULES_H_

#include <array>
#include <cstddef>
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

/// Ranks of the suit of a flush, in their order; none without five cards of one suit.
std::vector<int> FlushRanks(const std::vector<int>& ranks, const std::vector<int>& suits,
                            const int* suit_counts);

}  // namespace pokermath

#endif  // POKERMATH_CARDS_RULES_H_
