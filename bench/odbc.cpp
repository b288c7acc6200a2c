// Reading a result through a record set, against the bare calls of ODBC doing the same.

#include "pokermath/odbc.h"

#include <benchmark/benchmark.h>
#include <sql.h>
#include <sqlext.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "platform/text.h"
#include "support/odbc/handles.h"

namespace pokermath {
namespace {

constexpr int kRows = 100000;
const wchar_t* const kQuery =
    L"SELECT id, player, pot, played, seats, note, rake, cards FROM hands";

// A database file of 100,000 rows, removed at the end.
class HandsFile {
 public:
  HandsFile()
      : path_(std::filesystem::temp_directory_path() /
              ("pokermath-bench-" + std::to_string(getpid()) + ".db")) {
    ExecuteSQL(connect(),
               L"CREATE TABLE hands (id integer, player varchar(20), pot double, played timestamp, "
               L"seats smallint, note text, rake double, cards varchar(10))");
    ExecuteSQL(connect(),
               L"WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r WHERE n < 100000) "
               L"INSERT INTO hands SELECT n, 'player é ' || n, n * 0.25, '2024-02-29 12:34:56', "
               L"n % 10, 'a note of hand ' || n || ' of this table', n * 0.01, 'AhKdQc' FROM r");
  }
  ~HandsFile() { std::filesystem::remove(path_); }
  HandsFile(const HandsFile&) = delete;
  HandsFile& operator=(const HandsFile&) = delete;

  CString connect() const { return L"Driver=SQLite3;Database=" + path_.wstring(); }

 private:
  std::filesystem::path path_;
};

const HandsFile& Hands() {
  static const HandsFile hands;
  return hands;
}

// Reads all columns of all records; a key is a number or a name.
template <typename Key>
void ReadRecords(benchmark::State& state, const std::array<Key, 8>& keys) {
  const CString connect = Hands().connect();
  for (auto _ : state) {
    CDatabase* db = nullptr;
    CODBCRecordset* rs = nullptr;
    if (!OpenODBC(connect, db, rs, kQuery)) return state.SkipWithError("no database");
    long rows = 0;
    double sum = 0;
    std::size_t letters = 0;
    for (; !rs->IsEOF(); rs->MoveNext(), ++rows) {
      sum += static_cast<double>(rs->GetLong(keys[0]) + rs->GetLong(keys[4])) +
             rs->GetDouble(keys[2]) + rs->GetDouble(keys[6]) + rs->GetDate(keys[3]).day;
      for (const int text : {1, 5, 7}) {
        letters += rs->GetString(keys[static_cast<std::size_t>(text)]).size();
      }
    }
    if (rows != kRows) state.SkipWithError("not all rows");
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(letters);
    delete rs;
    delete db;
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}

void BM_OdbcRecordSet(benchmark::State& state) {
  ReadRecords<int>(state, {0, 1, 2, 3, 4, 5, 6, 7});
}
BENCHMARK(BM_OdbcRecordSet)->Unit(benchmark::kMillisecond);

void BM_OdbcRecordSetByName(benchmark::State& state) {
  ReadRecords<const wchar_t*>(
      state, {L"id", L"player", L"pot", L"played", L"seats", L"note", L"rake", L"cards"});
}
BENCHMARK(BM_OdbcRecordSetByName)->Unit(benchmark::kMillisecond);

// Binds every column once and fetches: what a program in C would do, without wide text.
void BM_OdbcRecordSetPlain(benchmark::State& state) {
  const CString connect = Hands().connect();
  for (auto _ : state) {
    const Connection connection(connect, true);
    Statement statement(connection);
    statement.Execute(kQuery);
    SQLBIGINT id, seats;
    double pot, rake;
    SQL_TIMESTAMP_STRUCT played;
    char player[128], note[1024], cards[64];
    SQLLEN length[8];
    const auto bind = [&](SQLUSMALLINT column, SQLSMALLINT type, auto& value) {
      SQLBindCol(statement.handle(), column, type, &value, sizeof(value), &length[column - 1]);
    };
    bind(1, SQL_C_SBIGINT, id);
    bind(2, SQL_C_CHAR, player);
    bind(3, SQL_C_DOUBLE, pot);
    bind(4, SQL_C_TYPE_TIMESTAMP, played);
    bind(5, SQL_C_SBIGINT, seats);
    bind(6, SQL_C_CHAR, note);
    bind(7, SQL_C_DOUBLE, rake);
    bind(8, SQL_C_CHAR, cards);
    double sum = 0;
    SQLLEN letters = 0;
    long rows = 0;
    for (; SQL_SUCCEEDED(SQLFetch(statement.handle())); ++rows) {
      sum += static_cast<double>(id + seats) + pot + rake + played.day;
      letters += length[1] + length[5] + length[7];
    }
    if (rows != kRows) state.SkipWithError("not all rows");
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(letters);
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_OdbcRecordSetPlain)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pokermath
