#include "cli/scheduler.h"

#include <fmt/format.h>

#include <cstdlib>
#include <limits>
#include <string_view>

#include "pages/errors.h"
#include "pages/number_text.h"

namespace pokermath::cli {
namespace {

// A number from the environment; nothing if the variable is not set.
std::optional<int> FromEnvironment(const char* name) {
  const char* text = std::getenv(name);
  if (text == nullptr || *text == '\0') return std::nullopt;
  return ReadNumber(name, text, 0, std::numeric_limits<int>::max());
}

int Needed(const char* name, const char* beside) {
  if (const std::optional<int> number = FromEnvironment(name)) return *number;
  throw UsageError(fmt::format("{} is set, and {} is not: say --shard I/N", beside, name));
}

Shard ReadShard(const std::string& text) {
  const std::size_t slash = text.find('/');
  if (slash == text.npos) {
    throw UsageError("--shard " + Quoted(text) + " is not accepted: like 3/8, the third of eight");
  }
  const int count = ReadNumber("--shard", text.substr(slash + 1), 1, kMostShards);
  return {ReadNumber("--shard", text.substr(0, slash), 1, count), count};
}

std::optional<Shard> ShardOfSlurm() {
  constexpr const char* kTask = "SLURM_ARRAY_TASK_ID";
  const std::optional<int> task = FromEnvironment(kTask);
  if (!task) return std::nullopt;
  const int first = Needed("SLURM_ARRAY_TASK_MIN", kTask);
  const int last = Needed("SLURM_ARRAY_TASK_MAX", kTask);
  const int step = FromEnvironment("SLURM_ARRAY_TASK_STEP").value_or(1);
  if (step < 1 || first > *task || *task > last || (*task - first) % step != 0) {
    throw UsageError(
        fmt::format("task {} is none of {}-{}:{}, which the environment says the array "
                    "has: say --shard I/N",
                    *task, first, last, step));
  }
  return Shard{(*task - first) / step + 1, (last - first) / step + 1};
}

std::optional<Shard> ShardOfMpi() {
  constexpr const char* kRank = "OMPI_COMM_WORLD_RANK";
  const std::optional<int> rank = FromEnvironment(kRank);
  if (!rank) return std::nullopt;
  const int size = Needed("OMPI_COMM_WORLD_SIZE", kRank);
  if (size == 1) return std::nullopt;
  if (*rank >= size) throw UsageError(fmt::format("rank {} is none of {}", *rank, size));
  return Shard{*rank + 1, size};
}

}  // namespace

std::optional<Shard> ShardOfProcess(const std::optional<std::string>& shard,
                                    const std::optional<std::string>& shards) {
  if (shard && shards) throw UsageError("--shard does not go with --shards: 3/8 says both");
  if (shard) return ReadShard(*shard);
  std::optional<Shard> found = ShardOfSlurm();
  if (!found) found = ShardOfMpi();
  if (!shards) return found;
  const int count = ReadNumber("--shards", *shards, 1, kMostShards);
  if (found && found->count != count) {
    throw UsageError(
        fmt::format("--shards {} does not go with the {} tasks of the scheduler: say "
                    "--shard I/{}",
                    count, found->count, count));
  }
  if (found) return found;
  const std::optional<int> number = FromEnvironment("PARALLEL_SEQ");
  if (!number) {
    throw UsageError("--shards needs a scheduler that says which of them this is: say --shard I/N");
  }
  if (*number < 1 || *number > count) {
    throw UsageError(fmt::format("PARALLEL_SEQ is {}, and --shards {}", *number, count));
  }
  return Shard{*number, count};
}

}  // namespace pokermath::cli
