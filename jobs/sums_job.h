// Jobs whose units are added up, and whose result follows from the sums.

#ifndef POKERMATH_JOBS_SUMS_JOB_H_
#define POKERMATH_JOBS_SUMS_JOB_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "jobs/job.h"

namespace pokermath {

/// Adds units, on one thread.
class Adder {
 public:
  virtual ~Adder() = default;
  virtual void Add(std::int64_t unit) = 0;
  /// What has been added so far; may be set.
  virtual std::span<std::int64_t> sums() = 0;
};

class SumsJob : public Job {
 public:
  bool Work(ShardFile& file, const WorkOptions& options) const final;
  void Merge(std::span<const FinishedShard> shards, AtomicFile& result) const final;

  virtual std::unique_ptr<Adder> NewAdder() const = 0;
  /// The result, from an adder with the sums of all units. Throws Failure for sums that lead to
  /// none.
  virtual std::string ResultOf(Adder& all) const = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_JOBS_SUMS_JOB_H_
