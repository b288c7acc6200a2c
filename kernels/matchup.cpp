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
//
// Other cards that are dead take their part of the weights once, and are seen by their suits.

#include "kernels/matchup.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

#include "kernels/matchup_tables.h"
#include "kernels/registers.h"

namespace pokermath {
namespace {

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

// What cards that are dead whoever holds what leave of the deck.
struct Unseen {
  const std::int16_t* weights = nullptr;  // [multiset], ways to draw it; null: from the full deck
  std::array<int, 13> left = {4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4};  // by rank
  std::array<RankSet, 4> dead{};                                       // by suit
};

template <Deck deck, int kBoard>
POKERMATH_KERNEL std::array<DeadCard, 4> DeadCards(const MatchupTables<deck, kBoard>& tables,
                                                   const Unseen& unseen, int class1, int class2) {
  const std::array<int, 2>& hand1 = RanksOf(class1);
  const std::array<int, 2>& hand2 = RanksOf(class2);
  const int ranks[4] = {hand1[0], hand1[1], hand2[0], hand2[1]};
  std::array<DeadCard, 4> dead{};
  for (int i = 0; i < 4; ++i) {
    int left = unseen.left[static_cast<std::size_t>(ranks[i])];
    for (int j = 0; j < i; ++j) left -= ranks[j] == ranks[i] ? 1 : 0;
    left = left < 0 ? 0 : left;
    dead[static_cast<std::size_t>(i)] = {.counts = tables.CountsOf(ranks[i]),
                                         .left = static_cast<std::uint16_t>(left),
                                         .inverse = kInverses[left],
                                         .shift = kShifts[left]};
  }
  return dead;
}

template <typename Width, Deck deck, int kBoard>
POKERMATH_KERNEL Counts Ranks(const MatchupTables<deck, kBoard>& tables, const Unseen& unseen,
                              int class1, int class2) {
  const std::array<DeadCard, 4> dead = DeadCards(tables, unseen, class1, class2);
  using Register = typename Width::Register;
  using Modular = typename Width::Modular;
  constexpr int kSize = MatchupTables<deck, kBoard>::kSize;
  constexpr int kBlock = 31 * kLanes<Register>;  // weights up to 4^5 are summed up in 16 bits
  const std::int16_t* weights =
      unseen.weights != nullptr ? unseen.weights : tables.weights().data();
  const std::int16_t* values1 = tables.Of(class1).by_multiset.data();
  const std::int16_t* values2 = tables.Of(class2).by_multiset.data();
  Counts counts;
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
    counts.wins += SumLanes(wins);
    counts.ties += SumLanes(ties);
  }
  return counts;
}

// A suit as it lies in the four hole cards.
struct Suited {
  RankSet held1 = 0;
  RankSet held2 = 0;
  RankSet dead = 0;              // beside these
  std::array<int, 13> others{};  // cards of each rank left in the three other suits
};

POKERMATH_KERNEL Suited Join(const Unseen& unseen, int suit, const SuitView& view1,
                             const SuitView& view2) {
  Suited suited{.held1 = view1.held,
                .held2 = view2.held,
                .dead = unseen.dead[static_cast<std::size_t>(suit)]};
  for (std::size_t rank = 0; rank < 13; ++rank) {
    suited.others[rank] = unseen.left[rank] - 1 + (suited.dead >> rank & 1);
  }
  for (const SuitView* view : {&view1, &view2}) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(view->OtherCount()); ++i) {
      --suited.others[static_cast<std::size_t>(view->others[i])];
    }
  }
  return suited;
}

// Adds what flushes change on boards with boards.suited cards of a suit. values1 and values2 are
// what the hands' classes make with these boards.
template <typename Register, bool flush1, bool flush2>
POKERMATH_KERNEL void CorrectFlushes(const SuitBoards& boards, const Suited& suited,
                                     const Values& values1, const Values& values2, Counts& counts) {
  std::int16_t weights[kRankClasses];
  WeighRests(boards, suited.others, weights);
  const auto rests = static_cast<int>(boards.rests.size());
  const auto dead = static_cast<std::int16_t>(suited.held1 | suited.held2 | suited.dead | kNoSet);
  const std::int16_t* flushes1 =
      &boards.flushes[static_cast<std::size_t>(HoldingOf(suited.held1) * boards.sets)];
  const std::int16_t* flushes2 =
      &boards.flushes[static_cast<std::size_t>(HoldingOf(suited.held2) * boards.sets)];
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
  counts.wins += SumLanes(wins);
  counts.ties += SumLanes(ties);
}

template <typename Width, Deck deck, int kBoard>
POKERMATH_KERNEL Counts Flushes(const MatchupTables<deck, kBoard>& tables, const Unseen& unseen,
                                int suit, const SuitView& view1, const SuitView& view2) {
  using Register = typename Width::Register;
  const ClassValues& class1 = tables.Of(view1.rank_class);
  const ClassValues& class2 = tables.Of(view2.rank_class);
  const Suited suited = Join(unseen, suit, view1, view2);
  Counts counts;
  for (const SuitBoards& boards : tables.suit_boards()) {
    const auto index = static_cast<std::size_t>(boards.suited - 3);
    const Values& values1 = class1.by_suit_boards[index];
    const Values& values2 = class2.by_suit_boards[index];
    const bool flush1 = boards.suited + view1.held_count >= 5;
    const bool flush2 = boards.suited + view2.held_count >= 5;
    if (flush1 && flush2) {
      CorrectFlushes<Register, true, true>(boards, suited, values1, values2, counts);
    } else if (flush1) {
      CorrectFlushes<Register, true, false>(boards, suited, values1, values2, counts);
    } else if (flush2) {
      CorrectFlushes<Register, false, true>(boards, suited, values1, values2, counts);
    }
  }
  return counts;
}

// @tparam deck  the cards, kFull or kShort
template <Deck deck, int kBoard>
class EmptyBoard final : public ShowdownCounts {
 public:
  /// @param rules  the deck with its order of hands
  EmptyBoard(Isa isa, Deck rules) : isa_(isa), rules_(rules) {}
  EmptyBoard(Isa isa, Deck rules, CardSet dead)
      : isa_(isa), rules_(rules), dead_cards_(dead.size()), weights_(tables().weights()) {
    for (const int card : dead) {
      int& left = unseen_.left[static_cast<std::size_t>(card % 13)];
      const std::int16_t* counts = tables().CountsOf(card % 13);
      for (std::size_t i = 0; i < weights_.size(); ++i) {
        weights_[i] = static_cast<std::int16_t>(weights_[i] * (left - counts[i]) / left);
      }
      --left;
      RankSet& of_suit = unseen_.dead[static_cast<std::size_t>(card / 13)];
      of_suit = static_cast<RankSet>(of_suit | 1 << card % 13);
    }
    unseen_.weights = weights_.data();
  }

  Counts CountRanks(int class1, int class2) const override {
    return Dispatch(isa_, [&](auto level) POKERMATH_INLINE {
      return Ranks<RegistersOf<level>>(tables(), unseen_, class1, class2);
    });
  }
  Counts CorrectSuit(int suit, const SuitView& view1, const SuitView& view2) const override {
    return Dispatch(isa_, [&](auto level) POKERMATH_INLINE {
      return Flushes<RegistersOf<level>>(tables(), unseen_, suit, view1, view2);
    });
  }
  int CardsToFlush(int) const override { return 5 - kBoard; }
  int LikeSuit(int suit) const override {
    const auto& dead = unseen_.dead;
    return static_cast<int>(std::ranges::find(dead, dead[static_cast<std::size_t>(suit)]) -
                            dead.begin());
  }
  int Boards() const override { return Choose(CardsOf(deck) - dead_cards_ - 4, kBoard); }

 private:
  const MatchupTables<deck, kBoard>& tables() const {
    return MatchupTables<deck, kBoard>::Get(rules_);
  }

  Isa isa_;
  Deck rules_;
  int dead_cards_ = 0;
  Values weights_;  // with dead cards only
  Unseen unseen_;
};

// The cards of a deck, whatever its order of hands.
constexpr Deck CardsAlone(Deck deck) { return deck == Deck::kFull ? Deck::kFull : Deck::kShort; }

template <Deck rules, int kBoard>
const ShowdownCounts& CountsOf(Isa isa) {
  using Empty = EmptyBoard<CardsAlone(rules), kBoard>;
  static const std::array<Empty, 3> counts = {Empty(Isa::kBaseline, rules),
                                              Empty(Isa::kAvx2, rules), Empty(Isa::kAvx512, rules)};
  return counts[static_cast<std::size_t>(isa)];
}

template <Deck rules>
std::unique_ptr<const ShowdownCounts> CountsWithout(Isa isa, Street street, CardSet dead) {
  constexpr Deck kCards = CardsAlone(rules);
  switch (street) {
    case Street::kFlop:
      return std::make_unique<EmptyBoard<kCards, 3>>(isa, rules, dead);
    case Street::kTurn:
      return std::make_unique<EmptyBoard<kCards, 4>>(isa, rules, dead);
    default:
      return std::make_unique<EmptyBoard<kCards, 5>>(isa, rules, dead);
  }
}

template <Deck rules>
const ShowdownCounts& CountsOf(Isa isa, Street street) {
  switch (street) {
    case Street::kFlop:
      return CountsOf<rules, 3>(isa);
    case Street::kTurn:
      return CountsOf<rules, 4>(isa);
    default:
      return CountsOf<rules, 5>(isa);
  }
}

}  // namespace

const ShowdownCounts& EmptyBoardCounts(Isa isa, Deck deck, Street street) {
  switch (deck) {
    case Deck::kShort:
      return CountsOf<Deck::kShort>(isa, street);
    case Deck::kShortStraights:
      return CountsOf<Deck::kShortStraights>(isa, street);
    default:
      return CountsOf<Deck::kFull>(isa, street);
  }
}

std::unique_ptr<const ShowdownCounts> EmptyBoardCountsWithout(CardSet dead, Isa isa, Deck deck,
                                                              Street street) {
  switch (deck) {
    case Deck::kShort:
      return CountsWithout<Deck::kShort>(isa, street, dead);
    case Deck::kShortStraights:
      return CountsWithout<Deck::kShortStraights>(isa, street, dead);
    default:
      return CountsWithout<Deck::kFull>(isa, street, dead);
  }
}

Tally CountMatchup(Isa isa, Deck deck, const int* hand1, const int* hand2, Street street) {
  return CountHands(EmptyBoardCounts(isa, deck, street), hand1, hand2);
}

}  // namespace pokermath
