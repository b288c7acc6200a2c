// Three ranges of four-card Omaha hands, high only, on a complete board.
//
// That is some seconds of work where ranges are wide, so it is cut into steps: some of the hands
// each, in the order of their values. Every step puts all hands in anew, which is little beside
// asking for its own.

#include "kernels/omaha_three.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "calculator/solvers.h"
#include "calculator/three_outcomes.h"

namespace pokermath {
namespace {

// Of a hand: to ask for it up to four times, and to put it in.
constexpr double kCostOfHand = 20000, kCostOfInsertion = 160;
// To get ready for a step.
constexpr double kCostOfStep = 2e7;

std::array<std::size_t, kThree> FirstsLike(const CheckedQuestion& question) {
  return {0, FirstLike(question, 1), FirstLike(question, 2)};
}

// Hands of ranges that are alike are asked for once.
double CostOfHands(const CheckedQuestion& question) {
  const std::array<std::size_t, kThree> firsts = FirstsLike(question);
  double hands = 0;
  for (std::size_t i = 0; i < kThree; ++i) {
    if (firsts[i] == i) hands += static_cast<double>(question.players()[i].range.size());
  }
  return kCostOfHand * hands;
}

double CostOfInsertions(const CheckedQuestion& question) {
  double hands = 0;
  for (const Side& side : question.players()) hands += static_cast<double>(side.range.size());
  return kCostOfStep + kCostOfInsertion * hands;
}

// So that getting ready is no more than a quarter of a step.
std::int64_t SlicesOf(const CheckedQuestion& question) {
  return static_cast<std::int64_t>(
      std::max(1.0, CostOfHands(question) / (3 * CostOfInsertions(question))));
}

std::vector<WeightedHand> HandsOf(const Side& side) {
  const std::span<const WeightedHand> hands = side.range.hands();
  std::vector<WeightedHand> of_units(hands.begin(), hands.end());
  for (WeightedHand& hand : of_units) hand.weight /= side.unit;
  return of_units;
}

class OmahaThreeWork final : public Work {
 public:
  explicit OmahaThreeWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        first_like_(FirstsLike(*question)),
        hands_{HandsOf(question->players()[0]), HandsOf(question->players()[1]),
               HandsOf(question->players()[2])},
        sweep_(BestIsa(), {hands_[0], hands_[1], hands_[2]}, question->board()),
        slices_(SlicesOf(*question)) {}

  const char* name() const override { return "three Omaha ranges"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override { return slices_; }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const bool by_hand = question_->asked().detail.hands;
    std::array<std::vector<ThreeOutcomes>, kThree> outcomes;
    OmahaThreeSweep::Asked asked;
    for (std::size_t i = 0; i < kThree; ++i) {
      asked.players[i] = first_like_[i] == i;
      asked.cases[i] = i == 0 || by_hand;
      outcomes[i].resize(1 + (by_hand ? hands_[i].size() : 0));
    }
    const auto end_of = [&](std::int64_t slice) {
      return sweep_.size() * static_cast<std::size_t>(slice) / static_cast<std::size_t>(slices_);
    };
    sweep_.Count(end_of(step), end_of(step + 1), asked,
                 [&](std::size_t player, std::size_t hand, const ThreeTally& tally) {
                   const ThreeOutcomes of_hand(tally, hands_[player][hand].weight);
                   outcomes[player][0].Add(of_hand);
                   if (by_hand) outcomes[player][1 + hand].Add(of_hand);
                 });
    for (std::size_t i = 0; i < kThree; ++i) {
      AddOutcomes(layout_, i, outcomes[first_like_[i]], sums);
    }
  }

 private:
  QuestionPointer question_;
  SumsLayout layout_;
  std::array<std::size_t, kThree> first_like_;
  std::array<std::vector<WeightedHand>, kThree> hands_;
  OmahaThreeSweep sweep_;
  std::int64_t slices_;
};

}  // namespace

std::optional<double> OmahaThreeCost(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  const GameRules& rules = question.rules();
  if (!rules.IsOmaha() || rules.hand_size != 4 || rules.high_low ||
      question.players().size() != kThree || question.to_come() > 0 || !question.folded().empty() ||
      detail.next || detail.made) {
    return std::nullopt;
  }
  return CostOfHands(question) +
         static_cast<double>(SlicesOf(question)) * CostOfInsertions(question);
}

std::unique_ptr<const Work> StartOmahaThree(const QuestionPointer& question) {
  return std::make_unique<OmahaThreeWork>(question);
}

}  // namespace pokermath
