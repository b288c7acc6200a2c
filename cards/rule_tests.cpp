// The categories of poker hands as rules on sorted ranks: PokerLogic's members.

#include <algorithm>
#include <cstddef>
#include <limits>

#include "cards/rules.h"
#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr int kNone = -1;

// The first place where `count` neighbouring ranks are equal, from `first` on; the size of the list
// when there is none.
std::size_t FindEqual(const std::vector<int>& ranks, std::size_t count, std::size_t first = 0) {
  for (std::size_t i = first; i + count <= ranks.size(); ++i) {
    std::size_t equal = 1;
    while (equal < count && ranks[i + equal] == ranks[i]) ++equal;
    if (equal == count) return i;
  }
  return ranks.size();
}

int RankOfEqual(const std::vector<int>& ranks, std::size_t count) {
  const std::size_t place = FindEqual(ranks, count);
  return place == ranks.size() ? kNone : ranks[place];
}

// The first suit that has so many cards, or none.
int FindSuit(const int* suit_counts, int least, int most) {
  for (int suit = 0; suit < 4; ++suit) {
    if (suit_counts[suit] >= least && suit_counts[suit] <= most) return suit;
  }
  return kNone;
}

int HighestOf(int suit, const std::vector<int>& ranks, const std::vector<int>& suits) {
  int highest = kNone;
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    if (suits[i] == suit) highest = std::max(highest, ranks[i]);
  }
  return highest;
}

constexpr int kAll = std::numeric_limits<int>::max();

}  // namespace

std::vector<int> FlushRanks(const std::vector<int>& ranks, const std::vector<int>& suits,
                            const int* suit_counts) {
  std::vector<int> suited;
  const int suit = ranks.size() < 5 ? kNone : FindSuit(suit_counts, 5, kAll);
  if (suit == kNone) return suited;
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    if (suits[i] == suit) suited.push_back(ranks[i]);
  }
  return suited;
}

}  // namespace pokermath

using pokermath::kNone;

void PokerLogic::sortHand(std::vector<int>& cards, std::vector<int>& ranks, std::vector<int>& suits,
                          int* suitCounts) const {
  std::ranges::sort(cards, comparefun);
  for (std::size_t i = 0; i < cards.size(); ++i) {
    ranks[i] = cards[i] % 13;
    suits[i] = cards[i] / 13;
    ++suitCounts[suits[i]];
  }
}

int PokerLogic::isHighCard(const std::vector<int>& ranks) const {
  return ranks.empty() ? kNone : ranks[0];
}

int PokerLogic::isOnePair(const std::vector<int>& ranks) const {
  return pokermath::RankOfEqual(ranks, 2);
}

int PokerLogic::isTwoPair(const std::vector<int>& ranks) const {
  const std::size_t first = pokermath::FindEqual(ranks, 2);
  const std::size_t second = pokermath::FindEqual(ranks, 2, first + 1);
  return second >= ranks.size() ? kNone : std::max(ranks[first], ranks[second]);
}

int PokerLogic::isSet(const std::vector<int>& ranks) const {
  return pokermath::RankOfEqual(ranks, 3);
}

int PokerLogic::isQuads(const std::vector<int>& ranks) const {
  return pokermath::RankOfEqual(ranks, 4);
}

int PokerLogic::isFullHouse(const std::vector<int>& ranks) const {
  int three = kNone;
  for (std::size_t i = 0; i + 2 < ranks.size(); ++i) {
    if (ranks[i] == ranks[i + 1] && ranks[i] == ranks[i + 2]) three = ranks[i];
  }
  for (std::size_t i = 0; three != kNone && i + 1 < ranks.size(); ++i) {
    if (ranks[i] == ranks[i + 1] && ranks[i] != three) return three;
  }
  return kNone;
}

int PokerLogic::isStraight(const std::vector<int>& ranks) const {
  if (ranks.size() < 5) return kNone;
  int steps = 0;
  int top = kNone;
  for (std::size_t i = 0; i + 1 < ranks.size(); ++i) {
    const int difference = ranks[i] - ranks[i + 1];
    if (difference == 0) continue;
    if (difference == 1) {
      ++steps;
      top = std::max(top, ranks[i]);
      if (steps == 4) return top;
    } else {
      steps = 0;
      top = kNone;
    }
  }
  // Five high, and the ace below the deuce.
  return steps == 3 && top == 3 && ranks.back() == 0 && ranks.front() == 12 ? top : kNone;
}

int PokerLogic::isFlush(const std::vector<int>& ranks, const std::vector<int>& suits,
                        const int* suitCounts) const {
  if (ranks.size() < 5) return kNone;
  const int suit = pokermath::FindSuit(suitCounts, 5, pokermath::kAll);
  return suit == kNone ? kNone : pokermath::HighestOf(suit, ranks, suits);
}

int PokerLogic::isFlushDraw(const std::vector<int>& ranks, const std::vector<int>& suits,
                            const int* suitCounts) const {
  if (pokermath::FindSuit(suitCounts, 5, pokermath::kAll) != kNone) return kNone;
  const int suit = pokermath::FindSuit(suitCounts, 4, 4);
  return suit == kNone ? kNone : pokermath::HighestOf(suit, ranks, suits);
}

int PokerLogic::isStraightFlush(const std::vector<int>& ranks, const std::vector<int>& suits,
                                const int* suitCounts) const {
  return isStraight(pokermath::FlushRanks(ranks, suits, suitCounts));
}

int PokerLogic::isRoyalFlush(const std::vector<int>& ranks, const std::vector<int>& suits,
                             const int* suitCounts) const {
  int wanted = 12;
  for (const int rank : pokermath::FlushRanks(ranks, suits, suitCounts)) {
    if (rank == wanted && --wanted == 7) return 12;
  }
  return kNone;
}

int PokerLogic::getCombination(int* hole, int* board, int boardCount) {
  if (boardCount < 3 || boardCount > 5) return 0;
  CDeck cards;
  for (int i = 0; i < 2; ++i) cards.AddCard(hole[i]);
  for (int i = 0; i < boardCount; ++i) cards.AddCard(board[i]);
  cards.SetValueCombination(*this);
  return cards.value[0];
}
