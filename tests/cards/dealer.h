// Random cards for tests, the same in every run.

#ifndef POKERMATH_TESTS_CARDS_DEALER_H_
#define POKERMATH_TESTS_CARDS_DEALER_H_

#include <algorithm>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "pokermath/cards.h"

namespace pokermath {

class Dealer {
 public:
  explicit Dealer(std::uint32_t seed) : seed_(seed), random_(seed) {}

  std::string Trace() const { return "seed " + std::to_string(seed_); }

  int Below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }

  // `count` different cards in random order. Up to 20 cards come by chance from the whole
  // deck, from two suits or from six neighbouring ranks, so that flushes, straights, full houses
  // and ranks that hands share are common.
  std::vector<int> Deal(int count) {
    const int kind = count > 20 ? 0 : Below(3);
    const int low = Below(8);
    std::vector<int> cards;
    for (int card = 0; card < 52; ++card) {
      const bool suit_fits = card / 13 % 2 == low % 2;
      const bool rank_fits = card % 13 >= low && card % 13 < low + 6;
      if (kind == 0 || (kind == 1 ? suit_fits : rank_fits)) cards.push_back(card);
    }
    std::shuffle(cards.begin(), cards.end(), random_);
    cards.resize(static_cast<std::size_t>(count));
    return cards;
  }

 private:
  std::uint32_t seed_;
  std::mt19937 random_;
};

inline std::string CardNames(std::span<const int> cards) {
  std::string names;
  for (const int card : cards) names += CardName(card);
  return names;
}

}  // namespace pokermath

#endif  // POKERMATH_TESTS_CARDS_DEALER_H_
