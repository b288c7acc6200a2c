// The perfect hash of a prime product, shared by the evaluator and the program that searches its
// displacements.

#ifndef POKERMATH_EVAL_FIVE_CARD_HASH_H_
#define POKERMATH_EVAL_FIVE_CARD_HASH_H_

#include <cstdint>

namespace pokermath {

inline constexpr std::uint32_t kHashBuckets = 512;
inline constexpr std::uint32_t kHashSlots = 8192;

/// A product's value is in slot ^ displacement[bucket].
struct ProductHash {
  std::uint32_t bucket;
  std::uint32_t slot;
};

constexpr ProductHash HashProduct(std::uint32_t product) {
  std::uint32_t u = product + 0xE91AAA35u;
  u ^= u >> 16;
  u += u << 8;
  u ^= u >> 4;
  return {.bucket = (u >> 8) & 0x1FFu, .slot = (u + (u << 2)) >> 19};
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_FIVE_CARD_HASH_H_
