#include "calculator/board_questions.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace pokermath {

std::optional<QuestionPointer> OnBoard(const CheckedQuestion& question, CardSet come,
                                       const Detail& detail) {
  EquityQuestion smaller = question.asked();
  smaller.board |= come;
  smaller.detail = detail;
  Result<CheckedQuestion> checked = Check(smaller);
  if (!checked) return std::nullopt;
  return std::make_shared<const CheckedQuestion>(*std::move(checked));
}

QuestionPointer WithoutDetail(const CheckedQuestion& question, bool Detail::*detail) {
  Detail others = question.asked().detail;
  others.*detail = false;
  return *OnBoard(question, {}, others);
}

Int128 UnitsOf(const CheckedQuestion& smaller, const CheckedQuestion& whole) {
  Int128 units = 1;
  for (std::size_t i = 0; i < smaller.players().size(); ++i) {
    units *= smaller.players()[i].unit / whole.players()[i].unit;
  }
  return units;
}

CardSet MayCome(const CheckedQuestion& question) { return question.live() - question.certain(); }

double CostOfBoard(const CheckedQuestion& question, const Detail& detail, std::int64_t boards,
                   const std::function<CardSet(std::int64_t)>& board_of) {
  constexpr std::int64_t kFew = 9;
  double most = 0;
  const auto add = [&](const QuestionPointer& smaller) {
    double hands = 0;
    for (const Side& side : smaller->players()) hands += static_cast<double>(side.range.size());
    most = std::max(most, 2000 + 10 * hands + CheapestFor(*smaller).cost);
  };
  for (std::int64_t i = 0; i < std::min(kFew, boards); ++i) {
    const std::optional<QuestionPointer> smaller =
        OnBoard(question, board_of((2 * i + 1) * boards / (2 * std::min(kFew, boards))), detail);
    if (smaller) add(*smaller);
  }
  if (most == 0) add(*OnBoard(question, {}, {}));
  return most;
}

BoardCut::BoardCut(double cost_of_board)
    : boards(std::llround(std::clamp(kStepCost / cost_of_board, 1.0, 100.0))),
      parts(std::llround(std::clamp(cost_of_board / (10 * kStepCost), 1.0, 1e6))) {}

void AddPart(const QuestionPointer& question, const BoardCut& cut, std::int64_t part,
             std::span<Int128> sums) {
  const std::unique_ptr<const Work> work = CheapestFor(*question).solver->start(question);
  const std::int64_t end = cut.FirstOf(*work, part + 1);
  for (std::int64_t step = cut.FirstOf(*work, part); step < end; ++step) work->Do(step, sums);
}

}  // namespace pokermath
