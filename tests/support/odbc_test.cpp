// Databases behind ODBC: the same cases on a file and on a server, and what either has alone.

#include "pokermath/odbc.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "pokermath/messages.h"
#include "tests/platform/scratch_folder.h"
#include "tests/support/failing_memory.h"

namespace pokermath {
namespace {

using Texts = std::vector<CString>;

// Letters of 1 to 4 bytes in UTF-8.
const CString kLetters = L"aé€\U0001F0A1";

CString Repeated(const CString& piece, std::size_t count) {
  CString text;
  for (; count > 0; --count) text += piece;
  return text;
}

class Messages {
 public:
  Messages() {
    SetMessageHandler([this](const CString& text) { texts.push_back(text); });
  }
  ~Messages() { SetMessageHandler({}); }
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;
  Texts Take() { return std::exchange(texts, {}); }

  Texts texts;
};

// A new database, that of a file (false) or of the server.
class Database {
 public:
  explicit Database(bool server) : server_(server) {
    if (!server_) {
      connect_ = L"Driver=SQLite3;Timeout=200;Database=" + FromUtf8(folder_ / "hands.db");
      std::ofstream(folder_ / "hands.db");  // no bytes are an empty database
      return;
    }
    const char* state = std::getenv("POKERMATH_POSTGRES");
    std::ifstream in(state == nullptr ? "" : state);
    std::string line;
    std::getline(in, line);
    if (!in || line.starts_with("missing")) {
      missing_ = line.empty() ? "the server of the tests is not running" : line;
      return;
    }
    std::getline(in, line);
    connect_ = FromUtf8(line) + L";Pwd={se;cr}}et};BoolsAsChar=0";
    name_ = L"t" + std::to_wstring(getpid());
    EXPECT_TRUE(ExecuteSQL(Of(L"postgres"), L"CREATE DATABASE " + name_));
  }
  ~Database() {
    if (!name_.empty()) {
      EXPECT_TRUE(ExecuteSQL(Of(L"postgres"), L"DROP DATABASE " + name_ + L" WITH (FORCE)"));
    }
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  CString connect() const { return server_ ? Of(name_) : connect_; }
  const std::string& missing() const { return missing_; }

 private:
  CString Of(const CString& name) const { return connect_ + L";Database=" + name; }

  bool server_;
  ScratchFolder folder_;
  CString connect_;
  CString name_;
  std::string missing_;
};

class Odbc : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (database_.missing().empty()) return;
    const char* ci = std::getenv("CI");
    if (ci != nullptr && std::string(ci) == "true") FAIL() << database_.missing();
    GTEST_SKIP() << database_.missing();
  }
  void TearDown() override {
    EndQuery();
    EXPECT_EQ(messages_.Take(), Texts());
  }

  CString Connect() const { return database_.connect(); }
  bool OnServer() const { return GetParam(); }
  CString BlobType() const { return OnServer() ? L"bytea" : L"blob"; }
  void Run(const CStringArray& statements) { ASSERT_TRUE(ExecuteSQL(Connect(), statements)); }
  CODBCRecordset& Query(const CString& sql) {
    EndQuery();
    EXPECT_TRUE(OpenODBC(Connect(), db_, rs_, sql, true)) << ToUtf8(sql);
    static CODBCRecordset none(nullptr);
    return rs_ == nullptr ? none : *rs_;
  }
  void EndQuery() {
    delete std::exchange(rs_, nullptr);
    delete std::exchange(db_, nullptr);
  }
  // The text of the first column and record.
  CString Answer(const CString& sql) { return Query(sql).GetString(0); }

  Messages messages_;
  Database database_{GetParam()};
  CDatabase* db_ = nullptr;
  CODBCRecordset* rs_ = nullptr;
};

// The server's cases are told from the others by the name of their instantiation.
INSTANTIATE_TEST_SUITE_P(Sqlite, Odbc, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(PostgreSql, Odbc, testing::Values(true));

TEST_P(Odbc, ColumnsHaveNamesOfTheirOwn) {
  Run({L"CREATE TABLE \"h" + kLetters + L"\" (id integer, \"é" + kLetters + L"\" integer)",
       L"INSERT INTO \"h" + kLetters + L"\" VALUES (1, 2)"});
  CODBCRecordset& rs = Query(
      L"SELECT id, id AS \"Name\", 5 AS \"NAME\", 1 AS sum, 2 AS sum, 3 AS sum, "
      L"4 AS sum2, \"é" +
      kLetters + L"\" FROM \"h" + kLetters + L"\"");
  Texts names;
  for (int i = 0; i < rs.GetODBCFieldCount(); ++i) names.push_back(rs.GetFieldName(i));
  EXPECT_EQ(names, (Texts{L"ID", L"NAME", L"NAME2", L"SUM", L"SUM2", L"SUM3", L"SUM22",
                          L"ÉAÉ€\U0001F0A1"}));
  EXPECT_EQ(rs.GetFieldID(L"name"), 1);
  EXPECT_EQ(rs.GetFieldID(L"éAé€\U0001F0A1"), 7);
  EXPECT_EQ(rs.GetFieldID(L"none"), -1);
  EXPECT_EQ(rs(L"éaé€\U0001F0A1").AsInt(), 2);
  EXPECT_EQ(rs.GetInt(L"nAmE2"), 5);
  for (const int index : {-1, 8, 1000000}) {
    EXPECT_TRUE(rs.Field(index).IsNull());
    EXPECT_EQ(rs.GetFieldName(index), L"");
  }
  rs.Field(L"none") = 7;
  EXPECT_EQ(rs.GetString(L"none"), L"");
}

TEST_P(Odbc, ValuesOfEverySizeArriveWhole) {
  Run({L"CREATE TABLE v (n integer, narrow varchar(20), long text, bytes " + BlobType() + L")"});
  const std::size_t sizes[] = {0, 1, 255, 1023, 1024, 1025, 8190, 70000, 300000};
  for (const std::size_t size : sizes) {
    // Every cut into pieces falls inside of a character somewhere.
    const CString text =
        size < 10 ? CString(size, L'x') : CString(size % 10, L'x') + Repeated(kLetters, size / 10);
    const CString narrow = text.substr(0, 20);
    CString bytes;
    for (std::size_t i = 0; i < size; ++i)
      bytes += L"00FF7F80"[i % 4 * 2], bytes += L"00FF7F80"[i % 4 * 2 + 1];
    bytes = OnServer() ? L"'\\x" + bytes + L"'" : L"x'" + bytes + L"'";
    Run({L"INSERT INTO v VALUES (" + std::to_wstring(size) + L", '" + narrow + L"', '" + text +
         L"', " + bytes + L")"});
    CODBCRecordset& rs = Query(L"SELECT narrow, long, bytes, n, narrow || long FROM v WHERE n = " +
                               std::to_wstring(size));
    EXPECT_FALSE(rs.Field(0).IsNull());
    EXPECT_FALSE(rs.Field(1).IsNull());
    EXPECT_FALSE(rs.Field(2).IsNull());
    EXPECT_TRUE(rs.Field(1).IsBinary()) << "long text is binary";
    EXPECT_TRUE(rs.GetString(0) == narrow) << size;
    EXPECT_TRUE(rs.GetString(1) == text) << size;
    EXPECT_TRUE(rs.GetString(4) == narrow + text) << size;
    std::string expected;
    for (std::size_t i = 0; i < size; ++i) expected += std::string("\0\xFF\x7F\x80", 4)[i % 4];
    EXPECT_TRUE(rs.GetBinary(2).bytes == expected)
        << size << " gives " << rs.GetBinary(2).bytes.size();
    EXPECT_EQ(rs.GetLong(3), static_cast<long>(size));
  }
  // One behind the other: nothing of a long value stays.
  CODBCRecordset& rs = Query(L"SELECT long, n FROM v ORDER BY n DESC");
  for (std::size_t i = std::size(sizes); i-- > 0; rs.MoveNext()) {
    const std::size_t size =
        sizes[i] < 10 ? sizes[i] : sizes[i] % 10 + sizes[i] / 10 * kLetters.size();
    EXPECT_EQ(rs.GetString(0).size(), size);
  }
  EXPECT_TRUE(rs.IsEOF());
}

TEST_P(Odbc, NullIsNotEmpty) {
  Run({L"CREATE TABLE v (a varchar(9), b text, c " + BlobType() +
           L", d integer, e double precision, f timestamp)",
       L"INSERT INTO v VALUES ('x', 'x', NULL, 1, 1.5, '2024-02-29 23:59:58')",
       L"INSERT INTO v VALUES (NULL, NULL, NULL, NULL, NULL, NULL)",
       L"INSERT INTO v VALUES ('', '', '', 0, 0, NULL)"});
  CODBCRecordset& rs = Query(L"SELECT * FROM v");
  EXPECT_EQ(rs.GetDate(5), (CDBTimestamp{2024, 2, 29, 23, 59, 58, 0}));
  EXPECT_EQ(rs.GetDouble(4), 1.5);
  EXPECT_TRUE(rs.MoveNext());
  for (int i = 0; i < 6; ++i) EXPECT_TRUE(rs.Field(i).IsNull()) << i;
  EXPECT_EQ(rs.GetString(0), L"");
  EXPECT_EQ(rs.GetInt(3), 0);
  bool null;
  unsigned long length;
  rs.Field(3).GetNull(null, length);
  EXPECT_TRUE(null && length == 0);
  EXPECT_TRUE(rs.MoveNext());
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(rs.Field(i).IsNull()) << i;
  EXPECT_FALSE(rs.MoveNext());
  EXPECT_FALSE(rs.MoveNext()) << "it stays at the end";
  EXPECT_EQ(rs.ErrorText(), L"");
}

TEST_P(Odbc, KindsFollowTheTypes) {
  Run(
      {L"CREATE TABLE v (s smallint, i integer, big bigint, d double precision, day date, t time, "
       L"n numeric(10,2))",
       L"INSERT INTO v VALUES (-7, 2147483647, 9223372036854775807, 0.1, '2024-12-31', '12:34:56', "
       L"12.25)"});
  CODBCRecordset& rs = Query(L"SELECT s, i, big, d, day, t, n FROM v");
  EXPECT_TRUE(rs.Field(0).IsLong() && !rs.Field(0).IsShort()) << "a short is seen as long";
  EXPECT_TRUE(rs.Field(1).IsLong() && rs.Field(2).IsString() && rs.Field(3).IsDouble());
  EXPECT_TRUE(rs.Field(4).IsDate() && rs.Field(5).IsDate());
  EXPECT_EQ(rs.GetShort(0), -7);
  EXPECT_EQ(rs.GetInt(1), 2147483647);
  EXPECT_EQ(rs.GetLong(2), 9223372036854775807);
  EXPECT_EQ(rs.GetDouble(3), 0.1);
  EXPECT_EQ(rs.GetDate(4), (CDBTimestamp{2024, 12, 31, 0, 0, 0, 0}));
  EXPECT_EQ(rs.GetDate(5).minute, 34);
  EXPECT_EQ(rs.GetDouble(6), 12.25);
  CODBCFieldInfo info;
  EXPECT_TRUE(rs.GetODBCFieldInfo(4, info));
  EXPECT_EQ(info.m_nSQLType, 91);
  EXPECT_FALSE(rs.GetODBCFieldInfo(7, info));
}

TEST_P(Odbc, ABatchKeepsWhatCameBeforeItsError) {
  EXPECT_FALSE(ExecuteSQL(
      Connect(),
      CStringArray{L"CREATE TABLE v (n integer)", L"INSERT INTO v VALUES (1)",
                   L"INSERT INTO né VALUES ('€\U0001F0A1')", L"INSERT INTO v VALUES (2)"}));
  const Texts shown = messages_.Take();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_TRUE(shown[0].starts_with(L"Ошибка [")) << ToUtf8(shown[0]);
  CString place = Connect();
  if (OnServer()) place.replace(place.find(L"{se;cr}}et}"), 11, L"***");
  EXPECT_TRUE(shown[0].ends_with(L"] при выполнении <" + place + L"> ")) << ToUtf8(shown[0]);
  EXPECT_NE(shown[0].find(L"né"), CString::npos) << ToUtf8(shown[0]);
  EXPECT_EQ(Answer(L"SELECT count(*) FROM v"), L"1");
  EndQuery();
  // What finds nothing to do is no error.
  EXPECT_TRUE(ExecuteSQL(Connect(), L"UPDATE v SET n = 3 WHERE n = 77"));
  EXPECT_TRUE(ExecuteSQL(Connect(), L"DELETE FROM v WHERE n = 77"));
  EXPECT_TRUE(ExecuteSQL(Connect(), L"DROP TABLE IF EXISTS none"));
  EXPECT_TRUE(ExecuteSQL(Connect(), CStringArray()));
  EXPECT_TRUE(Query(L"SELECT n FROM v WHERE n = 77").IsEOF());
  EndQuery();
  CDatabase database;
  ASSERT_TRUE(database.OpenEx(Connect()));
  CODBCRecordset rs(&database);
  rs.Open(L"DELETE FROM v WHERE n = 77");
  EXPECT_TRUE(rs.IsEOF() && rs.ErrorText().empty()) << "no columns, no records";
  database.Close();
  // What OpenODBC has opened is for reading.
  EXPECT_FALSE(OpenODBC(Connect(), db_, rs_, L"DELETE FROM v", true));
  EXPECT_EQ(messages_.Take().size(), 1u);
  EXPECT_EQ(Answer(L"SELECT count(*) FROM v"), L"1");
}

TEST_P(Odbc, AFailingQueryGivesOneMessageAtMost) {
  const CString sql = L"SELECT * FROM né_" + kLetters;
  EXPECT_FALSE(OpenODBC(Connect(), db_, rs_, sql, true));
  EXPECT_TRUE(db_ == nullptr && rs_ == nullptr);
  const Texts shown = messages_.Take();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_TRUE(shown[0].starts_with(L"Ошибка выполнения ["));
  EXPECT_TRUE(shown[0].ends_with(L"], запроса: <" + sql + L"> "));
  EXPECT_FALSE(OpenODBC(Connect(), db_, rs_, sql, false));
  EXPECT_TRUE(db_ == nullptr && rs_ == nullptr);
  EXPECT_EQ(messages_.Take(), Texts());
  // The texts of Open itself.
  ASSERT_TRUE(OpenODBC(Connect(), db_));
  CODBCRecordset rs(db_);
  EXPECT_FALSE(rs.Open(sql.c_str()));
  EXPECT_EQ(messages_.Take(), (Texts{L"Ошибка " + rs.ErrorText() + L" Запрос [" + sql + L"] !"}));
  EXPECT_FALSE(rs.IsOpen());
  EXPECT_FALSE(rs.MoveNext());
  EXPECT_FALSE(rs.Open(nullptr));
  EXPECT_EQ(messages_.Take().size(), 2u) << "nothing to move in";
  EXPECT_TRUE(rs.Open(L"SELECT 1 AS one"));
  EXPECT_TRUE(rs.MoveNext() || rs.ErrorText().empty());
}

TEST_P(Odbc, ErrorsAreTheSameInAnyLocale) {
  // As long as a driver's room for texts, so that it is cut in the middle of a character.
  const CString sql = L"SELECT * FROM \"" + Repeated(kLetters, 120) + L"\"";
  Texts shown;
  for (const char* locale : {"C", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_FALSE(OpenODBC(Connect(), db_, rs_, sql, true));
    const Texts now = messages_.Take();
    ASSERT_EQ(now.size(), 1u);
    shown.push_back(now[0]);
    EXPECT_NE(now[0].substr(0, now[0].find(L"запроса")).find(kLetters), CString::npos);
  }
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(shown[0], shown[1]);
}

TEST_P(Odbc, ARecordSetIsUsedAgain) {
  Run({L"CREATE TABLE v (n integer)", L"INSERT INTO v VALUES (1)", L"INSERT INTO v VALUES (2)",
       L"INSERT INTO v VALUES (3)"});
  Query(L"SELECT n FROM v ORDER BY n");
  CODBCRecordset* const before = rs_;
  EXPECT_TRUE(rs_->Move(2));
  EXPECT_EQ(rs_->GetInt(0), 3);
  EXPECT_FALSE(rs_->Move(-1));
  EXPECT_EQ(messages_.Take().size(), 1u);
  EXPECT_FALSE(rs_->IsEOF());
  // More columns, then fewer: those that are gone cannot be read.
  ASSERT_TRUE(OpenODBC(Connect(), db_, rs_, L"SELECT 1 AS a, 2 AS b, n FROM v ORDER BY n", true));
  EXPECT_EQ(rs_, before);
  EXPECT_EQ(rs_->GetInt(L"b"), 2);
  ASSERT_TRUE(OpenODBC(Connect(), db_, rs_, L"SELECT n AS x FROM v ORDER BY n", true));
  EXPECT_EQ(rs_->GetFieldID(L"b"), -1);
  EXPECT_TRUE(rs_->Field(1).IsNull());
  rs_->Field(0) = L"of another kind";
  EXPECT_TRUE(rs_->Move(0));
  EXPECT_EQ(rs_->GetInt(0), 1);
  EXPECT_FALSE(rs_->Move(77)) << "there are not so many";
  EXPECT_TRUE(rs_->IsEOF());
  // Closing the database closes its record sets; in whatever order they are deleted.
  db_->Close();
  EXPECT_FALSE(rs_->IsOpen());
  CODBCRecordset* const orphan = std::exchange(rs_, nullptr);
  EXPECT_FALSE(OpenODBC(Connect(), db_));
  delete std::exchange(db_, nullptr);
  EXPECT_FALSE(orphan->Open(L"SELECT 1"));
  EXPECT_EQ(messages_.Take().size(), 1u);
  delete orphan;
}

// A record set of a host: variables instead of fields.
class Hands : public CRecordset {
 public:
  using CRecordset::CRecordset;
  void DoFieldExchange(CFieldExchange* exchange) override {
    exchange->Long(id);  // not told yet that columns come out
    exchange->SetFieldType(CFieldExchange::outputColumn);
    exchange->Long(id);
    id_null = exchange->IsNull();
    exchange->Skip();
    exchange->Double(pot);
    exchange->Long(of_another_kind);
    exchange->Long(beyond);
  }

  long id = 7, of_another_kind = 7, beyond = 7;
  bool id_null = true;
  double pot = 7;
};

TEST_P(Odbc, ARecordSetOfAHost) {
  Run({L"CREATE TABLE v (id integer, name varchar(9), pot double precision, t varchar(9))",
       L"INSERT INTO v VALUES (1, 'one', 0.5, '5')", L"INSERT INTO v VALUES (NULL, 'x', 2, '6')"});
  ASSERT_TRUE(OpenODBC(Connect(), db_));
  Hands hands(db_);
  ASSERT_TRUE(hands.Open(L"SELECT * FROM v ORDER BY pot", CRecordset::forwardOnly, 0));
  EXPECT_TRUE(hands.id == 1 && !hands.id_null && hands.pot == 0.5);
  EXPECT_TRUE(hands.of_another_kind == 0 && hands.beyond == 0);
  EXPECT_TRUE(hands.MoveNext());
  EXPECT_TRUE(hands.id == 0 && hands.id_null && hands.pot == 2);
  EXPECT_FALSE(hands.MoveNext());
  EXPECT_FALSE(hands.Open(L"nonsense", CRecordset::forwardOnly, 0)) << "without a message";
  EXPECT_NE(hands.ErrorText(), L"");
}

TEST_P(Odbc, NamesInTheCatalogAreNames) {
  Run({L"CREATE TABLE hands_1 (id_ integer, \"Größe\" integer)",
       L"CREATE TABLE handsX1 (idX integer)", L"CREATE TABLE \"p%t€\" (n integer)",
       L"CREATE VIEW seen AS SELECT * FROM hands_1"});
  CStringArray tables = {L"is cleared"};
  EXPECT_TRUE(BuildTableList(nullptr, Connect(), tables));
  std::sort(tables.begin(), tables.end());
  EXPECT_EQ(tables, OnServer() ? (Texts{L"hands_1", L"handsx1", L"p%t€"})
                               : (Texts{L"handsX1", L"hands_1", L"p%t€"}));
  const auto is_table = [this](const CString& name) {
    return IsTableODBC(nullptr, Connect(), name);
  };
  EXPECT_TRUE(is_table(L"hands_1") && is_table(L"seen") && is_table(L"p%t€"));
  for (const wchar_t* name : {L"hands__", L"hands%", L"%", L"p%", L"", L"hands\\_1"})
    EXPECT_FALSE(is_table(name)) << ToUtf8(name);
  const auto has = [this](const CString& table, const CString& column) {
    return IsColumnTableODBC(nullptr, Connect(), table, column);
  };
  EXPECT_TRUE(has(L"hands_1", L"ID_") && has(L"hands_1", L"grÖße") && has(L"p%t€", L"n"));
  EXPECT_FALSE(has(L"hands_1", L"idX") || has(L"hands_1", L"i%") || has(L"hands_1", L""));
  EXPECT_FALSE(has(L"hands__", L"id_") || has(L"none", L"id_"));
}

TEST_P(Odbc, ManyColumnsAndManyRows) {
  CString sql = L"SELECT 0 AS c0";
  for (int i = 1; i < 300; ++i) sql += L", " + std::to_wstring(i) + L" AS c" + std::to_wstring(i);
  EXPECT_EQ(Query(sql).GetInt(L"C299"), 299);
  long count = 0;
  long sum = 0;
  CODBCRecordset& rs = Query(
      L"WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r WHERE n < 100000) SELECT n "
      L"FROM r");
  for (; !rs.IsEOF(); rs.MoveNext(), ++count) sum += rs.GetLong(0);
  EXPECT_EQ(count, 100000);
  EXPECT_EQ(sum, 5000050000);
}

TEST_P(Odbc, EveryAllocationMayFail) {
  Run({L"CREATE TABLE v (n integer, t text)",
       L"INSERT INTO v VALUES (1, '" + Repeated(kLetters, 1000) + L"')"});
  const CString connect = Connect();
  const CString query = L"SELECT n, t FROM v";
  const CString long_text = Repeated(kLetters, 1000);
  const CStringArray batch = {L"UPDATE v SET n = 1", L"UPDATE v SET n = 2"};
  // Calls with one failing allocation after the other, until none fails; then again, with all that
  // come after the first one failing too.
  const auto until_it_works = [](const auto& call) {
    for (const bool for_good : {false, true}) {
      memory_gone_for_good = for_good;
      allocation_failed = true;
      for (long number = 0; allocation_failed && number < 3000; ++number) {
        allocation_failed = false;
        allocations_left = number;
        bool done = false;
        try {
          done = call();
        } catch (const std::bad_alloc&) {
          // A copy of an argument, made here.
        }
        allocations_left = -1;
        EXPECT_TRUE(allocation_failed || done);
      }
      EXPECT_FALSE(allocation_failed);
    }
  };
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
  };
  const auto open_before = open_files();
  until_it_works([&] {
    const bool open = OpenODBC(connect, db_, rs_, query, true);
    const long left = std::exchange(allocations_left, -1);
    EXPECT_TRUE((db_ != nullptr) == open && (rs_ != nullptr) == open);
    EXPECT_EQ(open ? rs_->GetString(1) : long_text, long_text);
    EndQuery();
    allocations_left = left;
    return open;
  });
  EXPECT_EQ(open_files(), open_before);
  Texts shown = messages_.Take();
  EXPECT_GT(std::count(shown.begin(), shown.end(), L"Ошибка памяти при открытии БД !"), 0);
  EXPECT_GT(std::count(shown.begin(), shown.end(),
                       L"Ошибка памяти при чтении таблицы [" + query + L"] !"),
            0);
  until_it_works([&] { return ExecuteSQL(connect, batch); });
  CString place = connect;
  if (OnServer()) place.replace(place.find(L"{se;cr}}et}"), 11, L"***");
  shown = messages_.Take();
  EXPECT_GT(std::count(shown.begin(), shown.end(),
                       L"Ошибка памяти при открытии БД для выполнения <" + place + L">  "),
            0);
  EXPECT_GT(
      std::count(shown.begin(), shown.end(), L"Ошибка памяти при выполнении <" + place + L"> "), 0);
  until_it_works([&] { return IsColumnTableODBC(nullptr, connect, L"v", L"t"); });
  // A record set of a host's: what it throws must not get out, and it can be opened again.
  ASSERT_TRUE(OpenODBC(connect, db_));
  CODBCRecordset rs(db_);
  until_it_works(
      [&] { return rs.Open(query.c_str()) && !rs.MoveNext() && rs.ErrorText().empty(); });
  until_it_works([] { return TestDSNDriver(nullptr, L"SQL"); });
  messages_.Take();
}

class OdbcFile : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(messages_.Take(), Texts()); }
  CString Connect() const { return database_.connect(); }

  Messages messages_;
  Database database_{false};
};

TEST_F(OdbcFile, WholeNumbersOf64BitsDoNotWrap) {
  ASSERT_TRUE(ExecuteSQL(
      Connect(), CStringArray{L"CREATE TABLE v (n integer)", L"INSERT INTO v VALUES (5000000000)",
                              L"INSERT INTO v VALUES (-9223372036854775808)"}));
  CDatabase* db = nullptr;
  CODBCRecordset* rs = nullptr;
  ASSERT_TRUE(OpenODBC(Connect(), db, rs, L"SELECT n FROM v", true));
  EXPECT_TRUE(rs->Field(0).IsLong());
  EXPECT_EQ(rs->GetLong(0), 5000000000);
  EXPECT_EQ(rs->GetInt(0), 2147483647) << "the nearest that fits";
  EXPECT_TRUE(rs->MoveNext());
  EXPECT_EQ(rs->GetLong(0), std::numeric_limits<long>::min());
  delete rs;
  delete db;
}

TEST_F(OdbcFile, WhatCannotBeOpened) {
  const CString connect = L"Driver=none;UID=me;PWD={a;b};Password= secret;Database=x";
  const CString shown = L"Driver=none;UID=me;PWD=***;Password=***;Database=x";
  CDatabase* db = nullptr;
  CODBCRecordset* rs = nullptr;
  CDatabase probe;
  EXPECT_FALSE(probe.OpenEx(connect));
  const CString error = probe.ErrorText();
  EXPECT_NE(error, L"");
  EXPECT_FALSE(probe.ExecuteSQL(L"SELECT 1"));
  EXPECT_FALSE(OpenODBC(connect, db));
  EXPECT_FALSE(OpenODBC(connect, db, rs, L"SELECT 1", true));
  EXPECT_FALSE(OpenODBC(connect, db, rs, L"SELECT 1", false));
  EXPECT_TRUE(db == nullptr && rs == nullptr);
  EXPECT_FALSE(ExecuteSQL(connect, L"SELECT 1"));
  EXPECT_EQ(messages_.Take(),
            (Texts{L"Ошибка открытия Base Error [" + error + L"], Файл: <" + shown + L"> ", error,
                   L"Ошибка [" + error + L"] при открытии БД для выполнения <" + shown + L"> "}));
  CStringArray tables;
  EXPECT_FALSE(BuildTableList(nullptr, connect, tables));
  EXPECT_FALSE(IsTableODBC(nullptr, connect, L"v"));
  EXPECT_FALSE(IsColumnTableODBC(nullptr, connect, L"v", L"n"));
  EXPECT_EQ(messages_.Take(), (Texts{error, error, error}));
  // A closed database that the caller brings along.
  db = new CDatabase;
  EXPECT_FALSE(OpenODBC(Connect(), db));
  EXPECT_FALSE(OpenODBC(Connect(), db, rs, L"SELECT 1", true));
  EXPECT_EQ(db, nullptr);
}

TEST_F(OdbcFile, FilesThatAreNoDatabase) {
  const ScratchFolder folder;
  const CString before = L"Driver=SQLite3;Database=" + FromUtf8(folder / "");
  CDatabase* db = nullptr;
  EXPECT_FALSE(OpenODBC(before + L"none.db", db));
  EXPECT_FALSE(std::filesystem::exists(folder / "none.db")) << "made by opening it for reading";
  std::ofstream(folder / "garbage.db") << std::string(5000, 'x');
  CStringArray tables;
  EXPECT_FALSE(BuildTableList(nullptr, before + L"garbage.db", tables));
  const Texts shown = messages_.Take();
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_NE(shown[1].find(L"not a database"), CString::npos) << ToUtf8(shown[1]);
}

TEST_F(OdbcFile, ALockedDatabaseIsAnError) {
  ASSERT_TRUE(ExecuteSQL(Connect(), L"CREATE TABLE v (n integer)"));
  CDatabase holder;
  ASSERT_TRUE(holder.OpenEx(Connect()));
  ASSERT_TRUE(holder.ExecuteSQL(L"BEGIN EXCLUSIVE"));
  EXPECT_FALSE(ExecuteSQL(Connect(), L"INSERT INTO v VALUES (1)"));
  const Texts shown = messages_.Take();
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_NE(shown[0].find(L"locked"), CString::npos) << ToUtf8(shown[0]);
  holder.Close();
  EXPECT_TRUE(ExecuteSQL(Connect(), L"INSERT INTO v VALUES (1)")) << "the transaction is over";
}

TEST_F(OdbcFile, Drivers) {
  CStringArray list = {L"is cleared"};
  EXPECT_TRUE(BuildSQLDriversList(nullptr, list));
  ASSERT_EQ(list.size() % 2, 0u);
  const auto found = std::find(list.begin(), list.end(), L"SQLite3");
  ASSERT_NE(found, list.end());
  EXPECT_NE(found[1].find(L"Driver="), CString::npos) << ToUtf8(found[1]);
  EXPECT_TRUE(TestDSNDriver(nullptr, L"SQLite3"));
  EXPECT_TRUE(TestDSNDriver(nullptr, L"QLite"));
  EXPECT_FALSE(TestDSNDriver(nullptr, L"sQLite3"));
  EXPECT_EQ(messages_.Take(), (Texts{L"Please install ODBC driver for sQLite3 !"}));
}

TEST_F(OdbcFile, NoMemoryForTheConnectionAloneIsNotShown) {
  const CString connect = Connect();
  CDatabase* db = nullptr;
  for (long number = 0; db == nullptr && number < 1000; ++number) {
    allocations_left = number;
    OpenODBC(connect, db);
    allocations_left = -1;
  }
  EXPECT_NE(db, nullptr);
  delete db;
}

class OdbcServer : public Odbc {};
INSTANTIATE_TEST_SUITE_P(PostgreSql, OdbcServer, testing::Values(true));

TEST_P(OdbcServer, TablesOfOtherSchemas) {
  Run({L"CREATE SCHEMA s2", L"CREATE TABLE s2.far (x integer)",
       L"CREATE TABLE \"a\\_b\" (n integer)", L"CREATE TABLE a_b (m integer)"});
  EXPECT_TRUE(IsTableODBC(nullptr, Connect(), L"far"));
  EXPECT_TRUE(IsColumnTableODBC(nullptr, Connect(), L"far", L"X"));
  EXPECT_TRUE(IsTableODBC(nullptr, Connect(), L"a\\_b"));
  EXPECT_TRUE(IsColumnTableODBC(nullptr, Connect(), L"a\\_b", L"n"));
  EXPECT_FALSE(IsColumnTableODBC(nullptr, Connect(), L"a\\_b", L"m"));
  EXPECT_FALSE(IsColumnTableODBC(nullptr, Connect(), L"tables", L"table_name")) << "the system's";
}

TEST_P(OdbcServer, ADriverThatRefusesChangesItself) {
  EXPECT_TRUE(OpenODBC(Connect() + L";ReadOnly=1", db_, rs_, L"SELECT 1", true));
}

TEST_P(OdbcServer, TheTextsAroundAnErrorStayAsTheyAre) {
  // A password that is a word of theirs, and one of the database that is not the connect string's.
  EXPECT_FALSE(OpenODBC(L"Driver=none;Pwd=Ошибка", db_));
  CString wrong = Connect();
  wrong.replace(wrong.find(L"{se;cr}}et}"), 11, L"база");
  EXPECT_FALSE(ExecuteSQL(wrong, L"SELECT 1"));
  ASSERT_TRUE(OpenODBC(Connect(), db_));
  EXPECT_FALSE(OpenODBC(L"Pwd=выполнения", db_, rs_, L"SELECT 'se;cr}et', 'выполнения'; x", true));
  const Texts shown = messages_.Take();
  ASSERT_EQ(shown.size(), 3u);
  EXPECT_TRUE(shown[0].starts_with(L"Ошибка открытия Base Error [")) << ToUtf8(shown[0]);
  EXPECT_TRUE(shown[1].starts_with(L"Ошибка [")) << ToUtf8(shown[1]);
  EXPECT_TRUE(shown[2].starts_with(L"Ошибка выполнения [")) << ToUtf8(shown[2]);
  EXPECT_TRUE(shown[2].ends_with(L"], запроса: <SELECT '***', '***'; x> ")) << ToUtf8(shown[2]);
}

TEST_P(OdbcServer, APasswordIsNeverShown) {
  CString wrong = Connect();
  wrong.replace(wrong.find(L"{se;cr}}et}"), 11, L"{se;wr}}ng}");
  EXPECT_FALSE(OpenODBC(wrong, db_));
  EXPECT_FALSE(OpenODBC(Connect(), db_, rs_, L"SELECT 'se;cr}et' FROM none", true));
  EXPECT_FALSE(ExecuteSQL(Connect(), L"se;cr}et"));
  ASSERT_TRUE(OpenODBC(Connect(), db_));
  CODBCRecordset rs(db_);
  EXPECT_FALSE(rs.Open(L"SELECT se;cr}et"));
  const Texts shown = messages_.Take();
  ASSERT_EQ(shown.size(), 4u);
  for (const CString& text : shown) {
    EXPECT_EQ(text.find(L"wr}"), CString::npos) << ToUtf8(text);
    EXPECT_EQ(text.find(L"cr}"), CString::npos) << ToUtf8(text);
    EXPECT_NE(text.find(L"***"), CString::npos) << ToUtf8(text);
  }
}

TEST_P(OdbcServer, TypesThatAFileDoesNotHave) {
  Run({L"CREATE TABLE v (b boolean, r real, c char(3), u uuid)",
       L"INSERT INTO v VALUES (true, 1.5, 'é', '00000000-0000-0000-0000-000000000001')"});
  CODBCRecordset& rs = Query(L"SELECT b, r, c, u FROM v");
  EXPECT_EQ(messages_.Take(), (Texts{L"Неизвестный тип данных"}));
  EXPECT_TRUE(rs.Field(0).IsBool() && rs.GetBool(0));
  EXPECT_EQ(rs.GetString(0), L"T");
  EXPECT_TRUE(rs.Field(1).IsFloat());
  EXPECT_EQ(rs.GetFloat(1), 1.5f);
  EXPECT_EQ(rs.GetString(2), L"é  ");
  EXPECT_TRUE(rs.Field(3).IsNull());
}

TEST_P(OdbcServer, AnErrorInALaterPieceOfAStatement) {
  EXPECT_FALSE(ExecuteSQL(Connect(), L"SELECT 1; SELECT 1 / 0"));
  EXPECT_EQ(messages_.Take().size(), 1u);
}

TEST_P(OdbcServer, AQueryMayTakeSoLong) {
  CDatabase database;
  ASSERT_TRUE(database.OpenEx(Connect()));
  database.SetQueryTimeout(1);
  EXPECT_FALSE(database.ExecuteSQL(L"SELECT pg_sleep(60)"));
  EXPECT_NE(database.ErrorText().find(L"57014"), CString::npos) << ToUtf8(database.ErrorText());
  EXPECT_TRUE(database.ExecuteSQL(L"SELECT 1"));
  EXPECT_EQ(database.ErrorText(), L"");
}

TEST_P(OdbcServer, TheServerGoesAwayInTheMiddle) {
  const CString connect = Connect() + L";UseDeclareFetch=1;Fetch=100";
  ASSERT_TRUE(OpenODBC(connect, db_, rs_,
                       L"SELECT n, pg_backend_pid() AS pid FROM generate_series(1, 100000) n",
                       true));
  EXPECT_TRUE(rs_->Move(50));
  Run({L"SELECT pg_terminate_backend(" + rs_->GetString(L"pid") + L")"});
  int more = 0;
  while (rs_->MoveNext()) ++more;
  EXPECT_LT(more, 99949);
  EXPECT_TRUE(rs_->IsEOF());
  EXPECT_NE(rs_->ErrorText(), L"") << "not the end, but an error";
  EXPECT_EQ(messages_.Take().size(), 1u);
  EXPECT_FALSE(rs_->Open(L"SELECT 1"));
  EXPECT_EQ(messages_.Take().size(), 1u);
}

}  // namespace
}  // namespace pokermath
