#include "jobs/job.h"

#include <nlohmann/json.hpp>

#include "jobs/checksum.h"

namespace pokermath {

std::uint64_t Job::Hash() const { return Checksum(Identity().dump()); }

}  // namespace pokermath
