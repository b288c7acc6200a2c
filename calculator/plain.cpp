// Plain enumeration: every board, and on it every choice of hands that share no card.
//
// It knows every question and is slow. Whatever is faster has to give the same sums.
//
// A step is a run of boards, or where a single board is much work, a slice of the widest range on
// one board.

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "eval/rank_sets.h"

namespace pokermath {
namespace {

struct Cost {
  double boards = 0;
  double per_board = 0;  // in operations
  double weight = 0;     // no sum of weights on all boards is larger
};

// An operation is some 2.5 ns.
double CostOfWorth(const GameRules& rules) {
  if (!rules.IsOmaha()) return 10;
  return (10 + 5 * Choose(rules.hand_size, 2)) * (rules.high_low ? 2 : 1);
}

Cost CostOf(const CheckedQuestion& question) {
  Cost cost;
  cost.boards = static_cast<double>(ChoicesOf(question.live().size(), question.to_come()));
  cost.weight = cost.boards;
  double deals = 1;
  const auto add = [&](const Side& side, double per_hand) {
    const auto size = static_cast<double>(side.range.size());
    cost.per_board += per_hand * size;
    deals *= size;
    cost.weight *= size * (side.IsListed() ? kWholeWeight / side.unit : 1);
  };
  for (const Side& side : question.players()) add(side, CostOfWorth(question.rules()));
  for (const Side& side : question.folded()) add(side, 2);
  const Detail& detail = question.asked().detail;
  const auto players = static_cast<double>(question.players().size());
  double of_deal = 12 + 4 * players;
  if (detail.made) of_deal += 4 * players;
  if (detail.next) {
    const auto next = static_cast<double>(ChoicesOf(question.to_come(), question.next_cards()));
    cost.per_board += 30 * next;
    of_deal += next * (1 + 4 * players);
  }
  cost.per_board += deals * of_deal;
  return cost;
}

class PlainWork final : public Work {
 public:
  explicit PlainWork(const QuestionPointer& question)
      : question_(question),
        settler_(*question),
        next_(question->asked().detail.next ? std::make_unique<NextBoards>(*question) : nullptr),
        live_(question->live().begin(), question->live().end()),
        boards_(ChoicesOf(static_cast<int>(live_.size()), question->to_come())) {
    const double per_board = CostOf(*question).per_board;
    boards_a_step_ =
        std::max<std::int64_t>(1, static_cast<std::int64_t>(std::min(kStepCost / per_board, 1e6)));
    sliced_ = 0;
    for (std::size_t i = 1; i < question->players().size(); ++i) {
      const auto size = [&](std::size_t player) {
        return question->players()[player].range.size();
      };
      if (size(i) > size(sliced_)) sliced_ = i;
    }
    const auto most = static_cast<double>(question->players()[sliced_].range.size());
    slices_ = static_cast<std::size_t>(std::clamp(per_board / kStepCost / 10, 1.0, most));
  }

  const char* name() const override { return "plain enumeration"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    return (boards_ + boards_a_step_ - 1) / boards_a_step_ * static_cast<std::int64_t>(slices_);
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const auto slices = static_cast<std::int64_t>(slices_);
    const auto slice = static_cast<std::size_t>(step % slices);
    const std::int64_t first = step / slices * boards_a_step_;
    const std::int64_t last = std::min(first + boards_a_step_, boards_);
    Choice choice(first, static_cast<int>(live_.size()), question_->to_come());
    OneBoard board(*this, slice, sums);
    for (std::int64_t i = first; i < last; ++i, choice.MoveToNext()) board.Count(choice.Of(live_));
  }

 private:
  // A hand that fits a board.
  struct Holding {
    CardSet cards;
    Int128 weight;
    std::size_t place;  // in the range
    Worth worth;
  };

  // Counts boards one after the other.
  class OneBoard {
   public:
    OneBoard(const PlainWork& work, std::size_t slice, std::span<Int128> sums)
        : work_(work), question_(*work.question_), slice_(slice), sums_(sums) {
      holdings_.resize(question_.players().size() + question_.folded().size());
    }

    // Players first, then those who folded.
    void Count(CardSet come) {
      const CardSet all = question_.board() | come;
      const std::vector<int> board(all.begin(), all.end());
      for (std::size_t i = 0; i < question_.players().size(); ++i) {
        Gather(question_.players()[i], all, i == work_.sliced_, holdings_[i]);
        for (Holding& holding : holdings_[i]) {
          const std::vector<int> hand(holding.cards.begin(), holding.cards.end());
          holding.worth = WorthOf(question_.rules(), hand, board);
        }
      }
      for (std::size_t i = 0; i < question_.folded().size(); ++i) {
        Gather(question_.folded()[i], all, false, holdings_[question_.players().size() + i]);
      }
      if (work_.next_ != nullptr) SetNext(come);
      Deal(0, {}, 1);
    }

   private:
    void Gather(const Side& side, CardSet board, bool in_slices, std::vector<Holding>& holdings) {
      holdings.clear();
      const std::span<const WeightedHand> hands = side.range.hands();
      const std::size_t step = in_slices ? work_.slices_ : 1;
      for (std::size_t i = in_slices ? slice_ : 0; i < hands.size(); i += step) {
        if (hands[i].cards.Meets(board)) continue;
        holdings.push_back({hands[i].cards, hands[i].weight / side.unit, i, {}});
      }
    }

    // Any of the cards to come may be the next ones.
    void SetNext(CardSet come) {
      const std::vector<int> cards(come.begin(), come.end());
      Choice choice(0, come.size(), question_.next_cards());
      deal_.next_count = static_cast<std::size_t>(ChoicesOf(come.size(), question_.next_cards()));
      for (std::size_t i = 0; i < deal_.next_count; ++i, choice.MoveToNext()) {
        deal_.next[i] = work_.next_->NumberOf(choice.Of(cards));
      }
    }

    void Deal(std::size_t side, CardSet taken, Int128 weight) {
      const bool plays = side < question_.players().size();
      for (const Holding& holding : holdings_[side]) {
        if (holding.cards.Meets(taken)) continue;
        if (plays) {
          deal_.worths[side] = holding.worth;
          deal_.hands[side] = holding.place;
        }
        if (side + 1 < holdings_.size()) {
          Deal(side + 1, taken | holding.cards, weight * holding.weight);
        } else {
          work_.settler_.Add(deal_, weight * holding.weight, sums_);
        }
      }
    }

    const PlainWork& work_;
    const CheckedQuestion& question_;
    std::size_t slice_;
    std::span<Int128> sums_;
    std::vector<std::vector<Holding>> holdings_;
    SettledDeal deal_;
  };

  QuestionPointer question_;
  Settler settler_;
  std::unique_ptr<const NextBoards> next_;
  std::vector<int> live_;
  std::int64_t boards_;
  std::int64_t boards_a_step_ = 1;
  std::size_t sliced_ = 0;  // the player whose hands are cut into slices
  std::size_t slices_ = 1;
};

}  // namespace

std::optional<double> PlainCost(const CheckedQuestion& question) {
  const Cost cost = CostOf(question);
  // Sums of points have 127 bits.
  if (cost.weight * kPot * 10 > 1e38) return std::nullopt;
  return cost.boards * cost.per_board;
}

std::unique_ptr<const Work> StartPlain(const QuestionPointer& question) {
  return std::make_unique<PlainWork>(question);
}

}  // namespace pokermath
