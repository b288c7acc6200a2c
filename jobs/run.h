// Answers a question on threads of the machine.

#ifndef POKERMATH_JOBS_RUN_H_
#define POKERMATH_JOBS_RUN_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include "pages/equity_run.h"

namespace pokermath {

/// How far work has come.
struct RunState {
  std::int64_t done = 0;  ///< steps, or trials
  double part = 0;        ///< 0..1
};

/// What the first steps have come to.
struct RunKept {
  std::int64_t done = 0;
  std::int64_t stop = 0;  ///< where the run looks next whether it is enough
  Sums sums;
};

struct RunOptions {
  int threads = 1;  ///< at most; the answer is the same for any number
  /// For sampling, which ends then at the latest.
  std::optional<std::chrono::milliseconds> time{};
  /// Called between steps, on the thread that called Run; returning false ends the work. No step is
  /// left before it is done.
  std::function<bool(const RunState& state)> go_on{};
  /// Called where the work could be gone on with another time, on the thread that called Run.
  std::function<void(const RunKept& kept)> keep{};
  /// What an earlier run of the same plan has kept.
  std::optional<RunKept> from{};
};

/// Throws Failure for a count that was not finished, and for a sample of no trials. Of the answer,
/// `elapsed` is the caller's to set: what belongs to the work he knows.
EquityRun Run(const Calculation& plan, const RunOptions& options);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_RUN_H_
