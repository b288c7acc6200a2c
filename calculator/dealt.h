// Cards that were dealt together.

#ifndef POKERMATH_CALCULATOR_DEALT_H_
#define POKERMATH_CALCULATOR_DEALT_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pokermath/calculator.h"
#include "pokermath/card_set.h"

namespace pokermath {

/// Cards that were dealt together, and the sum of their words of the compact evaluator.
struct DealtCards {
  CardSet cards;
  std::uint64_t word = 0;

  DealtCards operator+(const DealtCards& other) const {
    return {cards | other.cards, word + other.word};
  }
};
DealtCards DealtOf(CardSet cards);
/// All sets of so many cards, by their highest card, then the next one: those of the lowest cards
/// come first.
std::vector<DealtCards> DealtSetsOf(CardSet from, int count);

/// Some deals side by side.
struct DealtBlock {
  static constexpr std::size_t kMost = 512;
  template <typename T>
  using Each = std::array<T, kMost>;

  /// Of the players who have more than one.
  std::array<Each<DealtCards>, kMostPlayers> hands;
  /// In the ranges of those that are listed.
  std::array<Each<std::uint32_t>, kMostPlayers> places;
  Each<DealtCards> next;  ///< what comes next; with Detail::next
  Each<DealtCards> board;
};

/// Calls visit(i) for 0 .. count - 1, some calls to a turn of the loop.
template <typename Visit>
void ForEachDeal(std::size_t count, const Visit& visit) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    visit(i);
    visit(i + 1);
    visit(i + 2);
    visit(i + 3);
  }
  for (; i < count; ++i) visit(i);
}

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_DEALT_H_
