#include "cli/words.h"

#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath::cli {

std::string InWords(std::span<const int> cards) {
  PokerLogic logic;
  CDeck deck;
  for (const int card : cards) deck.AddCard(card);
  deck.SetValueCombination(logic);
  std::string words = ToUtf8(deck.display());
  words.erase(words.find_last_not_of(' ') + 1);
  return words;
}

const char* CategoryName(int ascending) {
  static constexpr const char* kNames[11] = {
      "",      "high card",  "one pair",       "two pair",       "three of a kind", "straight",
      "flush", "full house", "four of a kind", "straight flush", "royal flush"};
  return kNames[Get_rankFsm5(ascending)];
}

}  // namespace pokermath::cli
