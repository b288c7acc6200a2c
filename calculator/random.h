// Random numbers of one step of sampling.
//
// Eight generators side by side (xoshiro256++: David Blackman and Sebastiano Vigna, 2021,
// "Scrambled linear pseudorandom number generators"), which the compiler makes vectors of. Their
// states come from the seed and the number of the step by splitmix64, so steps in any order draw
// the same.

#ifndef POKERMATH_CALCULATOR_RANDOM_H_
#define POKERMATH_CALCULATOR_RANDOM_H_

#include <array>
#include <cstddef>
#include <cstdint>

namespace pokermath {

class StepRandom {
 public:
  struct Two {
    std::uint32_t first;
    std::uint64_t second;
  };

  StepRandom(std::uint64_t seed, std::int64_t step) {
    // A second round keeps seeds and steps that are neighbours apart.
    std::uint64_t mix = seed;
    mix = Mix(mix) ^ static_cast<std::uint64_t>(step);
    for (auto& words : state_) {
      for (std::uint64_t& word : words) word = Mix(mix);
    }
  }

  std::uint64_t operator()() {
    if (next_ == kBuffer) Refill();
    return buffer_[next_++];
  }

  /// 0 .. limit - 1, all as likely; 1 <= limit < 2^63.
  std::uint64_t Below(std::uint64_t limit) {
    for (;;) {
      const unsigned __int128 product = static_cast<unsigned __int128>((*this)()) * limit;
      const auto low = static_cast<std::uint64_t>(product);
      // The numbers that would be drawn once too often are drawn again.
      if (low >= limit || low >= -limit % limit) return static_cast<std::uint64_t>(product >> 64);
    }
  }

  /// Two such numbers, the second limit as large as above.
  Two BelowLarge(std::uint32_t limit1, std::uint64_t limit2) {
    const auto first = static_cast<std::uint32_t>(Below(limit1));
    return {first, Below(limit2)};
  }

  /// The same out of one draw; both limits are below 2^32.
  Two Below(std::uint32_t limit1, std::uint32_t limit2) {
    for (;;) {
      const std::uint64_t drawn = (*this)();
      const std::uint64_t product1 = (drawn >> 32) * limit1;
      const std::uint64_t product2 = (drawn & 0xFFFFFFFF) * limit2;
      if (IsFair(product1, limit1) && IsFair(product2, limit2)) [[likely]] {
        return {static_cast<std::uint32_t>(product1 >> 32), product2 >> 32};
      }
    }
  }

 private:
  static constexpr std::size_t kLanes = 8;
  static constexpr std::size_t kBuffer = 32 * kLanes;

  static bool IsFair(std::uint64_t product, std::uint32_t limit) {
    const auto low = static_cast<std::uint32_t>(product);
    return low >= limit || low >= -limit % limit;
  }

  static std::uint64_t Mix(std::uint64_t& state) {
    std::uint64_t z = state += 0x9E3779B97F4A7C15;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return z ^ z >> 31;
  }

  void Refill() {
    auto& [s0, s1, s2, s3] = state_;
    for (std::size_t first = 0; first < kBuffer; first += kLanes) {
      for (std::size_t i = 0; i < kLanes; ++i) {
        const std::uint64_t sum = s0[i] + s3[i];
        buffer_[first + i] = (sum << 23 | sum >> 41) + s0[i];
        const std::uint64_t shifted = s1[i] << 17;
        s2[i] ^= s0[i];
        s3[i] ^= s1[i];
        s1[i] ^= s2[i];
        s0[i] ^= s3[i];
        s2[i] ^= shifted;
        s3[i] = s3[i] << 45 | s3[i] >> 19;
      }
    }
    next_ = 0;
  }

  std::array<std::array<std::uint64_t, kLanes>, 4> state_;
  std::array<std::uint64_t, kBuffer> buffer_;
  std::size_t next_ = kBuffer;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_RANDOM_H_
