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

// Uniform numbers 0..51 that depend on the seed alone, not on the standard library in use: D.
// Lemire, "Fast Random Integer Generation in an Interval" (2019), on halves of 64 random bits.
class CardDraw {
 public:
  explicit CardDraw(std::uint64_t seed) : engine_(seed) {}

  int operator()() {
    // 2^32 is no multiple of 52: so many of the 2^32 numbers are drawn again.
    constexpr std::uint32_t kSurplus = static_cast<std::uint32_t>((std::uint64_t{1} << 32) % 52);
    std::uint64_t product = std::uint64_t{Half()} * 52;
    while (static_cast<std::uint32_t>(product) < kSurplus) product = std::uint64_t{Half()} * 52;
    return static_cast<int>(product >> 32);
  }

 private:
  std::uint32_t Half() {
    const std::uint64_t bits = have_half_ ? bits_ >> 32 : bits_ = engine_();
    have_half_ = !have_half_;
    return static_cast<std::uint32_t>(bits);
  }

  std::mt19937_64 engine_;
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

}  // namespace

EquityAnswer Count(const EquityQuestion& question) {
  const Clock::time_point start = Clock::now();
  const Tally tally =
      question.range
          ? HoldemHandVsRange(question.hand, *question.range, question.board, question.street)
          : HoldemHandVsHand(question.hand, *question.opponent, question.board, question.street);
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
    answers.push_back(
        {cell, static_cast<std::int64_t>(holdings.combinations().size()),
         HoldemHandVsRange(question.hand, holdings, question.board, question.street)});
  }
  std::ranges::stable_sort(answers, {},
                           [](const ClassAnswer& answer) { return answer.tally.Equity(); });
  return answers;
}

EquityAnswer Sample(const EquityQuestion& question,
                    const std::function<bool(std::int64_t)>& go_on) {
  constexpr std::int64_t kBetweenCalls = 50000;
  const Clock::time_point start = Clock::now();
  HoldemTrials trials(question.hand, question.board, question.players);
  CardDraw draw(question.seed);
  SharerCounts counts = {};
  std::int64_t done = 0;
  do {
    const std::int64_t end = std::min(question.trials, done + kBetweenCalls);
    for (; done < end; ++done) ++counts[static_cast<std::size_t>(trials.Deal(draw))];
  } while (done < question.trials && go_on(done));
  EquityAnswer answer = Summarise(counts);
  answer.interrupted = done < question.trials;
  answer.elapsed = Clock::now() - start;
  return answer;
}

}  // namespace pokermath::cli
