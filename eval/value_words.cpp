// Values and hands in words.

#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {

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
