// Databases, and the calls that open one, run a query or a batch, and tell the user what failed.

#include "support/odbc/database.h"

#include <utility>

#include "platform/messages.h"
#include "support/odbc/connect_text.h"
#include "support/odbc/result_set.h"

namespace pokermath {
namespace {

constexpr unsigned long kReadOnly = CDatabase::openReadOnly | CDatabase::noOdbcDialog;

CString ShownConnect(const CString& connect) {
  return WithoutPasswordsOf(connect, WithoutPasswords(connect));
}

// Runs statements on a connection of their own, each with at most `timeout` seconds.
bool ExecuteAll(const CString& connect, const CString* first, std::size_t count,
                unsigned long timeout) {
  std::unique_ptr<CDatabase> database;
  // The texts around the error and the connect string are not searched for passwords.
  const auto show = [&connect](const wchar_t* before, const CString& error, const wchar_t* doing,
                               const wchar_t* end) {
    ShowMessage(before + WithoutPasswordsOf(connect, error) + doing + ShownConnect(connect) + end);
  };
  const bool open =
      Try([&] { database = DatabaseAccess::Open(connect, CDatabase::noOdbcDialog); },
          [&](const CString& error) {
            show(L"Ошибка [", error, L"] при открытии БД для выполнения <", L"> ");
          },
          [&] { show(L"Ошибка памяти при открытии БД для выполнения <", L"", L"", L">  "); });
  if (!open) return false;
  database->SetQueryTimeout(timeout);
  return Try(
      [&] {
        for (std::size_t i = 0; i < count; ++i) DatabaseAccess::Execute(*database, first[i]);
      },
      [&](const CString& error) { show(L"Ошибка [", error, L"] при выполнении <", L"> "); },
      [&] { show(L"Ошибка памяти при выполнении <", L"", L"", L"> "); });
}

}  // namespace

std::unique_ptr<CDatabase> DatabaseAccess::Open(const CString& connect, unsigned long options) {
  auto database = std::make_unique<CDatabase>();
  database->Connect(connect, options);
  return database;
}

}  // namespace pokermath

using pokermath::DatabaseAccess;
using pokermath::DatabaseError;

CDatabase::CDatabase() = default;

CDatabase::~CDatabase() {
  Close();
  for (CRecordset* records : record_sets_) records->database_ = nullptr;
}

bool CDatabase::IsOpen() const { return connection_ != nullptr; }

void CDatabase::Close() {
  for (CRecordset* records : record_sets_) records->Close();
  connection_.reset();
}

void CDatabase::Connect(const CString& connect, unsigned long options) {
  Close();
  connect_ = connect;
  try {
    connection_ = std::make_unique<pokermath::Connection>(connect, (options & openReadOnly) != 0);
  } catch (const DatabaseError& error) {
    throw DatabaseError(Shown(error.text()));
  }
}

CString CDatabase::Shown(const CString& text) const {
  return pokermath::WithoutPasswordsOf(connect_, text);
}

void CDatabase::Execute(const CString& sql) {
  if (connection_ == nullptr) throw DatabaseError(L"the database is not open");
  pokermath::Statement statement(*connection_, query_timeout_);
  statement.Execute(sql);
  statement.Finish();
}

bool CDatabase::OpenEx(const CString& connect, unsigned long options) {
  error_.clear();
  return pokermath::Try([&] { Connect(connect, options); },
                        [this](const CString& text) { error_ = text; },
                        [this] { error_ = L"not enough memory"; });
}

bool CDatabase::ExecuteSQL(const CString& sql) {
  error_.clear();
  return pokermath::Try([&] { Execute(sql); },
                        [this](const CString& text) { error_ = Shown(text); },
                        [this] { error_ = L"not enough memory"; });
}

bool OpenODBC(const CString& connect, CDatabase*& db) {
  using namespace pokermath;
  if (db != nullptr) return db->IsOpen();
  return Try([&] { db = DatabaseAccess::Open(connect, kReadOnly).release(); },
             [&](const CString& error) {
               ShowMessage(L"Ошибка открытия Base Error [" + error + L"], Файл: <" +
                           ShownConnect(connect) + L"> ");
             },
             // A host that is out of memory is told by the result alone.
             [] {});
}

bool OpenODBC(const CString& connect, CDatabase*& db, CODBCRecordset*& rs, const CString& sql,
              bool showErrors) {
  using namespace pokermath;
  constexpr unsigned long kSeconds = 300;
  constexpr std::size_t kMostOfError = 1000;
  // What fails from here on takes both along.
  std::unique_ptr<CDatabase> database(std::exchange(db, nullptr));
  std::unique_ptr<CODBCRecordset> records(std::exchange(rs, nullptr));
  const auto show = [&](const CString& text) {
    if (showErrors) ShowMessage(text);
  };
  if (database == nullptr) {
    records.release();  // it belonged to a database that the caller has given up
    const bool open = Try([&] { database = DatabaseAccess::Open(connect, kReadOnly); }, show,
                          [&] { show(L"Ошибка памяти при открытии БД !"); });
    if (!open) return false;
  }
  // A database of the host's may have been opened with another connect string.
  const auto shown = [&](const CString& text) {
    return DatabaseAccess::Shown(*database, WithoutPasswordsOf(connect, text));
  };
  const auto query = [&] {
    database->SetQueryTimeout(kSeconds);
    if (records == nullptr) records = std::make_unique<CODBCRecordset>(database.get());
    records->SetShowErrors(showErrors);
    DatabaseAccess::Query(*records, sql);
  };
  const bool done = database->IsOpen() &&
                    Try(
                        query,
                        [&](const CString& error) {
                          show(L"Ошибка выполнения [" + shown(error).substr(0, kMostOfError) +
                               L"], запроса: <" + shown(sql) + L"> ");
                        },
                        [&] { show(L"Ошибка памяти при чтении таблицы [" + shown(sql) + L"] !"); });
  if (done) {
    db = database.release();
    rs = records.release();
  }
  return done;
}

bool ExecuteSQL(CString connect, CString sql) { return pokermath::ExecuteAll(connect, &sql, 1, 0); }

bool ExecuteSQL(CString connect, const CStringArray& statements) {
  constexpr unsigned long kSeconds = 600;
  return pokermath::ExecuteAll(connect, statements.data(), statements.size(), kSeconds);
}
