// Two ranges of four-card Omaha hands, every hand of both, board by board.
//
// Boards that a renaming of suits makes of each other are counted once, where the question does not
// tell these suits apart. What a hand gets from all of them is then what the hands alike get from
// one of them, shared out, as many times as there are boards.
//
// A step is some boards that stand for as many.

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"
#include "kernels/omaha_sweep.h"

namespace pokermath {
namespace {

std::vector<WeightedHand> HandsOf(const Side& side) {
  const std::span<const WeightedHand> hands = side.range.hands();
  std::vector<WeightedHand> of_units(hands.begin(), hands.end());
  for (WeightedHand& hand : of_units) hand.weight /= side.unit;
  return of_units;
}

// What completes the board.
struct Boards {
  std::int64_t alike = 1;  // how many boards each of them stands for
  std::vector<CardSet> come;
};

// All of them, or one of those that are alike; no more together than a step has.
class BoardList {
 public:
  BoardList(const CheckedQuestion& question, const SuitSymmetry* symmetry) {
    const std::vector<int> live = ListOf(question.live());
    const int places = static_cast<int>(live.size()), size = question.to_come();
    std::map<std::int64_t, std::vector<CardSet>> by_alike;
    Choice choice(0, places, size);
    for (std::int64_t left = ChoicesOf(places, size); left > 0; --left) {
      const CardSet come = choice.Of(live);
      const bool is_first = symmetry == nullptr || symmetry->FirstOf(come) == come;
      if (is_first) {
        const std::size_t alike = symmetry == nullptr ? 1 : symmetry->AlikeTo(come).size();
        by_alike[static_cast<std::int64_t>(alike)].push_back(come);
      }
      if (left > 1) choice.MoveToNext();
    }
    for (const auto& [alike, come] : by_alike) {
      for (std::size_t first = 0; first < come.size(); first += kBoardsAStep) {
        const auto some = std::span(come).subspan(first);
        const auto step = some.first(std::min(some.size(), kBoardsAStep));
        steps_.push_back({alike, {step.begin(), step.end()}});
      }
    }
  }

  const std::vector<Boards>& steps() const { return steps_; }

 private:
  static constexpr std::size_t kBoardsAStep = 96;

  std::vector<Boards> steps_;
};

// The hands of a player, and which of them are alike.
struct Hands {
  std::vector<WeightedHand> hands;
  std::vector<std::size_t> orbit_of;  // numbers of the sets of hands that are alike
  std::vector<std::int64_t> orbit_size;

  Hands(const Side& side, const SuitSymmetry* symmetry) : hands(HandsOf(side)) {
    if (symmetry == nullptr) return;
    orbit_of.resize(hands.size());
    for (std::size_t i = 0; i < hands.size(); ++i) {
      const CardSet first = symmetry->FirstOf(hands[i].cards);
      // Hands rise, so the first one has been seen.
      if (first == hands[i].cards) {
        orbit_of[i] = orbit_size.size();
        orbit_size.push_back(1);
      } else {
        orbit_of[i] = orbit_of[side.range.Find(first)];
        ++orbit_size[orbit_of[i]];
      }
    }
  }

  // Every hand gets what its likes have on average.
  void ShareOut(std::vector<Int128>& of_hands, std::int64_t times) const {
    if (orbit_of.empty()) return;
    std::vector<Int128> of_orbits(orbit_size.size());
    for (std::size_t i = 0; i < of_hands.size(); ++i) of_orbits[orbit_of[i]] += of_hands[i];
    for (std::size_t i = 0; i < of_hands.size(); ++i) {
      of_hands[i] = of_orbits[orbit_of[i]] * times / orbit_size[orbit_of[i]];
    }
  }
};

class OmahaRangesWork final : public Work {
 public:
  explicit OmahaRangesWork(const QuestionPointer& question)
      : OmahaRangesWork(question, SymmetryOf(*question)) {}

  const char* name() const override { return "Omaha ranges"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override { return static_cast<std::int64_t>(boards_.steps().size()); }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const Boards& boards = boards_.steps()[static_cast<std::size_t>(step)];
    OmahaSweep sweep(BestIsa(), ranges_);
    for (const CardSet come : boards.come) sweep.Count(question_->board() | come);
    for (const std::size_t player : {0u, 1u}) AddPlayer(player, sweep, boards.alike, sums);
    if (step == 0) AddCases(sums);
  }

 private:
  using Symmetry = std::unique_ptr<const SuitSymmetry>;

  // Where few boards come it takes longer to find out than to count them.
  static Symmetry SymmetryOf(const CheckedQuestion& question) {
    if (question.to_come() < 2) return nullptr;
    auto symmetry = std::make_unique<const SuitSymmetry>(question);
    return symmetry->renamings().size() > 1 ? std::move(symmetry) : nullptr;
  }

  OmahaRangesWork(const QuestionPointer& question, const Symmetry& symmetry)
      : question_(question),
        layout_(*question),
        hands_{Hands(question->players()[0], symmetry.get()),
               Hands(question->players()[1], symmetry.get())},
        ranges_(hands_[0].hands, hands_[1].hands),
        boards_(*question, symmetry.get()) {}

  void AddPlayer(std::size_t player, OmahaSweep& sweep, std::int64_t alike,
                 std::span<Int128> sums) const {
    const Hands& hands = hands_[player];
    const std::vector<OmahaCounts> counts = sweep.CountsOf(player);
    std::vector<Int128> wins(counts.size()), ties(counts.size());
    Outcomes all;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      const Int128 weight = hands.hands[i].weight;
      wins[i] = weight * counts[i].below;
      ties[i] = weight * (counts[i].not_above - counts[i].below);
      all.wins += wins[i] * alike;
      all.ties += ties[i] * alike;
    }
    Add(layout_.Total(player), all, sums);
    sums[layout_.Shared(player, 0)] += all.wins;
    sums[layout_.Shared(player, 1)] += all.ties;
    if (!question_->asked().detail.hands) return;
    hands.ShareOut(wins, alike);
    hands.ShareOut(ties, alike);
    for (std::size_t i = 0; i < counts.size(); ++i) {
      Add(SumsLayout::OutcomeOf(layout_.HandCases(player, i)), {wins[i], ties[i]}, sums);
    }
  }

  struct Outcomes {
    Int128 wins = 0, ties = 0;
  };
  static void Add(OutcomePlace place, const Outcomes& outcomes, std::span<Int128> sums) {
    sums[place.wins()] += outcomes.wins;
    sums[place.ties()] += outcomes.ties;
    sums[place.points()] += kPot * outcomes.wins + kHalfPot * outcomes.ties;
  }

  // Every two hands that share no card leave as many boards.
  void AddCases(std::span<Int128> sums) const {
    const int live = question_->live().size() - 2 * question_->rules().hand_size;
    const Int128 boards = ChoicesOf(live, question_->to_come());
    OmahaSweep sweep(BestIsa(), ranges_);
    sweep.CountAll();
    for (const std::size_t player : {0u, 1u}) {
      const std::vector<OmahaCounts> counts = sweep.CountsOf(player);
      for (std::size_t i = 0; i < counts.size(); ++i) {
        const Int128 cases = hands_[player].hands[i].weight * Int128{counts[i].not_above} * boards;
        if (player == 0) sums[SumsLayout::kCases] += cases;
        if (question_->asked().detail.hands) sums[layout_.HandCases(player, i)] += cases;
      }
    }
  }

  QuestionPointer question_;
  SumsLayout layout_;
  std::array<Hands, 2> hands_;
  OmahaTensors ranges_;
  BoardList boards_;
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
