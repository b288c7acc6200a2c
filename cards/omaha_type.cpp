// CHandOmahaType: which flush an Omaha hand makes.

#include <algorithm>

#include "pokermath/cards.h"
#include "pokermath/omaha.h"

namespace {

constexpr int kNone = -1;

// Sorts cards and takes them apart; places behind them stay unset.
template <int size>
void TakeApart(const int* from, int count, int (&cards)[size], int (&ranks)[size],
               int (&suits)[size], int (&suit_counts)[4]) {
  std::ranges::fill(cards, kNone);
  std::ranges::fill(ranks, kNone);
  std::ranges::fill(suits, kNone);
  std::ranges::fill(suit_counts, 0);
  std::copy(from, from + count, cards);
  std::sort(cards, cards + count, comparefun);
  for (int i = 0; i < count; ++i) {
    ranks[i] = cards[i] % 13;
    suits[i] = cards[i] / 13;
    ++suit_counts[suits[i]];
  }
}

// The ranks of the cards of a suit; how many there are.
template <int size>
int RanksOf(int suit, const int (&ranks)[size], const int (&suits)[size], int (&found)[size]) {
  std::ranges::fill(found, kNone);
  int count = 0;
  for (int i = 0; i < size && suit != kNone; ++i) {
    if (suits[i] == suit) found[count++] = ranks[i];
  }
  return count;
}

}  // namespace

CHandOmahaType::CHandOmahaType(int* hand, int* board, int boardCards_)
    : boardCount(std::clamp(boardCards_, 0, 5)), flushSuit(kNone) {
  TakeApart(hand, 4, holeCards, holeRanks, holeSuits, holeSuitCounts);
  TakeApart(board, boardCount, boardCards, boardRanks, boardSuits, boardSuitCounts);
  for (int suit = 3; suit >= 0; --suit) {
    if (boardSuitCounts[suit] >= 3 && holeSuitCounts[suit] >= 2) flushSuit = suit;
  }
  flushHoleCount = RanksOf(flushSuit, holeRanks, holeSuits, flushHoleRanks);
  flushBoardCount = RanksOf(flushSuit, boardRanks, boardSuits, flushBoardRanks);
}

int CHandOmahaType::getOmahaHand() const {
  if (isRoyalFlushOmaha() == 1) return 117;
  if (isStraightFlush() == 1) return 104;
  return flushSuit != kNone ? 65 : kNone;
}

int CHandOmahaType::isRoyalFlushOmaha() const {
  if (boardCount < 3 || flushSuit == kNone) return kNone;
  int hole = 0;
  int board = 0;
  for (int rank = 12; hole < 3 && board < 4; --rank) {
    if (rank < 8) return 1;
    if (flushHoleRanks[hole] == rank) {
      ++hole;
    } else if (flushBoardRanks[board] == rank) {
      ++board;
    } else {
      break;
    }
  }
  return kNone;
}

int CHandOmahaType::isStraightFlush() const { return kNone; }

int CHandOmahaType::isFlushOmaha() const { return flushSuit; }

int CHandOmahaType::isFlushDrawOmaha(int* suits, int& count) const {
  count = 0;
  for (int suit = 0; suit < 4; ++suit) {
    if (boardSuitCounts[suit] >= 2 && holeSuitCounts[suit] >= 2) suits[count++] = suit;
  }
  return count;
}
