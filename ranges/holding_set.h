// Sets of two-card hands.

#ifndef POKERMATH_RANGES_HOLDING_SET_H_
#define POKERMATH_RANGES_HOLDING_SET_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "ranges/omaha/hands.h"

namespace pokermath {

/// A bit for each of the 1,326 hands, by their numbers.
class HoldingSet {
 public:
  bool Empty() const { return *this == HoldingSet(); }
  bool operator==(const HoldingSet&) const = default;

  void Add(int card1, int card2) {
    const auto number = static_cast<std::size_t>(HandNumber<2>(std::array{card1, card2}));
    words_[number / 64] |= std::uint64_t{1} << number % 64;
  }
  void Unite(const HoldingSet& other) {
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
  }
  void Subtract(const HoldingSet& other) {
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= ~other.words_[i];
  }

  std::span<const std::uint64_t> Words() const { return words_; }

 private:
  std::array<std::uint64_t, (1326 + 63) / 64> words_{};
};

}  // namespace pokermath

#endif  // POKERMATH_RANGES_HOLDING_SET_H_
