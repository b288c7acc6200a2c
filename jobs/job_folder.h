// The folder in which a job is done by one process or many, on one machine or many.
//
// Its file job.json says what the job is; it is written by whoever comes first, and the same
// whoever that is. Nothing else is shared, and nobody waits for anybody.

#ifndef POKERMATH_JOBS_JOB_FOLDER_H_
#define POKERMATH_JOBS_JOB_FOLDER_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jobs/job.h"
#include "jobs/shard_file.h"

namespace pokermath {

/// A job that has a name of its own, or nothing: "omaha-strength", "omaha5-strength",
/// "omaha6-strength", "three-way".
std::unique_ptr<Job> NamedJob(std::string_view name);

/// The job of answering a file of questions in a folder: as job.json has it, or read anew where the
/// folder has none.
std::unique_ptr<Job> QuestionsJobOf(const std::string& questions, const std::string& folder);

/// Makes the folder, and says in it what the job is. Throws Failure if it has another job already.
void BeginJob(const Job& job, const std::string& questions, const std::string& folder);

/// The job of a folder. Throws Failure if it has none, or one of another version.
std::unique_ptr<Job> JobOf(const std::string& folder);

/// What a finished shard is; nothing if it is not finished. Throws Failure if it is damaged, or the
/// job is cut into another number of shards; what other shards are does not matter.
std::optional<ShardState> StateOfFinished(const Job& job, const std::string& folder,
                                          const Shard& shard);

enum class ShardEnd {
  kFinished,  ///< by this process
  kWasThere,
  kStopped,  ///< what is done is kept
  kBusy,     ///< another process works on it
};

/// Does a shard, or what is left of it. Throws Failure for what cannot be done; what was done
/// before is kept.
ShardEnd DoShard(const Job& job, const std::string& folder, const Shard& shard,
                 const WorkOptions& options);

/// What shards have made together.
struct Merged {
  std::string result{};  ///< path of the file
  int shards = 0;
  std::int64_t answers = 0;
  std::int64_t failed = 0;
};

/// Puts the shards of a folder together. Throws Failure, and writes nothing, for gaps, overlaps,
/// shards of another job and damage, and says which.
///
/// @param tell  called now and then with the bytes that were read, and all of them; may be empty
Merged MergeShards(const Job& job, const std::string& folder,
                   const std::function<void(std::int64_t done, std::int64_t all)>& tell = {});

/// A folder's shards: all that there have to be.
struct FolderState {
  int shards = 0;  ///< 0 if none was begun
  std::vector<ShardState> finished, running, stopped;
  std::vector<Shard> missing;
};

/// Throws Failure if there are shards of different counts.
FolderState StateOf(const Job& job, const std::string& folder);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_JOB_FOLDER_H_
