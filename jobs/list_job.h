// Jobs whose units make bytes that stand one behind another in the result.

#ifndef POKERMATH_JOBS_LIST_JOB_H_
#define POKERMATH_JOBS_LIST_JOB_H_

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "jobs/job.h"

namespace pokermath {

/// What became of a unit.
enum class Made {
  kNothing,  ///< there is nothing to make
  kAnswer,
  kError,    ///< that stands in the answer's place
  kTooLong,  ///< left, since it is work for all threads; nothing was made
  kStopped,  ///< left, since the work is to stop; nothing was made
};

/// How far a unit that takes long has come, to be gone on with by another process.
struct LongUnit {
  std::string kept;  ///< in: what was kept of it; empty if it begins
  int threads = 1;
  std::function<bool(double part)> go_on{};              ///< false stops it
  std::function<void(const std::string& bytes)> keep{};  ///< called now and then
};

/// Makes units, on one thread.
class Maker {
 public:
  virtual ~Maker() = default;
  /// Appends what a unit makes.
  ///
  /// @param stop  is looked at now and then
  virtual Made Make(std::int64_t unit, const std::atomic<bool>& stop, std::string& out) = 0;
  /// The same for a unit that was too long, on many threads.
  virtual Made MakeLong(std::int64_t /*unit*/, const LongUnit& /*options*/, std::string& /*out*/) {
    return Made::kStopped;
  }
};

class ListJob : public Job {
 public:
  bool Work(ShardFile& file, const WorkOptions& options) const final;
  void Merge(std::span<const FinishedShard> shards, AtomicFile& result) const override;

  virtual std::unique_ptr<Maker> NewMaker() const = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_JOBS_LIST_JOB_H_
