#include "cli/bulk_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <thread>

#include "cli/progress.h"
#include "cli/stop_signals.h"

namespace pokermath::cli {

int AllThreads() {
  constexpr int kMostThreads = 1024;
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostThreads);
}

ShardEnd DoShardAttended(const Job& job, const std::string& folder, const Shard& shard,
                         int threads) {
  const StopSignals signals;
  const std::int64_t units = shard.UnitsOf(job.units()).size();
  Progress progress(shard.IsWhole() ? job.result_name()
                                    : fmt::format("shard {} of {}", shard.number, shard.count),
                    units, job.unit_name(), std::chrono::milliseconds(300));
  WorkOptions options{.threads = threads};
  options.go_on = [&](const ShardState&, double part) {
    progress.Update(static_cast<std::int64_t>(part * static_cast<double>(units)), part);
    return !StopRequested();
  };
  return DoShard(job, folder, shard, options);
}

Merged MergeAttended(const Job& job, const std::string& folder) {
  std::optional<Progress> progress;
  return MergeShards(job, folder, [&](std::int64_t done, std::int64_t all) {
    if (!progress) progress.emplace("merging", all, "bytes", std::chrono::milliseconds(300));
    progress->Update(done);
  });
}

}  // namespace pokermath::cli
