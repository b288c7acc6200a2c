#include "eval/generate/reference.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace pokermath {
namespace {

constexpr int kAce = 12;

// The ranks that are held `times` times, from the highest.
std::vector<int> RanksHeld(const RankCounts& counts, int times) {
  std::vector<int> ranks;
  for (int rank = kAce; rank >= 0; --rank) {
    if (counts[static_cast<std::size_t>(rank)] == times) ranks.push_back(rank);
  }
  return ranks;
}

// The highest rank of a straight, or -1. The ace also counts below the lowest rank.
int StraightTop(const DeckRules& rules, const std::vector<int>& singles) {
  if (singles.size() != 5) return -1;
  if (singles.front() - singles.back() == 4) return singles.front();
  const int wheel_top = rules.lowest_rank + 3;
  const bool wheel = singles[0] == kAce && singles[1] == wheel_top;
  return wheel ? wheel_top : -1;
}

Strength Make(int category, const std::vector<int>& ranks) {
  Strength strength{category};
  std::copy(ranks.begin(), ranks.end(), strength.begin() + 1);
  return strength;
}

std::vector<int> Join(std::vector<int> first, const std::vector<int>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

Strength Classify(const DeckRules& rules, const RankCounts& counts, bool one_suit) {
  const std::vector<int> fours = RanksHeld(counts, 4);
  const std::vector<int> threes = RanksHeld(counts, 3);
  const std::vector<int> pairs = RanksHeld(counts, 2);
  const std::vector<int> singles = RanksHeld(counts, 1);
  const int straight = StraightTop(rules, singles);

  if (straight >= 0 && one_suit) return Make(9, {straight});
  if (!fours.empty()) return Make(8, Join(fours, singles));
  const bool full_house = !threes.empty() && !pairs.empty();
  if (full_house) return Make(rules.short_order ? 6 : 7, Join(threes, pairs));
  if (one_suit) return Make(rules.short_order ? 7 : 6, singles);
  if (straight >= 0) return Make(rules.short_order ? 4 : 5, {straight});
  if (!threes.empty()) return Make(rules.short_order ? 5 : 4, Join(threes, singles));
  if (pairs.size() == 2) return Make(3, Join(pairs, singles));
  if (pairs.size() == 1) return Make(2, Join(pairs, singles));
  return Make(1, singles);
}

std::vector<RankCounts> AllRankCounts(const DeckRules& rules, int cards) {
  std::vector<RankCounts> all = {RankCounts{}};
  // Cards are added in rising rank, so that each multiset comes once.
  std::vector<int> lowest = {rules.lowest_rank};
  for (int added = 0; added < cards; ++added) {
    std::vector<RankCounts> next;
    std::vector<int> next_lowest;
    for (std::size_t i = 0; i < all.size(); ++i) {
      for (int rank = lowest[i]; rank <= kAce; ++rank) {
        RankCounts counts = all[i];
        if (++counts[static_cast<std::size_t>(rank)] > 4) continue;
        next.push_back(counts);
        next_lowest.push_back(rank);
      }
    }
    all = std::move(next);
    lowest = std::move(next_lowest);
  }
  return all;
}

ReferenceValues::ReferenceValues(const DeckRules& rules) : rules_(rules) {
  std::vector<Strength> strengths;
  for (const RankCounts& counts : AllRankCounts(rules, 5)) {
    strengths.push_back(Classify(rules, counts, false));
    const bool can_be_one_suit = std::ranges::max(counts) == 1;
    if (can_be_one_suit) strengths.push_back(Classify(rules, counts, true));
  }
  std::ranges::sort(strengths, std::greater<>());
  for (const Strength& strength : strengths) {
    values_.emplace(strength, static_cast<int>(values_.size()) + 1);
  }
}

}  // namespace pokermath
