// Work that can be cut anywhere: for threads, for processes, for other machines.
//
// A job is a number of units, each of which follows from its number alone. A shard, a run of them,
// is made by one process on some threads, and what shards made is put together in the end. Neither
// threads nor shards nor interruptions change a byte of the result.

#ifndef POKERMATH_JOBS_JOB_H_
#define POKERMATH_JOBS_JOB_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "jobs/shard_file.h"
#include "pages/json.h"
#include "platform/files.h"

namespace pokermath {

/// How often unfinished work is kept.
inline constexpr auto kBetweenKeeps = std::chrono::seconds(30);

/// For Keep and its like.
inline double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct WorkOptions {
  int threads = 1;
  /// Asked some times a second, on the thread that called, with the part of the shard that is done,
  /// 0..1. Returning false stops the work: what is done is kept.
  std::function<bool(const ShardState& state, double part)> go_on{};
};

class Job {
 public:
  virtual ~Job() = default;

  /// All that the result follows from, and nothing else. Jobs of the same identity are the same.
  virtual Json Identity() const = 0;
  virtual std::int64_t units() const = 0;
  /// Their name in the plural: "questions".
  virtual const char* unit_name() const = 0;
  /// The name of the file with the result.
  virtual const char* result_name() const = 0;

  /// Throws Failure if what the job is made from is not what it was, as far as units are concerned.
  virtual void Check(const UnitRange& /*units*/) const {}
  /// Does what is left of a shard, and keeps what is done every half minute. False if it was
  /// stopped before the end.
  virtual bool Work(ShardFile& file, const WorkOptions& options) const = 0;
  /// Writes the result from shards that cover all units, in their order.
  virtual void Merge(std::span<const FinishedShard> shards, AtomicFile& result) const = 0;

  /// Of the identity.
  std::uint64_t Hash() const;
};

}  // namespace pokermath

#endif  // POKERMATH_JOBS_JOB_H_
