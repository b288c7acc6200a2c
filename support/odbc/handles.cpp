#include "support/odbc/handles.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <limits>
#include <new>

#include "platform/text.h"
#include "support/odbc/names.h"

namespace pokermath {
namespace {

constexpr SQLINTEGER kIsUnsigned = SQL_IS_UINTEGER;

// While it lives, this thread's locale is "C". Handles that are allocated in a UTF-8 locale get
// error texts that have been encoded twice.
class PlainLocale {
 public:
  PlainLocale()
      : locale_(newlocale(LC_ALL_MASK, "C", nullptr)),
        before_(uselocale(locale_)) {}  // null asks only
  ~PlainLocale() {
    uselocale(before_);
    if (locale_ != nullptr) freelocale(locale_);
  }
  PlainLocale(const PlainLocale&) = delete;
  PlainLocale& operator=(const PlainLocale&) = delete;

 private:
  locale_t locale_;
  locale_t before_;
};

SQLPOINTER Number(std::uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

// A handle below another one.
SQLHANDLE Allocate(SQLSMALLINT type, SQLSMALLINT parent_type, SQLHANDLE parent) {
  SQLHANDLE handle = nullptr;
  CheckCall(SQLAllocHandle(type, parent, &handle), parent_type, parent);
  return handle;
}

std::size_t LengthIn(SQLSMALLINT length, std::size_t room) {
  return length < 0 ? 0 : std::min(static_cast<std::size_t>(length), room);
}

}  // namespace

SQLCHAR* Narrow(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

CString Diagnostics(SQLSMALLINT type, SQLHANDLE handle) {
  // A driver may go on for ever.
  constexpr SQLSMALLINT kMostRecords = 64;
  std::string all;
  for (SQLSMALLINT record = 1; record <= kMostRecords; ++record) {
    std::string text(2048, '\0');
    SQLCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const auto read = [&] {
      return SQLGetDiagRec(type, handle, record, state, &native, Narrow(text),
                           static_cast<SQLSMALLINT>(text.size()), &length);
    };
    SQLRETURN result = read();
    if (result == SQL_SUCCESS_WITH_INFO && length >= static_cast<SQLSMALLINT>(text.size())) {
      text.resize(std::min<std::size_t>(static_cast<std::size_t>(length) + 1, 0x7FFF));
      result = read();
    }
    if (!SQL_SUCCEEDED(result)) break;
    const std::string_view code(reinterpret_cast<const char*>(state));
    if (code == "HY001" || code == "HY014") throw std::bad_alloc();
    text.resize(LengthIn(length, text.size() - 1));
    text.resize(text.find_last_not_of(" \n\r\t") + 1);
    all.append(all.empty() ? "" : "; ").append(text).append(" (").append(code).append(")");
    if (result != SQL_SUCCESS) break;
  }
  return all.empty() ? L"unknown error" : FromUtf8(all);
}

void CheckCall(SQLRETURN result, SQLSMALLINT type, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  throw DatabaseError(Diagnostics(type, handle));
}

Environment::Environment() {
  const PlainLocale locale;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle_))) {
    throw std::bad_alloc();
  }
  SQLSetEnvAttr(handle_, SQL_ATTR_ODBC_VERSION, Number(SQL_OV_ODBC3), kIsUnsigned);
}

Connection::Connection(const CString& connect, bool read_only) {
  const PlainLocale locale;
  std::string text = ToUtf8(connect);
  // Otherwise a file that is not there would be made.
  if (read_only && UpperCase(connect).find(L"SQLITE") != connect.npos) text += ";NoCreat=1";
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<SQLSMALLINT>::max())) {
    throw DatabaseError(L"the connect string is too long");
  }
  handle_ = Allocate(SQL_HANDLE_DBC, SQL_HANDLE_ENV, environment_.handle());
  try {
    // Many drivers do not know it or do not care.
    if (read_only) {
      SQLSetConnectAttr(handle_, SQL_ATTR_ACCESS_MODE, Number(SQL_MODE_READ_ONLY), kIsUnsigned);
    }
    const SQLRETURN result =
        SQLDriverConnect(handle_, nullptr, Narrow(text), static_cast<SQLSMALLINT>(text.size()),
                         nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(result)) throw DatabaseError(Diagnostics(SQL_HANDLE_DBC, handle_));
    if (read_only) RefuseChanges();
  } catch (...) {
    Release();
    throw;
  }
}

void Connection::RefuseChanges() const {
  struct Refusal {
    std::string_view database;
    const wchar_t* statement;
  };
  constexpr Refusal kRefusals[] = {
      {"SQLite", L"PRAGMA query_only = 1"},
      {"PostgreSQL", L"SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY"}};
  const std::string name = Text(SQL_DBMS_NAME);
  for (const Refusal& refusal : kRefusals) {
    if (!name.starts_with(refusal.database)) continue;
    try {
      Statement(*this).Execute(refusal.statement);
    } catch (const DatabaseError&) {
      // The driver refuses changes itself, and takes this for one; or it does not know it.
    }
  }
  if (!name.starts_with("SQLite")) return;
  // A file that is no database would look like an empty one.
  try {
    Statement(*this).Execute(L"PRAGMA schema_version");
  } catch (const DatabaseError& error) {
    if (error.text().find(L"not a database") != CString::npos) throw;
  }
}

Connection::~Connection() { Release(); }

void Connection::Release() {
  // With a transaction open, a driver may refuse to let go.
  SQLEndTran(SQL_HANDLE_DBC, handle_, SQL_ROLLBACK);
  SQLDisconnect(handle_);
  SQLFreeHandle(SQL_HANDLE_DBC, handle_);
}

SQLUINTEGER Connection::Info(SQLUSMALLINT item) const {
  SQLUINTEGER value = 0;
  SQLGetInfo(handle_, item, &value, sizeof(value), nullptr);
  return value;
}

SQLUSMALLINT Connection::ShortInfo(SQLUSMALLINT item) const {
  SQLUSMALLINT value = 0;
  SQLGetInfo(handle_, item, &value, sizeof(value), nullptr);
  return value;
}

std::string Connection::Text(SQLUSMALLINT item) const {
  std::string text(64, '\0');
  SQLSMALLINT length = 0;
  const SQLRETURN result =
      SQLGetInfo(handle_, item, Narrow(text), static_cast<SQLSMALLINT>(text.size()), &length);
  text.resize(SQL_SUCCEEDED(result) ? LengthIn(length, text.size() - 1) : 0);
  return text;
}

std::string Connection::AsPattern(const CString& name) const {
  const std::string escape = Text(SQL_SEARCH_PATTERN_ESCAPE);
  std::string pattern;
  for (const char c : ToUtf8(name)) {
    if (c == '_' || c == '%') pattern += escape;
    pattern += !escape.empty() && c == escape.front() ? '_' : c;
  }
  return pattern;
}

Statement::Statement(const Connection& connection, unsigned long timeout)
    : handle_(Allocate(SQL_HANDLE_STMT, SQL_HANDLE_DBC, connection.handle())) {
  if (timeout != 0) {
    SQLSetStmtAttr(handle_, SQL_ATTR_QUERY_TIMEOUT, Number(timeout), kIsUnsigned);
  }
}

void Statement::Execute(const CString& sql) {
  std::string text = ToUtf8(sql);
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<SQLINTEGER>::max())) {
    throw DatabaseError(L"the statement is too long");
  }
  Check(SQLExecDirect(handle_, Narrow(text), static_cast<SQLINTEGER>(text.size())));
}

void Statement::Finish() {
  SQLRETURN result;
  do {
    result = SQLMoreResults(handle_);
    Check(result);
  } while (result != SQL_NO_DATA);
}

bool Statement::Fetch() {
  const SQLRETURN result = SQLFetch(handle_);
  Check(result);
  return result != SQL_NO_DATA;
}

bool Statement::Read(int column, SQLSMALLINT type, std::string& bytes, std::size_t expected) const {
  // Not more at once than this, however large the driver says the value to be.
  constexpr std::size_t kMostAtOnce = std::size_t{16} << 20;
  constexpr std::size_t kPiece = std::size_t{64} << 10;
  const std::size_t end = type == SQL_C_CHAR ? 1 : 0;  // a text comes with a NUL
  bytes.clear();
  for (std::size_t room = expected == 0 ? kPiece : std::min(expected + 1, kMostAtOnce);;) {
    const std::size_t done = bytes.size();
    bytes.resize(done + room);
    SQLLEN length = 0;
    const SQLRETURN result = SQLGetData(handle_, static_cast<SQLUSMALLINT>(column + 1), type,
                                        bytes.data() + done, static_cast<SQLLEN>(room), &length);
    Check(result);
    if (result == SQL_NO_DATA || length == SQL_NULL_DATA) {
      bytes.resize(done);
      return length != SQL_NULL_DATA;
    }
    const bool fits = length >= 0 && static_cast<std::size_t>(length) + end <= room;
    bytes.resize(done + (fits ? static_cast<std::size_t>(length) : room - end));
    if (fits || result == SQL_SUCCESS) return true;
    // The length was that of all that had been left.
    room = length < 0 ? kPiece
                      : std::min(static_cast<std::size_t>(length) - room + 2 * end, kMostAtOnce);
  }
}

}  // namespace pokermath
