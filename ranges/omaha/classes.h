// Classes of Omaha hands that differ in the names of their suits only, and their numbers.

#ifndef POKERMATH_RANGES_OMAHA_CLASSES_H_
#define POKERMATH_RANGES_OMAHA_CLASSES_H_

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "eval/rank_sets.h"
#include "ranges/omaha/shapes.h"

namespace pokermath {

/// A class is known by the first of its hands: card by card, high ranks come first and then spades,
/// hearts, diamonds, clubs. That is the hand whose sets of ranks fall from suit to suit.
struct OmahaClass {
  /// The ranks of the spades, hearts, diamonds and clubs.
  std::array<RankSet, 4> suits{};

  bool operator==(const OmahaClass&) const = default;
};

/// The class of a hand, its cards in any order.
OmahaClass OmahaClassOf(std::span<const int> hand);

/// How many hands the class has, 1..24. They are the permutations of its suits.
int HandsOf(const OmahaClass& hands);

/// Place of the hands' split in kSuitSplits.
template <int cards>
std::size_t SplitOfClass(const OmahaClass& hands) {
  SuitCounts counts = 0;
  for (int suit = 0; suit < 4; ++suit) {
    const RankSet ranks = hands.suits[static_cast<std::size_t>(suit)];
    counts += OneOfSuit(suit) * static_cast<SuitCounts>(std::popcount(ranks));
  }
  return kSplitOfCounts<cards>[counts];
}

/// The first hand of the class as card codes, high ranks first and then spades first.
std::vector<int> CardsOf(const OmahaClass& hands);

/// A hand by the ranks of its spades, hearts, diamonds and clubs, the lowest codes first.
template <std::size_t cards>
std::array<int, cards> HandOfSuits(const std::array<RankSet, 4>& suits) {
  std::array<int, cards> hand{};
  auto next = hand.begin();
  for (std::size_t suit = 4; suit-- > 0;) {
    for (unsigned ranks = suits[suit]; ranks != 0; ranks &= ranks - 1) {
      *next++ = 13 * (3 - static_cast<int>(suit)) + std::countr_zero(ranks);
    }
  }
  return hand;
}

/// Calls `visit` with the card codes of every hand of a class of so many cards.
template <std::size_t cards, typename Visit>
void ForEachHandOf(const OmahaClass& hands, const Visit& visit) {
  std::array<RankSet, 4> suits = hands.suits;
  do {
    visit(HandOfSuits<cards>(suits));
  } while (std::ranges::next_permutation(suits, std::greater()).found);
}

/// Whether the first hand of one class comes before that of another.
bool ComesBefore(const OmahaClass& hands, const OmahaClass& others);

inline constexpr int OmahaClassCount(int hand_size) { return hand_size == 4 ? 16432 : 134459; }

/// Every class of hands of four or five cards in the order of ComesBefore: a class's place is its
/// number.
std::vector<OmahaClass> OmahaClasses(int hand_size);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_CLASSES_H_
