// The rules of poker written down plainly: what the evaluators are measured against.

#ifndef POKERMATH_TESTS_EVAL_ORACLE_H_
#define POKERMATH_TESTS_EVAL_ORACLE_H_

#include <algorithm>
#include <span>
#include <vector>

namespace pokermath::oracle {

// Five cards as a number that orders hands: the category 1 (high card) .. 9 (straight flush) in
// bits 20 and up, below it the ranks that break ties, four bits each, the first one highest.
inline int Strength(const int (&cards)[5]) {
  int counts[13] = {};
  bool flush = true;
  for (const int card : cards) {
    ++counts[card % 13];
    flush = flush && card / 13 == cards[0] / 13;
  }
  int ranks[5];
  for (int i = 0; i < 5; ++i) ranks[i] = cards[i] % 13;
  std::sort(ranks, ranks + 5, [&counts](int a, int b) {
    return counts[a] != counts[b] ? counts[a] > counts[b] : a > b;
  });
  const int most = counts[ranks[0]];
  const int next = counts[ranks[most]];

  const bool wheel = most == 1 && ranks[0] == 12 && ranks[1] == 3;
  const bool straight = most == 1 && (ranks[0] - ranks[4] == 4 || wheel);
  if (straight) {
    ranks[0] = wheel ? 3 : ranks[0];
    std::fill(ranks + 1, ranks + 5, 0);
  }

  const int category = straight && flush        ? 9
                       : most == 4              ? 8
                       : most == 3 && next == 2 ? 7
                       : flush                  ? 6
                       : straight               ? 5
                       : most == 3              ? 4
                       : most == 2 && next == 2 ? 3
                       : most == 2              ? 2
                                                : 1;
  int strength = category;
  for (const int rank : ranks) strength = strength << 4 | rank;
  return strength;
}

// The strengths of all hands, rising: every five ranks in mixed suits and, if they differ, in one.
inline const std::vector<int>& AllStrengths() {
  static const std::vector<int> all = [] {
    std::vector<int> strengths;
    for (int a = 0; a < 13; ++a)
      for (int b = a; b < 13; ++b)
        for (int c = b; c < 13; ++c)
          for (int d = c; d < 13; ++d)
            for (int e = d; e < 13; ++e) {
              if (a == e) continue;  // there are four suits
              strengths.push_back(Strength({a, b + 13, c + 26, d + 39, e}));
              if (a < b && b < c && c < d && d < e) strengths.push_back(Strength({a, b, c, d, e}));
            }
    std::sort(strengths.begin(), strengths.end());
    strengths.erase(std::unique(strengths.begin(), strengths.end()), strengths.end());
    return strengths;
  }();
  return all;
}

inline int Places(int strength) {
  const std::vector<int>& all = AllStrengths();
  return static_cast<int>(std::lower_bound(all.begin(), all.end(), strength) - all.begin());
}

// The strength of the best five among the cards, by the rules of a game.
template <typename Rules>
int BestStrength(std::span<const int> cards, Rules strength) {
  int best = 0;
  for (unsigned chosen = 0; chosen < 1u << cards.size(); ++chosen) {
    if (__builtin_popcount(chosen) != 5) continue;
    int five[5];
    int size = 0;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      if ((chosen >> i & 1) != 0) five[size++] = cards[i];
    }
    best = std::max(best, strength(five));
  }
  return best;
}

inline int BestStrength(std::span<const int> cards) {
  return BestStrength(cards, [](const int(&five)[5]) { return Strength(five); });
}

// 1 (seven high) .. 7462 (royal flush).
inline int Ascending(std::span<const int> cards) { return Places(BestStrength(cards)) + 1; }

// Category * 4096 + place in the category, from 1.
inline int HandRanks(std::span<const int> cards) {
  const int strength = BestStrength(cards);
  const int category = strength >> 20;
  return category * 4096 + Places(strength) - Places(category << 20) + 1;
}

}  // namespace pokermath::oracle

#endif  // POKERMATH_TESTS_EVAL_ORACLE_H_
