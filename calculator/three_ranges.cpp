// Three players with two cards each: every board that can come, and on it every hand of all three.
//
// Of boards that are alike up to names of suits which the question does not tell apart, one is
// counted as often as there are. What a hand makes of all of them is then what the hands that are
// alike to it make of that one, on average.

#include "kernels/three_ranges.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/pairs.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"
#include "calculator/three_outcomes.h"

namespace pokermath {
namespace {

// Ranges that are alike are swept once.
double CostOfBoard(const CheckedQuestion& question) {
  double hands = 0;
  for (std::size_t i = 0; i < kThree; ++i) {
    if (FirstLike(question, i) != i) continue;
    hands += static_cast<double>(question.players()[i].range.size());
  }
  return 2000 + 9 * hands;
}

// With a single board, renamings of suits save nothing.
SuitSymmetry SymmetryOf(const CheckedQuestion& question) {
  return question.to_come() > 0 ? SuitSymmetry(question) : SuitSymmetry();
}

class ThreeRangesWork final : public Work {
 public:
  explicit ThreeRangesWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        symmetry_(SymmetryOf(*question)),
        live_(ListOf(question->live())),
        boards_(ChoicesOf(static_cast<int>(live_.size()), question->to_come())),
        boards_of_case_(
            ChoicesOf(static_cast<int>(live_.size() - 2 * kThree), question->to_come())) {
    const double a_step =
        kStepCost / CostOfBoard(*question) * static_cast<double>(symmetry_.renamings().size());
    boards_a_step_ = static_cast<std::int64_t>(std::clamp(a_step, 1.0, kMostBoards));
    for (std::size_t i = 0; i < kThree; ++i) {
      first_like_[i] = FirstLike(*question, i);
      if (first_like_[i] != i) continue;
      hands_[i] = PairsOf(question->players()[i]);
      if (IsByHand() && IsSymmetric()) SetAlike(i);
    }
  }

  const char* name() const override { return "three ranges board by board"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override { return (boards_ + boards_a_step_ - 1) / boards_a_step_; }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const ThreeRanges ranges = {hands_[0], hands_[first_like_[1]], hands_[first_like_[2]]};
    ThreeRangesSweep sweep(BestIsa(), question_->rules(), ranges);
    const std::int64_t first = step * boards_a_step_;
    const std::int64_t last = std::min(first + boards_a_step_, boards_);
    Choice choice(first, static_cast<int>(live_.size()), question_->to_come());
    for (std::int64_t i = first; i < last; ++i, choice.MoveToNext()) {
      const CardSet come = choice.Of(live_);
      const int times = IsSymmetric() ? symmetry_.TimesOf(come) : 1;
      if (times > 0) sweep.Count(question_->board() | come, times);
    }
    // Every deal of three hands leaves as many boards as any other.
    if (step == 0) sweep.CountCases();
    // What is so for a player is so for those with the same range.
    std::array<std::vector<ThreeOutcomes>, kThree> outcomes;
    for (std::size_t i = 0; i < kThree; ++i) {
      if (first_like_[i] == i) outcomes[i] = OutcomesOf(i, sweep);
      AddOutcomes(layout_, i, outcomes[first_like_[i]], sums);
    }
  }

 private:
  // All of them may count as often as there are renamings.
  static constexpr double kMostBoards =
      double{ThreeRangesSweep::kMostBoards} / ThreeRangesSweep::kMostTimes;

  bool IsByHand() const { return question_->asked().detail.hands; }
  bool IsSymmetric() const { return symmetry_.renamings().size() > 1; }

  void SetAlike(std::size_t player) {
    const HandRange& range = question_->players()[player].range;
    for (const WeightedHand& hand : range.hands()) {
      alike_[player].push_back(range.Find(symmetry_.FirstOf(hand.cards)));
    }
  }

  // Of all hands together, and of each if that is asked for.
  std::vector<ThreeOutcomes> OutcomesOf(std::size_t player, const ThreeRangesSweep& sweep) const {
    std::vector<ThreeOutcomes> outcomes(1 + (IsByHand() ? hands_[player].size() : 0));
    for (std::size_t i = 0; i < hands_[player].size(); ++i) {
      const std::int64_t weight = hands_[player][i].weight;
      const ThreeTally tally = sweep.Of(player, i);
      const ThreeOutcomes of_hand(tally, weight, boards_of_case_);
      outcomes[0].Add(of_hand);
      if (IsByHand()) outcomes[1 + i] = of_hand;
    }
    if (IsByHand() && IsSymmetric()) Average(alike_[player], std::span(outcomes).subspan(1));
    return outcomes;
  }

  // Of hands that are alike: over the boards that are alike to one they make together what each of
  // them makes of all these boards, times the number of hands. So nothing is left over.
  static void Average(std::span<const std::size_t> alike, std::span<ThreeOutcomes> of_hands) {
    std::vector<ThreeOutcomes> sums(of_hands.size());
    std::vector<std::int64_t> counts(of_hands.size());
    for (std::size_t i = 0; i < of_hands.size(); ++i) {
      sums[alike[i]].Add(of_hands[i]);
      ++counts[alike[i]];
    }
    for (std::size_t i = 0; i < of_hands.size(); ++i) {
      if (counts[i] > 0) sums[i].DivideBy(counts[i]);
    }
    for (std::size_t i = 0; i < of_hands.size(); ++i) of_hands[i] = sums[alike[i]];
  }

  QuestionPointer question_;
  SumsLayout layout_;
  SuitSymmetry symmetry_;
  std::array<std::size_t, kThree> first_like_{};
  // Of the first players of a range; alike hands by the first of them.
  std::array<std::vector<WeightedPair>, kThree> hands_;
  std::array<std::vector<std::size_t>, kThree> alike_;
  std::vector<int> live_;
  std::int64_t boards_;
  std::int64_t boards_of_case_;
  std::int64_t boards_a_step_ = 1;
};

}  // namespace

std::optional<double> ThreeRangesCost(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  if (question.rules().hand_size != 2 || question.players().size() != kThree ||
      !question.folded().empty() || detail.next || detail.made) {
    return std::nullopt;
  }
  constexpr double kToLookAt = 4;  // of a board that another one stands for
  const auto boards = static_cast<double>(ChoicesOf(question.live().size(), question.to_come()));
  const auto alike = static_cast<double>(SymmetryOf(question).renamings().size());
  return boards * (kToLookAt + CostOfBoard(question) / alike);
}

std::unique_ptr<const Work> StartThreeRanges(const QuestionPointer& question) {
  return std::make_unique<ThreeRangesWork>(question);
}

}  // namespace pokermath
