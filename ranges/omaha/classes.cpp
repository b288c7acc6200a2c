// Suits that hold the same ranks so far are alike, so a hand is the first one of its class if, card
// by card, no suit gets ahead of the one before it. That finds all of them without ever looking at
// another hand.

#include "ranges/omaha/classes.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace pokermath {
namespace {

// Takes so many more cards from a place of the deck on, where the high ranks come first.
void AddClasses(int place, int cards, OmahaClass& hands, std::vector<OmahaClass>& classes) {
  for (; place < 52; ++place) {
    const auto suit = static_cast<std::size_t>(place % 4);
    const RankSet before = hands.suits[suit];
    const auto after = static_cast<RankSet>(before | 1 << (12 - place / 4));
    if (suit > 0 && after > hands.suits[suit - 1]) continue;
    hands.suits[suit] = after;
    if (cards == 1) {
      classes.push_back(hands);
    } else {
      AddClasses(place + 1, cards - 1, hands, classes);
    }
    hands.suits[suit] = before;
  }
}

}  // namespace

OmahaClass OmahaClassOf(std::span<const int> hand) {
  OmahaClass hands;
  for (const int card : hand) {
    hands.suits[static_cast<std::size_t>(card / 13)] |= static_cast<RankSet>(1 << card % 13);
  }
  std::ranges::sort(hands.suits, std::greater());
  return hands;
}

int HandsOf(const OmahaClass& hands) {
  // By which suits hold the same as the one before.
  constexpr int kPermutations[8] = {24, 12, 12, 4, 12, 6, 4, 1};
  unsigned alike = 0;
  for (std::size_t suit = 1; suit < 4; ++suit) {
    alike |= hands.suits[suit] == hands.suits[suit - 1] ? 1u << (suit - 1) : 0;
  }
  return kPermutations[alike];
}

std::vector<int> CardsOf(const OmahaClass& hands) {
  std::vector<int> cards;
  for (int rank = 12; rank >= 0; --rank) {
    for (int suit = 0; suit < 4; ++suit) {
      const bool held = (hands.suits[static_cast<std::size_t>(suit)] >> rank & 1) != 0;
      if (held) cards.push_back(13 * (3 - suit) + rank);
    }
  }
  return cards;
}

bool ComesBefore(const OmahaClass& hands, const OmahaClass& others) {
  unsigned different = 0;
  for (std::size_t suit = 0; suit < 4; ++suit) different |= hands.suits[suit] ^ others.suits[suit];
  const unsigned highest = std::bit_floor(different);
  for (std::size_t suit = 0; suit < 4; ++suit) {
    const unsigned held = hands.suits[suit] & highest;
    if (held != (others.suits[suit] & highest)) return held != 0;
  }
  return false;
}

std::vector<OmahaClass> OmahaClasses(int hand_size) {
  std::vector<OmahaClass> classes;
  classes.reserve(static_cast<std::size_t>(OmahaClassCount(hand_size)));
  OmahaClass hands;
  AddClasses(0, hand_size, hands, classes);
  return classes;
}

}  // namespace pokermath
