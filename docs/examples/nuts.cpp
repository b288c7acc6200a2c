// An Omaha hand on a board: its value, what beats it, its outs and its low.

#include <pokermath/cards.h>
#include <pokermath/evaluators.h>
#include <pokermath/omaha.h>
#include <pokermath/poker_logic.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace pokermath;

int main(int argc, char** argv) {
  const std::string texts[2] = {argc > 1 ? argv[1] : "Ah2hAd3c", argc > 2 ? argv[2] : "8h7h4s"};
  // The functions below check no cards. Read together, a card that is in both is found.
  const CardsResult all = ParseCards(texts[0] + " " + texts[1]);
  if (!all.error.empty()) return std::fprintf(stderr, "%s\n", all.error.c_str()), 1;
  std::vector<int> hand = ParseCards(texts[0]).cards, board = ParseCards(texts[1]).cards;
  if (hand.size() != 4 || board.size() < 3 || board.size() > 4) {
    return std::fprintf(stderr, "expected a hand of 4 and a board of 3 or 4 cards\n"), 1;
  }
  int* const hole = hand.data();
  int* const known = board.data();
  const int n = static_cast<int>(board.size());

  int record[5];
  const int value = getCombinationOmahaFsm5Common(hole, 4, known, n, record);
  std::printf("%s, beaten by %d holdings of two\n", CategoryName(value),
              IsMyHandNutsOmahaFsm5Common(hole, 4, known, n));

  int outs[11], nut_outs[11];
  getOutsOmahaFsm5Common(hole, 4, known, n, outs, nut_outs);
  const char* const names[] = {"",      "high card",      "one pair",   "two pair",
                               "trips", "straight",       "flush",      "full house",
                               "quads", "straight flush", "royal flush"};
  for (int category = 1; category <= 10; ++category) {
    if (outs[category] == 0) continue;
    std::printf("%s: %d outs, %d of them make the nuts\n", names[category], outs[category],
                nut_outs[category]);
  }

  const PokerLogic logic;  // nothing has to be loaded for this
  const int low = logic.SetLowValueCombinationOmahaCommon(hole, 4, known, n);
  // Its ranks as digits, 0 for none.
  std::printf("low %d, beaten by %d holdings of two\n", low,
              logic.IsMyHandNutsOmahaLow(hole, 4, known, n));
}
