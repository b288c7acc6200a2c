// Pairs of hole ranks: their numbers, and the best one of a hand.

#ifndef POKERMATH_EVAL_OMAHA_PAIRS_H_
#define POKERMATH_EVAL_OMAHA_PAIRS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace pokermath {

inline constexpr int kRankPairs = 91;

/// The number of a pair of ranks, in any order.
constexpr int PairOf(int rank1, int rank2) {
  const int high = rank1 > rank2 ? rank1 : rank2;
  const int low = rank1 > rank2 ? rank2 : rank1;
  return high * (high + 1) / 2 + low;
}

/// The same by card * 64 + card.
inline constexpr auto kPairOfCards = [] {
  std::array<std::uint8_t, 52 * 64> pairs{};
  for (int card1 = 0; card1 < 52; ++card1) {
    for (int card2 = 0; card2 < 52; ++card2) {
      pairs[static_cast<std::size_t>(card1 * 64 + card2)] =
          static_cast<std::uint8_t>(PairOf(card1 % 13, card2 % 13));
    }
  }
  return pairs;
}();

/// For vectors: the ranks of cards, and the numbers of pairs by their higher rank, less the lower.
alignas(64) inline constexpr auto kRanksOfCards = [] {
  std::array<std::uint8_t, 64> ranks{};
  for (std::size_t card = 0; card < 52; ++card) ranks[card] = static_cast<std::uint8_t>(card % 13);
  return ranks;
}();
alignas(16) inline constexpr std::uint8_t kPairStarts[16] = {0,  1,  3,  6,  10, 15, 21,
                                                             28, 36, 45, 55, 66, 78};

/// The largest value of a hand's pairs, values by the number of the pair.
template <int holes, typename Card>
inline int BestOfPairs(const std::uint16_t* values, const Card* hand) {
  std::size_t cards[holes];
  for (std::size_t i = 0; i < holes; ++i) cards[i] = static_cast<std::size_t>(hand[i]);
  // One address, that is: compilers would add its parts up anew for each pair.
  asm("" : "+r"(values));
  int best = 0;
  for (std::size_t i = 1; i < holes; ++i) {
    const std::uint8_t* pairs = &kPairOfCards[cards[i] * 64];
    for (std::size_t j = 0; j < i; ++j) best = std::max<int>(best, values[pairs[cards[j]]]);
  }
  return best;
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_PAIRS_H_
