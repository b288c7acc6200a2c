// The equity tables as a whole, their files and their report.

#include "contracts/holdem_tables.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "pokermath/messages.h"
#include "pokermath/poker_logic.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

// The two tables have twin members; a test takes them in turn.
struct Twin {
  Street street;
  std::map<PokerLogic::MatchupKey, int> PokerLogic::*table;
  int (PokerLogic::*load)(CString);
  int (PokerLogic::*save)(CString);
  int (PokerLogic::*generate)(CString);
};
const Twin kTwins[] = {
    {Street::kRiver, &PokerLogic::equityTable, &PokerLogic::load_equity_table,
     &PokerLogic::save_equity_table, &PokerLogic::generate_equity_table},
    {Street::kTurn, &PokerLogic::equityTurnTable, &PokerLogic::load_equity_turn_table,
     &PokerLogic::save_equity_turn_table, &PokerLogic::generate_equity_turn_table}};

class EquityFiles : public ::testing::Test {
 protected:
  EquityFiles() {
    SetMessageHandler([this](const CString& text) { messages_.push_back(ToUtf8(text)); });
  }
  ~EquityFiles() override { SetMessageHandler({}); }

  std::vector<std::string> TakeMessages() { return std::exchange(messages_, {}); }

  using Texts = std::vector<std::string>;
  ScratchFolder folder_;
  std::string path_ = folder_ / "table \xE2\x99\xA0";

 private:
  Texts messages_;
};

std::string Bytes(std::span<const int> numbers) {
  return {reinterpret_cast<const char*>(numbers.data()), numbers.size_bytes()};
}

TEST_F(EquityFiles, LoadingKeepsTheFirstOfAMatchupAndReportsBadValues) {
  for (const Twin& twin : kTwins) {
    PokerLogic logic;
    auto& table = logic.*twin.table;
    table[{70, 80}] = 5;
    // A matchup of the table, one twice, its reverse, bad values, a tail of eleven bytes.
    const int numbers[] = {100, 200, 11, 1,   2,   0, 70, 80, 6,  3, 130, 9,
                           100, 200, 12, 200, 100, 1, 4,  5,  -7, 4, 5,   8};
    SetContent(path_, Bytes(numbers) + std::string("\1\0\0\0\1\0\0\0\1\0\0", 11));
    EXPECT_EQ((logic.*twin.load)(FromUtf8(path_)), 1);
    const std::map<PokerLogic::MatchupKey, int> expected = {
        {{3, 130}, 9}, {{4, 5}, 8}, {{70, 80}, 5}, {{100, 200}, 11}, {{200, 100}, 1}};
    EXPECT_EQ(table, expected);
    EXPECT_EQ(TakeMessages(), (Texts{"load_equity_table 1 2 0", "load_equity_table 4 5 -7"}));

    SetContent(path_, "");
    EXPECT_EQ((logic.*twin.load)(FromUtf8(path_)), 1);
    EXPECT_EQ(table, expected);
    const std::string fifo = folder_ / "fifo";
    mkfifo(fifo.c_str(), 0600);
    for (const std::string& missing : {folder_ / "none \xE2\x99\xA0", folder_ / ".", fifo}) {
      EXPECT_EQ((logic.*twin.load)(FromUtf8(missing)), 0);
      EXPECT_EQ(table, expected);
      EXPECT_EQ(TakeMessages(), Texts{"You need to download file " + missing});
    }
  }
}

TEST_F(EquityFiles, SavingWritesRecordsInKeyOrderOrNothing) {
  for (const Twin& twin : kTwins) {
    PokerLogic logic;
    auto& table = logic.*twin.table;
    table = {{{9, 1}, 3}, {{1, 9}, 1}, {{1, 300}, 2147483647}, {{5, 5}, 0}, {{5, 6}, -2}};
    EXPECT_EQ((logic.*twin.save)(FromUtf8(path_)), 1);
    const int numbers[] = {1, 9, 1, 1, 300, 2147483647, 9, 1, 3};
    EXPECT_EQ(ContentOf(path_), Bytes(numbers));
    EXPECT_EQ(TakeMessages(), twin.street == Street::kRiver
                                  ? Texts{}
                                  : (Texts{"save_equity_table 5 5 0", "save_equity_table 5 6 -2"}));

    const std::string old = ContentOf(path_);
    for (int i = 1; i <= 20'000; ++i) table[{i, 7000}] = i;
    {
      const FullDisk full(100'000);
      EXPECT_EQ((logic.*twin.save)(FromUtf8(path_)), 1);
    }
    EXPECT_EQ((logic.*twin.save)(FromUtf8(folder_ / "no such folder/table")), 1);
    EXPECT_TRUE(ContentOf(path_) == old);
    EXPECT_EQ(folder_.Names().size(), 1u) << "a temporary file is left";
    TakeMessages();
  }
}

TEST_F(EquityFiles, TheReportHoldsWhatTheTableLacks) {
  std::map<PokerLogic::MatchupKey, int> table;
  std::vector<int> hands;
  for (int a = 0; a < 52; ++a) {
    for (int b = a + 1; b < 52; ++b) hands.push_back(a * 64 + b);
  }
  for (const int hand1 : hands) {
    for (const int hand2 : hands) table.emplace_hint(table.end(), std::pair(hand1, hand2), 1);
  }
  table.erase({24 * 64 + 38, 10 * 64 + 48});
  table.erase({10 * 64 + 48, 24 * 64 + 38});
  table.erase({13, 26 * 64 + 39});
  table[{50 * 64 + 51, 37 * 64 + 38}] = 0;  // a value below 1 counts as lacking
  const std::string reports[] = {
      "         1  0 13 2c 2d VS 26 39 2h 2s 856152.0 1712304.0 50.000%\n"
      "         2 10 48 Qc Js VS 24 38 Kd Ah 611357.0 1712304.0 35.704%\n"
      "         3 24 38 Kd Ah VS 10 48 Qc Js 1100947.0 1712304.0 64.296%\n"
      "         4 50 51 Ks As VS 37 38 Kh Ah 0.0 1712304.0 0.000%\n",
      "         1  0 13 2c 2d VS 26 39 2h 2s 97290.0 194580.0 50.000%\n"
      "         2 10 48 Qc Js VS 24 38 Kd Ah 60623.0 194580.0 31.156%\n"
      "         3 24 38 Kd Ah VS 10 48 Qc Js 133957.0 194580.0 68.844%\n"
      "         4 50 51 Ks As VS 37 38 Kh Ah 0.0 194580.0 0.000%\n"};
  PokerLogic logic;
  for (const Twin& twin : kTwins) {
    const std::string& report = reports[twin.street == Street::kRiver ? 0 : 1];
    const std::string path = path_ + (twin.street == Street::kRiver ? "river" : "turn");
    logic.*twin.table = std::move(table);
    EXPECT_EQ((logic.*twin.generate)(FromUtf8(path)), 0);
    EXPECT_EQ(ContentOf(path), report);
    table = std::move(logic.*twin.table);
    EXPECT_EQ(table.size(), hands.size() * hands.size() - 3) << "an answer was kept";

    SetContent(path, "mine");
    EXPECT_EQ((logic.*twin.generate)(FromUtf8(path)), 0);
    EXPECT_EQ(ContentOf(path), "mine");
  }
  EXPECT_EQ(folder_.Names().size(), 2u) << "a temporary file is left";
}

TEST(EquityTables, AllMatchupsAreTheGoldenTables) {
  static_assert(sizeof(EquityRecord) == 12);
  for (const auto& [street, checksum] :
       {std::pair(Street::kRiver, 0x85b22b4du), {Street::kTurn, 0xebb462ffu}}) {
    std::int64_t done = 0;
    const std::vector<EquityRecord> records = AllEquityRecords(
        Deck::kFull, street, [&done](std::int64_t now) { return now > std::exchange(done, now); });
    ASSERT_EQ(records.size(), 1624350u) << "or the progress went backwards";
    EXPECT_EQ(crc32_z(0, reinterpret_cast<const Bytef*>(records.data()), 12 * records.size()),
              checksum);
    EXPECT_TRUE(AllEquityRecords(Deck::kFull, street, [](std::int64_t) { return false; }).empty());
  }
}

}  // namespace
}  // namespace pokermath
