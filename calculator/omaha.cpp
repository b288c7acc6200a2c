// Omaha: hands against each other, a hand against every other one, and a hand against a range. Only
// totals, to the river where several hands meet.

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "cards/omaha_sizes.h"
#include "kernels/omaha_before_flop.h"
#include "kernels/omaha_cliques.h"
#include "kernels/omaha_matchup.h"
#include "kernels/omaha_range.h"

namespace pokermath {
namespace {

// Totals, and where everybody has one hand, hands.
bool AsksForTotals(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  return !detail.next && !detail.made &&
         (!detail.hands || std::ranges::all_of(question.players(), &Side::IsOneHand));
}

// Adds what one player's tally says, the cases not among it.
void AddOutcome(const HighLowTally& tally, Int128 weight, OutcomePlace place,
                std::span<Int128> sums) {
  sums[place.wins()] += weight * tally.scoops;
  sums[place.ties()] += weight * (tally.boards - tally.scoops - tally.losses);
  for (std::size_t k = 0; k < kMostPlayers; ++k) {
    const int sharers = static_cast<int>(k) + 1;
    const Int128 low = weight * tally.low[k] * (kHalfPot / sharers);
    sums[place.low()] += low;
    sums[place.points()] += weight * tally.whole[k] * (kPot / sharers) +
                            weight * tally.high[k] * (kHalfPot / sharers) + low;
  }
}

// The same of a player, and of his hand where it is the only one.
void AddPlayer(const CheckedQuestion& question, std::size_t player, const HighLowTally& tally,
               Int128 weight, std::span<Int128> sums) {
  const SumsLayout layout(question);
  AddOutcome(tally, weight, layout.Total(player), sums);
  for (std::size_t k = 0; k < kMostPlayers; ++k) {
    sums[layout.Shared(player, k)] += weight * (tally.whole[k] + tally.high[k]);
    sums[layout.LowShared(player, k)] += weight * tally.low[k];
  }
  if (!question.asked().detail.hands || !question.players()[player].IsOneHand()) return;
  const std::size_t cases = layout.HandCases(player, 0);
  sums[cases] += weight * tally.boards;
  AddOutcome(tally, weight, SumsLayout::OutcomeOf(cases), sums);
}

// A game without lows in the same words.
HighLowTally HighOf(const SharedTally& tally) {
  HighLowTally high{.boards = tally.boards, .whole = tally.shared, .scoops = tally.shared[0]};
  high.losses = tally.boards;
  for (const std::int64_t boards : tally.shared) high.losses -= boards;
  return high;
}
HighLowTally HighOf(const Tally& tally) {
  SharedTally shared{.boards = tally.cases};
  shared.shared[0] = tally.wins;
  shared.shared[1] = tally.ties;
  return HighOf(shared);
}

// Of two players the other one's tally.
HighLowTally Mirrored(const HighLowTally& tally) {
  const auto others = [](std::int64_t all, const auto& counts) {
    auto mirrored = counts;
    mirrored[0] = all - counts[0] - counts[1];
    return mirrored;
  };
  return {.boards = tally.boards,
          .whole = others(tally.boards - tally.lows, tally.whole),
          .high = others(tally.lows, tally.high),
          .low = others(tally.lows, tally.low),
          .scoops = tally.losses,
          .losses = tally.scoops,
          .lows = tally.lows};
}

class OmahaWork : public Work {
 public:
  Method method() const final { return Method::kExact; }

 protected:
  explicit OmahaWork(const QuestionPointer& question)
      : question_(question),
        layout_(*question),
        board_(ListOf(question->board())),
        dead_(ListOf(question->dead())) {}

  const CheckedQuestion& question() const { return *question_; }
  const SumsLayout& layout() const { return layout_; }
  std::span<const int> board() const { return board_; }
  std::span<const int> dead() const { return dead_; }

  // Adds a tally of two players, `weight` times.
  void AddBoth(std::size_t hero, const HighLowTally& tally, Int128 weight,
               std::span<Int128> sums) const {
    sums[SumsLayout::kCases] += weight * tally.boards;
    AddPlayer(*question_, hero, tally, weight, sums);
    AddPlayer(*question_, 1 - hero, Mirrored(tally), weight, sums);
  }

 private:
  QuestionPointer question_;
  SumsLayout layout_;
  std::vector<int> board_, dead_;
};

// --- hands against each other: a step is one of them against the others ---

class OmahaHandsWork final : public OmahaWork {
 public:
  explicit OmahaHandsWork(const QuestionPointer& question) : OmahaWork(question) {}

  const char* name() const override { return "Omaha hands"; }
  std::int64_t steps() const override {
    return static_cast<std::int64_t>(question().players().size());
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const auto hero = static_cast<std::size_t>(step);
    const std::vector<Side>& players = question().players();
    std::vector<int> cards = ListOf(players[hero].range.hands()[0].cards);
    for (std::size_t i = 0; i < players.size(); ++i) {
      if (i == hero) continue;
      const std::vector<int> hand = ListOf(players[i].range.hands()[0].cards);
      cards.insert(cards.end(), hand.begin(), hand.end());
    }
    const GameRules& rules = question().rules();
    const HighLowTally tally =
        rules.high_low
            ? CountHighLowMatchup(BestIsa(), cards, rules.hand_size, dead(), board())
            : HighOf(CountOmahaMatchup(BestIsa(), cards, rules.hand_size, dead(), board()));
    AddPlayer(question(), hero, tally, 1, sums);
    if (hero == 0) sums[SumsLayout::kCases] += tally.boards;
  }
};

double BoardsOf(const CheckedQuestion& question) {
  return static_cast<double>(ChoicesOf(question.live().size(), question.to_come()));
}

// --- a hand against every hand, or against a range ---

std::size_t HeroOf(const CheckedQuestion& question) {
  return question.players()[0].IsOneHand() ? 0 : 1;
}

// A step is some classes of boards.
class OmahaAgainstEveryWork final : public OmahaWork {
 public:
  explicit OmahaAgainstEveryWork(const QuestionPointer& question)
      : OmahaWork(question),
        hero_(HeroOf(*question)),
        hand_(ListOf(question->players()[hero_].range.hands()[0].cards)),
        contests_(BestIsa(), hand_, board(), question->asked().street, dead()) {}

  const char* name() const override { return "an Omaha hand against every hand"; }
  std::int64_t steps() const override {
    return (contests_.classes() + kClassesAStep - 1) / kClassesAStep;
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    if (question().rules().high_low) {
      AddBoth(hero_, Count<HighLowTally>(step), 1, sums);
    } else {
      AddBoth(hero_, HighOf(Count<Tally>(step)), 1, sums);
    }
  }

 private:
  static constexpr std::int64_t kClassesAStep = 1024;

  template <typename Result>
  Result Count(std::int64_t step) const {
    const std::int64_t first = step * kClassesAStep;
    Result result;
    contests_.Count(first, std::min(first + kClassesAStep, contests_.classes()), result);
    return result;
  }

  std::size_t hero_;
  std::vector<int> hand_;
  OmahaAgainstAll contests_;
};

// A step is some blocks of boards.
template <int cards>
class OmahaAgainstRangeWork final : public OmahaWork {
 public:
  explicit OmahaAgainstRangeWork(const QuestionPointer& question)
      : OmahaWork(question), hero_(HeroOf(*question)), contest_(ContestOf(*question)) {
    const double a_step =
        kStepCost / CostOfRange(*question) * static_cast<double>(contest_.blocks());
    blocks_a_step_ = static_cast<std::int64_t>(std::clamp(a_step, 1.0, 1e6));
  }

  /// Of all boards.
  static double CostOfRange(const CheckedQuestion& question) {
    const auto hands = static_cast<double>(question.players()[1 - HeroOf(question)].range.size());
    return BoardsOf(question) * (500 + hands / 10);
  }

  const char* name() const override { return "an Omaha hand against a range"; }
  std::int64_t steps() const override {
    return (contest_.blocks() + blocks_a_step_ - 1) / blocks_a_step_;
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const std::int64_t first = step * blocks_a_step_;
    const std::int64_t last = std::min(first + blocks_a_step_, contest_.blocks());
    // The first step has the cases of all, so that losses of the others are below 0.
    AddBoth(hero_, HighOf(contest_.Count(BestIsa(), first, last)), 1, sums);
  }

 private:
  static OmahaRangeContest<cards> ContestOf(const CheckedQuestion& question) {
    const Side& range = question.players()[1 - HeroOf(question)];
    std::vector<typename OmahaRangeContest<cards>::Hand> hands;
    std::vector<int> weights;
    for (const WeightedHand& hand : range.range.hands()) {
      std::ranges::copy(hand.cards, hands.emplace_back().begin());
      weights.push_back(hand.weight / range.unit);
    }
    const CardSet hero = question.players()[HeroOf(question)].range.hands()[0].cards;
    return OmahaRangeContest<cards>(ListOf(hero), hands, ListOf(question.board()),
                                    question.asked().street, ListOf(question.dead()), weights);
  }

  std::size_t hero_;
  OmahaRangeContest<cards> contest_;
  std::int64_t blocks_a_step_ = 1;
};

// --- a hand against a range before the flop, every hand of it: a step is some hands ---

class OmahaBeforeFlopWork final : public OmahaWork {
 public:
  explicit OmahaBeforeFlopWork(const QuestionPointer& question)
      : OmahaWork(question),
        hero_(HeroOf(*question)),
        contest_(BestIsa(), question->players()[hero_].range.hands()[0].cards, question->dead(),
                 question->rules().high_low) {
    const Side& side = question->players()[1 - hero_];
    std::vector<CardSet> cards;
    for (const WeightedHand& hand : side.range.hands()) cards.push_back(hand.cards);
    // Classes together as far as a step has room.
    double room = 0;
    for (std::vector<std::size_t>& hands : AlikeByRanks(cards)) {
      const double cost = CostOfClass(*question, static_cast<double>(hands.size()));
      if (cost > room) {
        room = kStepCost;
        steps_.emplace_back();
      }
      room -= cost;
      steps_.back().push_back(std::move(hands));
    }
  }

  // What a class takes for its ranks, for the sets of them that hands have of a suit, most of which
  // are met early, and for hands.
  static double CostOfClass(const CheckedQuestion& question, double hands) {
    constexpr std::array kMost = {50, 120, 250};
    static_assert(kMost.size() == kOmahaHandSizes.size());
    const double most = kMost[static_cast<std::size_t>(question.rules().hand_size) - 4];
    return (question.rules().high_low ? 2 : 1) * (1e4 + 2e3 * std::min(hands, most)) + 100 * hands;
  }

  const char* name() const override { return "an Omaha hand against a range before the flop"; }
  std::int64_t steps() const override { return static_cast<std::int64_t>(steps_.size()); }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const Side& side = question().players()[1 - hero_];
    OmahaDuel all;
    for (const std::vector<std::size_t>& hands : steps_[static_cast<std::size_t>(step)]) {
      std::vector<CardSet> cards;
      for (const std::size_t hand : hands) cards.push_back(side.range.hands()[hand].cards);
      const std::vector<OmahaDuel> duels = contest_.Count(cards);
      for (std::size_t i = 0; i < hands.size(); ++i) {
        const int weight = side.range.hands()[hands[i]].weight / side.unit;
        for (std::size_t state = 0; state < kLowStates; ++state) {
          all.wins[state] += weight * duels[i].wins[state];
          all.ties[state] += weight * duels[i].ties[state];
          all.boards[state] += weight * duels[i].boards[state];
        }
        if (question().asked().detail.hands && !side.IsOneHand()) {
          const HighLowTally tally = Mirrored(duels[i].Tally());
          const std::size_t cases = layout().HandCases(1 - hero_, hands[i]);
          sums[cases] += Int128{weight} * tally.boards;
          AddOutcome(tally, weight, SumsLayout::OutcomeOf(cases), sums);
        }
      }
    }
    AddBoth(hero_, all.Tally(), 1, sums);
  }

 private:
  std::size_t hero_;
  OmahaBeforeFlop contest_;
  std::vector<std::vector<std::vector<std::size_t>>> steps_;  // [step][class]: places of hands
};

bool IsOmahaAgainstOne(const CheckedQuestion& question) {
  return question.rules().IsOmaha() && question.players().size() == 2 &&
         question.folded().empty() && question.players()[HeroOf(question)].IsOneHand();
}

bool IsOmahaOfTwo(const CheckedQuestion& question) {
  return IsOmahaAgainstOne(question) && AsksForTotals(question);
}

}  // namespace

std::optional<double> OmahaHandsCost(const CheckedQuestion& question) {
  const std::size_t known = static_cast<std::size_t>(question.board().size());
  if (!question.rules().IsOmaha() || !question.folded().empty() || !AsksForTotals(question) ||
      !std::ranges::all_of(question.players(), &Side::IsOneHand) || question.street() != 5 ||
      known == 1 || known == 2) {
    return std::nullopt;
  }
  // Tables of each hand in turn and of the others, and then boards many at a time.
  const double of_hand = 8000 + 0.06 * BoardsOf(question);
  return 2000 + static_cast<double>(question.players().size()) * of_hand *
                    (question.rules().high_low ? 3 : 1);
}

std::unique_ptr<const Work> StartOmahaHands(const QuestionPointer& question) {
  return std::make_unique<OmahaHandsWork>(question);
}

std::optional<double> OmahaAgainstEveryCost(const CheckedQuestion& question) {
  if (!IsOmahaOfTwo(question) || !question.players()[1 - HeroOf(question)].range.IsEvery()) {
    return std::nullopt;
  }
  // Many boards are alike; with four cards it takes 0.4 s before the flop.
  const double boards = 500 + BoardsOf(question) * (question.board().empty() ? 80 : 400);
  constexpr double kBySize[] = {1, 3, 8};
  static_assert(std::size(kBySize) == kOmahaHandSizes.size());
  return boards * kBySize[question.rules().hand_size - kOmahaHandSizes[0]] *
         (question.rules().high_low ? 3 : 1);
}

std::unique_ptr<const Work> StartOmahaAgainstEvery(const QuestionPointer& question) {
  return std::make_unique<OmahaAgainstEveryWork>(question);
}

std::optional<double> OmahaBeforeFlopCost(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  if (!IsOmahaAgainstOne(question) || detail.next || detail.made || !question.board().empty() ||
      question.street() != 5) {
    return std::nullopt;
  }
  const auto hands = static_cast<double>(question.players()[1 - HeroOf(question)].range.size());
  // Of strong hands some twenty have the same ranks, and these are so many at the most.
  const int size = question.rules().hand_size;
  const double classes =
      std::clamp(hands / 20, 1.0, static_cast<double>(ChoicesOf(12 + size, size)));
  return 1e6 + classes * OmahaBeforeFlopWork::CostOfClass(question, hands / classes);
}

std::unique_ptr<const Work> StartOmahaBeforeFlop(const QuestionPointer& question) {
  return std::make_unique<OmahaBeforeFlopWork>(question);
}

std::optional<double> OmahaAgainstRangeCost(const CheckedQuestion& question) {
  if (!IsOmahaOfTwo(question) || question.rules().high_low) return std::nullopt;
  return OmahaAgainstRangeWork<4>::CostOfRange(question);
}

std::unique_ptr<const Work> StartOmahaAgainstRange(const QuestionPointer& question) {
  return ForOmahaSize(question->rules().hand_size, [&](auto cards) -> std::unique_ptr<const Work> {
    return std::make_unique<OmahaAgainstRangeWork<cards>>(question);
  });
}

}  // namespace pokermath
