#include "kernels/three_way.h"

#include <algorithm>
#include <cstring>

#include "kernels/several_hands.h"
#include "platform/dispatch.h"
#include "platform/made_once.h"

namespace pokermath {
namespace {

RankSet HeldOf(int rank_class, unsigned bits) {
  return kViews[static_cast<std::size_t>(rank_class) * 4 + bits].held;
}

std::array<RankedHand, 3> HandsOf(const RankTriple& triple, unsigned set) {
  std::array<RankedHand, 3> hands;
  for (std::size_t i = 0; i < 3; ++i) {
    hands[i] = {triple[i], HeldOf(triple[i], set >> 2 * i & 3)};
  }
  return hands;
}

ThreeWayTimes Narrow(const std::array<std::int64_t, 8>& times) {
  ThreeWayTimes narrow{};
  std::ranges::transform(times, narrow.begin(),
                         [](std::int64_t boards) { return static_cast<std::int32_t>(boards); });
  return narrow;
}

}  // namespace

RankTriple RankTripleOf(std::int64_t number) {
  RankTriple triple{};
  while (NumberOf({0, 0, triple[2] + 1}) <= number) ++triple[2];
  number -= NumberOf({0, 0, triple[2]});
  while (NumberOf({0, triple[1] + 1, 0}) <= number) ++triple[1];
  triple[0] = static_cast<int>(number - NumberOf({0, triple[1], 0}));
  return triple;
}

// They depend on nothing but which of the six cards are of one rank.
const SuitSets& SuitSets::Of(const RankTriple& triple) {
  static const MadeOnce<SuitSets> sets(1 << 15);
  std::size_t same = 0;
  const auto add = [&](int rank1, int rank2) { same = 2 * same + (rank1 == rank2 ? 1 : 0); };
  for (std::size_t i = 0; i < 3; ++i) {
    const auto& [low1, high1] = RanksOf(triple[i]);
    const auto& [low2, high2] = RanksOf(triple[(i + 1) % 3]);
    add(low1, high1);
    add(low1, low2);
    add(low1, high2);
    add(high1, low2);
    add(high1, high2);
  }
  return sets.Get(same, [&](SuitSets& made) { made.Find(triple); });
}

void SuitSets::Find(const RankTriple& triple) {
  size_ = 0;
  std::array<int, 13> cards{};
  RankSet whole = 0;  // ranks of which every suit has a card
  std::array<unsigned, 3> most{};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto [low, high] = RanksOf(triple[i]);
    most[i] = low == high ? 1 : 3;
    for (const int rank : {low, high}) {
      const int count = ++cards[static_cast<std::size_t>(rank)];
      if (count > 4) return;  // nothing was found yet
      if (count == 4) whole = static_cast<RankSet>(whole | 1u << rank);
    }
  }
  for (unsigned c = 0; c <= most[2]; ++c) {
    const RankSet of_c = HeldOf(triple[2], c);
    for (unsigned b = 0; b <= most[1]; ++b) {
      const RankSet of_b = HeldOf(triple[1], b);
      if ((of_c & of_b) != 0) continue;
      for (unsigned a = 0; a <= most[0]; ++a) {
        const RankSet of_a = HeldOf(triple[0], a);
        const auto of_others = static_cast<RankSet>(of_b | of_c);
        if ((of_a & of_others) != 0 || (whole & ~(of_a | of_others)) != 0) continue;
        sets_[size_++] = static_cast<std::uint8_t>(a | b << 2 | c << 4);
      }
    }
  }
}

ThreeWayCounts CountThreeWay(Isa isa, const RankTriple& triple) {
  ThreeWayCounts counts{.sets = SuitSets::Of(triple), .by_ranks = {}, .changes = {}};
  if (counts.sets.size() == 0) return counts;
  std::array<std::int64_t, 8> times{};
  CountByRanks(isa, HandsOf(triple, 0), times);
  counts.by_ranks = Narrow(times);
  std::size_t place = 0;
  for (const std::uint8_t set : counts.sets) {
    times.fill(0);
    CountSuit(isa, HandsOf(triple, set), times);
    counts.changes[place++] = Narrow(times);
  }
  return counts;
}

std::array<double, 8> SumChanges(Isa isa, const ThreeWayCounts& counts,
                                 std::span<const double> weights) {
  using Whole = std::int32_t __attribute__((vector_size(32)));
  using Sums = double __attribute__((vector_size(64)));
  static_assert(sizeof(Whole) == sizeof(ThreeWayTimes));
  std::array<double, 8> out;
  Dispatch(isa, [&](auto) POKERMATH_INLINE {
    Sums sums{};
    for (std::size_t place = 0; place < counts.sets.size(); ++place) {
      Whole changes;
      std::memcpy(&changes, counts.changes[place].data(), sizeof changes);
      sums += weights[place] * __builtin_convertvector(changes, Sums);
    }
    std::memcpy(out.data(), &sums, sizeof sums);
  });
  return out;
}

}  // namespace pokermath
