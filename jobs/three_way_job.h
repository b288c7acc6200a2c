// The table of all matchups of three hands before the flop.

#ifndef POKERMATH_JOBS_THREE_WAY_JOB_H_
#define POKERMATH_JOBS_THREE_WAY_JOB_H_

#include <memory>

#include "jobs/list_job.h"

namespace pokermath {

/// A unit is a triple of ranks; the result is the file of the table, which the calculator uses
/// where it stands in the folder of tables.
class ThreeWayJob final : public ListJob {
 public:
  static constexpr const char* kName = "three-way";

  Json Identity() const override;
  std::int64_t units() const override;
  const char* unit_name() const override { return "triples of ranks"; }
  const char* result_name() const override;
  std::unique_ptr<Maker> NewMaker() const override;
  void Merge(std::span<const FinishedShard> shards, AtomicFile& result) const override;
};

}  // namespace pokermath

#endif  // POKERMATH_JOBS_THREE_WAY_JOB_H_
