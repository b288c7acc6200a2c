// Any bytes as a file of an equity table: records of a positive value are in the table, the first
// one of a matchup; what is written from it reads back to the same.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <utility>

#include "pokermath/equity.h"
#include "pokermath/messages.h"
#include "pokermath/poker_logic.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

const std::string& Path() {
  static const std::string path = "/tmp/pokermath-fuzz-equity-" + std::to_string(getpid());
  static const int removed = std::atexit([] { unlink(Path().c_str()); });
  (void)removed;
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static int messages;
  static const bool quiet = [] {
    pokermath::SetMessageHandler([](const CString&) { ++messages; });
    return true;
  }();
  Require(quiet);
  messages = 0;
  std::ofstream(Path(), std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  std::map<std::pair<int, int>, int> expected;
  int below_one = 0;
  for (std::size_t at = 0; at + 12 <= size; at += 12) {
    std::int32_t record[3];
    std::memcpy(record, data + at, sizeof record);
    if (record[2] < 1) {
      ++below_one;
    } else {
      expected.insert({{record[0], record[1]}, record[2]});
    }
  }
  const CString path(Path().begin(), Path().end());
  PokerLogic logic;
  Require(logic.load_equity_table(path) == 1);
  Require(logic.equityTable == expected && messages == below_one);
  Require(logic.load_equity_turn_table(path) == 1);
  Require(logic.equityTurnTable == expected);
  Require(load_equity_table_6Plus(path) == 1);
  Require(logic.save_equity_table(path) == 1);
  PokerLogic again;
  Require(again.load_equity_table(path) == 1);
  Require(again.equityTable == expected);
  return 0;
}
