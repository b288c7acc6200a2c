#include "jobs/three_way_job.h"

#include <nlohmann/json.hpp>

#include "kernels/three_way_table.h"
#include "pokermath/version.h"

namespace pokermath {
namespace {

class ThreeWayMaker final : public Maker {
 public:
  Made Make(std::int64_t unit, const std::atomic<bool>& /*stop*/, std::string& out) override {
    AppendThreeWay(unit, unit + 1, out);
    return Made::kNothing;
  }
};

}  // namespace

Json ThreeWayJob::Identity() const {
  return {{"job", kName}, {"program", POKERMATH_VERSION_STRING}, {"units", units()}};
}

std::int64_t ThreeWayJob::units() const { return kThreeWayUnits; }

const char* ThreeWayJob::result_name() const { return kThreeWayFile; }

std::unique_ptr<Maker> ThreeWayJob::NewMaker() const { return std::make_unique<ThreeWayMaker>(); }

void ThreeWayJob::Merge(std::span<const FinishedShard> shards, AtomicFile& result) const {
  const auto write = [&](const std::string& bytes) { result.Write(bytes.data(), bytes.size()); };
  write(ThreeWayHeader());
  ThreeWayTrailer trailer;
  for (const FinishedShard& shard : shards) {
    shard.ForEachBlock([&](const MadeUnits& made) {
      trailer.Add(made.bytes);
      write(made.bytes);
    });
  }
  write(trailer.Bytes());
}

}  // namespace pokermath
