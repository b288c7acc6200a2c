// The choices of some places out of many, numbered: by their highest place, then the next one.

#ifndef POKERMATH_CALCULATOR_CHOICES_H_
#define POKERMATH_CALCULATOR_CHOICES_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "pokermath/card_set.h"

namespace pokermath {

/// Ways to choose `size` of `places`; below 2^63 for those of cards.
constexpr std::int64_t ChoicesOf(int places, int size) {
  std::int64_t ways = 1;
  for (int i = 0; i < size; ++i) ways = ways * (places - i) / (i + 1);
  return places < size ? 0 : ways;
}

inline std::vector<int> ListOf(CardSet cards) { return {cards.begin(), cards.end()}; }

/// Walks choices in the order of their numbers.
class Choice {
 public:
  Choice(std::int64_t number, int places, int size) : places_(static_cast<std::size_t>(size)) {
    for (int i = size; i > 0; --i) {
      int place = places - 1;
      while (ChoicesOf(place, i) > number) --place;
      places_[static_cast<std::size_t>(i) - 1] = place;
      number -= ChoicesOf(place, i);
      places = place;
    }
  }

  /// Not behind the last one.
  void MoveToNext() {
    std::size_t i = 0;
    while (i + 1 < places_.size() && places_[i] + 1 == places_[i + 1]) {
      places_[i] = static_cast<int>(i);
      ++i;
    }
    if (i < places_.size()) ++places_[i];
  }

  /// Of at least one.
  int Lowest() const { return places_[0]; }
  /// The cards at the places.
  CardSet Of(std::span<const int> cards) const {
    CardSet chosen;
    for (const int place : places_) chosen.Add(cards[static_cast<std::size_t>(place)]);
    return chosen;
  }

 private:
  std::vector<int> places_;  // rising
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_CHOICES_H_
