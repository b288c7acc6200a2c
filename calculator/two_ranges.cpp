// Two players with two cards each: three kernels that give a tally for every hand of both.
//
// From the table of all matchups: Hold'em before the flop to the river, where nothing is dead. By
// classes, every pair of hands: before the flop, and with one or two cards to come where nothing is
// dead. By boards, all hands at once on every board that can come, whatever is dead.

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/pairs.h"
#include "calculator/solvers.h"
#include "kernels/board_sweep.h"
#include "kernels/known_matchups.h"
#include "kernels/matchup.h"
#include "kernels/matchups.h"
#include "kernels/preflop_ranges.h"
#include "kernels/range_matchups.h"
#include "kernels/runouts.h"

namespace pokermath {
namespace {

// Whether two hands of two cards are all, and only their totals and hands are asked for.
bool IsOfTwoRanges(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  return question.rules().hand_size == 2 && question.players().size() == 2 &&
         question.folded().empty() && !detail.next && !detail.made;
}

Deck DeckOf(const GameRules& rules) {
  return !rules.IsShortDeck()        ? Deck::kFull
         : rules.straight_over_trips ? Deck::kShortStraights
                                     : Deck::kShort;
}

// What both kinds of work share: the hands, and how their tallies become sums.
class TwoRangesWork : public Work {
 public:
  Method method() const final { return Method::kExact; }

  void Do(std::int64_t step, std::span<Int128> sums) const final {
    std::vector<Tally> tallies1(hands1_.size()), tallies2(hands2_.size());
    Count(step, {tallies1, tallies2});
    AddHands(0, hands1_, tallies1, sums);
    AddHands(1, hands2_, tallies2, sums);
  }

 protected:
  explicit TwoRangesWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        hands1_(PairsOf(question->players()[0])),
        hands2_(PairsOf(question->players()[1])) {}

  const CheckedQuestion& question() const { return *question_; }
  TwoRanges ranges() const { return {hands1_, hands2_}; }

 private:
  virtual void Count(std::int64_t step, const TwoTallies& tallies) const = 0;

  void AddHands(std::size_t player, std::span<const WeightedPair> hands,
                std::span<const Tally> tallies, std::span<Int128> sums) const {
    Int128 wins = 0, ties = 0, cases = 0;
    const bool by_hand = question_->asked().detail.hands;
    for (std::size_t i = 0; i < hands.size(); ++i) {
      const Tally& tally = tallies[i];
      const std::int64_t weight = hands[i].weight;
      const std::int64_t of_wins = weight * tally.wins;
      const std::int64_t of_ties = weight * tally.ties;
      const std::int64_t of_cases = weight * tally.cases;
      wins += of_wins;
      ties += of_ties;
      cases += of_cases;
      if (!by_hand) continue;
      const std::size_t cell = layout_.HandCases(player, i);
      sums[cell] += of_cases;
      AddOutcome(SumsLayout::OutcomeOf(cell), of_wins, of_ties, sums);
    }
    AddOutcome(layout_.Total(player), wins, ties, sums);
    sums[layout_.Shared(player, 0)] += wins;
    sums[layout_.Shared(player, 1)] += ties;
    if (player == 0) sums[SumsLayout::kCases] += cases;
  }

  template <typename Number>
  static void AddOutcome(OutcomePlace place, Number wins, Number ties, std::span<Int128> sums) {
    sums[place.wins()] += wins;
    sums[place.ties()] += ties;
    sums[place.points()] += Int128{kHalfPot} * (2 * wins + ties);
  }
  // A hand against all others on all boards, weights and all; twice that is added up.
  static_assert(ChoicesOf(50, 5) < (std::int64_t{1} << 62) / 1326 / kWholeWeight / kWholeWeight);

  QuestionPointer question_;
  SumsLayout layout_;
  std::vector<WeightedPair> hands1_, hands2_;
};

// --- from the table of all matchups ---

class MatchupsWork final : public TwoRangesWork {
 public:
  explicit MatchupsWork(const QuestionPointer& question) : TwoRangesWork(question) {}

  const char* name() const override { return "table of all matchups"; }
  std::int64_t steps() const override { return 1; }

 private:
  void Count(std::int64_t, const TwoTallies& tallies) const override {
    CountPreflopRanges(BestIsa(), DeckOf(question().rules()), ranges(), tallies);
  }
};

// --- by classes ---

// Rank classes that some ranges have together.
int ClassesIn(std::span<const Side> sides) {
  std::array<bool, kRankClasses> held{};
  for (const Side& side : sides) {
    for (const WeightedHand& hand : side.range.hands()) {
      auto card = hand.cards.begin();
      const int rank = *card % 13;
      held[static_cast<std::size_t>(RankClassOf(rank, *++card % 13))] = true;
    }
  }
  return static_cast<int>(std::ranges::count(held, true));
}

class ClassesWork final : public TwoRangesWork {
 public:
  explicit ClassesWork(const QuestionPointer& question)
      : TwoRangesWork(question), matchups_(CountsOf(*question), ranges()) {}

  const char* name() const override { return "classes of hands"; }
  std::int64_t steps() const override { return static_cast<std::int64_t>(matchups_.steps()); }

 private:
  void Count(std::int64_t step, const TwoTallies& tallies) const override {
    matchups_.Count(static_cast<std::size_t>(step), tallies);
  }

  const ShowdownCounts& CountsOf(const CheckedQuestion& question) {
    const Deck deck = DeckOf(question.rules());
    const Street street = question.asked().street;
    if (!question.board().empty()) {
      counts_ =
          std::make_unique<Runouts>(BestIsa(), deck, ListOf(question.board()), question.street());
    } else if (!question.dead().empty()) {
      counts_ = EmptyBoardCountsWithout(question.dead(), BestIsa(), deck, street);
    } else {
      return EmptyBoardCounts(BestIsa(), deck, street);
    }
    return *counts_;
  }

  std::unique_ptr<const ShowdownCounts> counts_;
  RangeMatchups matchups_;
};

// --- by boards ---

// Cards to come that are chosen one by one; the last two are the sweep's.
int LeadOf(const CheckedQuestion& question) { return std::max(question.to_come() - 2, 0); }

double CostOfLead(const CheckedQuestion& question) {
  const std::vector<Side>& players = question.players();
  const int to_come = question.to_come();
  const auto hands = static_cast<double>(players[0].range.size() + players[1].range.size());
  const double classes = to_come == 1 || to_come == 2 ? ClassesIn(players) : kRankClasses;
  const double groups = to_come == 0 ? 1 : to_come == 1 ? 25 : 450;
  return 400 + 4 * hands + groups * (70 + 5 * classes);
}

class BoardsWork final : public TwoRangesWork {
 public:
  explicit BoardsWork(const QuestionPointer& question)
      : TwoRangesWork(question),
        live_(ListOf(question->live())),
        leads_(ChoicesOf(static_cast<int>(live_.size()), LeadOf(*question))),
        leads_a_step_(leads_ == 1 ? 1
                                  : static_cast<std::int64_t>(
                                        std::max(kStepCost / CostOfLead(*question), 1.0))) {}

  const char* name() const override { return "board by board"; }
  std::int64_t steps() const override { return (leads_ + leads_a_step_ - 1) / leads_a_step_; }

 private:
  void Count(std::int64_t step, const TwoTallies& tallies) const override {
    const int to_come = question().to_come();
    const auto live = static_cast<int>(live_.size());
    BoardSweep sweep(BestIsa(), question().rules(), ranges(), question().board());
    if (to_come <= 2) {
      sweep.Count({}, question().live(), to_come);
    } else {
      const std::int64_t first = step * leads_a_step_;
      const std::int64_t last = std::min(first + leads_a_step_, leads_);
      Choice choice(first, live, LeadOf(question()));
      for (std::int64_t i = first; i < last; ++i, choice.MoveToNext()) {
        const auto below = std::span(live_).first(static_cast<std::size_t>(choice.Lowest()));
        sweep.Count(choice.Of(live_), CardSet(below), 2);
      }
    }
    // Cases need no board: they are all added with the first step.
    sweep.AddTo(step == 0 ? ChoicesOf(live - 4, to_come) : 0, tallies);
  }

  std::vector<int> live_;
  std::int64_t leads_;
  std::int64_t leads_a_step_;
};

}  // namespace

std::optional<double> MatchupsCost(const CheckedQuestion& question) {
  if (!IsOfTwoRanges(question) || question.street() != 5 || !question.board().empty() ||
      !question.dead().empty()) {
    return std::nullopt;
  }
  const auto size1 = static_cast<double>(question.players()[0].range.size());
  const auto size2 = static_cast<double>(question.players()[1].range.size());
  return 500 + 10 * (size1 + size2) + 0.06 * size1 * size2;
}

std::unique_ptr<const Work> StartMatchups(const QuestionPointer& question) {
  return std::make_unique<MatchupsWork>(question);
}

std::optional<double> ClassesCost(const CheckedQuestion& question) {
  const bool knows_rules =
      question.board().empty() || DeckOf(question.rules()) != Deck::kShortStraights;
  const bool knows_board = question.board().empty() || question.board().size() >= 3;
  const bool dead = !question.dead().empty();
  if (!IsOfTwoRanges(question) || !knows_rules || !knows_board ||
      (dead && !question.board().empty()) || question.to_come() == 0) {
    return std::nullopt;
  }
  const std::span<const Side> players = question.players();
  const int classes = ClassesIn(players.first(1)) * ClassesIn(players.last(1));
  const auto pairs = static_cast<double>(players[0].range.size() * players[1].range.size());
  return question.board().empty() ? 1000 + 1500.0 * classes + 4 * pairs
                                  : 1000 + 60.0 * classes + 3 * pairs;
}

std::unique_ptr<const Work> StartClasses(const QuestionPointer& question) {
  return std::make_unique<ClassesWork>(question);
}

std::optional<double> BoardsCost(const CheckedQuestion& question) {
  if (!IsOfTwoRanges(question)) return std::nullopt;
  return static_cast<double>(ChoicesOf(question.live().size(), LeadOf(question))) *
         CostOfLead(question);
}

std::unique_ptr<const Work> StartBoards(const QuestionPointer& question) {
  return std::make_unique<BoardsWork>(question);
}

}  // namespace pokermath
