// What comes next, by smaller questions: the totals as if nothing of the kind were asked, and for
// every board that can come next the question with it on the board. Each is answered by the solver
// that is cheapest for it.
//
// Boards that differ in suits alone which the question does not tell apart have the same outcome,
// and one of them is counted.

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "calculator/board_questions.h"
#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"

namespace pokermath {
namespace {

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

double CostOfBoard(const CheckedQuestion& question, std::span<const CardSet> boards) {
  return CostOfBoard(question, {}, static_cast<std::int64_t>(boards.size()),
                     [&](std::int64_t i) { return boards[static_cast<std::size_t>(i)]; });
}

class NextBoardsWork final : public Work {
 public:
  explicit NextBoardsWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        next_(*question),
        symmetry_(*question),
        boards_(FirstBoards(*question, symmetry_)),
        cut_(CostOfBoard(*question, boards_)) {
    const QuestionPointer totals = WithoutDetail(*question, &Detail::next);
    totals_size_ = SumsLayout(*totals).size();
    totals_ = CheapestFor(*totals).solver->start(totals);
  }

  const char* name() const override { return "what comes next, one by one"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    const auto boards = static_cast<std::int64_t>(boards_.size());
    return totals_->steps() + (boards + cut_.boards - 1) / cut_.boards * cut_.parts;
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    if (step < totals_->steps()) {
      // What is known of next boards stands at the end.
      totals_->Do(step, sums.first(totals_size_));
      return;
    }
    step -= totals_->steps();
    const auto first = static_cast<std::size_t>(step / cut_.parts * cut_.boards);
    const std::size_t count =
        std::min(boards_.size() - first, static_cast<std::size_t>(cut_.boards));
    for (const CardSet board : std::span(boards_).subspan(first, count)) {
      AddBoard(board, step % cut_.parts, sums);
    }
  }

 private:
  // Adds a part of a board's steps.
  void AddBoard(CardSet board, std::int64_t part, std::span<Int128> sums) const {
    const std::optional<QuestionPointer> smaller = OnBoard(*question_, board, {});
    if (!smaller) return;
    const SumsLayout layout(**smaller);
    std::vector<Int128> counted(layout.size());
    AddPart(*smaller, cut_, part, counted);
    const Int128 times = UnitsOf(**smaller, *question_);
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

  QuestionPointer question_;
  SumsLayout layout_;
  NextBoards next_;
  SuitSymmetry symmetry_;
  std::vector<CardSet> boards_;
  BoardCut cut_;
  std::unique_ptr<const Work> totals_;
  std::size_t totals_size_ = 0;
};

}  // namespace

std::optional<double> NextBoardsCost(const CheckedQuestion& question) {
  // Of folded ranges a board may leave one hand, and its weight would be forgotten.
  const Detail& detail = question.asked().detail;
  if (!detail.next || detail.made || !question.folded().empty()) return std::nullopt;
  const QuestionPointer totals = WithoutDetail(question, &Detail::next);
  if (CheapestFor(*totals).solver == nullptr) return std::nullopt;
  const SuitSymmetry symmetry(question);
  const std::vector<CardSet> boards = FirstBoards(question, symmetry);
  return CheapestFor(*totals).cost +
         static_cast<double>(boards.size()) * CostOfBoard(question, boards);
}

std::unique_ptr<const Work> StartNextBoards(const QuestionPointer& question) {
  return std::make_unique<NextBoardsWork>(question);
}

}  // namespace pokermath
