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
#include <utility>
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

// Of hands of a class by their sets.
using OwnWeights = std::array<std::int64_t, kOwnSets>;

// Hands of one rank class.
struct ClassHands {
  std::vector<ClassedHolding> hands;
  std::array<OwnWeights, kSuits> weights{};  // [suit]
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
    hand.set[suit] = static_cast<std::uint8_t>(view & 3);
  }
  return hand;
}

bool IsSuited(const ClassedHolding& hand) {
  return std::ranges::count(hand.set, 0) == 3 && std::ranges::count(hand.set, 3) == 1;
}

int RankClassOfHand(CardSet cards) {
  return RankClassOf(*cards.begin() % 13, *++cards.begin() % 13);
}

// Hands of a class that do alike, without their weights: where suits are not told apart, all suited
// or all other ones, else each by itself.
std::vector<ClassHands> AlikeIn(const ClassHands& hands, bool knows_no_suits) {
  std::vector<ClassHands> alike;
  for (ClassedHolding hand : hands.hands) {
    hand.weight = 1;
    auto found = std::ranges::find_if(alike, [&](const ClassHands& others) {
      return knows_no_suits && IsSuited(others.hands[0]) == IsSuited(hand);
    });
    if (found == alike.end()) found = alike.emplace(found);
    found->Add(hand);
  }
  return alike;
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

// The classes of a triple in another order.
using Order = std::array<std::size_t, kThree>;

// Which of three hands may share a card: a bit each for the first two, the outer two and the last.
unsigned SharesOf(const RankTriple& triple) {
  constexpr std::array<std::array<std::size_t, 2>, kThree> kTwo = {{{0, 1}, {0, 2}, {1, 2}}};
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

// Adds the ways in which three classes have their sets of a suit, which are independent.
void AddProducts(const OwnWeights& a, const OwnWeights& b, const OwnWeights& c, Order order,
                 SetWeights& weights) {
  for (std::size_t set_a = 0; set_a < kOwnSets; ++set_a) {
    if (a[set_a] == 0) continue;
    for (std::size_t set_b = 0; set_b < kOwnSets; ++set_b) {
      const std::int64_t both = a[set_a] * b[set_b];
      const std::size_t sets = set_a << 2 * order[0] | set_b << 2 * order[1];
      for (std::size_t set_c = 0; set_c < kOwnSets; ++set_c) {
        weights[sets | set_c << 2 * order[2]] += both * c[set_c];
      }
    }
  }
}

// Where no two share a card but with those of the first class: one hand of it after the other.
void AddAround(const Seated& seated, Order order, std::size_t suits, SetWeights& weights) {
  const auto beside = [&](const ClassedHolding& hand, const ClassHands& others) {
    std::array<OwnWeights, kSuits> left{};
    for (const ClassedHolding& other : others.hands) {
      if (other.cards.Meets(hand.cards)) continue;
      for (std::size_t suit = 0; suit < suits; ++suit) left[suit][other.set[suit]] += other.weight;
    }
    return left;
  };
  for (const ClassedHolding& hand : seated[order[0]]->hands) {
    const auto left1 = beside(hand, *seated[order[1]]), left2 = beside(hand, *seated[order[2]]);
    for (std::size_t suit = 0; suit < suits; ++suit) {
      OwnWeights own{};
      own[hand.set[suit]] = hand.weight;
      AddProducts(own, left1[suit], left2[suit], order, weights);
    }
  }
}

// @param suits  those that are looked at: all, or the first one for all of them
SetWeights WeightsOf(const Seated& seated, unsigned shares, std::size_t suits) {
  SetWeights weights{};
  switch (shares) {
    case 0:
      for (std::size_t suit = 0; suit < suits; ++suit) {
        AddProducts(seated[0]->weights[suit], seated[1]->weights[suit], seated[2]->weights[suit],
                    {0, 1, 2}, weights);
      }
      break;
    case 0b111:
      AddEach(seated, suits, weights);
      break;
    case 0b101:
    case 0b100:
      AddAround(seated, {1, 0, 2}, suits, weights);
      break;
    case 0b110:
      AddAround(seated, {2, 0, 1}, suits, weights);
      break;
    default:
      AddAround(seated, {0, 1, 2}, suits, weights);
  }
  return weights;
}

// Boards by who shares them, of all matchups of some hands.
using WeightedTimes = std::array<Int128, 8>;

// Weights of sets in two parts, whose products with boards floating point holds exactly.
constexpr int kLowBits = 26;
constexpr std::int64_t kMostMatchups = std::int64_t{16 * 16 * 16} * 10000 * 10000 * 10000;
static_assert((kSuits * kMostMatchups >> kLowBits) < 1 << 28);
static_assert(SuitSets::kMost * std::int64_t{1 << 28} * kMostChange < std::int64_t{1} << 53);

void AddTimes(const ThreeWayCounts& counts, const SetWeights& weights, std::size_t suits,
              WeightedTimes& times) {
  std::array<double, SuitSets::kMost> low, high;
  std::int64_t all = 0, all_high = 0;
  for (std::size_t place = 0; place < counts.sets.size(); ++place) {
    const std::int64_t weight = weights[counts.sets.begin()[place]];
    low[place] = static_cast<double>(weight & ((1 << kLowBits) - 1));
    high[place] = static_cast<double>(weight >> kLowBits);
    all += weight;
    all_high += weight >> kLowBits;
  }
  // Every suit has seen every matchup.
  const Int128 matchups = all / static_cast<int>(suits);
  for (std::size_t i = 1; i < times.size(); ++i) times[i] += matchups * counts.by_ranks[i];
  const auto add_changes = [&](const std::array<double, SuitSets::kMost>& part, int bits) {
    const std::array<double, 8> changes = SumChanges(BestIsa(), counts, part);
    const Int128 one = Int128{kSuits / suits} << bits;
    for (std::size_t i = 1; i < times.size(); ++i) {
      times[i] += static_cast<std::int64_t>(changes[i]) * one;
    }
  };
  add_changes(low, 0);
  if (all_high > 0) add_changes(high, kLowBits);
}

class ThreeWayWork final : public Work {
 public:
  explicit ThreeWayWork(const QuestionPointer& question)
      : question_(question), settler_(*question), table_(ThreeWayTable::Get()) {
    for (std::size_t i = 0; i < kThree; ++i) {
      first_like_[i] = FirstLike(*question, i);
      sides_.emplace_back(question->players()[i]);
    }
    const auto knows_no_suits = [](const ClassedSide& side) { return side.KnowsNoSuits(); };
    suits_ = std::ranges::all_of(sides_, knows_no_suits) ? 1 : kSuits;
    FindTriples();
    for (std::size_t i = 0; i < kThree && question->asked().detail.hands; ++i) {
      if (first_like_[i] == i) FindAlike(i);
    }
  }

  const char* name() const override { return "matchups of three hands"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    return static_cast<std::int64_t>((triples_.size() + TriplesAStep() - 1) / TriplesAStep());
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const std::size_t first = static_cast<std::size_t>(step) * TriplesAStep();
    const std::size_t count = std::min(TriplesAStep(), triples_.size() - first);
    const auto triples = std::span(triples_).subspan(first, count);
    if (question_->asked().detail.hands) return AddByHand(triples, sums);
    WeightedTimes times{};
    for (const RankTriple& triple : triples) Add(triple, times);
    for (unsigned sharers = 1; sharers < times.size(); ++sharers) {
      if (times[sharers] != 0) settler_.AddSharers(sharers, times[sharers], sums);
    }
  }

 private:
  std::size_t TriplesAStep() const { return table_ != nullptr ? 1000 : 25; }
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

  void FindAlike(std::size_t player) {
    for (int i = 0; i < kRankClasses; ++i) {
      alike_[player].push_back(AlikeIn(std::as_const(sides_[player]).Of(i), suits_ == 1));
    }
    const Side& side = question_->players()[player];
    for (const WeightedHand& hand : side.range.hands()) {
      weights_[player].push_back(hand.weight / side.unit);
    }
  }

  ThreeWayCounts CountsOf(const RankTriple& triple) const {
    return table_ != nullptr ? table_->Of(triple) : CountThreeWay(BestIsa(), triple);
  }

  // Players with the same range do the same.
  Seating RangesOf(const Seating& seating) const {
    Seating ranges;
    for (std::size_t i = 0; i < kThree; ++i) ranges[i] = first_like_[seating[i]];
    return ranges;
  }

  static unsigned PlayersOf(const Seating& seating, unsigned sharers) {
    unsigned players = 0;
    for (std::size_t i = 0; i < kThree; ++i) players |= (sharers >> i & 1) << seating[i];
    return players;
  }

  void Add(const RankTriple& triple, WeightedTimes& all) const {
    const ThreeWayCounts counts = CountsOf(triple);
    const unsigned shares = SharesOf(triple);
    struct Known {
      Seating ranges;
      WeightedTimes times;
    };
    std::array<Known, 6> known;
    std::size_t count = 0;
    ForEachSeating(triple, [&](const Seating& seating, const Seated& seated) {
      const Seating ranges = RangesOf(seating);
      std::size_t place = 0;
      while (place < count && known[place].ranges != ranges) ++place;
      WeightedTimes& times = known[place].times;
      if (place == count) {
        known[count++] = {ranges, {}};
        AddTimes(counts, WeightsOf(seated, shares, suits_), suits_, times);
      }
      for (unsigned sharers = 1; sharers < all.size(); ++sharers) {
        all[PlayersOf(seating, sharers)] += times[sharers];
      }
    });
  }

  using OutcomesOfPlayers = std::array<std::vector<ThreeOutcomes>, kThree>;

  void AddByHand(std::span<const RankTriple> triples, std::span<Int128> sums) const {
    OutcomesOfPlayers outcomes;
    for (std::size_t i = 0; i < kThree; ++i) {
      if (first_like_[i] == i) outcomes[i].resize(1 + question_->players()[i].range.size());
    }
    for (const RankTriple& triple : triples) AddByHand(triple, outcomes);
    for (std::size_t i = 0; i < kThree; ++i) {
      AddOutcomes(settler_.layout(), i, outcomes[first_like_[i]], sums);
    }
  }

  void AddByHand(const RankTriple& triple, OutcomesOfPlayers& outcomes) const {
    const ThreeWayCounts counts = CountsOf(triple);
    const unsigned shares = SharesOf(triple);
    // A player with one of the classes, and how often the others have the other ones.
    struct Hero {
      std::size_t player, position;
      Seating ranges;
      Seated seated;
      std::int64_t times;
    };
    std::vector<Hero> heroes;
    ForEachSeating(triple, [&](const Seating& seating, const Seated& seated) {
      const Seating ranges = RangesOf(seating);
      for (std::size_t i = 0; i < kThree; ++i) {
        if (ranges[i] != seating[i]) continue;
        const auto found = std::ranges::find_if(heroes, [&](const Hero& hero) {
          return hero.player == seating[i] && hero.position == i && hero.ranges == ranges;
        });
        if (found == heroes.end()) {
          heroes.push_back({seating[i], i, ranges, seated, 1});
        } else {
          ++found->times;
        }
      }
    });
    for (Hero& hero : heroes) {
      const auto rank_class = static_cast<std::size_t>(triple[hero.position]);
      for (std::size_t i = 0; i < alike_[hero.player][rank_class].size(); ++i) {
        const ClassHands& hands = alike_[hero.player][rank_class][i];
        hero.seated[hero.position] = &hands;
        WeightedTimes times{};
        AddTimes(counts, WeightsOf(hero.seated, shares, suits_), suits_, times);
        ThreeOutcomes together = OutcomesOf(times, hero.position);
        together.DivideBy(static_cast<std::int64_t>(hands.hands.size()));
        for (const ClassedHolding& hand : hands.hands) {
          ThreeOutcomes of_hand = together;
          of_hand.MultiplyBy(hero.times * weights_[hero.player][hand.place]);
          outcomes[hero.player][0].Add(of_hand);
          outcomes[hero.player][1 + hand.place].Add(of_hand);
        }
      }
    }
  }

  static ThreeOutcomes OutcomesOf(const WeightedTimes& times, std::size_t position) {
    ThreeOutcomes outcomes;
    for (unsigned sharers = 1; sharers < times.size(); ++sharers) {
      outcomes.cases += times[sharers];
      if ((sharers >> position & 1) == 0) continue;
      const int others = std::popcount(sharers) - 1;
      (others == 0   ? outcomes.wins
       : others == 1 ? outcomes.shares2
                     : outcomes.shares3) += times[sharers];
    }
    return outcomes;
  }

  QuestionPointer question_;
  Settler settler_;
  const ThreeWayTable* table_;
  std::array<std::size_t, kThree> first_like_{};
  std::vector<ClassedSide> sides_;
  std::size_t suits_ = kSuits;
  std::vector<RankTriple> triples_;
  // Where every hand is asked for, of the first players of a range: [class], and [place].
  std::array<std::vector<std::vector<ClassHands>>, kThree> alike_;
  std::array<std::vector<std::int64_t>, kThree> weights_;
};

}  // namespace

bool KnowsThreeWay(const CheckedQuestion& question) {
  const EquityQuestion& asked = question.asked();
  const Detail& detail = asked.detail;
  return asked.game == Game::kHoldem && question.players().size() == kThree &&
         question.folded().empty() && question.board().empty() && question.dead().empty() &&
         asked.street == Street::kRiver && !detail.next && !detail.made;
}

std::optional<double> ThreeWayCost(const CheckedQuestion& question) {
  // A table is not read for what is counted in no time.
  if (!KnowsThreeWay(question) || std::ranges::all_of(question.players(), &Side::IsOneHand)) {
    return std::nullopt;
  }
  const bool has_table = ThreeWayTable::Get() != nullptr;
  // Without it this is another way to count what would be counted board by board. What would be
  // sampled stays so.
  const EquityQuestion& asked = question.asked();
  if (!has_table && asked.method != Method::kExact &&
      ThreeRangesCost(question).value_or(0) > asked.exact_budget) {
    return std::nullopt;
  }
  double seatings = 1, ranges = 0;
  bool know_no_suits = true;
  for (std::size_t i = 0; i < kThree; ++i) {
    const ClassedSide side(question.players()[i]);
    seatings *= static_cast<double>(side.size());
    know_no_suits = know_no_suits && side.KnowsNoSuits();
    // Of players with the same range it does not matter who has which class.
    std::size_t alike = 0;
    for (std::size_t k = 0; k <= i; ++k) alike += FirstLike(question, k) == FirstLike(question, i);
    seatings /= static_cast<double>(alike);
    ranges += alike == 1 ? 1 : 0;
  }
  constexpr double kCountCost = 8e4;  // of a triple that is not in a table
  const double counted = has_table ? 0 : kCountCost * seatings;
  if (question.asked().detail.hands) seatings *= ranges * (know_no_suits ? 4 : 12);
  return 1e6 + 550 * seatings + counted;
}

std::unique_ptr<const Work> StartThreeWay(const QuestionPointer& question) {
  return std::make_unique<ThreeWayWork>(question);
}

}  // namespace pokermath
