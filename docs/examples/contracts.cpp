// The functions with fixed names, for hosts that have them already: a request as such hosts write
// it.
//
// They check nothing: a host that reads cards and ranges from text checks them first.

#include <pokermath/cards.h>
#include <pokermath/evaluators.h>
#include <pokermath/poker_logic.h>
#include <pokermath/ranges.h>

#include <cmath>
#include <cstdio>

int main() {
  int hand[] = {38, 24};     // AhKd: suit * 13 + rank
  int flop[] = {0, 18, 34};  // 2c7dTh

  CStatSpectr spectr;
  spectr.InitEquil();
  Spec range;
  CString text;
  spectr.GetSpecByPercent(15, range, text, 0);
  std::printf("%zu holdings: %ls\n", range.combinations().size(), text.c_str());

  // Exact for a flop, 0.0 .. 1.0; not a number where every holding of the range is blocked.
  PokerLogic logic;
  const double equity = logic.getProbabilityOfWinBySpectr(hand, flop, 3, range);
  if (std::isnan(equity)) return std::puts("the range is blocked"), 1;
  std::printf("%.3f %%\n", 100 * equity);

  int opponent[] = {5, 44};  // 7c7s
  double wins = 0, boards = 0;
  logic.getProbabilityOfWinWithNoBoard(hand, opponent, wins, boards);
  std::printf("%.1f of %.0f boards\n", wins, boards);

  // Card words, and the descending scale: 1 is the royal flush.
  const CPokerDeck deck;
  int words[] = {deck[38], deck[37], deck[36], deck[35], deck[34], deck[0], deck[14]};
  std::printf("%d\n", eval_7hand(words));
}
