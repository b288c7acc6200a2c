// What each player makes, by smaller questions: the totals as if nothing of the kind were asked,
// and for every complete board the question on it, hand by hand. What a hand makes on a board is
// known, so its outcome there is one of that category. Each is answered by the solver that is
// cheapest for it.
//
// Of boards that are alike in suits that the question does not tell apart one is counted.

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "calculator/board_questions.h"
#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"
#include "eval/omaha_best.h"
#include "eval/worth.h"

namespace pokermath {
namespace {

constexpr Detail kByHand{.hands = true};

// The complete boards, by number.
class Boards {
 public:
  explicit Boards(const CheckedQuestion& question)
      : live_(ListOf(MayCome(question))), come_(question.to_come()) {}

  std::int64_t size() const { return ChoicesOf(static_cast<int>(live_.size()), come_); }
  CardSet Of(std::int64_t number) const {
    return Choice(number, static_cast<int>(live_.size()), come_).Of(live_);
  }

 private:
  std::vector<int> live_;
  int come_;
};

double CostOfBoard(const CheckedQuestion& question, const Boards& boards) {
  double hands = 0;
  for (const Side& side : question.players()) hands += static_cast<double>(side.range.size());
  return 20 * hands + CostOfBoard(question, kByHand, boards.size(),
                                  [&](std::int64_t number) { return boards.Of(number); });
}

// The category of every hand on a board.
class MadeOn {
 public:
  MadeOn(const GameRules& rules, CardSet board) : rules_(rules), board_(ListOf(board)) {
    if (rules.IsOmaha()) pairs_.emplace(board_);
  }
  int Of(CardSet cards) const {
    std::array<int, kMostHandCards> codes;
    const auto end = std::copy(cards.begin(), cards.end(), codes.begin());
    const std::span hand(codes.begin(), end);
    return CategoryOf(rules_, pairs_ ? pairs_->Best(hand) : WorthOf(rules_, hand, board_).high);
  }

 private:
  static constexpr std::size_t kMostHandCards = std::ranges::max(kOmahaHandSizes);

  const GameRules& rules_;
  std::vector<int> board_;
  std::optional<OmahaPairValues> pairs_;
};

class MadeWork final : public Work {
 public:
  explicit MadeWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        boards_(*question),
        symmetry_(question->to_come() > 0 ? SuitSymmetry(*question) : SuitSymmetry()),
        cut_(CostOfBoard(*question, boards_)) {
    const QuestionPointer totals = WithoutDetail(*question, &Detail::made);
    totals_size_ = SumsLayout(*totals).size();
    totals_ = CheapestFor(*totals).solver->start(totals);
  }

  const char* name() const override { return "what is made, board by board"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    return totals_->steps() + (boards_.size() + cut_.boards - 1) / cut_.boards * cut_.parts;
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    if (step < totals_->steps()) {
      // What is made stands at the end.
      totals_->Do(step, sums.first(totals_size_));
      return;
    }
    step -= totals_->steps();
    const std::int64_t first = step / cut_.parts * cut_.boards;
    const std::int64_t last = std::min(first + cut_.boards, boards_.size());
    for (std::int64_t number = first; number < last; ++number) {
      const CardSet come = boards_.Of(number);
      const int times = symmetry_.TimesOf(come);
      if (times > 0) AddBoard(come, times, step % cut_.parts, sums);
    }
  }

 private:
  void AddBoard(CardSet come, int alike, std::int64_t part, std::span<Int128> sums) const {
    const std::optional<QuestionPointer> smaller = OnBoard(*question_, come, kByHand);
    if (!smaller) return;
    const SumsLayout layout(**smaller);
    std::vector<Int128> counted(layout.size());
    AddPart(*smaller, cut_, part, counted);
    const Int128 times = alike * UnitsOf(**smaller, *question_);
    const MadeOn made(question_->rules(), (*smaller)->board());
    for (std::size_t player = 0; player < question_->players().size(); ++player) {
      std::size_t from = layout.HandCases(player, 0);
      for (const WeightedHand& hand : (*smaller)->players()[player].range.hands()) {
        const auto category = static_cast<std::size_t>(made.Of(hand.cards));
        const std::size_t to = layout_.MadeCases(player, category);
        for (std::size_t j = 0; j < SumsLayout::kCell; ++j) sums[to + j] += times * counted[from++];
      }
    }
  }

  QuestionPointer question_;
  SumsLayout layout_;
  Boards boards_;
  SuitSymmetry symmetry_;
  BoardCut cut_;
  std::unique_ptr<const Work> totals_;
  std::size_t totals_size_ = 0;
};

}  // namespace

std::optional<double> MadeCost(const CheckedQuestion& question) {
  // Of folded ranges a board may leave one hand, and its weight would be forgotten.
  if (!question.asked().detail.made || !question.folded().empty()) return std::nullopt;
  const QuestionPointer totals = WithoutDetail(question, &Detail::made);
  if (CheapestFor(*totals).solver == nullptr) return std::nullopt;
  // Too many hands for an answer by hand; of fewer, a board leaves fewer still.
  if (!OnBoard(question, {}, kByHand)) return std::nullopt;
  const Boards boards(question);
  const SuitSymmetry symmetry(question);
  return CheapestFor(*totals).cost +
         static_cast<double>(boards.size()) *
             (100 +
              CostOfBoard(question, boards) / static_cast<double>(symmetry.renamings().size()));
}

std::unique_ptr<const Work> StartMade(const QuestionPointer& question) {
  return std::make_unique<MadeWork>(question);
}

}  // namespace pokermath
