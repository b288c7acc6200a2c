// Asks two questions whose answers are known, one to the compiled library and one to a template of
// its headers, and looks at its objects.

#include <pokermath/pokermath.h>

#include <cstdio>
#include <cstring>

int main() {
  int ace_king[] = {38, 24};    // AhKd
  int queen_jack[] = {10, 48};  // QcJs
  double wins = 0;
  double boards = 0;
  PokerLogic().getProbabilityOfWinWithNoBoard(ace_king, queen_jack, wins, boards);

  const int royal_flush[] = {0, 8, 9, 10, 11, 12, 51};
  const int value = pokermath::EvaluateCards<7>(royal_flush);

  const bool nothing_loaded = fsm5.five_cards == nullptr && ofsm_omaha7.table == nullptr;
  const bool versions_agree = std::strcmp(pokermath::Version(), POKERMATH_VERSION_STRING) == 0;
  const bool right = 2 * wins == 2201894 && boards == 1712304 && value == 7462;

  std::printf("pokermath %s: %.1f of %.0f boards, %s %d\n", pokermath::Version(), wins, boards,
              pokermath::CategoryName(value), value);
  return right && nothing_loaded && versions_agree ? 0 : 1;
}
