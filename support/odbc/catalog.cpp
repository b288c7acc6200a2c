#include "support/odbc/catalog.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "platform/messages.h"
#include "platform/text.h"
#include "pokermath/odbc.h"
#include "support/odbc/connect_text.h"
#include "support/odbc/database.h"
#include "support/odbc/names.h"

namespace pokermath {
namespace {

constexpr unsigned long kReadOnly = CDatabase::openReadOnly | CDatabase::noOdbcDialog;
constexpr std::size_t kMostOfName = 255;

// Runs `work` and shows what it throws, without the passwords of the connect string. False if it
// threw.
template <typename Work>
bool Shown(const CString& connect, const Work& work) {
  return Try(
      work, [&connect](const CString& error) { ShowMessage(WithoutPasswordsOf(connect, error)); },
      [] {});
}

std::unique_ptr<CDatabase> OpenShown(const CString& connect) {
  std::unique_ptr<CDatabase> database;
  Shown(connect, [&] { database = DatabaseAccess::Open(connect, kReadOnly); });
  return database;
}

SQLSMALLINT LengthOf(const std::string& text) {
  return static_cast<SQLSMALLINT>(std::min<std::size_t>(text.size(), 0x7FFF));
}

// At most 255 bytes of a name, not ending in the middle of a character.
CString Cut(std::string_view name) {
  std::size_t end = std::min<std::size_t>(name.size(), kMostOfName);
  while (end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
  return FromUtf8(name.substr(0, end));
}

// The name in a column of the current row; a null is empty.
CString NameIn(const Statement& statement, int column) {
  std::string name;
  statement.Read(column, SQL_C_CHAR, name, kMostOfName);
  return Cut(name);
}

// Whether a name of the catalog is the one that was asked for: a driver may take a name for a
// pattern after all, and some fold the case of names.
bool IsNamed(const CString& found, const CString& wanted) {
  return UpperCase(found) == UpperCase(Cut(ToUtf8(wanted)));
}

// Any schema: with the name of a table alone some drivers look into one schema only.
struct AnySchema {
  explicit AnySchema(const Connection& connection)
      : length(connection.ShortInfo(SQL_MAX_SCHEMA_NAME_LEN) == 0 ? SQLSMALLINT{0}
                                                                  : SQLSMALLINT{1}) {}
  SQLCHAR* text() { return length == 0 ? nullptr : pattern; }

  SQLCHAR pattern[2] = {'%', 0};
  SQLSMALLINT length;
};

void AskForTables(const Connection& connection, Statement& statement, std::string pattern,
                  std::string type) {
  AnySchema schema(connection);
  // In a list of all tables a driver may take it for the question which schemas there are.
  if (pattern.empty()) schema.length = 0;
  statement.Check(SQLTables(statement.handle(), nullptr, 0, schema.text(), schema.length,
                            pattern.empty() ? nullptr : Narrow(pattern), LengthOf(pattern),
                            type.empty() ? nullptr : Narrow(type), LengthOf(type)));
}

CString AttributesText(const std::string& list) {
  std::string text = list.substr(0, list.find(std::string(2, '\0')));
  text.resize(text.find_last_not_of('\0') + 1);
  std::replace(text.begin(), text.end(), '\0', ';');
  return FromUtf8(text);
}

}  // namespace

void ListTables(const Connection& connection, CStringArray& tables) {
  Statement statement(connection);
  AskForTables(connection, statement, "", "TABLE");
  while (statement.Fetch()) tables.push_back(NameIn(statement, 2));
}

std::vector<ColumnDescription> ListColumns(const Connection& connection, const CString& table) {
  if (table.empty()) return {};  // a driver would list the columns of all tables
  Statement statement(connection);
  std::string pattern = connection.AsPattern(table);
  AnySchema schema(connection);
  statement.Check(SQLColumns(statement.handle(), nullptr, 0, schema.text(), schema.length,
                             Narrow(pattern), LengthOf(pattern), nullptr, 0));
  std::vector<ColumnDescription> columns;
  while (statement.Fetch()) {
    // In the order of the result: some drivers read it only forward.
    ColumnDescription column;
    column.schema = NameIn(statement, 1);
    // Some drivers leave the system's own schemas out of lists of tables only.
    if (column.schema == L"information_schema" || column.schema == L"pg_catalog") continue;
    if (!IsNamed(NameIn(statement, 2), table)) continue;
    column.name = NameIn(statement, 3);
    column.type = NameIn(statement, 5);
    column.nullable = NameIn(statement, 10) != L"0";
    columns.push_back(column);
  }
  return columns;
}

void ListDrivers(SQLHENV environment, std::vector<Driver>& drivers) {
  constexpr SQLSMALLINT kRoom = 512;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST;; direction = SQL_FETCH_NEXT) {
    std::string name(kRoom, '\0');
    std::string attributes(kRoom, '\0');
    SQLSMALLINT name_length = 0;
    SQLSMALLINT attributes_length = 0;
    const SQLRETURN result = SQLDrivers(environment, direction, Narrow(name), kRoom, &name_length,
                                        Narrow(attributes), kRoom, &attributes_length);
    CheckCall(result, SQL_HANDLE_ENV, environment);
    if (result == SQL_NO_DATA) return;
    drivers.push_back({FromUtf8(name.c_str()), AttributesText(attributes)});
  }
}

}  // namespace pokermath

bool BuildTableList(void*, const CString& connect, CStringArray& tables) {
  using namespace pokermath;
  const std::unique_ptr<CDatabase> database = OpenShown(connect);
  if (database == nullptr) return false;
  tables.clear();
  Shown(connect, [&] { ListTables(DatabaseAccess::ConnectionOf(*database), tables); });
  return true;
}

bool IsTableODBC(void*, CString connect, const CString& table) {
  using namespace pokermath;
  const std::unique_ptr<CDatabase> database = OpenShown(connect);
  if (database == nullptr || table.empty()) return false;
  bool found = false;
  Shown(connect, [&] {
    const Connection& connection = DatabaseAccess::ConnectionOf(*database);
    Statement statement(connection);
    AskForTables(connection, statement, connection.AsPattern(table), "");
    for (;;) {
      const SQLRETURN result = SQLFetch(statement.handle());
      if (result == SQL_SUCCESS_WITH_INFO) {
        throw DatabaseError(Diagnostics(SQL_HANDLE_STMT, statement.handle()));
      }
      statement.Check(result);
      if (result == SQL_NO_DATA) return;
      found = IsNamed(NameIn(statement, 2), table);
      if (found) return;
    }
  });
  return found;
}

bool IsColumnTableODBC(void*, const CString& connect, const CString& table, const CString& column) {
  using namespace pokermath;
  const std::unique_ptr<CDatabase> database = OpenShown(connect);
  if (database == nullptr) return false;
  bool found = false;
  Shown(connect, [&] {
    const CString wanted = UpperCase(column);
    const auto columns = ListColumns(DatabaseAccess::ConnectionOf(*database), table);
    found = std::any_of(columns.begin(), columns.end(), [&wanted](const ColumnDescription& have) {
      return UpperCase(have.name) == wanted;
    });
  });
  return found;
}

bool BuildSQLDriversList(void* environment, CStringArray& list) {
  using namespace pokermath;
  list.clear();
  bool whole = true;
  try {
    std::vector<Driver> drivers;
    try {
      std::unique_ptr<Environment> own;
      if (environment == nullptr) {
        own = std::make_unique<Environment>();
        environment = own->handle();
      }
      ListDrivers(environment, drivers);
    } catch (const DatabaseError&) {
      whole = false;
    }
    for (const Driver& driver : drivers) {
      list.push_back(driver.name);
      list.push_back(driver.attributes);
    }
  } catch (const std::bad_alloc&) {
    whole = false;
  }
  return whole;
}

bool TestDSNDriver(void* environment, CString driver) {
  CStringArray list;
  BuildSQLDriversList(environment, list);
  const bool found = std::any_of(list.begin(), list.end(), [&driver](const CString& entry) {
    return entry.find(driver) != entry.npos;
  });
  if (found) return true;
  pokermath::Try(
      [&] { pokermath::ShowMessage(L"Please install ODBC driver for " + driver + L" !"); },
      [](const CString&) {}, [] {});
  return false;
}
