// Table files. The calculator and the evaluators need none; hosts that look values up do.

#include <pokermath/cards.h>
#include <pokermath/messages.h>
#include <pokermath/poker_logic.h>

#include <clocale>
#include <cstdio>
#include <vector>

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");  // wide text is printed as UTF-8
  // Loaders tell the user what is missing; a host takes the messages over.
  pokermath::SetMessageHandler([](const CString& text) { std::printf("%ls\n", text.c_str()); });

  PokerLogic logic;
  const pokermath::CardsResult read = pokermath::ParseCards("AhKhQhJhTh2c3d");
  if (!read.error.empty() || read.cards.size() != 7) return 1;
  std::vector<int> cards = read.cards;
  std::printf("without the table: %d\n", logic.LookupSingleHands(cards.data()));
  // Loads the file, or makes it: 130 MB.
  if (logic.generate_table(L"VarnholtHR.dat") != 0) std::puts("the file could not be written");
  std::printf("with it: %d\n", logic.LookupSingleHands(cards.data()));

  // A table of equities: absent here.
  std::printf("loaded: %d\n", logic.load_equity_table(L"no-equity.bin"));
}
