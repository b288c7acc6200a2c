// Hand against hand before the flop without dealing a board.
//
// Leave the suits aside and a board is a multiset of ranks: 6,188 of them for five cards, each with
// a weight, the number of ways to draw it from the cards that are left. What a hand makes with a
// multiset depends on its two ranks only, so a table [91 rank classes][multisets] answers that, and
// a matchup is two rows compared, weighted and summed.
//
// Flushes are put right afterwards, suit by suit. A board has at most one suit with three cards or
// more; take it apart into its cards of that suit (a set of ranks) and the rest (a multiset). A
// hand that flushes is decided by the ranks of that suit alone, as five cards of a suit leave no
// room for a full house. For every set and rest we take off what the first count said and add what
// is true. The weight of a rest does not depend on the set, so sets lie side by side in a vector
// register.

#include "equity/kernels/matchup.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "eval/compact_keys.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Tables are laid out in groups of 32 values: the widest register, or so many of a narrower one.
constexpr int kGroup = 32;
using Values = LargeTable<std::int16_t>;

using RankSet = std::uint16_t;  // a bit for each rank
constexpr RankSet kAllRanks = 0x1FFF;
constexpr RankSet kNoSet = 0x2000;  // fills the places behind the last set

constexpr int GroupsFor(int values) { return (values + kGroup - 1) / kGroup; }

constexpr int Choose(int n, int k) {
  int result = 1;
  for (int i = 0; i < k; ++i) result = result * (n - i) / (i + 1);
  return result;
}

// Place of a rank class among the 91, and of a hand of two ranks.
constexpr int ClassOf(int rank1, int rank2) {
  const int high = rank1 > rank2 ? rank1 : rank2;
  const int low = rank1 > rank2 ? rank2 : rank1;
  return high * (high + 1) / 2 + low;
}
int ClassOf(const int* hand) { return ClassOf(hand[0] % 13, hand[1] % 13); }
constexpr int kClasses = 91;

// Suited hole cards as a place among 92: none, one rank or two.
constexpr int kHoldings = 92;
int HoldingOf(RankSet ranks) {
  if (ranks == 0) return 0;
  const int low = __builtin_ctz(ranks);
  const int high = 31 - __builtin_clz(ranks);
  return low == high ? 1 + low : 14 + high * (high - 1) / 2 + low;
}

// All multisets of `size` ranks, each as its ranks in rising order.
std::vector<std::vector<int>> RankMultisets(int size) {
  std::vector<std::vector<int>> sets = {{}};
  for (int i = 0; i < size; ++i) {
    std::vector<std::vector<int>> longer;
    for (const std::vector<int>& set : sets) {
      for (int rank = set.empty() ? 0 : set.back(); rank < 13; ++rank) {
        longer.push_back(set);
        longer.back().push_back(rank);
      }
    }
    sets = std::move(longer);
  }
  return sets;
}

std::vector<RankSet> RankSets(int size) {
  std::vector<RankSet> sets;
  for (unsigned set = 0; set < 8192; ++set) {
    if (__builtin_popcount(set) == size) sets.push_back(static_cast<RankSet>(set));
  }
  return sets;
}

std::uint32_t KeyOf(const std::vector<int>& ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += kRankKeys[rank];
  return key;
}

std::uint32_t KeyOf(RankSet ranks) {
  std::uint32_t key = 0;
  for (std::size_t rank = 0; rank < 13; ++rank) key += (ranks >> rank & 1) * kRankKeys[rank];
  return key;
}

// Everything that is known of boards with `suited` cards of one suit and kBoard - suited others.
template <int kBoard>
struct SuitTable {
  int suited = 0;
  int groups = 0;  // of sets
  std::vector<std::vector<int>> rests;
  Values sets;   // [set]: the rank set itself
  Values plain;  // [class][group][rest][set in group]: a hand's value without the flush
  Values flush;  // [holding][set]: the flush of the set and the hole cards of its suit

  void Build(int suited_cards);
  void FillFlushes(RankSet hole, const std::vector<RankSet>& all_sets);
};

template <int kBoard>
void SuitTable<kBoard>::Build(int suited_cards) {
  suited = suited_cards;
  rests = RankMultisets(kBoard - suited);
  std::vector<std::uint32_t> rest_keys;
  for (const std::vector<int>& rest : rests) rest_keys.push_back(KeyOf(rest));
  std::vector<RankSet> all_sets = RankSets(suited);
  groups = GroupsFor(static_cast<int>(all_sets.size()));
  all_sets.resize(static_cast<std::size_t>(groups * kGroup), kNoSet);
  std::vector<std::uint32_t> set_keys;
  for (const RankSet set : all_sets) {
    sets.push_back(static_cast<std::int16_t>(set));
    set_keys.push_back(KeyOf(set));
  }

  plain.resize(kClasses * all_sets.size() * rests.size());
  flush.resize(kHoldings * all_sets.size());
  std::int16_t* place = plain.data();
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) {
      const std::uint32_t hole_key = kRankKeys[high] + kRankKeys[low];
      for (std::size_t group = 0; group < set_keys.size(); group += kGroup) {
        for (const std::uint32_t rest_key : rest_keys) {
          for (std::size_t i = group; i < group + kGroup; ++i) {
            *place++ = static_cast<std::int16_t>(
                ValueOfRanks<kBoard + 2>(hole_key + rest_key + set_keys[i]));
          }
        }
      }
      const auto hole = static_cast<RankSet>(1u << high | 1u << low);
      FillFlushes(hole, all_sets);
    }
  }
  FillFlushes(0, all_sets);
}

template <int kBoard>
void SuitTable<kBoard>::FillFlushes(RankSet hole, const std::vector<RankSet>& all_sets) {
  std::int16_t* place = &flush[static_cast<std::size_t>(HoldingOf(hole)) * all_sets.size()];
  for (const RankSet set : all_sets) {
    *place++ = static_cast<std::int16_t>(kCompactTables.flush_values[(set | hole) & kAllRanks]);
  }
}

template <int kBoard>
struct Tables {
  static constexpr int kMultisets = Choose(12 + kBoard, kBoard);
  static constexpr int kSize = GroupsFor(kMultisets) * kGroup;  // with places that weigh nothing

  Values weights;  // [multiset]: ways to draw it from a full deck
  Values counts;   // [rank][multiset]: cards of that rank in it
  Values plain;    // [class][multiset]: value of a hand without its suits
  std::array<SuitTable<kBoard>, kBoard - 2> suits;  // three suited cards and more

  Tables();
};

template <int kBoard>
Tables<kBoard>::Tables() {
  const std::vector<std::vector<int>> multisets = RankMultisets(kBoard);
  std::vector<std::uint32_t> keys(kSize);
  weights.resize(kSize, 0);
  counts.resize(std::size_t{13} * kSize, 0);
  for (std::size_t i = 0; i < multisets.size(); ++i) {
    keys[i] = KeyOf(multisets[i]);
    int weight = 1;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      const auto held = std::ranges::count(multisets[i], static_cast<int>(rank));
      weight *= Choose(4, static_cast<int>(held));
      counts[rank * kSize + i] = static_cast<std::int16_t>(held);
    }
    weights[i] = static_cast<std::int16_t>(weight);
  }
  plain.resize(std::size_t{kClasses} * kSize);
  std::int16_t* place = plain.data();
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) {
      const std::uint32_t hole_key = kRankKeys[high] + kRankKeys[low];
      for (const std::uint32_t key : keys) {
        *place++ = static_cast<std::int16_t>(ValueOfRanks<kBoard + 2>(hole_key + key));
      }
    }
  }
  for (std::size_t i = 0; i < suits.size(); ++i) suits[i].Build(3 + static_cast<int>(i));
}

template <int kBoard>
const Tables<kBoard>& TheTables() {
  static const Tables<kBoard> tables;
  return tables;
}

// The kernels below are compiled once for each instruction set, by inlining into the functions at
// the end of this file.
#define POKERMATH_KERNEL [[gnu::always_inline]] inline

// Registers of 16-bit values; comparing two gives -1 in every place where it is true.
using Register16 = std::int16_t __attribute__((vector_size(16)));
using Register32 = std::int16_t __attribute__((vector_size(32)));
using Register64 = std::int16_t __attribute__((vector_size(64)));

template <typename Register>
constexpr int kLanes = sizeof(Register) / sizeof(std::int16_t);

template <typename Register>
POKERMATH_KERNEL void Load(Register& to, const std::int16_t* from) {
  std::memcpy(&to, from, sizeof to);
}

template <typename Register>
POKERMATH_KERNEL int SumLanes(const Register& lanes) {
  int sum = 0;
  for (int i = 0; i < kLanes<Register>; ++i) sum += lanes[i];
  return sum;
}

// Drawing a multiset that holds k cards of a rank, when one of the n cards of that rank goes away:
// its weight shrinks to (n - k) / n. The division is exact, so it is a multiplication modulo 2^16
// by the inverse of the odd part of n, and a shift.
struct DeadCard {
  const std::int16_t* counts;
  std::int16_t left;
  std::int16_t inverse;
  int shift;
};

template <int kBoard>
POKERMATH_KERNEL std::array<DeadCard, 4> DeadCards(const Tables<kBoard>& tables, const int* hand1,
                                                   const int* hand2) {
  constexpr std::int16_t kInverses[5] = {0, 1, 1, static_cast<std::int16_t>(43691), 1};
  constexpr int kShifts[5] = {0, 0, 1, 0, 2};
  const int ranks[4] = {hand1[0] % 13, hand1[1] % 13, hand2[0] % 13, hand2[1] % 13};
  std::array<DeadCard, 4> dead{};
  for (int i = 0; i < 4; ++i) {
    int left = 4;
    for (int j = 0; j < i; ++j) left -= ranks[j] == ranks[i] ? 1 : 0;
    dead[static_cast<std::size_t>(i)] = {
        .counts = &tables.counts[static_cast<std::size_t>(ranks[i] * Tables<kBoard>::kSize)],
        .left = static_cast<std::int16_t>(left),
        .inverse = kInverses[left],
        .shift = kShifts[left]};
  }
  return dead;
}

// Wins and ties as if nobody could flush.
template <typename Register, int kBoard>
POKERMATH_KERNEL void CountPlain(const Tables<kBoard>& tables, const int* hand1, const int* hand2,
                                 Tally& tally) {
  constexpr int kSize = Tables<kBoard>::kSize;
  constexpr int kBlock = 31 * kLanes<Register>;  // weights up to 4^5 are summed up in 16 bits
  const std::int16_t* weights = tables.weights.data();
  const std::int16_t* values1 = &tables.plain[static_cast<std::size_t>(ClassOf(hand1) * kSize)];
  const std::int16_t* values2 = &tables.plain[static_cast<std::size_t>(ClassOf(hand2) * kSize)];
  const std::array<DeadCard, 4> dead = DeadCards(tables, hand1, hand2);
  for (int start = 0; start < kSize; start += kBlock) {
    const int end = start + kBlock < kSize ? start + kBlock : kSize;
    Register wins{};
    Register ties{};
    for (int i = start; i < end; i += kLanes<Register>) {
      Register weight;
      Load(weight, weights + i);
      for (const DeadCard& card : dead) {
        Register count;
        Load(count, card.counts + i);
        weight = (weight * (card.left - count) * card.inverse) >> card.shift;
      }
      Register v1;
      Register v2;
      Load(v1, values1 + i);
      Load(v2, values2 + i);
      wins += (v1 > v2) & weight;
      ties += (v1 == v2) & weight;
    }
    tally.wins += SumLanes(wins);
    tally.ties += SumLanes(ties);
  }
}

// A suit as it lies in the four hole cards.
struct SuitView {
  RankSet held1 = 0;
  RankSet held2 = 0;
  std::array<int, 13> others{};  // cards of each rank left in the three other suits
};

POKERMATH_KERNEL SuitView ViewSuit(int suit, const int* hand1, const int* hand2) {
  SuitView view;
  view.others.fill(3);
  for (int i = 0; i < 4; ++i) {
    const int card = i < 2 ? hand1[i] : hand2[i - 2];
    if (card / 13 != suit) {
      --view.others[static_cast<std::size_t>(card % 13)];
    } else {
      RankSet& held = i < 2 ? view.held1 : view.held2;
      held = static_cast<RankSet>(held | 1u << card % 13);
    }
  }
  return view;
}

// Ways to draw each rest from the other suits.
template <int kBoard>
POKERMATH_KERNEL void WeighRests(const SuitTable<kBoard>& table, const SuitView& view,
                                 std::int16_t* weights) {
  for (std::size_t i = 0; i < table.rests.size(); ++i) {
    int weight = 1;
    int repeated = -1;
    for (const int rank : table.rests[i]) {
      const int left = view.others[static_cast<std::size_t>(rank)];
      weight = rank == repeated ? left * (left - 1) / 2 : weight * left;
      repeated = rank;
    }
    weights[i] = static_cast<std::int16_t>(weight);
  }
}

// Adds what flushes change, for boards with table.suited cards of a suit.
template <typename Register, bool flush1, bool flush2, int kBoard>
POKERMATH_KERNEL void CorrectFlushes(const SuitTable<kBoard>& table, const SuitView& view,
                                     int class1, int class2, Tally& tally) {
  std::int16_t weights[kClasses];
  WeighRests(table, view, weights);
  const auto rests = static_cast<int>(table.rests.size());
  const int sets = table.groups * kGroup;
  const auto dead = static_cast<std::int16_t>(view.held1 | view.held2 | kNoSet);
  const std::int16_t* values1 = &table.plain[static_cast<std::size_t>(class1 * sets * rests)];
  const std::int16_t* values2 = &table.plain[static_cast<std::size_t>(class2 * sets * rests)];
  const std::int16_t* flushes1 =
      &table.flush[static_cast<std::size_t>(HoldingOf(view.held1) * sets)];
  const std::int16_t* flushes2 =
      &table.flush[static_cast<std::size_t>(HoldingOf(view.held2) * sets)];
  // At most 741 weighted rests for each of 286 sets, fewer for more sets: 16 bits hold the sums of
  // nine groups even in the narrowest register, and of 41 groups of one rest.
  Register wins{};
  Register ties{};
  for (int set = 0; set < sets; set += kLanes<Register>) {
    const int first = set / kGroup * kGroup * rests + set % kGroup;
    Register f1;
    Register f2;
    Register alive;
    Load(f1, flushes1 + set);
    Load(f2, flushes2 + set);
    Load(alive, table.sets.data() + set);
    Register new_wins{};
    Register new_ties{};
    for (int rest = 0; rest < rests; ++rest) {
      Register v1;
      Register v2;
      Load(v1, values1 + first + rest * kGroup);
      Load(v2, values2 + first + rest * kGroup);
      const Register true1 = flush1 ? f1 : v1;
      const Register true2 = flush2 ? f2 : v2;
      new_wins += ((v1 > v2) - (true1 > true2)) * weights[rest];
      // A flush never ties with a hand that has none.
      const Register no_tie{};
      const Register true_tie = flush1 && flush2 ? Register(f1 == f2) : no_tie;
      new_ties += ((v1 == v2) - true_tie) * weights[rest];
    }
    alive = (alive & dead) == 0;
    wins += new_wins & alive;
    ties += new_ties & alive;
  }
  tally.wins += SumLanes(wins);
  tally.ties += SumLanes(ties);
}

template <typename Register, int kBoard>
POKERMATH_KERNEL Tally Count(const Tables<kBoard>& tables, const int* hand1, const int* hand2) {
  Tally tally{.cases = Choose(48, kBoard)};
  CountPlain<Register>(tables, hand1, hand2, tally);
  const int class1 = ClassOf(hand1);
  const int class2 = ClassOf(hand2);
  for (int suit = 0; suit < 4; ++suit) {
    const SuitView view = ViewSuit(suit, hand1, hand2);
    const int held1 = __builtin_popcount(view.held1);
    const int held2 = __builtin_popcount(view.held2);
    for (const SuitTable<kBoard>& table : tables.suits) {
      const bool flush1 = table.suited + held1 >= 5;
      const bool flush2 = table.suited + held2 >= 5;
      if (flush1 && flush2) {
        CorrectFlushes<Register, true, true>(table, view, class1, class2, tally);
      } else if (flush1) {
        CorrectFlushes<Register, true, false>(table, view, class1, class2, tally);
      } else if (flush2) {
        CorrectFlushes<Register, false, true>(table, view, class1, class2, tally);
      }
    }
  }
  return tally;
}

template <int kBoard>
Tally CountBaseline(const int* hand1, const int* hand2) {
  return Count<Register16>(TheTables<kBoard>(), hand1, hand2);
}

template <int kBoard>
POKERMATH_TARGET_AVX2 Tally CountAvx2(const int* hand1, const int* hand2) {
  return Count<Register32>(TheTables<kBoard>(), hand1, hand2);
}

template <int kBoard>
POKERMATH_TARGET_AVX512 Tally CountAvx512(const int* hand1, const int* hand2) {
  return Count<Register64>(TheTables<kBoard>(), hand1, hand2);
}

template <int kBoard>
Tally CountWith(Isa isa, const int* hand1, const int* hand2) {
  switch (isa) {
    case Isa::kAvx512:
      return CountAvx512<kBoard>(hand1, hand2);
    case Isa::kAvx2:
      return CountAvx2<kBoard>(hand1, hand2);
    default:
      return CountBaseline<kBoard>(hand1, hand2);
  }
}

}  // namespace

Tally CountMatchup(Isa isa, const int* hand1, const int* hand2, Street street) {
  return street == Street::kTurn ? CountWith<4>(isa, hand1, hand2)
                                 : CountWith<5>(isa, hand1, hand2);
}

}  // namespace pokermath
