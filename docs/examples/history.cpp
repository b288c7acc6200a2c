// Lines of a hand history while another program writes it: a line that is not complete waits.

#include <pokermath/hand_history.h>

#include <clocale>
#include <cstdio>
#include <fstream>

using namespace pokermath;

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");  // wide text is printed as UTF-8
  std::ofstream writer("hands.txt", std::ios::binary);
  HistoryReader reader("hands.txt");
  for (const char* piece : {"Hand #1\r\nSeat 1: Zo\xC3\xAB (1500)\r\n*** FL", "OP ***\r\n"}) {
    writer << piece << std::flush;
    CStringArray lines;
    do {
      if (!reader.Read(lines)) return std::perror("hands.txt"), 1;
    } while (reader.more());
    std::printf("%zu lines\n", lines.size());
    for (const CString& line : lines) std::printf("  %ls\n", line.c_str());
  }
  // Where a later run goes on: HistoryReader("hands.txt", position).
  std::printf("position %lld\n", static_cast<long long>(reader.position()));
}
