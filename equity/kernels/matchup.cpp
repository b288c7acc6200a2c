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

#include <array>
#include <cstdint>
#include <cstring>

#include "equity/kernels/matchup_tables.h"

namespace pokermath {
namespace {

// The kernels below are compiled once for each instruction set, by inlining into the functions at
// the end of this file.
#define POKERMATH_KERNEL [[gnu::always_inline]] inline

// Registers of 16-bit values, and the same for arithmetic modulo 2^16. Comparing two gives -1 in
// every place where it is true.
struct Registers16 {
  using Register = std::int16_t __attribute__((vector_size(16)));
  using Modular = std::uint16_t __attribute__((vector_size(16)));
};
struct Registers32 {
  using Register = std::int16_t __attribute__((vector_size(32)));
  using Modular = std::uint16_t __attribute__((vector_size(32)));
};
struct Registers64 {
  using Register = std::int16_t __attribute__((vector_size(64)));
  using Modular = std::uint16_t __attribute__((vector_size(64)));
};

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
  std::uint16_t left;
  std::uint16_t inverse;
  int shift;
};

template <int kBoard>
POKERMATH_KERNEL std::array<DeadCard, 4> DeadCards(const MatchupTables<kBoard>& tables,
                                                   const int* hand1, const int* hand2) {
  constexpr std::uint16_t kInverses[5] = {0, 1, 1, 43691, 1};
  constexpr int kShifts[5] = {0, 0, 1, 0, 2};
  const int ranks[4] = {hand1[0] % 13, hand1[1] % 13, hand2[0] % 13, hand2[1] % 13};
  std::array<DeadCard, 4> dead{};
  for (int i = 0; i < 4; ++i) {
    int left = 4;
    for (int j = 0; j < i; ++j) left -= ranks[j] == ranks[i] ? 1 : 0;
    dead[static_cast<std::size_t>(i)] = {.counts = tables.CountsOf(ranks[i]),
                                         .left = static_cast<std::uint16_t>(left),
                                         .inverse = kInverses[left],
                                         .shift = kShifts[left]};
  }
  return dead;
}

// Wins and ties as if nobody could flush.
template <typename Width, int kBoard>
POKERMATH_KERNEL void CountPlain(const MatchupTables<kBoard>& tables, const ClassValues& class1,
                                 const ClassValues& class2, const std::array<DeadCard, 4>& dead,
                                 Tally& tally) {
  using Register = typename Width::Register;
  using Modular = typename Width::Modular;
  constexpr int kSize = MatchupTables<kBoard>::kSize;
  constexpr int kBlock = 31 * kLanes<Register>;  // weights up to 4^5 are summed up in 16 bits
  const std::int16_t* weights = tables.weights().data();
  const std::int16_t* values1 = class1.by_multiset.data();
  const std::int16_t* values2 = class2.by_multiset.data();
  for (int start = 0; start < kSize; start += kBlock) {
    const int end = start + kBlock < kSize ? start + kBlock : kSize;
    Register wins{};
    Register ties{};
    for (int i = start; i < end; i += kLanes<Register>) {
      Modular weight;
      Load(weight, weights + i);
      for (const DeadCard& card : dead) {
        Modular count;
        Load(count, card.counts + i);
        weight = (weight * (card.left - count) * card.inverse) >> card.shift;
      }
      Register v1;
      Register v2;
      Load(v1, values1 + i);
      Load(v2, values2 + i);
      wins += (v1 > v2) & reinterpret_cast<Register>(weight);
      ties += (v1 == v2) & reinterpret_cast<Register>(weight);
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
POKERMATH_KERNEL void WeighRests(const SuitBoards& boards, const SuitView& view,
                                 std::int16_t* weights) {
  for (const std::vector<int>& rest : boards.rests) {
    int weight = 1;
    int repeated = -1;
    for (const int rank : rest) {
      const int left = view.others[static_cast<std::size_t>(rank)];
      weight = rank == repeated ? left * (left - 1) / 2 : weight * left;
      repeated = rank;
    }
    *weights++ = static_cast<std::int16_t>(weight);
  }
}

// Adds what flushes change on boards with boards.suited cards of a suit. values1 and values2 are
// what the hands' classes make with these boards.
template <typename Register, bool flush1, bool flush2>
POKERMATH_KERNEL void CorrectFlushes(const SuitBoards& boards, const SuitView& view,
                                     const Values& values1, const Values& values2, Tally& tally) {
  std::int16_t weights[kRankClasses];
  WeighRests(boards, view, weights);
  const auto rests = static_cast<int>(boards.rests.size());
  const auto dead = static_cast<std::int16_t>(view.held1 | view.held2 | kNoSet);
  const std::int16_t* flushes1 =
      &boards.flushes[static_cast<std::size_t>(HoldingOf(view.held1) * boards.sets)];
  const std::int16_t* flushes2 =
      &boards.flushes[static_cast<std::size_t>(HoldingOf(view.held2) * boards.sets)];
  // A set of three ranks has rests of weight 741 or less together, and 36 of these sets share a
  // lane of the narrowest register; larger sets weigh much less. So 16 bits hold the sums.
  Register wins{};
  Register ties{};
  for (int set = 0; set < boards.sets; set += kLanes<Register>) {
    const int first = set / kGroup * kGroup * rests + set % kGroup;
    Register f1;
    Register f2;
    Register alive;
    Load(f1, flushes1 + set);
    Load(f2, flushes2 + set);
    Load(alive, boards.set_ranks.data() + set);
    Register new_wins{};
    Register new_ties{};
    for (int rest = 0; rest < rests; ++rest) {
      Register v1;
      Register v2;
      Load(v1, values1.data() + first + rest * kGroup);
      Load(v2, values2.data() + first + rest * kGroup);
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

template <typename Width, int kBoard>
POKERMATH_KERNEL Tally Count(const int* hand1, const int* hand2) {
  const auto& tables = MatchupTables<kBoard>::Get();
  const ClassValues& class1 = tables.Of(RankClassOf(hand1[0] % 13, hand1[1] % 13));
  const ClassValues& class2 = tables.Of(RankClassOf(hand2[0] % 13, hand2[1] % 13));
  Tally tally{.cases = Choose(48, kBoard)};
  CountPlain<Width>(tables, class1, class2, DeadCards(tables, hand1, hand2), tally);
  for (int suit = 0; suit < 4; ++suit) {
    const SuitView view = ViewSuit(suit, hand1, hand2);
    const int held1 = __builtin_popcount(view.held1);
    const int held2 = __builtin_popcount(view.held2);
    for (const SuitBoards& boards : tables.suit_boards()) {
      const auto index = static_cast<std::size_t>(boards.suited - 3);
      const Values& values1 = class1.by_suit_boards[index];
      const Values& values2 = class2.by_suit_boards[index];
      const bool flush1 = boards.suited + held1 >= 5;
      const bool flush2 = boards.suited + held2 >= 5;
      if (flush1 && flush2) {
        CorrectFlushes<typename Width::Register, true, true>(boards, view, values1, values2, tally);
      } else if (flush1) {
        CorrectFlushes<typename Width::Register, true, false>(boards, view, values1, values2,
                                                              tally);
      } else if (flush2) {
        CorrectFlushes<typename Width::Register, false, true>(boards, view, values1, values2,
                                                              tally);
      }
    }
  }
  return tally;
}

template <int kBoard>
Tally CountBaseline(const int* hand1, const int* hand2) {
  return Count<Registers16, kBoard>(hand1, hand2);
}

template <int kBoard>
POKERMATH_TARGET_AVX2 Tally CountAvx2(const int* hand1, const int* hand2) {
  return Count<Registers32, kBoard>(hand1, hand2);
}

template <int kBoard>
POKERMATH_TARGET_AVX512 Tally CountAvx512(const int* hand1, const int* hand2) {
  return Count<Registers64, kBoard>(hand1, hand2);
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
