// Smaller questions: the same one on a board that has come.

#ifndef POKERMATH_CALCULATOR_BOARD_QUESTIONS_H_
#define POKERMATH_CALCULATOR_BOARD_QUESTIONS_H_

#include <functional>
#include <optional>
#include <span>

#include "calculator/question.h"
#include "calculator/solvers.h"

namespace pokermath {

/// A question with more cards on the board and another detail; nothing if no deal is left then.
/// More is certain then, so that its ranges are parts of the whole question's.
std::optional<QuestionPointer> OnBoard(const CheckedQuestion& question, CardSet come,
                                       const Detail& detail);

/// The question as if it did not ask for a detail.
QuestionPointer WithoutDetail(const CheckedQuestion& question, bool Detail::*detail);

/// Units of the whole question in one of a smaller one's.
Int128 UnitsOf(const CheckedQuestion& smaller, const CheckedQuestion& whole);

/// Cards that may come.
CardSet MayCome(const CheckedQuestion& question);

/// What the cheapest solver takes for a board with the gate that it has to pass, at the most, by a
/// few of the boards: what one leaves of the ranges may be little, or no deal.
///
/// @param board_of  one of so many
double CostOfBoard(const CheckedQuestion& question, const Detail& detail, std::int64_t boards,
                   const std::function<CardSet(std::int64_t)>& board_of);

/// How a step is cut: boards of a step, or steps of a board.
struct BoardCut {
  std::int64_t boards = 1, parts = 1;

  explicit BoardCut(double cost_of_board);
  /// The steps of a part of a board's work: its place among them, and the next one's.
  std::int64_t FirstOf(const Work& work, std::int64_t part) const {
    return part * work.steps() / parts;
  }
};

/// Adds a part of the cheapest solver's steps.
void AddPart(const QuestionPointer& question, const BoardCut& cut, std::int64_t part,
             std::span<Int128> sums);

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_BOARD_QUESTIONS_H_
