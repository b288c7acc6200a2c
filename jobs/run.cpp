// The calculator's steps go to threads in the order of their numbers, slice by slice; each thread
// adds to sums of its own. The first step is done alone: what takes microseconds starts no threads.

#include "jobs/run.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <system_error>
#include <utility>
#include <vector>

#include "pages/errors.h"

namespace pokermath {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kWorthThreads = std::chrono::microseconds(500);  // work that is shared
constexpr std::int64_t kSliceSteps = 64;                        // a thread

class Runner {
 public:
  Runner(const Calculation& plan, const RunOptions& options)
      : plan_(plan),
        options_(options),
        sampled_(plan.method() == Method::kSampled),
        start_(Clock::now()),
        so_far_(options.from ? *options.from : RunKept{0, 0, plan.NewSums()}),
        first_(done_) {}

  EquityRun Run() {
    while (!Stopped() && !plan_.Enough(done_, sums_)) {
      if (done_ >= stop_) stop_ = plan_.NextStop(done_);
      while (!Stopped() && done_ < stop_) {
        DoSlice(std::min(stop_, done_ + (done_ == first_ ? 1 : kSliceSteps * options_.threads)));
        if (options_.keep && !Stopped()) options_.keep(so_far_);
      }
    }
    Result<EquityAnswer> answer = plan_.Answer(sums_);
    if (!answer) throw Failure(answer.error().text);
    return {*std::move(answer), interrupted_, out_of_time_};
  }

 private:
  bool Stopped() const { return interrupted_ || out_of_time_; }

  void DoSlice(std::int64_t end) {
    next_ = done_;
    end_ = end;
    per_step_ = done_ == 0 ? 0 : plan_.Cases(sums_).Value() / static_cast<double>(done_);
    part_ = options_.go_on ? plan_.Part(done_, sums_) : 0;
    const bool share = options_.threads > 1 && done_ > first_ &&
                       (Clock::now() - start_) / (done_ - first_) * (end - done_) > kWorthThreads;
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
      try {
        others.push_back(std::async(std::launch::async, [this] {
          Sums sums = plan_.NewSums();
          DoSteps(sums, false);
          return sums;
        }));
      } catch (const std::system_error&) {
        break;  // There are no more of them: those that run do the work.
      }
    }
    DoSteps(sums_, true);
    for (std::future<Sums>& other : others) sums_.Add(other.get());
  }

  // Takes steps until none is left. The first thread looks after time and who waits.
  void DoSteps(Sums& sums, bool is_first) {
    for (std::int64_t step = next_++; step < end_; step = next_++) {
      if (is_first) LookUp(step);
      if (interrupted_ || out_of_time_) return;
      plan_.Do(step, step + 1, sums);
    }
  }

  void LookUp(std::int64_t step) {
    const bool in_time = sampled_ && options_.time;
    const Clock::duration elapsed = Clock::now() - start_;
    if (in_time && step > first_ && elapsed >= *options_.time) out_of_time_ = true;
    if (!options_.go_on) return;
    const auto begun = static_cast<double>(step);
    double part = std::max(part_, begun / static_cast<double>(plan_.steps()));
    if (in_time) part = std::max(part, Seconds(elapsed) / Seconds(*options_.time));
    const RunState state{sampled_ ? static_cast<std::int64_t>(begun * per_step_) : step, part};
    if (!options_.go_on(state)) interrupted_ = true;
  }

  const Calculation& plan_;
  const RunOptions& options_;
  bool sampled_;
  Clock::time_point start_;
  RunKept so_far_;
  Sums& sums_ = so_far_.sums;
  std::int64_t& done_ = so_far_.done;
  std::int64_t& stop_ = so_far_.stop;
  std::int64_t first_;  // that is not of an earlier run
  std::int64_t end_ = 0;
  double per_step_ = 0;  // trials
  double part_ = 0;      // that was done before the slice
  std::atomic<std::int64_t> next_ = 0;
  std::atomic<bool> interrupted_ = false;
  std::atomic<bool> out_of_time_ = false;
};

}  // namespace

EquityRun Run(const Calculation& plan, const RunOptions& options) {
  return Runner(plan, options).Run();
}

}  // namespace pokermath
