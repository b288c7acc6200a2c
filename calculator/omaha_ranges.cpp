// Two ranges of four-card Omaha hands, every hand of both, board by board. A step is some boards.

#include <algorithm>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "kernels/omaha_sweep.h"

namespace pokermath {
namespace {

std::vector<WeightedHand> HandsOf(const Side& side) {
  const std::span<const WeightedHand> hands = side.range.hands();
  std::vector<WeightedHand> of_units(hands.begin(), hands.end());
  for (WeightedHand& hand : of_units) hand.weight /= side.unit;
  return of_units;
}

class OmahaRangesWork final : public Work {
 public:
  explicit OmahaRangesWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        hands_{HandsOf(question->players()[0]), HandsOf(question->players()[1])},
        ranges_(hands_[0], hands_[1]),
        live_(ListOf(question->live())),
        boards_(ChoicesOf(static_cast<int>(live_.size()), question->to_come())) {}

  const char* name() const override { return "Omaha ranges"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override { return (boards_ + kBoardsAStep - 1) / kBoardsAStep; }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const std::int64_t first = step * kBoardsAStep;
    const std::int64_t last = std::min(first + kBoardsAStep, boards_);
    Choice choice(first, static_cast<int>(live_.size()), question_->to_come());
    OmahaSweep sweep(BestIsa(), ranges_);
    for (std::int64_t i = first; i < last; ++i, choice.MoveToNext()) {
      sweep.Count(question_->board() | choice.Of(live_));
    }
    for (const std::size_t player : {0u, 1u}) AddPlayer(player, sweep, sums);
    if (step == 0) AddCases(sums);
  }

 private:
  static constexpr std::int64_t kBoardsAStep = 48;

  void AddPlayer(std::size_t player, OmahaSweep& sweep, std::span<Int128> sums) const {
    const std::vector<OmahaCounts> counts = sweep.CountsOf(player);
    Int128 wins = 0, ties = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      const Int128 weight = hands_[player][i].weight;
      const Int128 won = weight * counts[i].below;
      const Int128 tied = weight * (counts[i].not_above - counts[i].below);
      wins += won;
      ties += tied;
      if (!question_->asked().detail.hands) continue;
      AddOutcome(SumsLayout::OutcomeOf(layout_.HandCases(player, i)), won, tied, sums);
    }
    AddOutcome(layout_.Total(player), wins, ties, sums);
    sums[layout_.Shared(player, 0)] += wins;
    sums[layout_.Shared(player, 1)] += ties;
  }

  static void AddOutcome(OutcomePlace place, Int128 wins, Int128 ties, std::span<Int128> sums) {
    sums[place.wins()] += wins;
    sums[place.ties()] += ties;
    sums[place.points()] += kPot * wins + kHalfPot * ties;
  }

  // Every two hands that share no card leave as many boards.
  void AddCases(std::span<Int128> sums) const {
    const Int128 boards = ChoicesOf(
        static_cast<int>(live_.size()) - 2 * question_->rules().hand_size, question_->to_come());
    OmahaSweep sweep(BestIsa(), ranges_);
    sweep.CountAll();
    for (const std::size_t player : {0u, 1u}) {
      const std::vector<OmahaCounts> counts = sweep.CountsOf(player);
      for (std::size_t i = 0; i < counts.size(); ++i) {
        const Int128 cases = hands_[player][i].weight * Int128{counts[i].not_above} * boards;
        if (player == 0) sums[SumsLayout::kCases] += cases;
        if (question_->asked().detail.hands) sums[layout_.HandCases(player, i)] += cases;
      }
    }
  }

  QuestionPointer question_;
  SumsLayout layout_;
  std::array<std::vector<WeightedHand>, 2> hands_;
  OmahaTensors ranges_;
  std::vector<int> live_;
  std::int64_t boards_;
};

}  // namespace

std::optional<double> OmahaRangesCost(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  if (!question.rules().IsOmaha() || question.rules().hand_size != 4 || question.rules().high_low ||
      question.players().size() != 2 || !question.folded().empty() || detail.next || detail.made) {
    return std::nullopt;
  }
  const auto hands =
      static_cast<double>(question.players()[0].range.size() + question.players()[1].range.size());
  const auto boards = static_cast<double>(ChoicesOf(question.live().size(), question.to_come()));
  return 1e5 + 20 * hands + boards * (6000 + 2 * hands);
}

std::unique_ptr<const Work> StartOmahaRanges(const QuestionPointer& question) {
  return std::make_unique<OmahaRangesWork>(question);
}

}  // namespace pokermath
