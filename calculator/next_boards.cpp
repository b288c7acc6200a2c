// What comes next, by smaller questions: the totals as if nothing of the kind were asked, and for
// every board that can come next the question with it on the board. Each is answered by the solver
// that is cheapest for it.
//
// Boards that differ in suits alone which the question does not tell apart have the same outcome,
// and one of them is counted.

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"

namespace pokermath {
namespace {

// The question without any of what comes next, on a board that has come; nothing if no deal is left
// then. More is certain then, so that its ranges are parts of the whole question's.
std::optional<QuestionPointer> Smaller(const CheckedQuestion& question, CardSet next) {
  EquityQuestion smaller = question.asked();
  smaller.board |= next;
  smaller.detail.next = false;
  if (!next.empty()) smaller.detail = {};
  Result<CheckedQuestion> checked = Check(smaller);
  if (!checked) return std::nullopt;
  return std::make_shared<const CheckedQuestion>(*std::move(checked));
}

CardSet MayCome(const CheckedQuestion& question) { return question.live() - question.certain(); }

std::int64_t NextBoardsOf(const CheckedQuestion& question) {
  return ChoicesOf(MayCome(question).size(), question.next_cards());
}

// One of the next boards that are alike, for each of them.
std::vector<CardSet> FirstBoards(const CheckedQuestion& question, const SuitSymmetry& symmetry) {
  const std::vector<int> cards = ListOf(MayCome(question));
  std::vector<CardSet> boards;
  Choice choice(0, static_cast<int>(cards.size()), question.next_cards());
  for (std::int64_t i = NextBoardsOf(question); i > 0; --i, choice.MoveToNext()) {
    const CardSet board = choice.Of(cards);
    if (symmetry.FirstOf(board) == board) boards.push_back(board);
  }
  return boards;
}

// With the gate that a question has to pass.
double CostOf(const CheckedQuestion& question) {
  double hands = 0;
  for (const Side& side : question.players()) hands += static_cast<double>(side.range.size());
  return 2000 + 10 * hands + CheapestFor(question).cost;
}

class NextBoardsWork final : public Work {
 public:
  explicit NextBoardsWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        next_(*question),
        symmetry_(*question),
        boards_(FirstBoards(*question, symmetry_)) {
    const QuestionPointer totals = *Smaller(*question, {});
    totals_size_ = SumsLayout(*totals).size();
    totals_ = CheapestFor(*totals).solver->start(totals);
    const double cost = CostOfBoard(*question, boards_);
    boards_a_step_ = std::llround(std::clamp(kStepCost / cost, 1.0, 100.0));
    parts_ = std::llround(std::clamp(cost / (10 * kStepCost), 1.0, 1e6));
  }

  /// At the most, by a few of them: what a board leaves of the ranges may be little, or no deal.
  static double CostOfBoard(const CheckedQuestion& question, std::span<const CardSet> boards) {
    constexpr std::size_t kFew = 9;
    double most = 0;
    for (std::size_t i = 0; i < kFew; ++i) {
      const CardSet board = boards[(2 * i + 1) * boards.size() / (2 * kFew)];
      const std::optional<QuestionPointer> smaller = Smaller(question, board);
      if (smaller) most = std::max(most, CostOf(**smaller));
    }
    return most > 0 ? most : CostOf(**Smaller(question, {}));
  }

  const char* name() const override { return "what comes next, one by one"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    const auto boards = static_cast<std::int64_t>(boards_.size());
    return totals_->steps() + (boards + boards_a_step_ - 1) / boards_a_step_ * parts_;
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    if (step < totals_->steps()) {
      // What is known of next boards stands at the end.
      totals_->Do(step, sums.first(totals_size_));
      return;
    }
    step -= totals_->steps();
    const auto first = static_cast<std::size_t>(step / parts_ * boards_a_step_);
    const std::size_t count =
        std::min(boards_.size() - first, static_cast<std::size_t>(boards_a_step_));
    for (const CardSet board : std::span(boards_).subspan(first, count)) {
      AddBoard(board, step % parts_, sums);
    }
  }

 private:
  // Adds a part of a board's steps.
  void AddBoard(CardSet board, std::int64_t part, std::span<Int128> sums) const {
    const std::optional<QuestionPointer> smaller = Smaller(*question_, board);
    if (!smaller) return;
    const SumsLayout layout(**smaller);
    std::vector<Int128> counted(layout.size());
    const std::unique_ptr<const Work> work = CheapestFor(**smaller).solver->start(*smaller);
    const std::int64_t end = (part + 1) * work->steps() / parts_;
    for (std::int64_t step = part * work->steps() / parts_; step < end; ++step) {
      work->Do(step, counted);
    }
    const Int128 times = UnitsOf(**smaller);
    for (const CardSet alike : symmetry_.AlikeTo(board)) {
      const std::size_t number = next_.NumberOf(alike);
      sums[layout_.NextCases(number)] += times * counted[SumsLayout::kCases];
      for (std::size_t i = 0; i < question_->players().size(); ++i) {
        const std::size_t from = layout.Total(i).first;
        const std::size_t to = layout_.NextOutcome(number, i).first;
        for (std::size_t j = 0; j < OutcomePlace::kSize; ++j)
          sums[to + j] += times * counted[from + j];
      }
    }
  }

  // Units of the whole question in one of a smaller one's.
  Int128 UnitsOf(const CheckedQuestion& smaller) const {
    Int128 units = 1;
    for (std::size_t i = 0; i < smaller.players().size(); ++i) {
      units *= smaller.players()[i].unit / question_->players()[i].unit;
    }
    return units;
  }

  QuestionPointer question_;
  SumsLayout layout_;
  NextBoards next_;
  SuitSymmetry symmetry_;
  std::vector<CardSet> boards_;
  // Boards of a step, or steps of a board.
  std::int64_t boards_a_step_ = 1;
  std::int64_t parts_ = 1;
  std::unique_ptr<const Work> totals_;
  std::size_t totals_size_ = 0;
};

}  // namespace

std::optional<double> NextBoardsCost(const CheckedQuestion& question) {
  // Of folded ranges a board may leave one hand, and its weight would be forgotten.
  if (!question.asked().detail.next || !question.folded().empty()) return std::nullopt;
  const QuestionPointer totals = *Smaller(question, {});
  if (CheapestFor(*totals).solver == nullptr) return std::nullopt;
  const SuitSymmetry symmetry(question);
  const std::vector<CardSet> boards = FirstBoards(question, symmetry);
  return CheapestFor(*totals).cost +
         static_cast<double>(boards.size()) * NextBoardsWork::CostOfBoard(question, boards);
}

std::unique_ptr<const Work> StartNextBoards(const QuestionPointer& question) {
  return std::make_unique<NextBoardsWork>(question);
}

}  // namespace pokermath
