// The checksum of what bulk work keeps in files.

#ifndef POKERMATH_JOBS_CHECKSUM_H_
#define POKERMATH_JOBS_CHECKSUM_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace pokermath {

/// 64 bits, against accidents and not against attackers: XXH3 (Yann Collet). The same on every
/// machine.
std::uint64_t Checksum(std::string_view bytes);

/// Of a checksum and what follows: a chain in which the order counts.
std::uint64_t Chained(std::uint64_t before, std::uint64_t next);

/// Sixteen hexadecimal digits.
std::string ChecksumText(std::uint64_t checksum);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_CHECKSUM_H_
