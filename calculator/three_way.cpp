// Three ranges before the flop to the river: sums over the table of all matchups of three hands, or
// over those of them that are needed, counted now.
//
// A matchup of given ranks is a number by ranks and four by suits, each of which depends on the set
// of cards that the suit has. So all hands of three classes are settled together: how often they
// meet, and how often, over all four suits, a suit has each set, both weighted. Where no two
// classes have a rank in common no hands share a card, and these weights are products: of how a
// range's hands of a class fall into sets of their own.
//
// Where all hands of one weight that differ in their suits alone are in a range or not, every suit
// sees the same, and one is looked at for all four.

#include "kernels/three_way.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <memory>
#include <vector>

#include "calculator/solvers.h"
#include "calculator/three_outcomes.h"
#include "kernels/three_way_table.h"

namespace pokermath {
namespace {

constexpr std::size_t kSuits = 4;
constexpr std::size_t kOwnSets = 4;  // of the cards of one hand

struct ClassedHolding {
  CardSet cards;
  std::int64_t weight = 0;
  std::size_t place = 0;                   // in the range
  std::array<std::uint8_t, kSuits> set{};  // of its cards that each suit has
};

// Hands of one rank class.
struct ClassHands {
  std::vector<ClassedHolding> hands;
  std::array<std::array<std::int64_t, kOwnSets>, kSuits> weights{};  // [suit][set]
  std::int64_t total = 0;

  void Add(const ClassedHolding& hand) {
    hands.push_back(hand);
    for (std::size_t suit = 0; suit < kSuits; ++suit) weights[suit][hand.set[suit]] += hand.weight;
    total += hand.weight;
  }
};

ClassedHolding Hold(CardSet cards, std::int64_t weight, std::size_t place) {
  ClassedHolding hand{.cards = cards, .weight = weight, .place = place};
  for (std::size_t suit = 0; suit < kSuits; ++suit) {
    const int view = ViewNumber(*cards.begin(), *++cards.begin(), static_cast<int>(suit));
    hand.set[suit] = view % kOwnSets;
  }
  return hand;
}

bool IsSuited(const ClassedHolding& hand) {
  return std::ranges::count(hand.set, 0) == 3 && std::ranges::count(hand.set, 3) == 1;
}

int RankClassOfHand(CardSet cards) {
  return RankClassOf(*cards.begin() % 13, *++cards.begin() % 13);
}

// A player's hands by classes.
class ClassedSide {
 public:
  explicit ClassedSide(const Side& side) : classes_(kRankClasses) {
    std::size_t place = 0;
    for (const WeightedHand& hand : side.range.hands()) {
      Of(RankClassOfHand(hand.cards)).Add(Hold(hand.cards, hand.weight / side.unit, place++));
    }
  }

  const ClassHands& Of(int rank_class) const {
    return classes_[static_cast<std::size_t>(rank_class)];
  }
  /// Classes with hands.
  std::size_t size() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(classes_, [](const ClassHands& hands) { return hands.total > 0; }));
  }
  /// The most that hands of a class weigh together.
  std::int64_t MostWeight() const {
    return std::ranges::max(classes_, {}, &ClassHands::total).total;
  }

  /// Whether hands that differ in the names of suits have the same weight.
  bool KnowsNoSuits() const {
    for (int rank_class = 0; rank_class < kRankClasses; ++rank_class) {
      const auto [low, high] = RanksOf(rank_class);
      const auto is_alike = [&](bool suited, std::ptrdiff_t all) {
        std::ptrdiff_t count = 0;
        std::int64_t least = std::numeric_limits<std::int64_t>::max(), most = 0;
        for (const ClassedHolding& hand : Of(rank_class).hands) {
          if (IsSuited(hand) != suited) continue;
          ++count;
          least = std::min(least, hand.weight);
          most = std::max(most, hand.weight);
        }
        return count == 0 || (count == all && least == most);
      };
      if (!is_alike(true, 4) || !is_alike(false, low == high ? 6 : 12)) return false;
    }
    return true;
  }

 private:
  ClassHands& Of(int rank_class) { return classes_[static_cast<std::size_t>(rank_class)]; }

  std::vector<ClassHands> classes_;
};

// Hands of the three classes of a triple, in their order.
using Seated = std::array<const ClassHands*, kThree>;
// How often suits have a set of the six cards.
using SetWeights = std::array<std::int64_t, SuitSets::kMost>;

// Which of three hands may share a card: a bit for each two of them.
unsigned SharesOf(const RankTriple& triple) {
  constexpr std::array<std::array<std::size_t, 2>, 3> kTwo = {{{0, 1}, {0, 2}, {1, 2}}};
  const auto ranks = [&](std::size_t i) {
    const auto [low, high] = RanksOf(triple[i]);
    return 1u << low | 1u << high;
  };
  unsigned shares = 0;
  for (std::size_t i = 0; i < kTwo.size(); ++i) {
    if ((ranks(kTwo[i][0]) & ranks(kTwo[i][1])) != 0) shares |= 1u << i;
  }
  return shares;
}

// Hand by hand.
void AddEach(const Seated& seated, std::size_t suits, SetWeights& weights) {
  for (const ClassedHolding& a : seated[0]->hands) {
    for (const ClassedHolding& b : seated[1]->hands) {
      if (a.cards.Meets(b.cards)) continue;
      const CardSet taken = a.cards | b.cards;
      for (const ClassedHolding& c : seated[2]->hands) {
        if (c.cards.Meets(taken)) continue;
        const std::int64_t weight = a.weight * b.weight * c.weight;
        for (std::size_t suit = 0; suit < suits; ++suit) {
          weights[static_cast<std::size_t>(a.set[suit] | b.set[suit] << 2 | c.set[suit] << 4)] +=
              weight;
        }
      }
    }
  }
}

// Hands of two classes hand by hand, and those of the other one, which share no card with them, by
// their sets alone.
void AddPairs(const Seated& seated, std::array<std::size_t, kThree> order, bool share,
              std::size_t suits, SetWeights& weights) {
  const auto [first, second, third] = order;
  std::array<std::array<std::int64_t, kOwnSets * kOwnSets>, kSuits> pairs{};  // [suit][sets]
  if (share) {
    for (const ClassedHolding& a : seated[first]->hands) {
      for (const ClassedHolding& b : seated[second]->hands) {
        if (a.cards.Meets(b.cards)) continue;
        const std::int64_t weight = a.weight * b.weight;
        for (std::size_t suit = 0; suit < suits; ++suit) {
          pairs[suit][a.set[suit] * kOwnSets + b.set[suit]] += weight;
        }
      }
    }
  }
  for (std::size_t suit = 0; suit < suits; ++suit) {
    for (std::size_t a = 0; a < kOwnSets; ++a) {
      for (std::size_t b = 0; b < kOwnSets; ++b) {
        const std::int64_t pair =
            share ? pairs[suit][a * kOwnSets + b]
                  : seated[first]->weights[suit][a] * seated[second]->weights[suit][b];
        if (pair == 0) continue;
        for (std::size_t c = 0; c < kOwnSets; ++c) {
          weights[a << 2 * first | b << 2 * second | c << 2 * third] +=
              pair * seated[third]->weights[suit][c];
        }
      }
    }
  }
}

// @param suits  those that are looked at: all, or the first one for all of them
SetWeights WeightsOf(const Seated& seated, unsigned shares, std::size_t suits) {
  SetWeights weights{};
  if (std::popcount(shares) > 1) {
    AddEach(seated, suits, weights);
  } else if (shares == 2) {
    AddPairs(seated, {0, 2, 1}, true, suits, weights);
  } else if (shares == 4) {
    AddPairs(seated, {1, 2, 0}, true, suits, weights);
  } else {
    AddPairs(seated, {0, 1, 2}, shares != 0, suits, weights);
  }
  return weights;
}

// Boards by who shares them, of all matchups of some hands.
using WeightedTimes = std::array<Int128, 8>;

// Whether what a triple adds up to fits into 64 bits: a number of a table has 24 of them and a
// sign.
bool FitsInt64(std::int64_t most1, std::int64_t most2, std::int64_t most3) {
  return Int128{most1} * most2 * most3 * static_cast<int>(kSuits) < Int128{1} << (63 - 25);
}

template <typename Number>
void AddTimes(const ThreeWayCounts& counts, const SetWeights& weights, std::size_t suits,
              WeightedTimes& times) {
  std::array<Number, 8> changes{};
  std::int64_t all = 0;
  for (std::size_t place = 0; place < counts.sets.size(); ++place) {
    const std::int64_t weight = weights[counts.sets.begin()[place]];
    all += weight;
    for (std::size_t i = 0; i < changes.size(); ++i) {
      changes[i] += Number{weight} * counts.changes[place][i];
    }
  }
  // Every matchup was seen by each suit.
  for (std::size_t i = 1; i < times.size(); ++i) {
    const auto by_ranks = Number{all} / static_cast<int>(suits) * counts.by_ranks[i];
    times[i] += by_ranks + changes[i] * static_cast<int>(kSuits / suits);
  }
}

class ThreeWayWork final : public Work {
 public:
  explicit ThreeWayWork(const QuestionPointer& question)
      : settler_(*question), table_(ThreeWayTable::Get()) {
    for (std::size_t i = 0; i < kThree; ++i) {
      first_like_[i] = FirstLike(*question, i);
      sides_.emplace_back(question->players()[i]);
    }
    const auto knows_no_suits = [](const ClassedSide& side) { return side.KnowsNoSuits(); };
    suits_ = std::ranges::all_of(sides_, knows_no_suits) ? 1 : kSuits;
    fits_ = FitsInt64(sides_[0].MostWeight(), sides_[1].MostWeight(), sides_[2].MostWeight());
    FindTriples();
  }

  const char* name() const override { return "matchups of three hands"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    return static_cast<std::int64_t>((triples_.size() + kTriplesAStep - 1) / kTriplesAStep);
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const std::size_t first = static_cast<std::size_t>(step) * kTriplesAStep;
    const std::size_t count = std::min(kTriplesAStep, triples_.size() - first);
    WeightedTimes times{};
    for (const RankTriple& triple : std::span(triples_).subspan(first, count)) Add(triple, times);
    for (unsigned sharers = 1; sharers < times.size(); ++sharers) {
      if (times[sharers] != 0) settler_.AddSharers(sharers, times[sharers], sums);
    }
  }

 private:
  static constexpr std::size_t kTriplesAStep = 1000;
  // Which player has the hand of each class of a triple.
  using Seating = std::array<std::size_t, kThree>;

  // Calls use with the ways to give players the classes of a triple, each way once, if all have
  // hands of theirs.
  template <typename Use>
  void ForEachSeating(const RankTriple& triple, const Use& use) const {
    Seating seating{0, 1, 2};
    do {
      if ((triple[0] == triple[1] && seating[0] > seating[1]) ||
          (triple[1] == triple[2] && seating[1] > seating[2])) {
        continue;
      }
      Seated seated;
      for (std::size_t i = 0; i < kThree; ++i) seated[i] = &sides_[seating[i]].Of(triple[i]);
      if (std::ranges::all_of(seated, [](const ClassHands* hands) { return hands->total > 0; })) {
        use(seating, seated);
      }
    } while (std::ranges::next_permutation(seating).found);
  }

  // Those of which somebody can have every class.
  void FindTriples() {
    std::vector<int> classes;
    for (int i = 0; i < kRankClasses; ++i) {
      const auto has = [i](const ClassedSide& side) { return side.Of(i).total > 0; };
      if (std::ranges::any_of(sides_, has)) classes.push_back(i);
    }
    for (std::size_t c = 0; c < classes.size(); ++c) {
      for (std::size_t b = 0; b <= c; ++b) {
        for (std::size_t a = 0; a <= b; ++a) {
          const RankTriple triple = {classes[a], classes[b], classes[c]};
          bool is_dealt = false;
          ForEachSeating(triple, [&](const Seating&, const Seated&) { is_dealt = true; });
          if (is_dealt) triples_.push_back(triple);
        }
      }
    }
  }

  void Add(const RankTriple& triple, WeightedTimes& all) const {
    const ThreeWayCounts counts =
        table_ != nullptr ? table_->Of(triple) : CountThreeWay(BestIsa(), triple);
    if (counts.sets.size() == 0) return;
    const unsigned shares = SharesOf(triple);
    // Players with the same range do the same.
    struct Known {
      Seating ranges;
      WeightedTimes times;
    };
    std::array<Known, 6> known;
    std::size_t count = 0;
    ForEachSeating(triple, [&](const Seating& seating, const Seated& seated) {
      Seating ranges;
      for (std::size_t i = 0; i < kThree; ++i) ranges[i] = first_like_[seating[i]];
      const auto end = known.begin() + static_cast<std::ptrdiff_t>(count);
      auto found =
          std::find_if(known.begin(), end, [&](const Known& one) { return one.ranges == ranges; });
      if (found == end) {
        *found = {ranges, {}};
        ++count;
        const SetWeights weights = WeightsOf(seated, shares, suits_);
        if (fits_) {
          AddTimes<std::int64_t>(counts, weights, suits_, found->times);
        } else {
          AddTimes<Int128>(counts, weights, suits_, found->times);
        }
      }
      for (unsigned sharers = 1; sharers < all.size(); ++sharers) {
        all[PlayersOf(seating, sharers)] += found->times[sharers];
      }
    });
  }

  static unsigned PlayersOf(const Seating& seating, unsigned sharers) {
    unsigned players = 0;
    for (std::size_t i = 0; i < kThree; ++i) players |= (sharers >> i & 1) << seating[i];
    return players;
  }

  Settler settler_;
  const ThreeWayTable* table_;
  std::array<std::size_t, kThree> first_like_{};
  std::vector<ClassedSide> sides_;
  std::size_t suits_ = kSuits;
  bool fits_ = false;
  std::vector<RankTriple> triples_;
};

}  // namespace

bool KnowsThreeWay(const CheckedQuestion& question) {
  const EquityQuestion& asked = question.asked();
  const Detail& detail = asked.detail;
  return asked.game == Game::kHoldem && question.players().size() == kThree &&
         question.folded().empty() && question.board().empty() && question.dead().empty() &&
         asked.street == Street::kRiver && !detail.hands && !detail.next && !detail.made;
}

std::optional<double> ThreeWayCost(const CheckedQuestion& question) {
  if (!KnowsThreeWay(question) || ThreeWayTable::Get() == nullptr) return std::nullopt;
  double seatings = 1;
  for (const Side& side : question.players()) {
    seatings *= static_cast<double>(ClassedSide(side).size());
  }
  return 1e6 + 1000 * seatings;
}

std::unique_ptr<const Work> StartThreeWay(const QuestionPointer& question) {
  return std::make_unique<ThreeWayWork>(question);
}

}  // namespace pokermath
