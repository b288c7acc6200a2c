// Random numbers of one step of sampling, many at once.
//
// Eight generators side by side (xoshiro256++: David Blackman and Sebastiano Vigna, 2021,
// "Scrambled linear pseudorandom number generators"). Their states come from the seed and the
// number of the step by splitmix64, so steps in any order draw the same.

#ifndef POKERMATH_KERNELS_RANDOM_NUMBERS_H_
#define POKERMATH_KERNELS_RANDOM_NUMBERS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/isa.h"

namespace pokermath {

/// Two numbers out of one draw.
struct DrawnPair {
  std::uint64_t bits;

  std::uint32_t first() const { return static_cast<std::uint32_t>(bits >> 32); }
  std::uint32_t second() const { return static_cast<std::uint32_t>(bits); }
};

/// What the numbers of a pair are below.
class PairLimits {
 public:
  /// @param first,second  1 .. 2^32 - 1
  explicit PairLimits(std::uint32_t first = 1, std::uint32_t second = 1)
      : first_(first),
        second_(second),
        unfair_first_((std::uint64_t{1} << 32) % first),
        unfair_second_((std::uint64_t{1} << 32) % second) {}

  std::uint64_t first() const { return first_; }
  std::uint64_t second() const { return second_; }
  /// So many of the 2^32 numbers that are drawn would make some results likelier than others.
  std::uint64_t unfair_first() const { return unfair_first_; }
  std::uint64_t unfair_second() const { return unfair_second_; }

 private:
  std::uint64_t first_, second_, unfair_first_, unfair_second_;
};

class RandomNumbers {
 public:
  static constexpr std::size_t kLanes = 8;
  using State = std::array<std::array<std::uint64_t, kLanes>, 4>;

  /// @param isa  instructions to use; the machine must have them. The numbers are always the same.
  RandomNumbers(std::uint64_t seed, std::int64_t step, Isa isa = BestIsa());

  /// Fills with pairs below the limits, all as likely.
  void Draw(const PairLimits& limits, std::span<DrawnPair> drawn);
  /// Fills with single numbers; both limits are the same.
  void Draw(const PairLimits& limits, std::span<std::uint32_t> drawn);

 private:
  State state_;
  Isa isa_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_RANDOM_NUMBERS_H_
