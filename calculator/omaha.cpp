// Omaha: hands against each other, a hand against every other one, and a hand against a range. Only
// totals, to the river where several hands meet.

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "kernels/omaha_cliques.h"
#include "kernels/omaha_matchup.h"
#include "kernels/omaha_range.h"

namespace pokermath {
namespace {

bool AsksForTotals(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  return !detail.hands && !detail.next && !detail.made;
}

// Adds what one player's tally says, the cases not among it.
void AddPlayer(const SumsLayout& layout, std::size_t player, const HighLowTally& tally,
               std::span<Int128> sums) {
  const OutcomePlace total = layout.Total(player);
  sums[total.wins()] += tally.scoops;
  sums[total.ties()] += tally.boards - tally.scoops - tally.losses;
  for (std::size_t k = 0; k < kMostPlayers; ++k) {
    const int sharers = static_cast<int>(k) + 1;
    const Int128 low = Int128{tally.low[k]} * (kHalfPot / sharers);
    sums[total.low()] += low;
    sums[total.points()] += Int128{tally.whole[k]} * (kPot / sharers) +
                            Int128{tally.high[k]} * (kHalfPot / sharers) + low;
    sums[layout.Shared(player, k)] += tally.whole[k] + tally.high[k];
    sums[layout.LowShared(player, k)] += tally.low[k];
  }
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
    std::vector<Int128> once(layout_.size());
    once[SumsLayout::kCases] = tally.boards;
    AddPlayer(layout_, hero, tally, once);
    AddPlayer(layout_, 1 - hero, Mirrored(tally), once);
    for (std::size_t i = 0; i < once.size(); ++i) sums[i] += weight * once[i];
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
    AddPlayer(layout(), hero, tally, sums);
    if (hero == 0) sums[SumsLayout::kCases] += tally.boards;
  }
};

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

// A step is the hands of one weight.
template <int cards>
class OmahaAgainstRangeWork final : public OmahaWork {
 public:
  explicit OmahaAgainstRangeWork(const QuestionPointer& question) : OmahaWork(question) {
    const Side& range = question->players()[1 - HeroOf(*question)];
    std::map<int, Hands> by_weight;
    for (const WeightedHand& hand : range.range.hands()) {
      auto& place = by_weight[hand.weight / range.unit].emplace_back();
      std::ranges::copy(hand.cards, place.begin());
    }
    by_weight_.assign(by_weight.begin(), by_weight.end());
  }

  const char* name() const override { return "an Omaha hand against a range"; }
  std::int64_t steps() const override { return static_cast<std::int64_t>(by_weight_.size()); }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const auto& [weight, hands] = by_weight_[static_cast<std::size_t>(step)];
    const std::size_t hero = HeroOf(question());
    const std::vector<int> hand = ListOf(question().players()[hero].range.hands()[0].cards);
    const OmahaRangeContest<cards> contest(hand, hands, board(), question().asked().street, dead());
    AddBoth(hero, HighOf(contest.Count(BestIsa())), weight, sums);
  }

 private:
  using Hands = std::vector<typename OmahaRangeContest<cards>::Hand>;
  std::vector<std::pair<int, Hands>> by_weight_;
};

bool IsOmahaOfTwo(const CheckedQuestion& question) {
  return question.rules().IsOmaha() && question.players().size() == 2 &&
         question.folded().empty() && AsksForTotals(question) &&
         question.players()[HeroOf(question)].IsOneHand();
}

double BoardsOf(const CheckedQuestion& question) {
  return static_cast<double>(ChoicesOf(question.live().size(), question.to_come()));
}

}  // namespace

std::optional<double> OmahaHandsCost(const CheckedQuestion& question) {
  const std::size_t known = static_cast<std::size_t>(question.board().size());
  if (!question.rules().IsOmaha() || !question.folded().empty() || !AsksForTotals(question) ||
      !std::ranges::all_of(question.players(), &Side::IsOneHand) || question.street() != 5 ||
      known == 1 || known == 2) {
    return std::nullopt;
  }
  return 1e5 + BoardsOf(question) * static_cast<double>(question.players().size());
}

std::unique_ptr<const Work> StartOmahaHands(const QuestionPointer& question) {
  return std::make_unique<OmahaHandsWork>(question);
}

std::optional<double> OmahaAgainstEveryCost(const CheckedQuestion& question) {
  if (!IsOmahaOfTwo(question) || !question.players()[1 - HeroOf(question)].range.IsEvery()) {
    return std::nullopt;
  }
  // Many boards are alike; 0.4 s before the flop and three times as much with five cards.
  const double boards = 500 + BoardsOf(question) * (question.board().empty() ? 80 : 400);
  return boards * (question.rules().hand_size == 4 ? 1 : 3) * (question.rules().high_low ? 3 : 1);
}

std::unique_ptr<const Work> StartOmahaAgainstEvery(const QuestionPointer& question) {
  return std::make_unique<OmahaAgainstEveryWork>(question);
}

std::optional<double> OmahaAgainstRangeCost(const CheckedQuestion& question) {
  if (!IsOmahaOfTwo(question) || question.rules().high_low) return std::nullopt;
  // The boards are gone through once for each weight.
  const HandRange& range = question.players()[1 - HeroOf(question)].range;
  double weights = 1;
  if (!range.IsEvery()) {
    std::set<int> different;
    for (const WeightedHand& hand : range.hands()) different.insert(hand.weight);
    weights = static_cast<double>(different.size());
  }
  return BoardsOf(question) * (500 * weights + static_cast<double>(range.size()) / 10);
}

std::unique_ptr<const Work> StartOmahaAgainstRange(const QuestionPointer& question) {
  if (question->rules().hand_size == 4) {
    return std::make_unique<OmahaAgainstRangeWork<4>>(question);
  }
  return std::make_unique<OmahaAgainstRangeWork<5>>(question);
}

}  // namespace pokermath
