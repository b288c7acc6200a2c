// A query through ODBC. What fails gives false and a message, which this host takes over.

#include <pokermath/messages.h>
#include <pokermath/odbc.h>

#include <clocale>
#include <cstdio>
#include <memory>

int main() {
  std::setlocale(LC_CTYPE, "C.UTF-8");  // wide text is printed as UTF-8
  pokermath::SetMessageHandler(
      [](const CString& text) { std::fprintf(stderr, "%ls\n", text.c_str()); });
  const CString connect = L"Driver=SQLite3;Database=hands.db";
  const CStringArray statements = {L"DROP TABLE IF EXISTS hands",
                                   L"CREATE TABLE hands (id INTEGER, pot DOUBLE, player TEXT)",
                                   L"INSERT INTO hands VALUES (1, 12.5, 'Zo\u00EB'), (2, 3, NULL)"};
  if (!ExecuteSQL(connect, statements)) return 1;

  CDatabase* db = nullptr;
  CODBCRecordset* rs = nullptr;
  if (!OpenODBC(connect, db, rs, L"SELECT id, pot, player FROM hands ORDER BY id")) return 1;
  // The caller owns both; the record set goes first.
  const std::unique_ptr<CDatabase> database(db);
  const std::unique_ptr<CODBCRecordset> records(rs);
  for (; !records->IsEOF(); records->MoveNext()) {
    const CString player =
        records->Field(L"player").IsNull() ? L"nobody" : records->GetString(L"player");
    std::printf("%ld: %.2f, %ls\n", records->GetLong(L"id"), records->GetDouble(L"pot"),
                player.c_str());
  }
  // An error ends the records as well.
  if (!records->ErrorText().empty()) return 1;
}
