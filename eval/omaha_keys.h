// Rank keys of Omaha boards: smaller than those of the compact evaluator, as there are five cards
// only.

#ifndef POKERMATH_EVAL_OMAHA_KEYS_H_
#define POKERMATH_EVAL_OMAHA_KEYS_H_

#include <cstddef>
#include <cstdint>

namespace pokermath {

inline constexpr int kOmahaKeyBits = 19;
inline constexpr int kOmahaColumnBits = 8;
inline constexpr std::uint32_t kOmahaColumns = 1u << kOmahaColumnBits;
/// Places of boards are below it, also of what is found for impossible cards.
inline constexpr std::size_t kOmahaPlaces = 6500;

/// Key of each rank; of sums only the lower kOmahaKeyBits count.
extern const std::uint32_t kOmahaKeys[13];
extern const std::uint16_t kOmahaOffsets[];

/// A place for each multiset of five ranks that cards can have, by the sum of their keys.
inline std::size_t OmahaPlaceOf(std::uint32_t key) {
  key &= (1u << kOmahaKeyBits) - 1;
  return kOmahaOffsets[key >> kOmahaColumnBits] + (key & (kOmahaColumns - 1));
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_KEYS_H_
