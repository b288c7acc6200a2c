// CDeck, a list of cards, and its value by the rules of poker.
//
// The value orders decks of five to seven cards as the evaluators do. With more than five cards
// there may be more groups of equal ranks than a hand uses, and a straight and a flush that are not
// of the same cards.

#include <algorithm>
#include <array>
#include <initializer_list>

#include "cards/rank_names.h"
#include "cards/rules.h"
#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

using Ranks = std::vector<int>;  // from high to low

// Sets the value to a category, the ranks that make it, and the highest `others` of the other
// ranks.
void SetValue(std::int32_t (&value)[6], int category, std::initializer_list<int> made_of,
              const Ranks& ranks, int others) {
  std::ranges::fill(value, 0);
  std::int32_t* place = value;
  *place++ = category;
  for (const int rank : made_of) *place++ = rank;
  for (const int rank : ranks) {
    if (std::ranges::find(made_of, rank) != made_of.end()) continue;
    if (others-- == 0) break;
    *place++ = rank;
  }
}

std::wstring_view RankName(int rank) { return rank == 12 ? FaceName(1) : FaceName(rank + 2); }

}  // namespace
}  // namespace pokermath

void CDeck::AddCard(CCard card) { cards.push_back(card); }

void CDeck::DeleteCards() { cards.clear(); }

int CDeck::GetTotalCards() const { return static_cast<int>(cards.size()); }

CString CDeck::display2() const {
  CString text;
  for (const CCard& card : cards) text += card.GetName2() + L" ";
  return text;
}

bool CDeck::isFlush() const {
  std::array<int, 4> count{};
  for (const CCard& card : cards) ++count[static_cast<std::size_t>(card.GetSuitAsInt())];
  return std::ranges::max(count) >= 5;
}

void CDeck::SetValueCombination(PokerLogic& logic) {
  using pokermath::SetValue;
  std::ranges::fill(value, 0);
  std::vector<int> codes;
  for (const CCard& card : cards) {
    if (!card.IsValid()) return;
    codes.push_back(card.GetInt());
  }

  pokermath::Ranks ranks(codes.size());
  std::vector<int> suits(codes.size());
  int suit_counts[4] = {};
  logic.sortHand(codes, ranks, suits, suit_counts);
  if (logic.isRoyalFlush(ranks, suits, suit_counts) >= 0) {
    value[0] = 10;
    return;
  }
  std::array<int, 14> count{};
  for (const int rank : ranks) ++count[static_cast<std::size_t>(rank)];
  const auto [same, same2, large, small] = pokermath::FindRankGroups(count, 0);
  const int straight = logic.isStraight(ranks);

  // Later rules overwrite earlier ones.
  if (same == 1) SetValue(value, 1, {}, ranks, 5);
  if (same == 2 && same2 == 1) SetValue(value, 2, {large}, ranks, 3);
  if (same == 2 && same2 == 2) SetValue(value, 3, {large, small}, ranks, 1);
  if (same == 3 && same2 == 1) SetValue(value, 4, {large}, ranks, 2);
  if (straight >= 0) SetValue(value, 5, {straight}, {}, 0);
  if (logic.isFlush(ranks, suits, suit_counts) >= 0) {
    SetValue(value, 6, {}, pokermath::FlushRanks(ranks, suits, suit_counts), 5);
  }
  if (same == 3 && same2 >= 2) SetValue(value, 7, {large, small}, {}, 0);
  if (same == 4) SetValue(value, 8, {large}, ranks, 1);
  if (const int top = logic.isStraightFlush(ranks, suits, suit_counts); top >= 0) {
    SetValue(value, 9, {top}, {}, 0);
  }
}

void CDeck::SetValueCombinationOmaha(PokerLogic& logic) {
  std::ranges::fill(value, 0);
  if (cards.size() < 7) return;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = i + 1; j < 4; ++j)
      for (std::size_t a = 4; a + 2 < cards.size(); ++a)
        for (std::size_t b = a + 1; b + 1 < cards.size(); ++b)
          for (std::size_t c = b + 1; c < cards.size(); ++c) {
            CDeck five;
            five.cards = {cards[i], cards[j], cards[a], cards[b], cards[c]};
            five.SetValueCombination(logic);
            if (pokermath::CompareValues(five.value, value) > 0)
              std::ranges::copy(five.value, value);
          }
}

int CDeck::compareTo(CDeck other) const { return pokermath::CompareValues(value, other.value); }

CString CDeck::display() const {
  const auto name = [this](int place) { return CString(pokermath::RankName(value[place])); };
  switch (value[0]) {
    case 1:
      return L"high card " + name(1) + L" high";
    case 2:
      return L"pair of " + name(1) + L" kicker " + name(2) + L" kicker " + name(3);
    case 3:
      return L"two pair " + name(1) + L" " + name(2) + L" kicker " + name(3);
    case 4:
      return L"three of a kind " + name(1) + L" kicker " + name(2) + L" kicker " + name(3);
    case 5:
      return name(1) + L" high straight";
    case 6:
      return L"flush " + name(1) + L" high";
    case 7:
      return L"full house " + name(1) + L" over " + name(2);
    case 8:
      return L"four of a kind " + name(1);
    case 9:
      return L"straight flush " + name(1) + L" high";
    case 10:
      return L"RoyalFlush ";
    default:
      return L"error in Hand.display: m_value[0] contains invalid value";
  }
}
