// Classes of Omaha hands that differ in the names of their suits only, and their numbers.

#ifndef POKERMATH_RANGES_OMAHA_CLASSES_H_
#define POKERMATH_RANGES_OMAHA_CLASSES_H_

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
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

/// How many classes there are of hands of so many cards: 16,432 of four, 134,459 of five, 962,988
/// of six.
///
/// The mean over the 24 ways to rename suits of how many hands stay what they are, which are those
/// that hold all or none of the cards of each cycle (Burnside's lemma).
constexpr int OmahaClassCount(int hand_size) {
  // Cycles of one, two, three and four suits, and how many renamings have them.
  constexpr int kRenamings[5][5] = {
      {4, 0, 0, 0, 1}, {2, 1, 0, 0, 6}, {0, 2, 0, 0, 3}, {1, 0, 1, 0, 8}, {0, 0, 0, 1, 6}};
  std::int64_t hands = 0;
  for (const auto& renaming : kRenamings) {
    // By number of cards: sets of whole cycles.
    std::array<std::int64_t, 53> sets = {1};
    for (int length = 1; length <= 4; ++length) {
      for (int cycle = 0; cycle < 13 * renaming[length - 1]; ++cycle) {
        for (int cards = hand_size; cards >= length; --cards) {
          sets[static_cast<std::size_t>(cards)] += sets[static_cast<std::size_t>(cards - length)];
        }
      }
    }
    hands += renaming[4] * sets[static_cast<std::size_t>(hand_size)];
  }
  return static_cast<int>(hands / 24);
}

/// Every class of hands of so many cards in the order of ComesBefore: a class's place is its
/// number.
std::vector<OmahaClass> OmahaClasses(int hand_size);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_CLASSES_H_
