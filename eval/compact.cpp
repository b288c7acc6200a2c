// What people ask the compact evaluator about one hand.

#include "eval/scales.h"
#include "pokermath/evaluators.h"

namespace pokermath {

int EvaluateCards(const int* cards, int count) {
  switch (count) {
    case 5:
      return EvaluateCards<5>(cards);
    case 6:
      return EvaluateCards<6>(cards);
    case 7:
      return EvaluateCards<7>(cards);
    default:
      return 0;
  }
}

int EvaluateShortDeck(const int* cards, int count) {
  if (count < 5 || count > 7) return 0;
  std::uint64_t sum = ShortDeckTables::kSuitStart;
  std::uint64_t bits = 0;
  for (int i = 0; i < count; ++i) {
    sum += kShortDeckTables.card_words[cards[i]];
    bits |= std::uint64_t{1} << cards[i];
  }
  if ((sum & ShortDeckTables::kAbsentBits) != 0) return 0;
  switch (count) {
    case 5:
      return kShortDeckTables.ValueOf<5>(sum, bits);
    case 6:
      return kShortDeckTables.ValueOf<6>(sum, bits);
    default:
      return kShortDeckTables.ValueOf<7>(sum, bits);
  }
}

int HandRanksFromAscending(int ascending) { return ToHandRanks(ascending); }

void FindBestFive(const int* cards, int count, int best[5]) {
  if (count < 5 || count > 7) return;
  const int value = EvaluateCards(cards, count);
  for (unsigned chosen = 0; chosen < 1u << count; ++chosen) {
    if (__builtin_popcount(chosen) != 5) continue;
    int five[5];
    int size = 0;
    for (int i = 0; i < count; ++i) {
      if ((chosen >> i & 1) == 0) continue;
      best[size] = i;
      five[size++] = cards[i];
    }
    if (EvaluateCards<5>(five) == value) return;
  }
}

}  // namespace pokermath
