#include "cli/equity_answer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>

#include "equity/kernels/trials.h"
#include "ranges/hand_classes.h"

namespace pokermath::cli {
namespace {

using Clock = std::chrono::steady_clock;

// Uniform cards of a deck that depend on the seed alone, not on the standard library in use: D.
// Lemire, "Fast Random Integer Generation in an Interval" (2019), on halves of 64 random bits.
class CardDraw {
 public:
  CardDraw(std::uint64_t seed, bool short_deck)
      : engine_(seed), lowest_(short_deck ? kLowestShortDeckRank : 0) {}

  int operator()() {
    const auto ranks = static_cast<std::uint32_t>(13 - lowest_);
    const std::uint32_t cards = 4 * ranks;
    // 2^32 is no multiple of the cards: so many of the 2^32 numbers are drawn again.
    const auto surplus = static_cast<std::uint32_t>((std::uint64_t{1} << 32) % cards);
    std::uint64_t product = std::uint64_t{Half()} * cards;
    while (static_cast<std::uint32_t>(product) < surplus) product = std::uint64_t{Half()} * cards;
    const auto number = static_cast<std::uint32_t>(product >> 32);
    return static_cast<int>(number / ranks * 13 + number % ranks) + lowest_;
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

// How many trials ended with so many players sharing the pot; 0 is a loss.
using SharerCounts = std::array<std::int64_t, 11>;

EquityAnswer Summarise(const SharerCounts& counts) {
  EquityAnswer answer;
  double sum = 0;
  double sum_of_squares = 0;
  for (std::size_t sharers = 0; sharers < counts.size(); ++sharers) {
    answer.cases += counts[sharers];
    if (sharers == 0) continue;
    (sharers == 1 ? answer.wins : answer.ties) += counts[sharers];
    const double share = 1.0 / static_cast<double>(sharers);
    sum += share * static_cast<double>(counts[sharers]);
    sum_of_squares += share * share * static_cast<double>(counts[sharers]);
  }
  const auto trials = static_cast<double>(answer.cases);
  answer.equity = sum / trials;
  const double variance = std::max(0.0, sum_of_squares / trials - answer.equity * answer.equity);
  answer.standard_error = std::sqrt(variance / trials);
  return answer;
}

Tally CountAgainst(const EquityQuestion& question, const Spec& range) {
  return question.short_deck
             ? ShortDeckHandVsRange(question.hand, range, question.board, question.street)
             : HoldemHandVsRange(question.hand, range, question.board, question.street);
}

Tally CountAgainst(const EquityQuestion& question, const std::array<int, 2>& hand) {
  return question.short_deck
             ? ShortDeckHandVsHand(question.hand, hand, question.board, question.street)
             : HoldemHandVsHand(question.hand, hand, question.board, question.street);
}

int EvaluateSevenShort(const int* cards) { return EvaluateShortDeck(cards, 7); }

// Deals on until all trials are done or go_on says no.
template <typename Deals>
std::int64_t DealTrials(const EquityQuestion& question, SharerCounts& counts,
                        const std::function<bool(std::int64_t)>& go_on) {
  constexpr std::int64_t kBetweenCalls = 50000;
  Deals trials(question.hand, question.board, question.players);
  CardDraw draw(question.seed, question.short_deck);
  std::int64_t done = 0;
  do {
    const std::int64_t end = std::min(question.trials, done + kBetweenCalls);
    for (; done < end; ++done) ++counts[static_cast<std::size_t>(trials.Deal(draw))];
  } while (done < question.trials && go_on(done));
  return done;
}

}  // namespace

EquityAnswer Count(const EquityQuestion& question) {
  const Clock::time_point start = Clock::now();
  const Tally tally = question.range ? CountAgainst(question, *question.range)
                                     : CountAgainst(question, *question.opponent);
  EquityAnswer answer;
  answer.wins = tally.wins;
  answer.ties = tally.ties;
  answer.cases = tally.cases;
  answer.equity = tally.Equity();
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
  SharerCounts counts = {};
  const std::int64_t done = question.short_deck
                                ? DealTrials<Trials<2, EvaluateSevenShort>>(question, counts, go_on)
                                : DealTrials<HoldemTrials>(question, counts, go_on);
  EquityAnswer answer = Summarise(counts);
  answer.interrupted = done < question.trials;
  answer.elapsed = Clock::now() - start;
  return answer;
}

}  // namespace pokermath::cli
