// Points for Omaha starting hands: the Hutchison count and its Hi/Lo counterpart. Every table is by
// rank, deuce to ace, or by span.

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "pokermath/ranges.h"

namespace pokermath {
namespace {

constexpr int kAce = 12;
constexpr int kTen = 8;

//                                2  3  4  5  6  7  8  9  T  J  Q  K  A
constexpr int kSuitedPoints[13] = {1, 1, 1, 1, 1, 1, 2, 3, 3, 4, 5, 6, 8};
constexpr int kPairPoints[13] = {7, 7, 7, 7, 7, 7, 8, 10, 12, 13, 14, 16, 18};

// By the ranks looked at and the span between the lowest and the highest of them.
constexpr int kSpans = 13;
constexpr int kStraightPoints[5][kSpans] = {
    {}, {}, {0, 8, 6, 4, 2}, {0, 0, 18, 16, 14, 12}, {0, 0, 0, 25, 23, 21, 19}};
constexpr int kLessWithAce = 4;
constexpr int kWheelCards = 4;                                   // deuce to five
constexpr int kWheelPoints[kWheelCards + 1] = {0, 6, 12, 0, 0};  // beside an ace

//                                       2    3    4    5  6  7  8  9  T    J  Q    K  A
constexpr double kLowestWithAce[13] = {20, 17, 13, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0};
constexpr double kFurtherPoints[13] = {0, 9, 6, 4, 1, 0, 0, 0, 1, 2, 2, 2, 0};
constexpr double kHighLowPairs[13] = {3, 1, 1, 0, 0, 0, 0, 0, 1, 2, 5, 6, 8};
constexpr double kHighLowTrips[13] = {1.5, 0.5, 0.5, 0, 0, 0, 0, 0, 0.5, 1, 2.5, 3, 4};
constexpr double kHighLowSuited[13] = {0, 0, 0, 0, 0, 0, 1, 1, 1, 2, 2, 3, 4};

// A hand taken apart.
struct Holding {
  explicit Holding(const int* hand) {
    for (const int card : std::span(hand, 4)) {
      const auto suit = static_cast<std::size_t>(card / 13);
      ++of_rank[static_cast<std::size_t>(card % 13)];
      ++of_suit[suit];
      top[suit] = std::max(top[suit], static_cast<std::size_t>(card % 13));
    }
    for (int rank = 0; rank < 13; ++rank) {
      if (of_rank[static_cast<std::size_t>(rank)] > 0) ranks.push_back(rank);
    }
  }

  std::array<int, 13> of_rank{};
  std::array<int, 4> of_suit{};
  std::array<std::size_t, 4> top{};  // by suit: the highest rank
  std::vector<int> ranks;            // different ones, rising
};

int StraightPoints(std::span<const int> ranks) {
  const int points =
      kStraightPoints[ranks.size()][static_cast<std::size_t>(ranks.back() - ranks.front())];
  if (points == 0 || ranks.back() != kAce) return points;
  return std::max(points - kLessWithAce, 0);
}

// Three of four ranks are looked at together where few ranks lie between them.
int FourRankPoints(std::span<const int> ranks) {
  constexpr int kFewBetween = 4;
  if (const int points = StraightPoints(ranks); points > 0) return points;
  const auto three = [&](std::size_t from) { return StraightPoints(ranks.subspan(from, 3)); };
  const auto two = [&](std::size_t from) { return StraightPoints(ranks.subspan(from, 2)); };
  const bool lower = ranks[2] - ranks[0] - 2 < kFewBetween;
  const bool upper = ranks[3] - ranks[1] - 2 < kFewBetween;
  if (lower && upper) return three(0) + three(1);
  if (lower) return three(0) + two(2);
  if (upper) return three(1) + two(0);
  return two(0) + two(1) + two(2);
}

int RanksPoints(std::span<const int> ranks) {
  switch (ranks.size()) {
    case 4:
      return FourRankPoints(ranks);
    case 3: {
      const int points = StraightPoints(ranks);
      return points > 0 ? points : StraightPoints(ranks.first(2)) + StraightPoints(ranks.last(2));
    }
    case 2:
      return StraightPoints(ranks);
    default:
      return 0;
  }
}

// Ten and better only: all or nothing.
double BigHandPoints(const Holding& holding) {
  if (std::ranges::any_of(holding.of_rank, [](int count) { return count >= 3; })) return 0.0;
  const auto pairs = std::ranges::count(holding.of_rank, 2);
  const auto suited = std::ranges::count(holding.of_suit, 2);
  const bool nothing = (pairs == 1 && suited == 0) || (pairs == 0 && suited < 2);
  return nothing ? 0.0 : 1000.0;
}

double LowestPoints(const std::vector<int>& ranks) {
  if (ranks.back() == kAce) return kLowestWithAce[ranks[0]];
  if (ranks.size() < 2) return 0.0;
  constexpr struct {
    int lowest, next;
    double points;
  } kPairs[] = {{0, 1, 15}, {0, 2, 12}, {1, 2, 11}, {2, 3, 8}};
  for (const auto& [lowest, next, points] : kPairs) {
    if (ranks[0] == lowest && ranks[1] == next) return points;
  }
  return 0.0;
}

// The ranks behind those, one of three and two of four.
double FurtherPoints(const std::vector<int>& ranks) {
  if (ranks.size() < 3) return 0.0;
  const std::size_t first = ranks.back() == kAce ? 1 : 2;
  double points = 0.0;
  for (std::size_t i = first; i < first + ranks.size() - 2; ++i) points += kFurtherPoints[ranks[i]];
  return points;
}

}  // namespace
}  // namespace pokermath

int HutchisonPointsOmaha(const int* hand) {
  using namespace pokermath;
  const Holding holding(hand);
  int points = 0;
  for (std::size_t suit = 0; suit < 4; ++suit) {
    if (holding.of_suit[suit] == 2) points += kSuitedPoints[holding.top[suit]];
    if (holding.of_suit[suit] > 2) points -= 2;
    points = std::max(points, 0);
  }
  int wheel_cards = 0;
  for (std::size_t rank = 0; rank < 13; ++rank) {
    if (holding.of_rank[rank] == 2) points += kPairPoints[rank];
    if (rank < kWheelCards && holding.of_rank[rank] > 0) ++wheel_cards;
  }
  points += RanksPoints(holding.ranks);
  return points + (holding.of_rank[kAce] > 0 ? kWheelPoints[wheel_cards] : 0);
}

double HutchisonPointsOmahaHL(const int* hand) {
  using namespace pokermath;
  const Holding holding(hand);
  if (holding.ranks.front() >= kTen) return BigHandPoints(holding);
  double points = LowestPoints(holding.ranks) + FurtherPoints(holding.ranks);
  for (std::size_t rank = 0; rank < 13; ++rank) {
    if (holding.of_rank[rank] == 2) points += kHighLowPairs[rank];
    if (holding.of_rank[rank] == 3) points += kHighLowTrips[rank];
  }
  for (std::size_t suit = 0; suit < 4; ++suit) {
    if (holding.of_suit[suit] == 2) points += kHighLowSuited[holding.top[suit]];
    if (holding.of_suit[suit] == 3) points += kHighLowSuited[holding.top[suit]] / 2;
  }
  return points;
}
