// What a hand wins against a class is a number for each suit pattern, times the weight of the
// class's hands that have the pattern with it. That weight does not depend on the hand's ranks. So
// it is summed up once for all suitings of a shape, side by side, and then every class of the shape
// is a sum of its row of matchups times these, for all of its suitings at once: a product of two
// matrices. Hands that share a card win nothing there. Against a class of one weight throughout all
// suitings win alike, so that one sum does for them.
//
// Numbers are whole but kept as `double`, which holds them exactly and multiplies faster than
// integers of 64 bits.

#include "kernels/preflop_ranges.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <type_traits>

#include "kernels/known_matchups.h"
#include "kernels/matchup_rows.h"
#include "kernels/matchups.h"
#include "kernels/registers.h"
#include "platform/dispatch.h"

namespace pokermath {
namespace {

constexpr std::int64_t kMostWeight = 10000;
static_assert(kHands * kMostWeight * BoardsOf(Street::kRiver) < std::int64_t{1} << 53);

// Suitings side by side in registers.
using Two = double __attribute__((vector_size(16)));
using Four = double __attribute__((vector_size(32)));
using Eight = double __attribute__((vector_size(64)));

template <typename Register>
constexpr std::size_t kDoubles = sizeof(Register) / sizeof(double);
template <typename Register>
constexpr std::size_t RegistersOf(Shape shape) {
  return (kShapesOfClasses[shape].suitings + kDoubles<Register> - 1) / kDoubles<Register>;
}
template <typename Register>
constexpr std::size_t PaddedSuitings(Shape shape) {
  return RegistersOf<Register>(shape) * kDoubles<Register>;
}

template <typename Register>
POKERMATH_KERNEL void Load(Register& to, const double* from) {
  std::memcpy(&to, from, sizeof to);
}

// Classes of a shape.
struct ClassList {
  std::array<std::uint8_t, kPreflopClasses> numbers;
  std::size_t count = 0;

  void Add(std::size_t number) { numbers[count++] = static_cast<std::uint8_t>(number); }
  const std::uint8_t* begin() const { return numbers.data(); }
  const std::uint8_t* end() const { return begin() + count; }
};

// A range of a deck by class and suiting.
class ClassedRange {
 public:
  ClassedRange(const KnownMatchups& known, std::span<const WeightedPair> hands) {
    std::array<bool, kPreflopClasses> has{};
    for (const WeightedPair& hand : hands) {
      const ClassedHand classed = known.Class(hand.card1, hand.card2);
      has[classed.number] = true;
      weights_[classed.Place()] = hand.weight;
      total_ += hand.weight;
      of_cards_[static_cast<std::size_t>(hand.card1)] += hand.weight;
      of_cards_[static_cast<std::size_t>(hand.card2)] += hand.weight;
    }
    for (std::size_t i = 0; i < kPreflopClasses; ++i) {
      if (!has[i]) continue;
      const Shape shape = ShapeOf(i);
      classes_[shape].Add(i);
      const std::int32_t* weights = WeightsOf(i);
      if (std::all_of(weights, weights + kShapesOfClasses[shape].suitings,
                      [&](std::int32_t weight) { return weight == weights[0]; })) {
        whole_[i] = weights[0];
      } else {
        mixed_[shape].Add(i);
      }
    }
  }

  const ClassList& Of(Shape shape) const { return classes_[shape]; }
  /// Those of different weights, 0 included.
  const ClassList& MixedOf(Shape shape) const { return mixed_[shape]; }
  /// Of a class, by suiting.
  const std::int32_t* WeightsOf(std::size_t number) const {
    return &weights_[number * kMostSuitings];
  }
  /// By class, of those that have one weight.
  const double* WholeWeights() const { return whole_.data(); }
  /// Weight of the hands that share no card with one.
  std::int64_t Beside(const WeightedPair& hand, std::size_t place) const {
    return total_ - of_cards_[static_cast<std::size_t>(hand.card1)] -
           of_cards_[static_cast<std::size_t>(hand.card2)] + weights_[place];
  }

 private:
  std::array<std::int32_t, kPlaces> weights_{};
  std::array<double, AgainstClasses::kSize> whole_{};
  std::int64_t total_ = 0;
  std::array<std::int64_t, 52> of_cards_{};
  std::array<ClassList, kShapes> classes_;
  std::array<ClassList, kShapes> mixed_;
};

// By place.
struct Results {
  std::array<double, kPlaces> wins, ties;
};

// Weights of one shape's mixed classes, by pattern and suiting of the other hand's shape; returns
// where they end.
template <typename Register, Shape mine, Shape theirs>
POKERMATH_KERNEL double* GatherWeights(const ClassedRange& range, double* sums) {
  constexpr const SuitPatterns& kPatterns = kSuitPatterns[mine][theirs];
  constexpr std::size_t kPadded = PaddedSuitings<Register>(mine);
  constexpr std::size_t kSuitings = kShapesOfClasses[theirs].suitings;
  for (const std::size_t number : range.MixedOf(theirs)) {
    const std::int32_t* weights = range.WeightsOf(number);
    std::fill_n(sums, kPatterns.count * kPadded, 0);
    for (std::size_t i = 0; i < kSuitings; ++i) {
      for (std::size_t own = 0; own < kShapesOfClasses[mine].suitings; ++own) {
        sums[kPatterns.of[own][i] * kPadded + own] += weights[i];
      }
    }
    sums += kPatterns.count * kPadded;
  }
  return sums;
}

// Wins and ties of a class, suitings side by side. No array: compilers keep members in registers.
template <typename Register, std::size_t registers>
struct ClassSums {
  Register wins, ties;
  ClassSums<Register, registers - 1> others;

  POKERMATH_KERNEL void Start(const MatchupRow::Matchup& of_all) {
    wins = Register{} + of_all.wins;
    ties = Register{} + of_all.ties;
    others.Start(of_all);
  }
  POKERMATH_KERNEL void Add(const MatchupRow::Matchup& matchup, const double* weights) {
    Register of_suitings;
    Load(of_suitings, weights);
    wins += matchup.wins * of_suitings;
    ties += matchup.ties * of_suitings;
    others.Add(matchup, weights + kDoubles<Register>);
  }
  /// @param most  suitings that there are
  POKERMATH_KERNEL void Keep(double* all_wins, double* all_ties, std::size_t most) const {
    const std::size_t count = std::min(most, kDoubles<Register>);
    std::memcpy(all_wins, &wins, count * sizeof(double));
    std::memcpy(all_ties, &ties, count * sizeof(double));
    others.Keep(all_wins + count, all_ties + count, most - count);
  }
};
template <typename Register>
struct ClassSums<Register, 0> {
  POKERMATH_KERNEL void Start(const MatchupRow::Matchup&) {}
  POKERMATH_KERNEL void Add(const MatchupRow::Matchup&, const double*) {}
  POKERMATH_KERNEL void Keep(double*, double*, std::size_t) const {}
};

template <typename Register>
POKERMATH_KERNEL double SumLanes(const Register& lanes) {
  double sum = 0;
  for (std::size_t i = 0; i < kDoubles<Register>; ++i) sum += lanes[i];
  return sum;
}

// A hand of a class against the whole classes of a range: all suitings win alike.
template <typename Register>
POKERMATH_KERNEL MatchupRow::Matchup CountWhole(const AgainstClasses& against,
                                                const ClassedRange& range) {
  Register wins{}, ties{};
  for (std::size_t i = 0; i < against.kSize; i += kDoubles<Register>) {
    Register weights, all_wins, all_ties;
    Load(weights, range.WholeWeights() + i);
    Load(all_wins, &against.wins[i]);
    Load(all_ties, &against.ties[i]);
    wins += weights * all_wins;
    ties += weights * all_ties;
  }
  return {SumLanes(wins), SumLanes(ties)};
}

// Several classes of a shape, which share what is loaded.
template <typename Register, Shape mine, std::size_t count>
struct SumsOfClasses {
  ClassSums<Register, RegistersOf<Register>(mine)> first;
  SumsOfClasses<Register, mine, count - 1> others;
  const MatchupRow::Matchup* row;

  POKERMATH_KERNEL void Start(const MatchupRows& rows, const std::uint8_t* numbers,
                              const ClassedRange& range) {
    first.Start(CountWhole<Register>(rows.Whole(*numbers), range));
    others.Start(rows, numbers + 1, range);
  }
  POKERMATH_KERNEL void GoTo(const MatchupRows& rows, const std::uint8_t* numbers, Shape theirs) {
    row = rows.Row(*numbers).Against(theirs);
    others.GoTo(rows, numbers + 1, theirs);
  }
  POKERMATH_KERNEL void Add(std::size_t place, const double* weights) {
    first.Add(row[place], weights);
    others.Add(place, weights);
  }
  POKERMATH_KERNEL void Keep(const std::uint8_t* numbers, Results& results) const {
    const std::size_t place = *numbers * kMostSuitings;
    first.Keep(&results.wins[place], &results.ties[place], kShapesOfClasses[mine].suitings);
    others.Keep(numbers + 1, results);
  }
};
template <typename Register, Shape mine>
struct SumsOfClasses<Register, mine, 0> {
  POKERMATH_KERNEL void Start(const MatchupRows&, const std::uint8_t*, const ClassedRange&) {}
  POKERMATH_KERNEL void GoTo(const MatchupRows&, const std::uint8_t*, Shape) {}
  POKERMATH_KERNEL void Add(std::size_t, const double*) {}
  POKERMATH_KERNEL void Keep(const std::uint8_t*, Results&) const {}
};

// Some classes of a shape against the other range's mixed classes of a shape.
template <Shape mine, Shape theirs, typename Register, std::size_t count>
POKERMATH_KERNEL const double* AddShape(const MatchupRows& rows, const std::uint8_t* numbers,
                                        const ClassedRange& range, const double* weights,
                                        SumsOfClasses<Register, mine, count>& sums) {
  if (range.MixedOf(theirs).count == 0) return weights;  // and rows need not be unpacked
  sums.GoTo(rows, numbers, theirs);
  constexpr std::size_t kPatterns = kSuitPatterns[mine][theirs].count;
  for (const std::size_t number : range.MixedOf(theirs)) {
    const std::size_t place = (number - kShapesOfClasses[theirs].first) * kPatterns;
    for (std::size_t pattern = 0; pattern < kPatterns; ++pattern) {
      sums.Add(place + pattern, weights);
      weights += PaddedSuitings<Register>(mine);
    }
  }
  return weights;
}

template <typename Register, Shape mine, std::size_t count>
POKERMATH_KERNEL void CountClasses(const MatchupRows& rows, const std::uint8_t* numbers,
                                   const ClassedRange& range, const double* weights,
                                   Results& results) {
  SumsOfClasses<Register, mine, count> sums;
  sums.Start(rows, numbers, range);
  weights = AddShape<mine, kPair>(rows, numbers, range, weights, sums);
  weights = AddShape<mine, kSuited>(rows, numbers, range, weights, sums);
  AddShape<mine, kOffsuit>(rows, numbers, range, weights, sums);
  sums.Keep(numbers, results);
}

template <typename Register, Shape mine>
POKERMATH_KERNEL void CountShape(const MatchupRows& rows, const ClassedRange& range1,
                                 const ClassedRange& range2, double* weights, Results& results) {
  constexpr std::size_t kSumRegisters = 12;  // leaves some of sixteen for what is loaded
  constexpr std::size_t kAtOnce = kSumRegisters / (2 * RegistersOf<Register>(mine));
  const ClassList& classes = range1.Of(mine);
  if (classes.count == 0) return;
  double* end = GatherWeights<Register, mine, kPair>(range2, weights);
  end = GatherWeights<Register, mine, kSuited>(range2, end);
  GatherWeights<Register, mine, kOffsuit>(range2, end);
  std::size_t done = 0;
  for (; done + kAtOnce <= classes.count; done += kAtOnce) {
    CountClasses<Register, mine, kAtOnce>(rows, &classes.numbers[done], range2, weights, results);
  }
  for (; done < classes.count; ++done) {
    CountClasses<Register, mine, 1>(rows, &classes.numbers[done], range2, weights, results);
  }
}

template <typename Register>
POKERMATH_KERNEL void CountSide(const MatchupRows& rows, const ClassedRange& range1,
                                const ClassedRange& range2, Results& results) {
  // Offsuit hands have the most patterns and suitings.
  std::size_t row = 0;
  for (const Shape theirs : {kPair, kSuited, kOffsuit}) {
    row += range2.MixedOf(theirs).count * kSuitPatterns[kOffsuit][theirs].count;
  }
  const auto weights =
      std::make_unique_for_overwrite<double[]>(row * PaddedSuitings<Register>(kOffsuit));
  CountShape<Register, kPair>(rows, range1, range2, weights.get(), results);
  CountShape<Register, kSuited>(rows, range1, range2, weights.get(), results);
  CountShape<Register, kOffsuit>(rows, range1, range2, weights.get(), results);
}

template <Isa level>
using DoublesOf = std::conditional_t<level == Isa::kAvx512, Eight,
                                     std::conditional_t<level == Isa::kAvx2, Four, Two>>;

// Hands of a range, against the other one.
struct Asked {
  std::span<const WeightedPair> hands;
  std::span<Tally> tallies;
};

void CountOne(Isa isa, Deck deck, const ClassedRange& range1, const ClassedRange& range2,
              const Asked& asked) {
  const KnownMatchups& known = KnownMatchups::Of(deck);
  const MatchupRows& rows = MatchupRows::Of(deck);
  Results results;
  Dispatch(isa, [&](auto level) POKERMATH_INLINE {
    CountSide<DoublesOf<level>>(rows, range1, range2, results);
  });
  for (std::size_t i = 0; i < asked.hands.size(); ++i) {
    const WeightedPair& hand = asked.hands[i];
    const std::size_t place = known.Class(hand.card1, hand.card2).Place();
    asked.tallies[i] += {static_cast<std::int64_t>(results.wins[place]),
                         static_cast<std::int64_t>(results.ties[place]),
                         range2.Beside(hand, place) * known.boards()};
  }
}

// One hand against some is a look-up for each. `one` is the tally of that hand.
void CountOneHand(const KnownMatchups& known, const WeightedPair& hand, Tally& one,
                  const Asked& others) {
  const ClassedHand classed = known.Class(hand.card1, hand.card2);
  const std::int64_t boards = known.boards();
  for (std::size_t i = 0; i < others.hands.size(); ++i) {
    const WeightedPair& other = others.hands[i];
    if (hand.cards().Meets(other.cards())) continue;
    const auto [wins, ties] = known.Count(classed, known.Class(other.card1, other.card2));
    one += {other.weight * std::int64_t{wins}, other.weight * std::int64_t{ties},
            other.weight * boards};
    if (others.tallies.empty()) continue;
    others.tallies[i] += {hand.weight * (boards - wins - ties), hand.weight * std::int64_t{ties},
                          hand.weight * boards};
  }
}

}  // namespace

void CountPreflopRanges(Isa isa, Deck deck, const TwoRanges& ranges, const TwoTallies& tallies) {
  const KnownMatchups& known = KnownMatchups::Of(deck);
  const Asked asked1{ranges.hands1, tallies.of1};
  const Asked asked2{ranges.hands2, tallies.of2};
  if (ranges.hands1.size() == 1) {
    return CountOneHand(known, ranges.hands1[0], tallies.of1[0], asked2);
  }
  if (ranges.hands2.size() == 1 && !tallies.of2.empty()) {
    return CountOneHand(known, ranges.hands2[0], tallies.of2[0], asked1);
  }
  const ClassedRange range1(known, ranges.hands1);
  const ClassedRange range2(known, ranges.hands2);
  CountOne(isa, deck, range1, range2, asked1);
  if (!tallies.of2.empty()) CountOne(isa, deck, range2, range1, asked2);
}

}  // namespace pokermath
