// Classes of Omaha hands that differ in the names of their suits only, and their numbers.

#ifndef POKERMATH_RANGES_OMAHA_CLASSES_H_
#define POKERMATH_RANGES_OMAHA_CLASSES_H_

#include <array>
#include <span>
#include <vector>

#include "eval/rank_sets.h"

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

/// The first hand of the class as card codes, high ranks first and then spades first.
std::vector<int> CardsOf(const OmahaClass& hands);

/// Whether the first hand of one class comes before that of another.
bool ComesBefore(const OmahaClass& hands, const OmahaClass& others);

inline constexpr int OmahaClassCount(int hand_size) { return hand_size == 4 ? 16432 : 134459; }

/// Every class of hands of four or five cards in the order of ComesBefore: a class's place is its
/// number.
std::vector<OmahaClass> OmahaClasses(int hand_size);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_CLASSES_H_
