#include "calculator/dealt.h"

#include <span>

#include "calculator/choices.h"
#include "pokermath/evaluators.h"

namespace pokermath {

DealtCards DealtOf(CardSet cards) {
  DealtCards dealt{cards, 0};
  for (const int card : cards) dealt.word += kCompactTables.card_words[card];
  return dealt;
}

namespace {

// All sets of `count` more of some cards, added to those that are chosen already.
void AddSets(std::span<const DealtCards> cards, int count, const DealtCards& chosen,
             std::vector<DealtCards>& sets) {
  if (count == 0) {
    sets.push_back(chosen);
    return;
  }
  for (std::size_t i = 0; i < cards.size(); ++i) {
    AddSets(cards.first(i), count - 1, chosen + cards[i], sets);
  }
}

}  // namespace

std::vector<DealtCards> DealtSetsOf(CardSet from, int count) {
  std::vector<DealtCards> cards, sets;
  for (const int card : from) cards.push_back(DealtOf({card}));
  sets.reserve(static_cast<std::size_t>(ChoicesOf(from.size(), count)));
  AddSets(cards, count, {}, sets);
  return sets;
}

}  // namespace pokermath
