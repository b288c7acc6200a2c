// A showdown of three hands, with a side pot.

#include <pokermath/cards.h>
#include <pokermath/evaluators.h>
#include <pokermath/showdown.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace pokermath;

int main() {
  const char* hands[] = {"AhKd", "7s7c", "QcJs"};
  const std::vector<int> stakes = {100, 50, 100};  // the second player was all in with 50
  const char* board = "7d7h2cKsKh";

  std::vector<int> scores;
  for (const char* hand : hands) {
    // Together, so that a card that is on the board too is found.
    const CardsResult cards = ParseCards(std::string(hand) + board);
    if (!cards.error.empty()) return std::fprintf(stderr, "%s\n", cards.error.c_str()), 1;
    scores.push_back(EvaluateCards<7>(cards.cards.data()));  // a hand that was folded has 0
    std::printf("%s: %s\n", hand, HandInWords(cards.cards).c_str());
  }
  for (const Pot& pot : SplitPots(stakes, scores)) {
    std::printf("%lld chips:", static_cast<long long>(pot.chips));
    for (const int seat : pot.winners) {
      std::printf(" %s wins %lld", hands[seat],
                  static_cast<long long>(pot.won[static_cast<std::size_t>(seat)]));
    }
    std::puts("");
  }
}
