// The categories of values, and values and hands in words.

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Place of the first limit that a value is below.
template <std::size_t size>
int CategoryBelow(int value, const std::array<int, size>& limits) {
  return static_cast<int>(std::ranges::upper_bound(limits, value) - limits.begin());
}

}  // namespace

const char* CategoryName(int ascending) {
  static constexpr const char* kNames[11] = {
      "",      "high card",  "one pair",       "two pair",       "three of a kind", "straight",
      "flush", "full house", "four of a kind", "straight flush", "royal flush"};
  return ascending > 7462 ? "" : kNames[Get_rankFsm5(ascending)];
}

const char* ShortDeckCategoryName(int value) {
  static constexpr const char* kNames[11] = {"",
                                             "high card",
                                             "one pair",
                                             "two pair",
                                             "straight",
                                             "three of a kind",
                                             "full house",
                                             "flush",
                                             "four of a kind",
                                             "straight flush",
                                             "royal flush"};
  return value > 1404 ? "" : kNames[Get_rank36(value)];
}

std::string HandInWords(std::span<const int> cards) {
  if (cards.size() < 5 || cards.size() > 7) return "";
  PokerLogic logic;
  CDeck deck;
  for (const int card : cards) deck.AddCard(card);
  deck.SetValueCombination(logic);
  constexpr int kRoyalFlush = 10;
  if (deck.value[0] == kRoyalFlush) return "royal flush";
  return deck.value[0] == 0 ? "" : ToUtf8(deck.display());
}

}  // namespace pokermath

int Get_rankFsm5(int value) {
  constexpr std::array<int, 10> kStarts = {1, 1278, 4138, 4996, 5854, 5864, 7141, 7297, 7453, 7462};
  return pokermath::CategoryBelow(value, kStarts);
}

int verify_rankFsm5(int value, CString& name) {
  static constexpr const wchar_t* kNames[11] = {
      L"Error", L"high card",   L"one pair",     L"two pairs",      L"three of kind", L"straight",
      L"flush", L"full houses", L"four of kind", L"straight flush", L"Royal Flush"};
  name = kNames[value > 7462 ? 9 : Get_rankFsm5(value)];
  return 1;
}

int Get_rank36(int value) {
  constexpr std::array<int, 10> kStarts = {1, 121, 625, 877, 883, 1135, 1207, 1327, 1399, 1404};
  return pokermath::CategoryBelow(value, kStarts);
}

int Get_rankHoldem6PlusFsm5(int value) {
  constexpr std::array<int, 10> kStarts = {1, 1278, 4138, 4996, 5006, 5864, 6020, 7297, 7453, 7462};
  return pokermath::CategoryBelow(value, kStarts);
}
