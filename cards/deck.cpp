// CDeck, a list of cards.

#include "pokermath/cards.h"

void CDeck::AddCard(CCard card) { cards_.push_back(card); }

void CDeck::DeleteCards() { cards_.clear(); }

int CDeck::GetTotalCards() const { return static_cast<int>(cards_.size()); }

CString CDeck::display2() const {
  CString text;
  for (const CCard& card : cards_) text += card.GetName2() + L" ";
  return text;
}
