#include "cli/equity_answer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <random>
#include <span>

#include "cli/errors.h"
#include "equity/kernels/omaha_range.h"
#include "equity/kernels/trials.h"
#include "platform/isa.h"
#include "ranges/hand_classes.h"

namespace pokermath::cli {
namespace {

using Clock = std::chrono::steady_clock;

// Uniform cards of a deck that depend on the seed alone, not on the standard library in use: D.
// Lemire, "Fast Random Integer Generation in an Interval" (2019), on halves of 64 random bits.
class CardDraw {
 public:
  CardDraw(std::uint64_t seed, Game game)
      : engine_(seed), lowest_(game == Game::kShortDeck ? kLowestShortDeckRank : 0) {}

  int operator()() {
    const auto ranks = static_cast<std::uint32_t>(13 - lowest_);
    const std::uint32_t number = Below(4 * ranks);
    return static_cast<int>(number / ranks * 13 + number % ranks) + lowest_;
  }

  std::uint32_t Below(std::uint32_t limit) {
    // 2^32 may be no multiple of the limit: so many of the 2^32 numbers are drawn again.
    const auto surplus = static_cast<std::uint32_t>((std::uint64_t{1} << 32) % limit);
    std::uint64_t product = std::uint64_t{Half()} * limit;
    while (static_cast<std::uint32_t>(product) < surplus) product = std::uint64_t{Half()} * limit;
    return static_cast<std::uint32_t>(product >> 32);
  }

 private:
  std::uint32_t Half() {
    const std::uint64_t bits = have_half_ ? bits_ >> 32 : bits_ = engine_();
    have_half_ = !have_half_;
    return static_cast<std::uint32_t>(bits);
  }

  std::mt19937_64 engine_;
  int lowest_;  // rank
  std::uint64_t bits_ = 0;
  bool have_half_ = false;
};

// How many trials ended in each way.
class TrialCounts {
 public:
  // Of a trial that so many players share, the hand among them; 0 is a loss.
  void Add(int sharers) { Add(HighLowDeal{sharers, 0, false}); }
  void Add(const HighLowDeal& deal) {
    ++counts_[static_cast<std::size_t>(deal.some_low)][static_cast<std::size_t>(deal.high)]
             [static_cast<std::size_t>(deal.low)];
  }

  EquityAnswer Answer() const {
    EquityAnswer answer;
    double sum_of_squares = 0, least = 1, most = 0;
    ForEach([&](const HighLowDeal& deal, std::int64_t count) {
      const double share = deal.Share();
      const auto times = static_cast<double>(count);
      if (count > 0) least = std::min(least, share);
      if (count > 0) most = std::max(most, share);
      answer.cases += count;
      if (share > 0.0) (share < 1.0 ? answer.ties : answer.wins) += count;
      answer.equity += share * times;
      answer.low += deal.LowShare() * times;
      sum_of_squares += share * share * times;
    });
    const auto trials = static_cast<double>(answer.cases);
    answer.equity /= trials;
    answer.low /= trials;
    const double variance = std::max(0.0, sum_of_squares / trials - answer.equity * answer.equity);
    // Samples that are all alike say nothing about their spread.
    if (least < most) answer.standard_error = std::sqrt(variance / trials);
    return answer;
  }

 private:
  static constexpr int kMostSharers = 10;

  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (const bool some_low : {false, true}) {
      for (int high = 0; high <= kMostSharers; ++high) {
        for (int low = 0; low <= kMostSharers; ++low) {
          visit(HighLowDeal{high, low, some_low},
                counts_[static_cast<std::size_t>(some_low)][static_cast<std::size_t>(high)]
                       [static_cast<std::size_t>(low)]);
        }
      }
    }
  }

  std::int64_t counts_[2][kMostSharers + 1][kMostSharers + 1] = {};
};

using TwoCards = std::span<const int, 2>;

Tally CountAgainst(const EquityQuestion& question, const Spec& range) {
  const TwoCards hand(question.hand);
  return question.game == Game::kShortDeck
             ? ShortDeckHandVsRange(hand, range, question.board, question.street)
             : HoldemHandVsRange(hand, range, question.board, question.street);
}

Tally CountAgainst(const EquityQuestion& question, const std::vector<int>& opponent) {
  const TwoCards hand(question.hand);
  const TwoCards other(opponent);
  return question.game == Game::kShortDeck
             ? ShortDeckHandVsHand(hand, other, question.board, question.street)
             : HoldemHandVsHand(hand, other, question.board, question.street);
}

// The answer where there are two players, each of whom loses what the other wins.
EquityAnswer AnswerOf(const Tally& tally) {
  EquityAnswer answer;
  answer.wins = tally.wins;
  answer.ties = tally.ties;
  answer.equity = tally.Equity();
  answer.cases = tally.cases;
  answer.opponents = {{answer.Losses(), answer.ties, 1 - answer.equity}};
  return answer;
}

// How the first of several Omaha hands does.
HandAnswer HandAnswerOf(const EquityQuestion& question, const std::vector<int>& cards,
                        std::int64_t& boards) {
  const auto size = static_cast<int>(HandSize(question.game));
  if (IsHighLow(question.game)) {
    const HighLowTally tally = OmahaHighLowHands(cards, size, question.board, question.dead);
    boards = tally.boards;
    return {tally.scoops, tally.boards - tally.scoops - tally.losses, tally.Equity(),
            tally.LowEquity()};
  }
  const SharedTally tally = OmahaHands(cards, size, question.board, question.dead);
  boards = tally.boards;
  const std::int64_t ties =
      std::accumulate(tally.shared.begin() + 1, tally.shared.end(), std::int64_t{0});
  return {tally.shared[0], ties, tally.Equity()};
}

EquityAnswer CountOmahaHands(const EquityQuestion& question) {
  std::vector<std::vector<int>> hands = {question.hand};
  hands.insert(hands.end(), question.opponents.begin(), question.opponents.end());
  EquityAnswer answer;
  for (std::size_t i = 0; i < hands.size(); ++i) {
    std::vector<int> cards = hands[i];
    for (std::size_t j = 0; j < hands.size(); ++j) {
      if (j != i) cards.insert(cards.end(), hands[j].begin(), hands[j].end());
    }
    HandAnswer& place = i == 0 ? answer : answer.opponents.emplace_back();
    place = HandAnswerOf(question, cards, answer.cases);
  }
  return answer;
}

constexpr const char* kStopped = "stopped before the count was finished: no answer";

EquityAnswer CountOmahaRandom(const EquityQuestion& question, const GoOnCounting& go_on) {
  EquityAnswer answer;
  if (IsHighLow(question.game)) {
    const HighLowTally tally =
        OmahaHighLowVsRandom(question.hand, question.board, question.street, question.dead, go_on);
    answer.cases = tally.boards;
    answer.wins = tally.scoops;
    answer.ties = tally.boards - tally.scoops - tally.losses;
    answer.equity = tally.Equity();
    answer.low = tally.LowEquity();
    const double lows = static_cast<double>(tally.lows) / static_cast<double>(tally.boards);
    answer.opponents = {{tally.losses, answer.ties, 1 - answer.equity, 0.5 * lows - answer.low}};
  } else {
    answer = AnswerOf(
        OmahaHandVsRandom(question.hand, question.board, question.street, question.dead, go_on));
  }
  if (answer.cases == 0) throw Failure(kStopped);
  return answer;
}

template <int cards>
OmahaRangeContest<cards> ContestOf(const EquityQuestion& question, const OmahaSpec<cards>& range) {
  return {question.hand, range.Hands(), question.board, question.street, question.dead};
}

template <int cards>
EquityAnswer CountOmahaRange(const EquityQuestion& question, const OmahaSpec<cards>& range,
                             const GoOnCounting& go_on) {
  const OmahaRangeContest<cards> contest = ContestOf(question, range);
  EquityAnswer answer = AnswerOf(contest.Count(BestIsa(), go_on));
  answer.range_hands = range.Count();
  answer.range_left = std::ssize(contest.hands());
  if (answer.range_left == 0) return answer;
  if (answer.cases == 0) throw Failure(kStopped);
  answer.blocked_boards = contest.CountBlockingBoards();
  return answer;
}

int EvaluateSevenShort(const int* cards) { return EvaluateShortDeck(cards, 7); }

using GoOnSampling = std::function<bool(std::int64_t)>;

// Deals on until all trials are done or go_on says no.
template <typename Deals>
void DealOn(const EquityQuestion& question, Deals trials, TrialCounts& counts,
            const GoOnSampling& go_on) {
  constexpr std::int64_t kBetweenCalls = 1000;
  CardDraw draw(question.seed, question.game);
  std::int64_t done = 0;
  do {
    const std::int64_t end = std::min(question.trials, done + kBetweenCalls);
    for (; done < end; ++done) counts.Add(trials.Deal(draw));
  } while (done < question.trials && go_on(done));
}

template <typename Deals>
void DealTrials(const EquityQuestion& question, TrialCounts& counts, const GoOnSampling& go_on) {
  const typename Deals::Hand hand(question.hand);
  DealOn(question, Deals(hand, question.board, question.players, question.dead), counts, go_on);
}

auto DealTrialsOf(Game game) {
  switch (game) {
    case Game::kShortDeck:
      return DealTrials<Trials<2, EvaluateSevenShort>>;
    case Game::kOmaha:
      return DealTrials<OmahaTrials<4>>;
    case Game::kOmaha5:
      return DealTrials<OmahaTrials<5>>;
    case Game::kOmahaHighLow:
      return DealTrials<HighLowTrials<4>>;
    case Game::kOmaha5HighLow:
      return DealTrials<HighLowTrials<5>>;
    default:
      return DealTrials<HoldemTrials>;
  }
}

template <int cards>
EquityAnswer SampleOmahaRange(const EquityQuestion& question, const OmahaSpec<cards>& range,
                              const GoOnSampling& go_on) {
  using Deals = OmahaRangeTrials<static_cast<std::size_t>(cards)>;
  const std::span<const int, cards> hand(question.hand);
  const std::vector<typename Deals::Hand> left = ContestOf(question, range).hands();
  TrialCounts counts;
  DealOn(question, Deals(hand, left, question.board, question.dead), counts, go_on);
  EquityAnswer answer = counts.Answer();
  answer.range_hands = range.Count();
  answer.range_left = std::ssize(left);
  return answer;
}

EquityAnswer SampleRandomHands(const EquityQuestion& question, const GoOnSampling& go_on) {
  TrialCounts counts;
  DealTrialsOf(question.game)(question, counts, go_on);
  return counts.Answer();
}

}  // namespace

EquityAnswer Count(const EquityQuestion& question, const GoOnCounting& go_on) {
  const Clock::time_point start = Clock::now();
  EquityAnswer answer;
  if (question.range) {
    answer = AnswerOf(CountAgainst(question, *question.range));
  } else if (question.omaha_range) {
    answer = std::visit([&](const auto& range) { return CountOmahaRange(question, range, go_on); },
                        *question.omaha_range);
  } else if (!IsOmaha(question.game)) {
    answer = AnswerOf(CountAgainst(question, question.opponents[0]));
  } else if (question.opponents.empty()) {
    answer = CountOmahaRandom(question, go_on);
  } else {
    answer = CountOmahaHands(question);
  }
  answer.elapsed = Clock::now() - start;
  return answer;
}

std::vector<ClassAnswer> CountByClass(const EquityQuestion& question) {
  std::map<int, Spec> classes;
  const auto is_known = [&](int card) {
    return std::ranges::count(question.hand, card) + std::ranges::count(question.board, card) != 0;
  };
  for (const auto& [first, second] : question.range->combinations()) {
    if (!is_known(first) && !is_known(second)) {
      classes[CellOf(first, second)].Insert(first, second);
    }
  }
  std::vector<ClassAnswer> answers;
  for (const auto& [cell, holdings] : classes) {
    answers.push_back({cell, static_cast<std::int64_t>(holdings.combinations().size()),
                       CountAgainst(question, holdings)});
  }
  std::ranges::stable_sort(answers, {},
                           [](const ClassAnswer& answer) { return answer.tally.Equity(); });
  return answers;
}

EquityAnswer Sample(const EquityQuestion& question,
                    const std::function<bool(std::int64_t)>& go_on) {
  const Clock::time_point start = Clock::now();
  bool out_of_time = false;
  const auto go_on_in_time = [&](std::int64_t done) {
    out_of_time = question.time && Clock::now() - start >= *question.time;
    return !out_of_time && go_on(done);
  };
  EquityAnswer answer =
      question.omaha_range
          ? std::visit(
                [&](const auto& range) { return SampleOmahaRange(question, range, go_on_in_time); },
                *question.omaha_range)
          : SampleRandomHands(question, go_on_in_time);
  answer.out_of_time = out_of_time;
  answer.interrupted = answer.cases < question.trials && !out_of_time;
  answer.elapsed = Clock::now() - start;
  return answer;
}

}  // namespace pokermath::cli
