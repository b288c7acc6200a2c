// Every thread has sums of its own. From time to time, when all threads have ended a unit, they are
// added to those of the first and kept.

#include "jobs/sums_job.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "jobs/start_threads.h"
#include "pages/errors.h"

namespace pokermath {
namespace {

using Clock = std::chrono::steady_clock;

// Of a shard: the first unit that is not in the sums, and the sums.
std::string BytesOf(std::int64_t next, std::span<const std::int64_t> sums) {
  std::string bytes(sizeof next + sums.size_bytes(), '\0');
  std::memcpy(bytes.data(), &next, sizeof next);
  std::memcpy(bytes.data() + sizeof next, sums.data(), sums.size_bytes());
  return bytes;
}

// False, and nothing changed, if there are not as many.
bool ReadBytes(std::string_view bytes, std::int64_t& next, std::span<std::int64_t> sums) {
  if (bytes.size() != sizeof next + sums.size_bytes()) return false;
  std::memcpy(&next, bytes.data(), sizeof next);
  std::memcpy(sums.data(), bytes.data() + sizeof next, sums.size_bytes());
  return true;
}

class SumsWork {
 public:
  SumsWork(const SumsJob& job, ShardFile& file, const WorkOptions& options)
      : file_(file), options_(options), next_(file.state().next) {
    for (int i = 0; i < options.threads; ++i) adders_.push_back(job.NewAdder());
    std::int64_t kept_next = next_;
    const auto kept = file.ReadPartial();
    if (kept && ReadBytes(*kept, kept_next, sums())) next_ = kept_next;
  }

  bool Run() {
    while (!stop_ && next_ < end()) AddUntil(Clock::now() + kBetweenKeeps);
    if (next_ < end()) return false;
    const UnitRange& units = file_.state().units;
    if (file_.state().next < end()) file_.Append({units, 0, 0, BytesOf(end(), sums())});
    return true;
  }

 private:
  std::int64_t end() const { return file_.state().units.last; }
  std::span<std::int64_t> sums() { return adders_[0]->sums(); }

  void AddUntil(Clock::time_point time) {
    {
      std::vector<std::jthread> threads;
      std::unique_lock lock(mutex_);
      running_ = StartThreads(static_cast<int>(adders_.size()), threads, [this, time](int i) {
        AddUnits(*adders_[static_cast<std::size_t>(i)], time);
      });
      while (running_ > 0) {
        ended_.wait_for(lock, std::chrono::milliseconds(100));
        lock.unlock();
        if (!GoOn()) stop_ = true;
        lock.lock();
      }
    }
    if (thrown_) std::rethrow_exception(thrown_);
    next_ = std::min(next_.load(), end());
    for (std::size_t i = 1; i < adders_.size(); ++i) {
      const std::span<std::int64_t> others = adders_[i]->sums();
      for (std::size_t k = 0; k < others.size(); ++k) sums()[k] += std::exchange(others[k], 0);
    }
    if (next_ < end()) {
      file_.KeepPartial(next_, SecondsSince(start_), BytesOf(next_, sums()));
    }
  }

  void AddUnits(Adder& adder, Clock::time_point time) {
    try {
      while (!stop_ && Clock::now() < time) {
        const std::int64_t unit = next_++;
        if (unit >= end()) break;
        adder.Add(unit);
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      thrown_ = std::current_exception();
      stop_ = true;
    }
    const std::lock_guard lock(mutex_);
    --running_;
    ended_.notify_one();
  }

  bool GoOn() const {
    if (!options_.go_on) return true;
    const UnitRange& units = file_.state().units;
    const auto done = static_cast<double>(std::min(next_.load(), units.last) - units.first);
    return options_.go_on(file_.state(), done / static_cast<double>(units.size()));
  }

  ShardFile& file_;
  const WorkOptions& options_;
  const Clock::time_point start_ = Clock::now();
  std::vector<std::unique_ptr<Adder>> adders_;  // the first one has the sums so far
  std::atomic<std::int64_t> next_;              // to be added
  std::atomic<bool> stop_ = false;

  std::mutex mutex_;
  std::condition_variable ended_;
  // Of the mutex:
  int running_ = 0;
  std::exception_ptr thrown_;
};

}  // namespace

bool SumsJob::Work(ShardFile& file, const WorkOptions& options) const {
  return SumsWork(*this, file, options).Run();
}

void SumsJob::Merge(std::span<const FinishedShard> shards, AtomicFile& result) const {
  const std::unique_ptr<Adder> all = NewAdder(), one = NewAdder();
  for (const FinishedShard& shard : shards) {
    shard.ForEachBlock([&](const MadeUnits& made) {
      std::int64_t next = 0;
      if (!ReadBytes(made.bytes, next, one->sums())) {
        throw Failure(Quoted(shard.path()) + " is damaged: it has other sums than the job");
      }
      for (std::size_t k = 0; k < one->sums().size(); ++k) all->sums()[k] += one->sums()[k];
    });
  }
  const std::string text = ResultOf(*all);
  result.Write(text.data(), text.size());
}

}  // namespace pokermath
