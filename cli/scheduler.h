// Which part of a job a scheduler has given to this process.

#ifndef POKERMATH_CLI_SCHEDULER_H_
#define POKERMATH_CLI_SCHEDULER_H_

#include <optional>
#include <string>

#include "jobs/shard_file.h"

namespace pokermath::cli {

/// @param shard   "3/8", as the user gave it
/// @param shards  of how many, as the user gave it, where the number is the scheduler's to say
///
/// Without `shard`, a task of an array of Slurm, a rank of Open MPI and, with `shards`, a job of
/// GNU parallel are shards. Nothing if it is none of them. Throws UsageError for what does not go
/// together.
std::optional<Shard> ShardOfProcess(const std::optional<std::string>& shard,
                                    const std::optional<std::string>& shards);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_SCHEDULER_H_
