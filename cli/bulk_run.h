// Does a part of a job for somebody who may be waiting.

#ifndef POKERMATH_CLI_BULK_RUN_H_
#define POKERMATH_CLI_BULK_RUN_H_

#include <string>

#include "jobs/job_folder.h"

namespace pokermath::cli {

/// Threads that there are processors for.
int AllThreads();

/// DoShard with a line of progress, while signals end the work in good order (StopSignals).
ShardEnd DoShardAttended(const Job& job, const std::string& folder, const Shard& shard,
                         int threads);

/// MergeShards with a line of progress.
Merged MergeAttended(const Job& job, const std::string& folder);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_BULK_RUN_H_
