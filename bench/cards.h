// Random cards for the benchmarks.

#ifndef POKERMATH_BENCH_CARDS_H_
#define POKERMATH_BENCH_CARDS_H_

#include <cstdint>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace pokermath {

/// `hands` times seven different card codes, one hand behind the other.
inline std::vector<std::uint8_t> RandomHands(std::size_t hands) {
  std::mt19937 random(1);
  std::vector<std::uint8_t> deck(52);
  std::iota(deck.begin(), deck.end(), std::uint8_t{0});
  std::vector<std::uint8_t> cards;
  for (std::size_t hand = 0; hand < hands; ++hand) {
    for (std::size_t i = 0; i < 7; ++i) {
      std::swap(deck[i], deck[i + random() % (52 - i)]);
      cards.push_back(deck[i]);
    }
  }
  return cards;
}

/// `hands` times `size` different card codes of rank `lowest` and better, one hand behind the
/// other.
inline std::vector<int> RandomHandsOf(std::size_t hands, int size, int lowest) {
  std::mt19937 random(1);
  std::vector<int> cards;
  for (std::size_t hand = 0; hand < hands; ++hand) {
    std::uint64_t used = 0;
    for (int i = 0; i < size;) {
      const auto card = static_cast<int>(random() % 52);
      if (card % 13 < lowest || (used >> card & 1) != 0) continue;
      used |= std::uint64_t{1} << card;
      cards.push_back(card);
      ++i;
    }
  }
  return cards;
}

}  // namespace pokermath

#endif  // POKERMATH_BENCH_CARDS_H_
