// One hand each: before the flop by the ranks of boards, and else every board that can come.
//
// For the latter a board is one or two high cards and three below them, from the list of all
// threes, where those below a card are a run at its start. A step is the boards of the same high
// cards.

#include <algorithm>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/one_hand.h"
#include "calculator/sharers.h"
#include "calculator/solvers.h"
#include "kernels/several_hands.h"

namespace pokermath {
namespace {

std::int64_t BoardsOf(const CheckedQuestion& question) {
  return ChoicesOf((question.live() - question.certain()).size(), question.to_come());
}

template <typename Values>
class HandsWork final : public Work {
 public:
  explicit HandsWork(const QuestionPointer& question)
      : question_(question),
        settler_(*question),
        board_(DealtOf(question->board())),
        hands_(*question, BoardsOf(*question)) {
    const CardSet live = question->live() - question->certain();
    live_.assign(live.begin(), live.end());
    low_cards_ = std::min(question->to_come(), 3);
    low_sets_ = DealtSetsOf(live, low_cards_);
    high_cards_ = question->to_come() - low_cards_;
  }

  const char* name() const override { return "hands on every board"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    return ChoicesOf(static_cast<int>(live_.size()), high_cards_);
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const Choice high(step, static_cast<int>(live_.size()), high_cards_);
    const DealtCards start = board_ + DealtOf(high.Of(live_));
    // Of the places below the high cards.
    const int below = high_cards_ > 0 ? high.Lowest() : static_cast<int>(live_.size());
    const auto boards = static_cast<std::size_t>(ChoicesOf(below, low_cards_));
    SharerTimes times(question_->players().size());
    std::array<DealtCards, DealtBlock::kMost> block;
    for (std::size_t first = 0; first < boards; first += block.size()) {
      const std::size_t count = std::min(boards - first, block.size());
      for (std::size_t i = 0; i < count; ++i) block[i] = start + low_sets_[first + i];
      hands_.Value(std::span(block).first(count), times);
      times.Add(count);
    }
    times.ForEach(
        [&](unsigned sharers, std::int64_t deals) { settler_.AddSharers(sharers, deals, sums); });
  }

 private:
  QuestionPointer question_;
  Settler settler_;
  DealtCards board_;
  SingleHands<Values> hands_;
  std::vector<int> live_;
  int low_cards_ = 0;
  int high_cards_ = 0;
  std::vector<DealtCards> low_sets_;
};

class RankBoardsWork final : public Work {
 public:
  explicit RankBoardsWork(const QuestionPointer& question)
      : question_(question), settler_(*question) {
    static_assert(kMostHands == kMostPlayers);
    for (const Side& side : question->players()) hands_.push_back(side.range.hands()[0].cards);
  }

  const char* name() const override { return "hands by the ranks of boards"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override { return 1; }

  void Do(std::int64_t, std::span<Int128> sums) const override {
    std::vector<std::int64_t> times(std::size_t{1} << hands_.size());
    const Deck deck = question_->rules().IsShortDeck() ? Deck::kShort : Deck::kFull;
    CountSeveralHands(BestIsa(), deck, hands_, question_->dead(), question_->asked().street, times);
    for (unsigned sharers = 1; sharers < times.size(); ++sharers) {
      if (times[sharers] > 0) settler_.AddSharers(sharers, times[sharers], sums);
    }
  }

 private:
  QuestionPointer question_;
  Settler settler_;
  std::vector<CardSet> hands_;
};

// Whether it is one hand each, in a game without lows, and only totals or hands are asked for.
bool IsOfHands(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  return !question.rules().high_low && !detail.next && !detail.made && question.folded().empty() &&
         std::ranges::all_of(question.players(), &Side::IsOneHand);
}

}  // namespace

std::optional<double> RankBoardsCost(const CheckedQuestion& question) {
  const GameRules& rules = question.rules();
  const bool knows_rules =
      rules.hand_size == 2 && !(rules.IsShortDeck() && rules.straight_over_trips);
  if (!IsOfHands(question) || !knows_rules || !question.board().empty()) return std::nullopt;
  return 2000 + 3000 * static_cast<double>(question.players().size());
}

std::unique_ptr<const Work> StartRankBoards(const QuestionPointer& question) {
  return std::make_unique<RankBoardsWork>(question);
}

std::optional<double> HandsCost(const CheckedQuestion& question) {
  if (!IsOfHands(question)) return std::nullopt;
  const auto players = static_cast<double>(question.players().size());
  const double of_hand = question.rules().IsOmaha() ? 40 : question.rules().IsShortDeck() ? 15 : 2;
  return 2000 + static_cast<double>(BoardsOf(question)) * of_hand * players;
}

std::unique_ptr<const Work> StartHands(const QuestionPointer& question) {
  return WithValues(question->rules(), question->street(), [&]<typename Values>() {
    return std::unique_ptr<const Work>(std::make_unique<HandsWork<Values>>(question));
  });
}

}  // namespace pokermath
