// CHand: five cards classified by face values, as a person would read them.

#include <algorithm>
#include <array>
#include <initializer_list>

#include "cards/rank_names.h"
#include "cards/rules.h"
#include "pokermath/cards.h"

namespace {

constexpr int kHighAce = 14;

// Whether five neighbouring ranks are there once each; the ace is also above the king.
bool IsStraight(const std::array<int, 14>& count) {
  const auto once = [&count](std::size_t face) { return count[face > 13 ? 1 : face] == 1; };
  for (std::size_t low = 1; low <= 10; ++low) {
    if (once(low) && once(low + 1) && once(low + 2) && once(low + 3) && once(low + 4)) return true;
  }
  return false;
}

// Ranks that are there once, from high to low, with zeros behind them.
std::array<int, 5> Singles(const std::array<int, 14>& count) {
  std::array<int, 5> singles{};
  std::size_t size = 0;
  if (count[1] == 1) singles[size++] = kHighAce;
  for (int face = 13; face >= 2; --face) {
    if (count[static_cast<std::size_t>(face)] == 1) singles[size++] = face;
  }
  return singles;
}

std::wstring_view NameOf(int face) {
  return pokermath::FaceName(face >= 1 && face <= 13 ? face : 1);
}

}  // namespace

CHand::CHand(CDeck deck) {
  std::array<int, 14> count{};
  bool flush = false;
  if (deck.GetTotalCards() == 5) {
    std::ranges::copy(deck.cards, cards);
    for (const CCard& card : cards) {
      if (card.GetRank() >= 1 && card.GetRank() <= 13) {
        ++count[static_cast<std::size_t>(card.GetRank())];
      }
    }
    flush = std::ranges::all_of(
        cards, [this](const CCard& card) { return card.GetSuit() == cards[0].GetSuit(); });
  }
  const auto [same, same2, large, small] = pokermath::FindRankGroups(count, 1);
  const std::array<int, 5> singles = Singles(count);
  const bool straight = IsStraight(count);
  const auto set = [this](std::initializer_list<int> ranks) {
    std::ranges::fill(value, 0);
    std::ranges::copy(ranks, value);
  };
  const auto set_straight = [this](int category) {
    value[0] = category;
    if (value[1] == kHighAce && value[2] == 5) value[1] = 5;
  };

  // Later rules overwrite earlier ones.
  if (same == 1) set({1, singles[0], singles[1], singles[2], singles[3], singles[4]});
  if (same == 2 && same2 == 1) set({2, large, singles[0], singles[1], singles[2]});
  if (same == 2 && same2 == 2) {
    // Aces are face value 1 and found last.
    if (small == 1) {
      set({3, kHighAce, large, singles[0]});
    } else {
      set({3, large, small, singles[0]});
    }
  }
  if (same == 3 && same2 != 2) set({4, large, singles[0], singles[1]});
  if (straight && !flush) set_straight(5);
  if (flush && !straight) set({6, singles[0], singles[1], singles[2], singles[3], singles[4]});
  if (same == 3 && same2 == 2) set({7, large, small});
  if (same == 4) set({8, large, singles[0]});
  if (straight && flush) set_straight(9);
}

int CHand::compareTo(CHand other) const { return pokermath::CompareValues(value, other.value); }

CString CHand::display() const {
  const auto name = [this](int place) { return CString(NameOf(value[place])); };
  switch (value[0]) {
    case 1:
      return L"high card " + name(1) + L" high";
    case 2:
      return L"pair of " + name(1) + L"'s";
    case 3:
      return L"two pair " + name(1) + L" " + name(2);
    case 4:
      return L"three of a kind " + name(1) + L"'s";
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
    default:
      return L"error in Hand.display: m_value[0] contains invalid value";
  }
}

CString CHand::displayAll() const {
  CString text;
  for (const CCard& card : cards) text += (text.empty() ? L"" : L" ") + card.GetName2();
  return text + L": " + display();
}
