#include "jobs/checksum.h"

#include <fmt/format.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace pokermath {

std::uint64_t Checksum(std::string_view bytes) { return XXH3_64bits(bytes.data(), bytes.size()); }

std::uint64_t Chained(std::uint64_t before, std::uint64_t next) {
  const std::uint64_t both[] = {before, next};
  return XXH3_64bits(both, sizeof both);
}

std::string ChecksumText(std::uint64_t checksum) { return fmt::format("{:016x}", checksum); }

}  // namespace pokermath
