// What cards are worth: one hand, many hands at once, and a loop over cards that are to come.

#include <pokermath/cards.h>
#include <pokermath/evaluators.h>
#include <pokermath/hand_sum.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

using namespace pokermath;

int main(int argc, char** argv) {
  // The evaluators check nothing, so that text is checked here.
  const CardsResult read = ParseCards(argc > 1 ? argv[1] : "AhKhQhJhTh2c3d");
  if (!read.error.empty()) return std::fprintf(stderr, "%s\n", read.error.c_str()), 1;
  const int count = static_cast<int>(read.cards.size());
  if (count < 5 || count > 7) return std::fprintf(stderr, "expected 5 to 7 cards\n"), 1;

  // The ascending scale: 1..7462, larger is better.
  const int value = EvaluateCards(read.cards.data(), count);
  std::printf("%d, %s: %s\n", value, CategoryName(value), HandInWords(read.cards).c_str());
  // The descending scale: 7462..1, smaller is better.
  std::printf("%d\n", 7463 - value);
  int best[5];
  FindBestFive(read.cards.data(), count, best);
  std::string playing;
  for (const int place : best) playing += CardName(read.cards[static_cast<std::size_t>(place)]);
  std::printf("%s\n", playing.c_str());

  // Many hands: bytes, one hand behind the other.
  const std::vector<std::uint8_t> cards = {0,  13, 26, 39, 1,  2,  3,    // four deuces
                                           12, 0,  1,  2,  16, 30, 44};  // an ace with 2 3 4 5 6 7
  std::array<std::uint16_t, 2> values;
  EvaluateBatch(7, cards.data(), values.size(), values.data());
  std::printf("%s, %s\n", CategoryName(values[0]), CategoryName(values[1]));

  // A loop over what may come: a card more is a few additions.
  const HandSum pair(CardSet{12, 25, 0, 14, 28});  // AcAd with 2c3d4h
  int better = 0;
  for (int card = 0; card < 52; ++card) {
    if (pair.cards().Contains(card)) continue;
    if (Get_rankFsm5(pair.With(card).Evaluate()) > Get_rankFsm5(pair.Evaluate())) ++better;
  }
  std::printf("%d of 47 cards make it more than a pair\n", better);
}
