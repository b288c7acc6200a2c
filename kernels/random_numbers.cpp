// A number below a limit is the high half of the limit times a 32-bit number. The low half of the
// product tells whether it is one of those that would come too often and have to be drawn again.

#include "kernels/random_numbers.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "kernels/registers.h"
#include "platform/require.h"

namespace pokermath {
namespace {

constexpr std::uint64_t kLow = 0xFFFFFFFF;
// To be drawn again. No pair is that, since its first number is less than some limit.
constexpr std::uint64_t kUnfair = ~std::uint64_t{0};

// Fills rows of one pair from each generator. Returns whether some are unfair.
template <typename Width>
POKERMATH_KERNEL bool FillRows(RandomNumbers::State& state, const PairLimits& limits,
                               std::size_t rows, DrawnPair* drawn) {
  using Lanes = typename Width::Modular64;
  constexpr std::size_t kParts = sizeof state[0] / sizeof(Lanes);
  Lanes s[4][kParts];
  std::memcpy(s, &state, sizeof s);
  Lanes unfair_ones{};
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t i = 0; i < kParts; ++i) {
      const Lanes sum = s[0][i] + s[3][i];
      const Lanes number = (sum << 23 | sum >> 41) + s[0][i];
      const Lanes shifted = s[1][i] << 17;
      s[2][i] ^= s[0][i];
      s[3][i] ^= s[1][i];
      s[1][i] ^= s[2][i];
      s[0][i] ^= s[3][i];
      s[2][i] ^= shifted;
      s[3][i] = s[3][i] << 45 | s[3][i] >> 19;

      const Lanes product1 = (number >> 32) * limits.first();
      const Lanes product2 = (number & kLow) * limits.second();
      // The highest bit is the borrow.
      const Lanes beyond1 = (product1 & kLow) - limits.unfair_first();
      const Lanes beyond2 = (product2 & kLow) - limits.unfair_second();
      const Lanes unfair = (beyond1 | beyond2) >> 63;
      unfair_ones |= unfair;
      const Lanes pair = (product1 & ~kLow) | product2 >> 32 | -unfair;
      std::memcpy(drawn, &pair, sizeof pair);
      drawn += sizeof(Lanes) / sizeof(DrawnPair);
    }
  }
  std::memcpy(&state, s, sizeof s);
  std::uint64_t some = 0;
  for (std::size_t i = 0; i < sizeof(Lanes) / sizeof some; ++i) some |= unfair_ones[i];
  return some != 0;
}

std::uint64_t Mix(std::uint64_t& state) {
  std::uint64_t z = state += 0x9E3779B97F4A7C15;
  z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9;
  z = (z ^ z >> 27) * 0x94D049BB133111EB;
  return z ^ z >> 31;
}

}  // namespace

RandomNumbers::RandomNumbers(std::uint64_t seed, std::int64_t step, Isa isa) : isa_(isa) {
  // A second round keeps seeds and steps that are neighbours apart.
  std::uint64_t mix = seed;
  mix = Mix(mix) ^ static_cast<std::uint64_t>(step);
  for (auto& words : state_) {
    for (std::uint64_t& word : words) word = Mix(mix);
  }
}

void RandomNumbers::Draw(const PairLimits& limits, std::span<DrawnPair> drawn) {
  const auto fill = [&](std::size_t rows, DrawnPair* to) {
    return Dispatch(isa_, [&](auto level) POKERMATH_INLINE {
      return FillRows<RegistersOf<level>>(state_, limits, rows, to);
    });
  };
  const std::size_t rows = drawn.size() / kLanes;
  bool unfair = fill(rows, drawn.data());
  if (const auto rest = drawn.subspan(rows * kLanes); !rest.empty()) {
    std::array<DrawnPair, kLanes> row;
    unfair |= fill(1, row.data());
    std::copy_n(row.begin(), rest.size(), rest.begin());
  }
  if (!unfair) [[likely]]
    return;
  std::vector<DrawnPair*> again;
  for (DrawnPair& pair : drawn) {
    if (pair.bits == kUnfair) again.push_back(&pair);
  }
  std::vector<DrawnPair> others(again.size());
  Draw(limits, others);
  for (std::size_t i = 0; i < again.size(); ++i) *again[i] = others[i];
}

void RandomNumbers::Draw(const PairLimits& limits, std::span<std::uint32_t> drawn) {
  POKERMATH_REQUIRE(limits.first() == limits.second());
  std::array<DrawnPair, 256> pairs;
  while (!drawn.empty()) {
    const std::size_t count = std::min(drawn.size(), 2 * pairs.size());
    Draw(limits, std::span(pairs).first((count + 1) / 2));
    for (std::size_t i = 0; i < count / 2; ++i) {
      drawn[2 * i] = pairs[i].first();
      drawn[2 * i + 1] = pairs[i].second();
    }
    if (count % 2 != 0) drawn[count - 1] = pairs[count / 2].first();
    drawn = drawn.subspan(count);
  }
}

}  // namespace pokermath
