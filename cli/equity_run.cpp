#include "cli/equity_run.h"

#include <optional>

#include "cli/progress.h"
#include "cli/stop_signals.h"
#include "jobs/run.h"

namespace pokermath::cli {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::milliseconds(500);  // before progress is shown

EquityRun RunAttended(const Calculation& plan, RunOptions options) {
  // A single step cannot be left, and nothing of it can be kept.
  std::optional<StopSignals> signals;
  if (plan.steps() > 1) signals.emplace();
  const bool sampled = plan.method() == Method::kSampled;
  Progress progress(sampled ? "sampling" : "counting", plan.steps(), sampled ? "trials" : "steps",
                    kPatience);
  options.go_on = [&](const RunState& state) {
    if (state.done > 0) progress.Update(state.done, state.part);
    return !StopRequested();
  };
  return Run(plan, options);
}

}  // namespace

EquityRun AnswerEquity(const AskedEquity& asked, int threads) {
  const Clock::time_point start = Clock::now();
  const Calculation plan = PlanOf(asked);
  EquityRun run = RunAttended(plan, {.threads = threads, .time = asked.time});
  run.elapsed = Clock::now() - start;
  return run;
}

}  // namespace pokermath::cli
