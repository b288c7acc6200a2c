// Which of two hands wins.

#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"
#include "pokermath/showdown.h"

namespace pokermath {
namespace {

int Compare(const CCard& a, const CCard& b) { return a > b ? 1 : a < b ? -1 : 0; }

CDeck DeckOf(const int hand[2], const int board[], int board_cards, PokerLogic& logic) {
  CDeck deck;
  for (int i = 0; i < 2; ++i) deck.AddCard(hand[i]);
  for (int i = 0; i < board_cards; ++i) deck.AddCard(board[i]);
  deck.SetValueCombination(logic);
  return deck;
}

}  // namespace
}  // namespace pokermath

int WhatHandIsBetter(int a[2], int b[2]) {
  const CCard a1(a[0]), a2(a[1]), b1(b[0]), b2(b[1]);
  const bool pair_a = a1 == a2;
  const bool pair_b = b1 == b2;
  if (pair_a != pair_b) return pair_a ? 1 : -1;
  const int first = pokermath::Compare(a1, b1);
  return first != 0 ? first : pokermath::Compare(a2, b2);
}

int WhoIsWinner(int a[2], int b[2], int board[], int nBoard, PokerLogic& logic) {
  return nBoard == 0 ? WhatHandIsBetter(a, b) : FindMaxCombination(a, b, board, nBoard, logic);
}

int FindMaxCombination(int a[2], int b[2], int board[], int nBoard, PokerLogic& logic) {
  return pokermath::DeckOf(a, board, nBoard, logic)
      .compareTo(pokermath::DeckOf(b, board, nBoard, logic));
}
