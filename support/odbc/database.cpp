// Databases, and the calls that open one, run a query or a batch, and tell the user what failed.

#include "support/odbc/database.h"

#include <new>
#include <utility>

#include "platform/messages.h"
#include "platform/text.h"
#include "support/odbc/connect_text.h"
#include "support/odbc/result_set.h"

namespace pokermath {
namespace {

constexpr unsigned long kReadOnly = CDatabase::openReadOnly | CDatabase::noOdbcDialog;

// Runs `work`; what it throws comes back as a call of one of the other two, and as false. Even the
// telling may run out of memory.
template <typename Work, typename OnError, typename OnNoMemory>
bool Try(const Work& work, const OnError& on_error, const OnNoMemory& on_no_memory) {
  try {
    try {
      work();
      return true;
    } catch (const DatabaseError& error) {
      on_error(error.text());
    } catch (const std::bad_alloc&) {
      on_no_memory();
    } catch (const std::exception& error) {
      on_error(FromUtf8(error.what()));
    }
  } catch (const std::bad_alloc&) {
    // Nothing is left to say it with.
  }
  return false;
}

// Runs statements on a connection of their own, each with at most `timeout` seconds.
bool ExecuteAll(const CString& connect, const CString* first, std::size_t count,
                unsigned long timeout) {
  std::unique_ptr<CDatabase> database;
  const auto show = [&connect](const wchar_t* before, const CString& after) {
    ShowWithoutPasswords(connect, before + after);
  };
  const auto place = [&connect](const wchar_t* doing, const wchar_t* end) {
    return doing + WithoutPasswords(connect) + end;
  };
  const bool open =
      Try([&] { database = DatabaseAccess::Open(connect, CDatabase::noOdbcDialog); },
          [&](const CString& error) {
            show(L"Ошибка [", error + place(L"] при открытии БД для выполнения <", L"> "));
          },
          [&] { show(L"", place(L"Ошибка памяти при открытии БД для выполнения <", L">  ")); });
  if (!open) return false;
  database->SetQueryTimeout(timeout);
  return Try(
      [&] {
        for (std::size_t i = 0; i < count; ++i) DatabaseAccess::Execute(*database, first[i]);
      },
      [&](const CString& error) { show(L"Ошибка [", error + place(L"] при выполнении <", L"> ")); },
      [&] { show(L"", place(L"Ошибка памяти при выполнении <", L"> ")); });
}

}  // namespace

std::unique_ptr<CDatabase> DatabaseAccess::Open(const CString& connect, unsigned long options) {
  auto database = std::make_unique<CDatabase>();
  database->Connect(connect, options);
  return database;
}

void ShowWithoutPasswords(const CString& connect, const CString& text) {
  ShowMessage(WithoutPasswordsOf(connect, text));
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
               ShowWithoutPasswords(connect, L"Ошибка открытия Base Error [" + error +
                                                 L"], Файл: <" + WithoutPasswords(connect) + L"> ");
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
    if (showErrors) ShowWithoutPasswords(connect, text);
  };
  if (database == nullptr) {
    records.release();  // it belonged to a database that the caller has given up
    const bool open = Try([&] { database = DatabaseAccess::Open(connect, kReadOnly); }, show,
                          [&] { show(L"Ошибка памяти при открытии БД !"); });
    if (!open) return false;
  }
  const bool done = database->IsOpen() &&
                    Try(
                        [&] {
                          database->SetQueryTimeout(kSeconds);
                          if (records == nullptr)
                            records = std::make_unique<CODBCRecordset>(database.get());
                          records->SetShowErrors(showErrors);
                          DatabaseAccess::Query(*records, sql);
                        },
                        [&](const CString& error) {
                          show(L"Ошибка выполнения [" + error.substr(0, kMostOfError) +
                               L"], запроса: <" + sql + L"> ");
                        },
                        [&] { show(L"Ошибка памяти при чтении таблицы [" + sql + L"] !"); });
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
