// Card codes as hosts pass them, and as bits of a number.

#ifndef POKERMATH_CARDS_CARD_LIST_H_
#define POKERMATH_CARDS_CARD_LIST_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace pokermath {

inline std::span<const int> CardsOf(const int* cards, int count) {
  return {cards, static_cast<std::size_t>(count)};
}

constexpr std::uint64_t Bit(int card) { return std::uint64_t{1} << card; }
constexpr std::uint64_t Bits(std::span<const int> cards) {
  std::uint64_t bits = 0;
  for (const int card : cards) bits |= Bit(card);
  return bits;
}
constexpr std::uint64_t Bits(const std::pair<int, int>& holding) {
  return Bit(holding.first) | Bit(holding.second);
}

}  // namespace pokermath

#endif  // POKERMATH_CARDS_CARD_LIST_H_
