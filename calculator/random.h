// Random numbers of one step of sampling.
//
// xoshiro256** (David Blackman and Sebastiano Vigna, 2018, "Scrambled linear pseudorandom number
// generators"), its state filled by splitmix64 from the seed and the number of the step, so that
// steps in any order draw the same.

#ifndef POKERMATH_CALCULATOR_RANDOM_H_
#define POKERMATH_CALCULATOR_RANDOM_H_

#include <array>
#include <bit>
#include <cstdint>

namespace pokermath {

class StepRandom {
 public:
  StepRandom(std::uint64_t seed, std::int64_t step) {
    // Two rounds keep seeds and steps that are neighbours apart.
    std::uint64_t mix = seed;
    mix = Mix(mix) ^ static_cast<std::uint64_t>(step);
    for (std::uint64_t& word : state_) word = Mix(mix);
  }

  std::uint64_t operator()() {
    const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = std::rotl(state_[3], 45);
    return result;
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

 private:
  static std::uint64_t Mix(std::uint64_t& state) {
    std::uint64_t z = state += 0x9E3779B97F4A7C15;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
    z = (z ^ z >> 27) * 0x94D049BB133111EB;
    return z ^ z >> 31;
  }

  std::array<std::uint64_t, 4> state_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_RANDOM_H_
