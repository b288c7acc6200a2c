// Threads take runs of units, longer ones where units are quick; what they make is put in order and
// written by the thread that waits for them. A unit that takes long is left until all before it are
// written, and then gets all threads.

#include "jobs/list_job.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "jobs/start_threads.h"

namespace pokermath {
namespace {

using Clock = std::chrono::steady_clock;

class ListWork {
 public:
  ListWork(const ListJob& job, ShardFile& file, const WorkOptions& options)
      : job_(job), file_(file), options_(options), next_(file.state().next) {}

  bool Run() {
    while (!stop_ && file_.state().next < end()) {
      RunThreads();
      if (!stop_ && !long_.empty()) MakeLong();
    }
    file_.Keep(SecondsSince(start_));
    return file_.state().next == end();
  }

 private:
  static constexpr std::size_t kMostWaiting = std::size_t{1} << 26;  // bytes
  static constexpr std::int64_t kMostUnits = 4096;                   // of a run
  static constexpr auto kShortRun = std::chrono::milliseconds(4);
  static constexpr auto kBetweenLooks = std::chrono::milliseconds(100);

  std::int64_t end() const { return file_.state().units.last; }

  // Until all is made, a unit takes long, or the work is to stop.
  void RunThreads() {
    std::vector<std::jthread> threads;
    std::unique_lock lock(mutex_);
    running_ = StartThreads(options_.threads, threads, [this](int) { MakeUnits(); });
    for (bool all_over = false; !all_over;) {
      all_over = running_ == 0;
      WriteInOrder(lock);
      LookUp(lock);
      if (running_ > 0) made_some_.wait_for(lock, kBetweenLooks);
    }
    if (thrown_) std::rethrow_exception(thrown_);
  }

  // --- threads that make units ---

  void MakeUnits() {
    try {
      const std::unique_ptr<Maker> maker = job_.NewMaker();
      std::int64_t size = 1;
      while (const std::optional<UnitRange> units = Take(size)) {
        const Clock::time_point start = Clock::now();
        MakeRun(*maker, *units);
        const bool is_short = Clock::now() - start < kShortRun;
        size = is_short ? std::min(2 * size, kMostUnits) : std::max(size / 2, std::int64_t{1});
      }
    } catch (...) {
      const std::lock_guard lock(mutex_);
      thrown_ = std::current_exception();
      stop_ = true;
    }
    const std::lock_guard lock(mutex_);
    --running_;
    has_room_.notify_all();
    made_some_.notify_one();
  }

  // The next units. There are none behind one that takes long before that is made.
  std::optional<UnitRange> Take(std::int64_t size) {
    std::unique_lock lock(mutex_);
    has_room_.wait(lock, [this] { return waiting_ < kMostWaiting || stop_ || !long_.empty(); });
    if (stop_ || !long_.empty() || next_ == end()) return std::nullopt;
    const std::int64_t first = std::exchange(next_, std::min(next_ + size, end()));
    return UnitRange{first, next_};
  }

  void MakeRun(Maker& maker, const UnitRange& units) {
    MadeUnits made;
    made.units = {units.first, units.first};
    for (std::int64_t unit = units.first; unit < units.last && !stop_; ++unit) {
      const Made what = maker.Make(unit, stop_, made.bytes);
      if (what == Made::kStopped) break;
      if (what == Made::kTooLong) {
        Deliver(std::exchange(made, MadeUnits{.units = {unit + 1, unit + 1}}), unit);
        continue;
      }
      Count(what, made);
    }
    Deliver(std::move(made), std::nullopt);
  }

  static void Count(Made what, MadeUnits& made) {
    ++made.units.last;
    made.answers += what == Made::kNothing ? 0 : 1;
    made.failed += what == Made::kError ? 1 : 0;
  }

  void Deliver(MadeUnits made, std::optional<std::int64_t> too_long) {
    const std::lock_guard lock(mutex_);
    if (too_long) long_.insert(*too_long);
    if (made.units.size() == 0) return;
    waiting_ += made.bytes.size();
    made_.emplace(made.units.first, std::move(made));
    made_some_.notify_one();
  }

  // --- the thread that writes ---

  // What is next goes to the file, without the lock.
  void WriteInOrder(std::unique_lock<std::mutex>& lock) {
    while (!made_.empty() && made_.begin()->first == file_.state().next) {
      const auto made = made_.extract(made_.begin());
      waiting_ -= made.mapped().bytes.size();
      has_room_.notify_all();
      Unlocked(lock, [&] { file_.Append(made.mapped()); });
    }
  }

  void LookUp(std::unique_lock<std::mutex>& lock) {
    const Clock::time_point now = Clock::now();
    if (now < next_look_) return;
    next_look_ = now + kBetweenLooks;
    Unlocked(lock, [&] {
      if (now >= next_keep_) KeepAll();
      if (!GoOn(0)) stop_ = true;
    });
    if (stop_) has_room_.notify_all();
  }

  // Whatever it throws ends the work of the other threads.
  template <typename Do>
  void Unlocked(std::unique_lock<std::mutex>& lock, const Do& act) {
    lock.unlock();
    try {
      act();
    } catch (...) {
      stop_ = true;
      lock.lock();
      has_room_.notify_all();
      throw;
    }
    lock.lock();
  }

  void KeepAll() {
    file_.Keep(SecondsSince(start_));
    next_keep_ = Clock::now() + kBetweenKeeps;
  }

  // @param part  of a unit
  bool GoOn(double part) const {
    if (!options_.go_on) return true;
    const ShardState& state = file_.state();
    const double done = static_cast<double>(state.next - state.units.first) + part;
    return options_.go_on(
        state, done / static_cast<double>(std::max(state.units.size(), std::int64_t{1})));
  }

  // --- units that take long ---

  // The first of them, which is the next to be written: threads made all before it.
  void MakeLong() {
    const std::int64_t unit = *long_.begin();
    KeepAll();
    LongUnit options{.kept = file_.ReadPartial().value_or(""), .threads = options_.threads};
    options.go_on = [this](double part) { return GoOn(part); };
    options.keep = [&](const std::string& bytes) {
      file_.KeepPartial(unit, SecondsSince(start_), bytes);
    };
    MadeUnits made{.units = {unit, unit}};
    const Made what = job_.NewMaker()->MakeLong(unit, options, made.bytes);
    if (what == Made::kStopped) {
      stop_ = true;
      return;
    }
    Count(what, made);
    file_.Append(made);
    long_.erase(unit);
    std::unique_lock lock(mutex_);
    WriteInOrder(lock);
  }

  const ListJob& job_;
  ShardFile& file_;
  const WorkOptions& options_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_look_ = start_;
  Clock::time_point next_keep_ = start_ + kBetweenKeeps;
  std::atomic<bool> stop_ = false;

  std::mutex mutex_;
  std::condition_variable made_some_, has_room_;
  // Of the mutex:
  int running_ = 0;
  std::int64_t next_;                       // to be taken
  std::map<std::int64_t, MadeUnits> made_;  // by their first unit, to be written
  std::size_t waiting_ = 0;                 // bytes of these
  std::set<std::int64_t> long_;
  std::exception_ptr thrown_;
};

}  // namespace

bool ListJob::Work(ShardFile& file, const WorkOptions& options) const {
  return ListWork(*this, file, options).Run();
}

void ListJob::Merge(std::span<const FinishedShard> shards, AtomicFile& result) const {
  for (const FinishedShard& shard : shards) {
    shard.ForEachBlock(
        [&](const MadeUnits& made) { result.Write(made.bytes.data(), made.bytes.size()); });
  }
}

}  // namespace pokermath
