// Two players with two cards each: three kernels that give a tally for every hand of both.
//
// From the table of all matchups: Hold'em before the flop to the river, where nothing is dead. By
// classes, every pair of hands: before the flop, and with one or two cards to come where nothing is
// dead. By boards, all hands at once on every board that can come, whatever is dead.
//
// What they make is counted by boards as well, with tallies for every category of every hand; and
// once more as if all hands tied, which says how many cases there are of each.

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <vector>

#include "calculator/board_questions.h"
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

bool IsOfTwoPlayers(const CheckedQuestion& question) {
  return question.rules().hand_size == 2 && question.players().size() == 2 &&
         question.folded().empty();
}

// Whether only their totals and hands are asked for.
bool IsOfTwoRanges(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  return IsOfTwoPlayers(question) && !detail.next && !detail.made;
}

Deck DeckOf(const GameRules& rules) {
  return !rules.IsShortDeck()        ? Deck::kFull
         : rules.straight_over_trips ? Deck::kShortStraights
                                     : Deck::kShort;
}

template <typename Number>
void AddOutcome(OutcomePlace place, Number wins, Number ties, std::span<Int128> sums) {
  sums[place.wins()] += wins;
  sums[place.ties()] += ties;
  sums[place.points()] += Int128{kHalfPot} * (2 * wins + ties);
}

// What all kinds of work for totals share: the hands, and how their tallies become sums. Where only
// totals are asked for, the tallies of one range say all, and those of the smaller one say it
// soonest.
class TwoRangesWork : public Work {
 public:
  Method method() const final { return Method::kExact; }

  void Do(std::int64_t step, std::span<Int128> sums) const final {
    std::vector<Tally> tallies1(hands1_.size()), tallies2(by_hand() ? hands2_.size() : 0);
    Count(step, {tallies1, tallies2});
    const Total total = AddHands(first_, hands1_, tallies1, sums);
    sums[SumsLayout::kCases] += total.cases;
    AddTotal(first_, total.wins, total.ties, sums);
    AddTotal(1 - first_, total.cases - total.wins - total.ties, total.ties, sums);
    if (by_hand()) AddHands(1 - first_, hands2_, tallies2, sums);
  }

 protected:
  explicit TwoRangesWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        first_(FirstOf(*question)),
        hands1_(PairsOf(question->players()[first_])),
        hands2_(PairsOf(question->players()[1 - first_])) {}

  const CheckedQuestion& question() const { return *question_; }
  TwoRanges ranges() const { return {hands1_, hands2_}; }
  bool by_hand() const { return question_->asked().detail.hands; }

 private:
  struct Total {
    Int128 wins = 0, ties = 0, cases = 0;
  };

  virtual void Count(std::int64_t step, const TwoTallies& tallies) const = 0;

  static std::size_t FirstOf(const CheckedQuestion& question) {
    const std::vector<Side>& players = question.players();
    return players[1].range.size() < players[0].range.size() ? 1 : 0;
  }

  Total AddHands(std::size_t player, std::span<const WeightedPair> hands,
                 std::span<const Tally> tallies, std::span<Int128> sums) const {
    Total total;
    for (std::size_t i = 0; i < hands.size(); ++i) {
      const Tally& tally = tallies[i];
      const std::int64_t weight = hands[i].weight;
      const std::int64_t of_wins = weight * tally.wins;
      const std::int64_t of_ties = weight * tally.ties;
      const std::int64_t of_cases = weight * tally.cases;
      total.wins += of_wins;
      total.ties += of_ties;
      total.cases += of_cases;
      if (!by_hand()) continue;
      const std::size_t cell = layout_.HandCases(player, i);
      sums[cell] += of_cases;
      AddOutcome(SumsLayout::OutcomeOf(cell), of_wins, of_ties, sums);
    }
    return total;
  }

  void AddTotal(std::size_t player, Int128 wins, Int128 ties, std::span<Int128> sums) const {
    AddOutcome(layout_.Total(player), wins, ties, sums);
    sums[layout_.Shared(player, 0)] += wins;
    sums[layout_.Shared(player, 1)] += ties;
  }

  // A hand against all others on all boards, weights and all; twice that is added up.
  static_assert(ChoicesOf(50, 5) < (std::int64_t{1} << 62) / 1326 / kWholeWeight / kWholeWeight);

  QuestionPointer question_;
  SumsLayout layout_;
  std::size_t first_;  // the player whose hands come first
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
  // By the lower rank, a bit for each higher one, and its own for the pair.
  std::array<unsigned, 14> held{};
  for (const Side& side : sides) {
    for (const WeightedHand& hand : side.range.hands()) {
      const std::uint64_t bits = hand.cards.bits();
      const auto ranks =
          static_cast<unsigned>((bits | bits >> 13 | bits >> 26 | bits >> 39) & kAllRanks);
      const unsigned higher = ranks & (ranks - 1);
      held[static_cast<std::size_t>(std::countr_zero(ranks | 1u << 13))] |=
          higher != 0 ? higher : ranks;
    }
  }
  int classes = 0;
  for (const unsigned ranks : held) classes += std::popcount(ranks);
  return classes;
}

RankClassSet ClassesOf(const TwoRanges& ranges) {
  RankClassSet classes;
  for (const auto hands : {ranges.hands1, ranges.hands2}) {
    for (const auto& [card1, card2, weight] : hands) {
      classes.set(static_cast<std::size_t>(RankClassOf(card1 % 13, card2 % 13)));
    }
  }
  return classes;
}

class ClassesWork final : public TwoRangesWork {
 public:
  explicit ClassesWork(const QuestionPointer& question)
      : TwoRangesWork(question), matchups_(CountsOf(*question), ranges()) {
    // A class alone is mostly too little for a step, which adds up all hands.
    constexpr double kClassesCost = kStepCost / 8;
    const auto classes = static_cast<double>(matchups_.steps());
    steps_ =
        static_cast<std::int64_t>(std::clamp(*ClassesCost(*question) / kClassesCost, 1.0, classes));
  }

  const char* name() const override { return "classes of hands"; }
  std::int64_t steps() const override { return steps_; }

 private:
  void Count(std::int64_t step, const TwoTallies& tallies) const override {
    const auto classes = static_cast<std::int64_t>(matchups_.steps());
    for (std::int64_t i = classes * step / steps_; i < classes * (step + 1) / steps_; ++i) {
      matchups_.Count(static_cast<std::size_t>(i), tallies);
    }
  }

  const ShowdownCounts& CountsOf(const CheckedQuestion& question) {
    const Deck deck = DeckOf(question.rules());
    const Street street = question.asked().street;
    if (!question.board().empty()) {
      counts_ = std::make_unique<Runouts>(BestIsa(), deck, ListOf(question.board()),
                                          question.street(), ClassesOf(ranges()));
    } else if (!question.dead().empty()) {
      counts_ = EmptyBoardCountsWithout(question.dead(), BestIsa(), deck, street);
    } else {
      return EmptyBoardCounts(BestIsa(), deck, street);
    }
    return *counts_;
  }

  std::unique_ptr<const ShowdownCounts> counts_;
  RangeMatchups matchups_;
  std::int64_t steps_;
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

// The boards of a question in steps, for sweeps.
class SweptBoards {
 public:
  explicit SweptBoards(const CheckedQuestion& question)
      : question_(question),
        live_(ListOf(question.live())),
        leads_(ChoicesOf(static_cast<int>(live_.size()), LeadOf(question))),
        leads_a_step_(leads_ == 1 ? 1
                                  : static_cast<std::int64_t>(
                                        std::max(kStepCost / CostOfLead(question), 1.0))) {}

  std::int64_t steps() const { return (leads_ + leads_a_step_ - 1) / leads_a_step_; }
  /// All boards that two hands may see.
  std::int64_t boards() const {
    return ChoicesOf(static_cast<int>(live_.size()) - 4, question_.to_come());
  }

  void Count(std::int64_t step, BoardSweep& sweep) const {
    const int to_come = question_.to_come();
    if (to_come <= 2) {
      sweep.Count({}, question_.live(), to_come);
      return;
    }
    const std::int64_t first = step * leads_a_step_;
    const std::int64_t last = std::min(first + leads_a_step_, leads_);
    Choice choice(first, static_cast<int>(live_.size()), LeadOf(question_));
    for (std::int64_t i = first; i < last; ++i, choice.MoveToNext()) {
      const auto below = std::span(live_).first(static_cast<std::size_t>(choice.Lowest()));
      sweep.Count(choice.Of(live_), CardSet(below), 2);
    }
  }

 private:
  const CheckedQuestion& question_;
  std::vector<int> live_;
  std::int64_t leads_;
  std::int64_t leads_a_step_;
};

class BoardsWork final : public TwoRangesWork {
 public:
  explicit BoardsWork(const QuestionPointer& question)
      : TwoRangesWork(question), boards_(*question) {}

  const char* name() const override { return "board by board"; }
  std::int64_t steps() const override { return boards_.steps(); }

 private:
  void Count(std::int64_t step, const TwoTallies& tallies) const override {
    BoardSweep sweep(BestIsa(), question().rules(), ranges(), question().board(),
                     by_hand() ? SweepOf::kByHand : SweepOf::kFirstByHand);
    boards_.Count(step, sweep);
    // Cases need no board: they are all added with the first step.
    sweep.AddTo(step == 0 ? boards_.boards() : 0, tallies);
  }

  SweptBoards boards_;
};

class MadeOfTwoWork final : public Work {
 public:
  explicit MadeOfTwoWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        hands1_(PairsOf(question->players()[0])),
        hands2_(PairsOf(question->players()[1])),
        boards_(*question) {
    const QuestionPointer totals = WithoutDetail(*question, &Detail::made);
    totals_size_ = SumsLayout(*totals).size();
    totals_ = CheapestFor(*totals).solver->start(totals);
  }

  const char* name() const override { return "what two players make"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override { return totals_->steps() + boards_.steps(); }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    if (step < totals_->steps()) {
      // What is made stands at the end.
      totals_->Do(step, sums.first(totals_size_));
      return;
    }
    const auto sweep_of = [&](SweepOf of) {
      return BoardSweep(BestIsa(), question_->rules(), {hands1_, hands2_}, question_->board(), of);
    };
    BoardSweep made = sweep_of(SweepOf::kByCategory);
    BoardSweep cases = sweep_of(SweepOf::kCasesByCategory);
    for (BoardSweep* sweep : {&made, &cases}) boards_.Count(step - totals_->steps(), *sweep);
    for (int category = 1; category < kCategories; ++category) {
      std::vector<Tally> made1(hands1_.size()), made2(hands2_.size());
      std::vector<Tally> cases1(hands1_.size()), cases2(hands2_.size());
      made.AddTo(0, {made1, made2}, category);
      cases.AddTo(0, {cases1, cases2}, category);
      Add(layout_.MadeCases(0, static_cast<std::size_t>(category)), hands1_, made1, cases1, sums);
      Add(layout_.MadeCases(1, static_cast<std::size_t>(category)), hands2_, made2, cases2, sums);
    }
  }

 private:
  static void Add(std::size_t cell, std::span<const WeightedPair> hands,
                  std::span<const Tally> made, std::span<const Tally> cases,
                  std::span<Int128> sums) {
    Int128 wins = 0, ties = 0, all = 0;
    for (std::size_t i = 0; i < hands.size(); ++i) {
      wins += hands[i].weight * made[i].wins;
      ties += hands[i].weight * made[i].ties;
      all += hands[i].weight * cases[i].ties;
    }
    sums[cell] += all;
    AddOutcome(SumsLayout::OutcomeOf(cell), wins, ties, sums);
  }

  QuestionPointer question_;
  SumsLayout layout_;
  std::vector<WeightedPair> hands1_, hands2_;
  SweptBoards boards_;
  std::unique_ptr<const Work> totals_;
  std::size_t totals_size_ = 0;
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

std::optional<double> MadeOfTwoCost(const CheckedQuestion& question) {
  if (!question.asked().detail.made || !IsOfTwoPlayers(question)) return std::nullopt;
  const SolverChoice totals = CheapestFor(*WithoutDetail(question, &Detail::made));
  if (totals.solver == nullptr) return std::nullopt;
  const auto leads = static_cast<double>(ChoicesOf(question.live().size(), LeadOf(question)));
  // Of each step the tables of all categories are most of it.
  constexpr double kTablesOfClass = 50000;
  const auto steps = static_cast<double>(SweptBoards(question).steps());
  return totals.cost + 3 * leads * CostOfLead(question) +
         kTablesOfClass * steps * ClassesIn(question.players());
}

std::unique_ptr<const Work> StartMadeOfTwo(const QuestionPointer& question) {
  return std::make_unique<MadeOfTwoWork>(question);
}

}  // namespace pokermath
