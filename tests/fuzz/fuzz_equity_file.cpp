// Any bytes as a file of an equity table, of the short deck too: records of a positive value are in
// the table, the first one of a matchup; what is written from it reads back to the same.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <utility>

#include "contracts/state_machines.h"
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

// The table of the short deck is process-wide; what it holds is found by the hands of its keys.
void RequireShortDeck(const CString& path, const std::map<std::pair<int, int>, int>& expected) {
  fsm5.equity.reset();
  Require(load_equity_table_6Plus(path) == 1);
  Require(*fsm5.equity == expected);
  const auto is_hand = [](int key) { return key >= 0 && key / 64 < key % 64 && key % 64 < 52; };
  for (const auto& [keys, value] : expected) {
    if (!is_hand(keys.first) || !is_hand(keys.second)) continue;
    int hand1[2] = {keys.first % 64, keys.first / 64};
    int hand2[2] = {keys.second / 64, keys.second % 64};
    double wins, boards;
    Require(GetWinHandVsHand6Plus(hand1, hand2, wins, boards) == 1);
    Require(wins == value * 0.5 && boards == 201376);
  }
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
  RequireShortDeck(path, expected);
  Require(logic.save_equity_table(path) == 1);
  PokerLogic again;
  Require(again.load_equity_table(path) == 1);
  Require(again.equityTable == expected);
  return 0;
}
