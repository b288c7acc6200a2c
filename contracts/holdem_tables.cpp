// The equity tables of PokerLogic: their binary files and the text report.

#include "contracts/holdem_tables.h"

#include <bit>
#include <charconv>
#include <map>

#include "contracts/equity_files.h"
#include "kernels/all_matchups.h"
#include "kernels/matchups.h"
#include "platform/files.h"
#include "platform/messages.h"
#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"

namespace pokermath {

static_assert(sizeof(EquityRecord) == 12 && std::endian::native == std::endian::little,
              "the files hold records as they are in memory");

namespace {

// Calls visit(a, b, c, d) for every ordered matchup of disjoint hands (a, b) and (c, d), a < b and
// c < d, in key order, while it returns true.
template <typename Visit>
void ForEachMatchup(Deck deck, Visit visit) {
  std::vector<std::pair<int, int>> hands;
  for (int a = 0; a < 51; ++a) {
    for (int b = a + 1; b < 52; ++b) {
      if (((Bit(a) | Bit(b)) & AbsentCards(deck)) == 0) hands.emplace_back(a, b);
    }
  }
  for (const auto& [a, b] : hands) {
    for (const auto& [c, d] : hands) {
      if (c == a || c == b || d == a || d == b) continue;
      if (!visit(a, b, c, d)) return;
    }
  }
}

CString RecordText(const wchar_t* what, const EquityRecord& record) {
  return CString(what) + L" " + std::to_wstring(record.hand1) + L" " +
         std::to_wstring(record.hand2) + L" " + std::to_wstring(record.value);
}

void AddRecord(const EquityRecord& record, EquityTable& table) {
  if (record.value < 1) {
    ShowMessage(RecordText(L"load_equity_table", record));
    return;
  }
  // Files are mostly in key order: then every record goes to the end.
  table.emplace_hint(table.end(), PokerLogic::MatchupKey(record.hand1, record.hand2), record.value);
}

constexpr std::size_t kRecordsRead = 1 << 14;

}  // namespace

int LoadEquityTable(const CString& name, EquityTable& table) {
  const InputFile file(ToUtf8(name));
  if (!file.ok()) {
    ShowMessage(L"You need to download file " + name);
    return 0;
  }
  std::vector<EquityRecord> records(kRecordsRead);
  std::int64_t position = 0;
  while (!records.empty()) {
    bool good;
    const std::size_t bytes =
        file.Read(position, records.data(), records.size() * sizeof(EquityRecord), good);
    position += static_cast<std::int64_t>(bytes);
    // A last record that is cut short is left out.
    records.resize(bytes / sizeof(EquityRecord));
    for (const EquityRecord& record : records) AddRecord(record, table);
  }
  return 1;
}

namespace {

// Writes the entries above 0; calls skipped(record) for the others.
template <typename Skipped>
void SaveTable(const CString& name, const EquityTable& table, Skipped skipped) {
  AtomicFile file(ToUtf8(name));
  for (const auto& [key, value] : table) {
    const EquityRecord record = {key.first, key.second, value};
    if (value > 0) {
      file.Write(&record, sizeof record);
    } else {
      skipped(record);
    }
  }
  file.Commit();
}

// One line of the report, put together without the locale of the host.
class ReportLine {
 public:
  void Number(int number, int width) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    const auto length = static_cast<int>(end - digits);
    line_.append(static_cast<std::size_t>(width > length ? width - length : 0), ' ');
    line_.append(digits, end);
  }
  void Fixed(double number, int decimals) {
    char digits[64];
    line_.append(digits, std::to_chars(digits, digits + sizeof digits, number,
                                       std::chars_format::fixed, decimals)
                             .ptr);
  }
  void Text(std::string_view text) { line_ += text; }
  // "%2d %2d %s %s " of a hand.
  void Hand(int card1, int card2) {
    Number(card1, 2);
    Text(" ");
    Number(card2, 2);
    Text(" ");
    Text(CardName(card1));
    Text(" ");
    Text(CardName(card2));
    Text(" ");
  }
  const std::string& line() const { return line_; }
  void Clear() { line_.clear(); }

 private:
  std::string line_;
};

int WriteReport(const CString& name, const EquityTable& table, Street street) {
  // Made under its own name, so that one can read along.
  NewFile file(ToUtf8(name));
  if (!file.ok()) return 0;
  MatchupValues values(Deck::kFull, street);
  const double boards = BoardsOf(street);
  ReportLine line;
  int number = 1;
  // The report runs in key order, so the table is walked along with it.
  auto entry = table.begin();
  ForEachMatchup(Deck::kFull, [&](int a, int b, int c, int d) {
    const PokerLogic::MatchupKey key(HandKey(a, b), HandKey(c, d));
    while (entry != table.end() && entry->first < key) ++entry;
    const bool held = entry != table.end() && entry->first == key;
    if (held && entry->second >= 1) return true;
    const double wins = 0.5 * (held ? entry->second : values.Get(a, b, c, d));
    line.Clear();
    line.Number(number, 10);
    line.Text(" ");
    line.Hand(a, b);
    line.Text("VS ");
    line.Hand(c, d);
    line.Fixed(wins, 1);
    line.Text(" ");
    line.Fixed(boards, 1);
    line.Text(" ");
    line.Fixed(wins / boards * 100, 3);
    line.Text("%\n");
    file.Write(line.line().data(), line.line().size());
    if (number % 100 == 0) file.Flush();
    ++number;
    return file.ok();
  });
  return 0;
}

}  // namespace

std::vector<EquityRecord> AllEquityRecords(Deck deck, Street street,
                                           const std::function<bool(std::int64_t)>& progress) {
  constexpr std::int64_t kReportEvery = 1 << 14;
  std::vector<EquityRecord> records;
  records.reserve(deck == Deck::kShort ? kShortDeckMatchups : kMatchups);
  MatchupValues values(deck, street);
  bool stopped = false;
  ForEachMatchup(deck, [&](int a, int b, int c, int d) {
    records.push_back({HandKey(a, b), HandKey(c, d), values.Get(a, b, c, d)});
    const auto done = static_cast<std::int64_t>(records.size());
    stopped = done % kReportEvery == 0 && progress && !progress(done);
    return !stopped;
  });
  if (stopped) records.clear();
  return records;
}

}  // namespace pokermath

int PokerLogic::generate_equity_table(CString path) {
  return pokermath::WriteReport(path, equityTable, pokermath::Street::kRiver);
}

int PokerLogic::generate_equity_turn_table(CString path) {
  return pokermath::WriteReport(path, equityTurnTable, pokermath::Street::kTurn);
}

int PokerLogic::save_equity_table(CString path) {
  pokermath::SaveTable(path, equityTable, [](const pokermath::EquityRecord&) {});
  return 1;
}

int PokerLogic::save_equity_turn_table(CString path) {
  pokermath::SaveTable(path, equityTurnTable, [](const pokermath::EquityRecord& record) {
    pokermath::ShowMessage(pokermath::RecordText(L"save_equity_table", record));
  });
  return 1;
}

int PokerLogic::load_equity_table(CString path) {
  return pokermath::LoadEquityTable(path, equityTable);
}

int PokerLogic::load_equity_turn_table(CString path) {
  return pokermath::LoadEquityTable(path, equityTurnTable);
}
