// The calculator's steps go to threads in the order of their numbers, slice by slice; each thread
// adds to sums of its own. The first step is done alone: what takes microseconds starts no threads.

#include "cli/equity_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <optional>
#include <utility>
#include <vector>

#include "cli/errors.h"
#include "cli/progress.h"
#include "cli/stop_signals.h"

namespace pokermath::cli {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::milliseconds(500);      // before progress is shown
constexpr auto kWorthThreads = std::chrono::microseconds(500);  // work that is shared
constexpr std::int64_t kSliceSteps = 64;                        // a thread

// The player that an error is about, with the words that he was given in.
UsageError Refused(const Error& error, const AskedEquity& asked) {
  const std::string player = fmt::format("player {}", error.player + 1);
  if (error.player < 0 || !error.text.starts_with(player)) return UsageError(error.text);
  return UsageError(fmt::format("{}, {}{}", player,
                                Quoted(asked.players[static_cast<std::size_t>(error.player)]),
                                error.text.substr(player.size())));
}

class Runner {
 public:
  Runner(const AskedEquity& asked, const Calculation& plan, const RunOptions& options)
      : plan_(plan), options_(options), start_(Clock::now()), sums_(plan.NewSums()) {
    if (plan.method() == Method::kSampled) time_ = asked.time;
  }

  EquityRun Run() {
    std::optional<StopSignals> signals;
    std::optional<Progress> progress;
    const bool sampled = plan_.method() == Method::kSampled;
    if (options_.attended) {
      // A single step cannot be left, and nothing of it can be kept.
      if (plan_.steps() > 1) signals.emplace();
      progress.emplace(sampled ? "sampling" : "counting", plan_.steps(),
                       sampled ? "trials" : "steps", kPatience);
    }
    progress_ = progress ? &*progress : nullptr;
    while (!Stopped() && !plan_.Enough(done_, sums_)) {
      const std::int64_t stop = plan_.NextStop(done_);
      while (!Stopped() && done_ < stop) {
        DoSlice(std::min(stop, done_ + (done_ == 0 ? 1 : kSliceSteps * options_.threads)));
      }
    }
    progress.reset();
    Result<EquityAnswer> answer = plan_.Answer(sums_);
    if (!answer) throw Failure(answer.error().text);
    return {*std::move(answer), interrupted_, out_of_time_, Clock::now() - start_};
  }

 private:
  bool Stopped() const { return interrupted_ || out_of_time_; }

  void DoSlice(std::int64_t end) {
    next_ = done_;
    end_ = end;
    per_step_ = done_ == 0 ? 0 : plan_.Cases(sums_).Value() / static_cast<double>(done_);
    part_ = progress_ != nullptr ? plan_.Part(done_, sums_) : 0;
    const bool share = options_.threads > 1 && done_ > 0 &&
                       (Clock::now() - start_) / done_ * (end - done_) > kWorthThreads;
    if (share) {
      DoOnThreads();
    } else {
      DoSteps(sums_, true);
    }
    done_ = end;
  }

  void DoOnThreads() {
    std::vector<std::future<Sums>> others;
    for (int i = 1; i < options_.threads && i < end_ - done_; ++i) {
      others.push_back(std::async(std::launch::async, [this] {
        Sums sums = plan_.NewSums();
        DoSteps(sums, false);
        return sums;
      }));
    }
    DoSteps(sums_, true);
    for (std::future<Sums>& other : others) sums_.Add(other.get());
  }

  // Takes steps until none is left. The first thread looks after signals, time and progress.
  void DoSteps(Sums& sums, bool is_first) {
    for (std::int64_t step = next_++; step < end_; step = next_++) {
      if (is_first) LookUp(step);
      if (interrupted_ || out_of_time_) return;
      plan_.Do(step, step + 1, sums);
    }
  }

  void LookUp(std::int64_t step) {
    if (time_ && step > 0 && Clock::now() - start_ >= *time_) out_of_time_ = true;
    if (!options_.attended) return;
    if (StopRequested()) interrupted_ = true;
    if (step == 0) return;
    const auto begun = static_cast<double>(step);
    double part = std::max(part_, begun / static_cast<double>(plan_.steps()));
    if (time_) part = std::max(part, Seconds(Clock::now() - start_) / Seconds(*time_));
    const bool sampled = plan_.method() == Method::kSampled;
    progress_->Update(sampled ? static_cast<std::int64_t>(begun * per_step_) : step, part);
  }

  const Calculation& plan_;
  const RunOptions& options_;
  Clock::time_point start_;
  Sums sums_;
  std::optional<std::chrono::milliseconds> time_;
  Progress* progress_ = nullptr;
  std::int64_t done_ = 0;
  std::int64_t end_ = 0;
  double per_step_ = 0;  // trials
  double part_ = 0;      // that was done before the slice
  std::atomic<std::int64_t> next_ = 0;
  std::atomic<bool> interrupted_ = false;
  std::atomic<bool> out_of_time_ = false;
};

}  // namespace

EquityRun Run(const AskedEquity& asked, const RunOptions& options) {
  const Clock::time_point start = Clock::now();
  const Result<Calculation> plan = Plan(asked.question);
  if (!plan) throw Refused(plan.error(), asked);
  EquityRun run = Runner(asked, *plan, options).Run();
  run.elapsed = Clock::now() - start;
  return run;
}

}  // namespace pokermath::cli
