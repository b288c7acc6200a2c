// What a hand beats is the weight of the other range below its level, less what shares a card with
// it, that is
//
//   below - below with its first card - below with its second card + below with both
//
// asked before a level is put in and once more behind it; the difference is ties. "With both" is
// the same hand in the other range, on the same level. For a class all sixteen pairs of suits are
// asked at once.
//
// Where the class is alone on its level, its ties are the same on all boards, so that the boards
// are counted and their number multiplied in the end.
//
// Boards of a group are as many as the free cards have choices that neither hand holds: with n
// cards, of which the one hand holds k and the other j,
//
//   one free card              (n - j) * 1 - k * 1
//   two, of different ranks    (n1 - j1)(n2 - j2) - k1 (n2 - j2) - k2 (n1 - j1) + k1 k2
//   two of the same rank       m (m - 1) / 2 - k m + k (k + 1) / 2, where m = n - j
//
// Each is a sum of terms, a factor of the hand below times one of the hand that asks. So the
// weights below are summed once for each term, multiplied by the factor; a hand without any of
// these cards asks for the first term alone.

#include "kernels/sweep_levels.h"

#include <cstring>

namespace pokermath {
namespace {

// Ones where the suit of the higher card is in a set of suits, and of the lower one.
struct SuitSets {
  SuitLanes high[16], low[16];
};
constexpr SuitSets kSuitSets = [] {
  SuitSets sets{};
  for (unsigned set = 0; set < 16; ++set) {
    for (unsigned lane = 0; lane < 16; ++lane) {
      sets.high[set].at[lane] = set >> lane / 4 & 1;
      sets.low[set].at[lane] = set >> lane % 4 & 1;
    }
  }
  return sets;
}();

template <int kHighs, int kTerms>
class Levels {
 public:
  using L = Lanes<kHighs>;
  using Sums = LaneSums<kHighs>;
  using Line = TermLine<kHighs, kTerms>;

  POKERMATH_KERNEL Levels(const SweepTables& tables, const BoardGroup& group)
      : classes_(tables.classes.data()),
        views_(tables.views.data()),
        group_(group),
        askers_(tables.both ? 2 : 1) {
    const std::uint32_t n1 = group.count1;
    const std::uint32_t n2 = group.count2;
    if constexpr (kTerms == 1) {
      boards_ = 1;
    } else if constexpr (kTerms == 2) {
      boards_ = n1;
      of_all_ = Line::OfTerms({n1, 1});
      of_first_ = Line::OfTerms({0 - 1u, 0});
    } else if constexpr (kTerms == 3) {
      boards_ = n1 * (n1 - 1) / 2;
      of_all_ = Line::OfTerms({boards_, n1, 1});
      of_first_ = Line::OfTerms({0 - n1, 0 - 1u, 0});
      of_both_ = Line::OfTerms({1, 0, 0});
    } else {
      boards_ = n1 * n2;
      of_all_ = Line::OfTerms({boards_, n2, n1, 1});
      of_first_ = Line::OfTerms({0 - n2, 0, 0 - 1u, 0});
      of_second_ = Line::OfTerms({0 - n1, 0 - 1u, 0, 0});
      of_both_ = Line::OfTerms({1, 0, 0, 0});
    }
  }

  POKERMATH_KERNEL void Run(std::span<const SweptItem> items) {
    const SweptItem* const end = items.data() + items.size();
    for (const SweptItem* level = items.data(); level != end;) {
      const SweptItem* next = level + 1;
      while (next != end && next->value == level->value) ++next;
      if (next - level == 1) {
        Alone(*level);
      } else {
        for (const SweptItem* item = level; item != next; ++item) Ask<false>(*item);
        for (const SweptItem* item = level; item != next; ++item) PutIn(*item);
        for (const SweptItem* item = level; item != next; ++item) Ask<true>(*item);
      }
      level = next;
    }
  }

 private:
  // The hands of one range below a level.
  struct Below {
    Line total{};
    Line cards[13]{};  // by rank
  };

  // What the cards to come are to the hands of a class.
  struct Touched {
    bool dead, first, second;  // which of them have a rank of the class
    L alive;                   // in the view, and without a dead card
    L k1, k2, both;            // factors of the hands that ask, but for their signs
    L same;                    // boards for a hand against itself
  };

  // How many cards of a hand are in some suits by rank.
  POKERMATH_KERNEL static L Held(const SweptClass& of, const std::array<std::uint8_t, 13>& suits) {
    return L::Of(kSuitSets.high[suits[of.high]]) + L::Of(kSuitSets.low[suits[of.low]]);
  }
  POKERMATH_KERNEL static bool Has(const SweptClass& of,
                                   const std::array<std::uint8_t, 13>& suits) {
    return (suits[of.high] | suits[of.low]) != 0;
  }

  POKERMATH_KERNEL Touched Touch(const SweptClass& of, const L& mask) const {
    const L one = L::All(1);
    Touched touched{};
    touched.dead = Has(of, group_.dead);
    touched.alive = mask;
    if (touched.dead) {
      touched.alive = ((L::Of(kSuitSets.high[group_.dead[of.high]]) |
                        L::Of(kSuitSets.low[group_.dead[of.low]])) -
                       one) &
                      mask;
    }
    touched.same = one;
    if constexpr (kTerms == 1) return touched;
    touched.first = Has(of, group_.free1);
    touched.k1 = Held(of, group_.free1);
    const L left1 = L::All(group_.count1) - touched.k1;
    touched.same = left1 - touched.k1;
    if constexpr (kTerms == 3) {
      touched.both = (touched.k1 * (touched.k1 + one)).Half();
      touched.same = (left1 * (left1 - one)).Half() + touched.both - touched.k1 * left1;
    } else if constexpr (kTerms == 4) {
      touched.second = Has(of, group_.free2);
      touched.k2 = Held(of, group_.free2);
      touched.both = touched.k1 * touched.k2;
      touched.same = touched.same * (L::All(group_.count2) - touched.k2 - touched.k2);
    }
    return touched;
  }

  // The weight that shares no card with the hands of a class, but for the hands themselves: of what
  // there is altogether less what has their higher card, and what has the lower one.
  template <int kTerm>
  POKERMATH_KERNEL static L Query(const Line& without_high, const Line& low) {
    return without_high.template ByHigh<kTerm>() - low.template ByLow<kTerm>();
  }
  POKERMATH_KERNEL static L Query(const Line& without_high, const Line& low,
                                  const Touched& touched) {
    L found = Query<0>(without_high, low);
    if constexpr (kTerms > 1) {
      if (touched.first) found = found - touched.k1 * Query<1>(without_high, low);
    }
    if constexpr (kTerms == 3) {
      if (touched.first) found = found + touched.both * Query<2>(without_high, low);
    }
    if constexpr (kTerms == 4) {
      if (touched.second) found = found - touched.k2 * Query<2>(without_high, low);
      if (touched.first && touched.second) {
        found = found + touched.both * Query<3>(without_high, low);
      }
    }
    return found & touched.alive;
  }

  // Weights of a class by term.
  struct ByTerm {
    Line high{}, low{}, total{};

    POKERMATH_KERNEL void Add(const Sums& sums, const Line& factors) {
      high.Add(sums.high, factors);
      low.Add(sums.low, factors);
      total.Add(sums.total, factors);
    }
  };
  POKERMATH_KERNEL ByTerm WeightsOf(const SuitsView::Sums& view, int side) const {
    ByTerm weights;
    weights.Add(Sums::Load(view.of[side]), of_all_);
    return weights;
  }
  POKERMATH_KERNEL ByTerm WeightsOf(const SuitsView::Sums& view, int side, const SuitLanes& of,
                                    const Touched& touched) const {
    ByTerm weights;
    const L alive = L::Of(of) & touched.alive;
    weights.Add(touched.dead ? Sums::Of(alive) : Sums::Load(view.of[side]), of_all_);
    if constexpr (kTerms > 1) {
      if (touched.first) weights.Add(Sums::Of(alive * touched.k1), of_first_);
    }
    if constexpr (kTerms == 3) {
      if (touched.first) weights.Add(Sums::Of(alive * touched.both), of_both_);
    }
    if constexpr (kTerms == 4) {
      if (touched.second) weights.Add(Sums::Of(alive * touched.k2), of_second_);
      if (touched.first && touched.second) {
        weights.Add(Sums::Of(alive * touched.both), of_both_);
      }
    }
    return weights;
  }

  POKERMATH_KERNEL static void PutIn(Below& below, const SweptClass& of, const ByTerm& weights) {
    for (int i = 0; i < Line::kParts; ++i) {
      below.total.parts[i] += weights.total.parts[i];
      below.cards[of.high].parts[i] += weights.high.parts[i];
      below.cards[of.low].parts[i] += weights.low.parts[i];
    }
  }
  POKERMATH_KERNEL static Line WithoutHigh(const Below& below, const SweptClass& of) {
    return below.total - below.cards[of.high];
  }

  // Who does not ask needs no hands below.
  POKERMATH_KERNEL int FirstBelow() const { return 2 - askers_; }

  POKERMATH_KERNEL bool IsTouched(const SweptClass& of) const {
    return (of.ranks & group_.touched) != 0;
  }

  // A level of one item.
  POKERMATH_KERNEL void Alone(const SweptItem& item) {
    const SweptClass& of = classes_[item.place];
    SuitsView& view = views_[item.view];
    SweptHands& hands = view.hands[item.place];
    SuitsView::Sums& sums = view.classes[item.place];
    const L mask = L::Of(*view.mask);
    if (!IsTouched(of)) {
      for (int side = 0; side < askers_; ++side) {
        if (!sums.Has(side)) continue;
        const Below& below = below_[1 - side];
        (Query<0>(WithoutHigh(below, of), below.cards[of.low]) & mask).AddTo(hands.wins[side]);
      }
      for (int side = FirstBelow(); side < 2; ++side) {
        if (sums.Has(side)) PutIn(below_[side], of, WeightsOf(sums, side));
      }
      sums.alone() += boards_;
      return;
    }
    const Touched touched = Touch(of, mask);
    for (int side = 0; side < askers_; ++side) {
      if (!sums.Has(side)) continue;
      const Below& below = below_[1 - side];
      Query(WithoutHigh(below, of), below.cards[of.low], touched).AddTo(hands.wins[side]);
    }
    for (int side = FirstBelow(); side < 2; ++side) {
      if (!sums.Has(side)) continue;
      ByTerm weights = WeightsOf(sums, side, hands.weights[side], touched);
      PutIn(below_[side], of, weights);
      if (of.high == of.low) weights.high.AddAndCopyTo(weights.low);
      const L ties = Query(weights.total - weights.high, weights.low, touched) +
                     (L::Of(hands.weights[side]) * touched.same & touched.alive);
      ties.AddTo(hands.ties[1 - side]);
    }
  }

  // Asks for an item before its level is put in or behind it.
  template <bool kBehind>
  POKERMATH_KERNEL void Ask(const SweptItem& item) {
    const SweptClass& of = classes_[item.place];
    SuitsView& view = views_[item.view];
    SweptHands& hands = view.hands[item.place];
    const SuitsView::Sums& sums = view.classes[item.place];
    if (askers_ == 1 && !sums.Has(0)) return;
    const L mask = L::Of(*view.mask);
    Touched touched;
    const bool is_touched = IsTouched(of);
    if (is_touched) touched = Touch(of, mask);
    for (int side = 0; side < askers_; ++side) {
      if (!sums.Has(side)) continue;
      const Below& below = below_[1 - side];
      const Line without_high = WithoutHigh(below, of);
      const Line& low = below.cards[of.low];
      const L found =
          is_touched ? Query(without_high, low, touched) : Query<0>(without_high, low) & mask;
      if (kBehind) {
        const L same = is_touched ? touched.same & touched.alive : L::All(boards_) & mask;
        (found + L::Of(hands.weights[1 - side]) * same).AddTo(hands.ties[side]);
      } else {
        found.AddTo(hands.wins[side]);
        (L::All(0) - found).AddTo(hands.ties[side]);
      }
    }
  }

  POKERMATH_KERNEL void PutIn(const SweptItem& item) {
    const SweptClass& of = classes_[item.place];
    const SuitsView& view = views_[item.view];
    const SuitsView::Sums& sums = view.classes[item.place];
    if (askers_ == 1 && !sums.Has(1)) return;
    if (!IsTouched(of)) {
      for (int side = FirstBelow(); side < 2; ++side) {
        if (sums.Has(side)) PutIn(below_[side], of, WeightsOf(sums, side));
      }
      return;
    }
    const Touched touched = Touch(of, L::Of(*view.mask));
    for (int side = FirstBelow(); side < 2; ++side) {
      if (!sums.Has(side)) continue;
      PutIn(below_[side], of, WeightsOf(sums, side, view.hands[item.place].weights[side], touched));
    }
  }

  const SweptClass* classes_;
  SuitsView* views_;
  const BoardGroup& group_;
  int askers_;            // ranges whose hands are counted
  std::uint32_t boards_;  // of hands that no card to come touches
  // By term, the factors of a hand below: of each, and with its free cards of the first kind, the
  // second and the product of both.
  Line of_all_, of_first_, of_second_, of_both_;
  Below below_[2];
};

template <int kHighs>
POKERMATH_KERNEL void Count(const SweepTables& tables, const BoardGroup& group,
                            std::span<const SweptItem> items) {
  switch (group.terms) {
    case 1:
      return Levels<kHighs, 1>(tables, group).Run(items);
    case 2:
      return Levels<kHighs, 2>(tables, group).Run(items);
    case 3:
      return Levels<kHighs, 3>(tables, group).Run(items);
    default:
      return Levels<kHighs, 4>(tables, group).Run(items);
  }
}

template <int kHighs>
POKERMATH_KERNEL void Use(SuitsView& view) {
  using L = Lanes<kHighs>;
  for (std::size_t i = 0; i < view.classes.size(); ++i) {
    SuitsView::Sums& to = view.classes[i];
    for (int side = 0; side < 2; ++side) {
      LaneSums<kHighs>::Of(L::Of(view.hands[i].weights[side]) & L::Of(*view.mask))
          .Store(to.of[side]);
    }
    to.alone() = 0;
  }
}

template <int kHighs>
POKERMATH_KERNEL void Settle(const SweepTables& tables, SuitsView& view) {
  using L = Lanes<kHighs>;
  for (std::size_t i = 0; i < view.classes.size(); ++i) {
    SuitsView::Sums& sums = view.classes[i];
    if (sums.alone() == 0) continue;
    SweptHands& hands = view.hands[i];
    const bool pair = tables.classes[i].high == tables.classes[i].low;
    for (int side = 0; side < (tables.both ? 2 : 1); ++side) {
      const auto other = LaneSums<kHighs>::Load(sums.of[1 - side]);
      TermLine<kHighs, 1> high{other.high}, low{other.low};
      const TermLine<kHighs, 1> total{other.total};
      if (pair) high.AddAndCopyTo(low);
      const L ties = (total - high).template ByHigh<0>() - low.template ByLow<0>() +
                     L::Of(hands.weights[1 - side]);
      ((ties & L::Of(*view.mask)) * L::All(sums.alone())).AddTo(hands.ties[side]);
    }
    sums.alone() = 0;
  }
}

// Cards of the high rank side by side.
template <Isa level>
constexpr int kHighsOf = level == Isa::kAvx512 ? 4
                         : level == Isa::kAvx2 ? 2
                                               : 1;

}  // namespace

void SweepKernels::Use(SuitsView& view) const {
  Dispatch(isa_, [&](auto level) POKERMATH_INLINE { pokermath::Use<kHighsOf<level>>(view); });
}

void SweepKernels::Count(const SweepTables& tables, const BoardGroup& group,
                         std::span<const SweptItem> items) const {
  Dispatch(isa_, [&](auto level)
                     POKERMATH_INLINE { pokermath::Count<kHighsOf<level>>(tables, group, items); });
}

void SweepKernels::Settle(const SweepTables& tables, SuitsView& view) const {
  Dispatch(isa_,
           [&](auto level) POKERMATH_INLINE { pokermath::Settle<kHighsOf<level>>(tables, view); });
}

}  // namespace pokermath
