// `pokermath db`: what a database behind ODBC holds, queries and scripts.

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "cli/sql_script.h"
#include "cli/stop_signals.h"
#include "pages/json.h"
#include "platform/text.h"
#include "pokermath/messages.h"
#include "pokermath/odbc.h"
#include "support/odbc/catalog.h"
#include "support/odbc/connect_text.h"

namespace pokermath::cli {
namespace {

constexpr const char* kDbHelp =
    R"(Examples:
  pokermath db drivers
  pokermath db tables --connect 'Driver=SQLite3;Database=hands.db'
  pokermath db columns hands --connect 'DSN=poker'
  pokermath db query 'SELECT * FROM hands' --connect 'DSN=poker'
  pokermath db exec schema.sql --connect 'DSN=poker'

'pokermath db SUBCOMMAND --help' says more.)";

constexpr const char* kConnectHelp =
    R"(C is an ODBC connect string; it may come from the variable POKERMATH_CONNECT as well, where no list
of processes shows it. Messages show of it only what is known to be no secret.

)";

constexpr const char* kDriversHelp =
    R"(A name can stand behind Driver= in a connect string, in braces if it has blanks.

Example:
  pokermath db drivers --json)";

constexpr const char* kTablesHelp =
    R"(Views and the system's own tables are left out.

Examples:
  pokermath db tables --connect 'Driver=SQLite3;Database=hands.db'
  POKERMATH_CONNECT='DSN=poker' pokermath db tables --json)";

constexpr const char* kColumnsHelp =
    R"(The table may be in any schema. A line is a column: its name, its type and 'not null' where it is
never empty; the schema stands in front where several have such a table.

Examples:
  pokermath db columns hands --connect 'Driver=SQLite3;Database=hands.db'
  pokermath db columns hands --connect 'DSN=poker' --json)";

constexpr const char* kQueryHelp =
    R"(The database is opened for reading: SQLite and PostgreSQL refuse ordinary changes, which are for
'pokermath db exec'. A table cuts long values; --csv and --json print them whole, row by row. In CSV
null is nothing at all, and an empty text a pair of quotes.

Examples:
  pokermath db query 'SELECT * FROM hands' --connect 'Driver=SQLite3;Database=hands.db'
  pokermath db query 'SELECT pot FROM hands WHERE id = 7' --connect 'DSN=poker' --json
  pokermath db query 'SELECT * FROM hands' --connect 'DSN=poker' --csv >hands.csv)";

constexpr const char* kExecHelp =
    R"(A script is a list of statements that end with semicolons; their results are not printed. It stops
at the first that fails, and those before it stay executed unless the script itself opens a
transaction.

Examples:
  pokermath db exec schema.sql --connect 'Driver={PostgreSQL Unicode};Server=db;Database=poker'
  echo 'DELETE FROM hands WHERE id = 7' | pokermath db exec - --connect 'DSN=poker')";

struct DbWords {
  std::string connect;
  std::string subject;  // a table, a query or a file
  bool csv = false;
  bool json = false;
};

// What a driver said, on one line.
std::string DriverText(const CString& error) {
  CString line;
  for (const wchar_t c : error) {
    const bool blank = c == L'\n' || c == L'\r' || c == L'\t' || c == L' ';
    if (!blank || !line.ends_with(L' ')) line += blank ? L' ' : c;
  }
  return ToUtf8(OnOneLine(line));
}

Failure DatabaseFailure(const std::string& what, const CString& error) {
  return Failure(what + ": " + DriverText(error));
}

// The table or file that was asked for, in quotes; it may be a connect string in the wrong place.
std::string QuotedSubject(const DbWords& words) {
  const CString shown = WithoutPasswordsInWord(FromUtf8(words.subject));
  return Quoted(ToUtf8(WithoutPasswordsOf(FromUtf8(words.connect), shown)));
}

int RunDrivers(const DbWords& words) {
  std::vector<Driver> drivers;
  try {
    ListDrivers(Environment().handle(), drivers);
  } catch (const DatabaseError& error) {
    throw DatabaseFailure("cannot list the drivers", error.text());
  }
  Json list = Json::array();
  std::string text;
  for (const Driver& driver : drivers) {
    const std::string name = ToUtf8(driver.name);
    const std::string attributes = ToUtf8(driver.attributes);
    list.push_back({{"name", name}, {"attributes", attributes}});
    text += fmt::format("{:<24} {}\n", name, attributes);
  }
  Print(words.json ? JsonLine({{"schema", kJsonSchema}, {"drivers", list}}) : text);
  return kExitDone;
}

// A connection for the lists.
template <typename Work>
void WithConnection(const DbWords& words, const char* what, const Work& work) {
  const CString connect = FromUtf8(words.connect);
  const char* doing = "cannot open the database";
  try {
    const Connection connection(connect, true);
    doing = what;
    work(connection);
  } catch (const DatabaseError& error) {
    throw DatabaseFailure(doing, WithoutPasswordsOf(connect, error.text()));
  }
}

int RunTables(const DbWords& words) {
  CStringArray tables;
  WithConnection(words, "cannot list the tables",
                 [&](const Connection& connection) { ListTables(connection, tables); });
  Json list = Json::array();
  std::string text;
  for (const CString& table : tables) {
    list.push_back(ToUtf8(table));
    text += ToUtf8(table) + "\n";
  }
  Print(words.json ? JsonLine({{"schema", kJsonSchema}, {"tables", list}}) : text);
  return kExitDone;
}

int RunColumns(const DbWords& words) {
  std::vector<ColumnDescription> columns;
  WithConnection(words, "cannot list the columns", [&](const Connection& connection) {
    columns = ListColumns(connection, FromUtf8(words.subject));
  });
  if (columns.empty()) throw Failure("there is no table " + QuotedSubject(words));
  const bool several = std::ranges::any_of(columns, [&columns](const ColumnDescription& column) {
    return column.schema != columns[0].schema;
  });
  Json list = Json::array();
  std::string text;
  for (const ColumnDescription& column : columns) {
    const std::string name = ToUtf8(column.name);
    const std::string type = ToUtf8(column.type);
    const std::string schema = ToUtf8(column.schema);
    list.push_back({{"name", name}, {"type", type}, {"nullable", column.nullable}});
    if (several) {
      list.back()["schema"] = schema;
      text += fmt::format("{:<16} ", schema);
    }
    text += fmt::format("{:<24} {}{}\n", name, type, column.nullable ? "" : " not null");
  }
  Print(words.json
            ? JsonLine({{"schema", kJsonSchema}, {"table", words.subject}, {"columns", list}})
            : text);
  return kExitDone;
}

bool IsBytes(short sql_type) {
  return sql_type == SQL_BINARY || sql_type == SQL_VARBINARY || sql_type == SQL_LONGVARBINARY;
}

// A date, a time or both, in the order of ISO 8601.
std::string DateText(const CDBTimestamp& date, short sql_type) {
  const std::string day = fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
  std::string time = fmt::format("{:02}:{:02}:{:02}", date.hour, date.minute, date.second);
  if (date.fraction != 0) time += fmt::format(".{:09}", date.fraction);
  if (sql_type == SQL_DATE || sql_type == SQL_TYPE_DATE) return day;
  if (sql_type == SQL_TIME || sql_type == SQL_TYPE_TIME) return time;
  return day + " " + time;
}

// What a field says, as bytes for a table or CSV; null is empty.
std::string ValueText(const CDBField& field, short sql_type) {
  if (field.IsNull()) return {};
  if (field.IsDouble()) return fmt::format("{}", field.AsDouble());
  if (field.IsFloat()) return fmt::format("{}", field.AsFloat());
  if (field.IsBool()) return field.AsBool() ? "true" : "false";
  if (field.IsChar()) return fmt::format("{}", field.AsInt());
  if (field.IsDate()) return DateText(field.AsDate(), sql_type);
  if (field.IsBinary() && IsBytes(sql_type)) {
    std::string hex;
    for (const char byte : field.m_pbinary->bytes) {
      hex += fmt::format("{:02x}", static_cast<unsigned char>(byte));
    }
    return hex;
  }
  return ToUtf8(field.AsString());
}

Json ValueJson(const CDBField& field, short sql_type) {
  if (field.IsNull()) return nullptr;
  if (field.IsBool()) return field.AsBool();
  if (field.IsLong() || field.IsChar() || sql_type == SQL_BIGINT) return field.AsLong();
  const bool number = field.IsDouble() || field.IsFloat();
  if (number && std::isfinite(field.AsDouble())) return field.AsDouble();
  return ValueText(field, sql_type);
}

// A result column: its name and how it is printed.
struct Column {
  std::string name;
  short sql_type;
  bool right;  // aligned to the right, as numbers are
};

// The driver's names. One that comes again has the number that the record set gives it.
std::vector<Column> ColumnsOf(CODBCRecordset& records) {
  std::vector<Column> columns;
  for (int i = 0; i < records.GetODBCFieldCount(); ++i) {
    CODBCFieldInfo info;
    records.GetODBCFieldInfo(i, info);
    const CString unique = records.GetFieldName(i);
    const CString name =
        info.m_strName + unique.substr(std::min(info.m_strName.size(), unique.size()));
    if (records.Field(i).m_dwType == DBVT_NULL) {
      PrintError(fmt::format("column {} has a type that cannot be read ({})", Quoted(ToUtf8(name)),
                             info.m_nSQLType));
    }
    columns.push_back({ToUtf8(name), info.m_nSQLType, records.Field(i).IsNumber()});
  }
  return columns;
}

using Row = std::vector<std::string>;

// How many characters the text has: the bytes that do not continue one.
std::size_t WidthOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// A value on one line of a table, and not too long a one.
std::string CellText(const CDBField& field, short sql_type) {
  constexpr std::size_t kWidest = 60;
  if (field.IsNull()) return "NULL";
  std::wstring text = OnOneLine(FromUtf8(ValueText(field, sql_type)));
  if (text.size() > kWidest) text = text.substr(0, kWidest - 1) + L'\u2026';
  return ToUtf8(text);
}

std::string TableLine(const std::vector<Column>& columns, const std::vector<std::size_t>& widths,
                      const Row& row) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::size_t width = WidthOf(row[i]);
    const std::string blanks(widths[i] > width ? widths[i] - width : 0, ' ');
    line += (i == 0 ? "" : "  ") + (columns[i].right ? blanks + row[i] : row[i] + blanks);
  }
  line.resize(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

// The widths are those of the first rows, so that a large result need not be kept.
void PrintTable(CODBCRecordset& records, const std::vector<Column>& columns) {
  constexpr std::size_t kRows = 1000;
  std::vector<std::size_t> widths;
  Row names;
  for (const Column& column : columns) {
    names.push_back(ToUtf8(OnOneLine(FromUtf8(column.name))));
    widths.push_back(WidthOf(names.back()));
  }
  std::vector<Row> rows = {names};
  long count = 0;
  const auto print = [&] {
    std::string text;
    for (const Row& row : rows) text += TableLine(columns, widths, row);
    rows.clear();
    Print(text);
  };
  for (; !records.IsEOF() && !StopRequested(); records.MoveNext(), ++count) {
    Row row;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      row.push_back(CellText(records.Field(static_cast<int>(i)), columns[i].sql_type));
      if (count < static_cast<long>(kRows)) widths[i] = std::max(widths[i], WidthOf(row[i]));
    }
    rows.push_back(row);
    if (rows.size() >= kRows) print();
  }
  print();
  Print(fmt::format("\n{} row{}\n", count, count == 1 ? "" : "s"));
}

// A value of a CSV line. Null is nothing, and an empty text a pair of quotes.
std::string CsvText(const std::string& text, bool null) {
  if (null || (!text.empty() && text.find_first_of(",\"\r\n") == text.npos)) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

void PrintCsv(CODBCRecordset& records, const std::vector<Column>& columns) {
  std::string text;
  for (const Column& column : columns) {
    text += (&column == columns.data() ? "" : ",") + CsvText(column.name, false);
  }
  Print(text + "\n");
  for (; !records.IsEOF() && !StopRequested(); records.MoveNext()) {
    text.clear();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const CDBField& field = records.Field(static_cast<int>(i));
      text += (i == 0 ? "" : ",") + CsvText(ValueText(field, columns[i].sql_type), field.IsNull());
    }
    Print(text + "\n");
  }
}

void PrintJson(CODBCRecordset& records, const std::vector<Column>& columns) {
  for (; !records.IsEOF() && !StopRequested(); records.MoveNext()) {
    Json row = Json::object();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      row[columns[i].name] = ValueJson(records.Field(static_cast<int>(i)), columns[i].sql_type);
    }
    Print(JsonLine({{"schema", kJsonSchema}, {"row", row}}));
  }
}

// Whether a database refused a change because it was opened for reading.
bool IsRefusedChange(const CString& error) {
  constexpr const wchar_t* kSigns[] = {L"readonly database", L"(25006)", L"Connection is readonly"};
  return std::ranges::any_of(
      kSigns, [&error](const wchar_t* sign) { return error.find(sign) != CString::npos; });
}

int RunQuery(const DbWords& words) {
  if (words.csv && words.json) throw UsageError("--csv and --json exclude each other");
  if (SplitSql(words.subject).empty()) {
    throw UsageError(QuotedSubject(words) + " is no query: it holds no statement");
  }
  const StopSignals signals;
  CDatabase database;
  if (!database.OpenEx(FromUtf8(words.connect), CDatabase::openReadOnly)) {
    throw DatabaseFailure("cannot open the database", database.ErrorText());
  }
  CODBCRecordset records(&database);
  // What is wrong is told here, in one's own words.
  records.SetShowErrors(false);
  SetMessageHandler([](const CString&) {});
  const auto check = [&](const char* what) {
    if (!records.ErrorText().empty()) throw DatabaseFailure(what, records.ErrorText());
  };
  if (!records.Open(FromUtf8(words.subject).c_str()) && IsRefusedChange(records.ErrorText())) {
    throw Failure("the query failed: " + DriverText(records.ErrorText()) +
                  "; 'pokermath db exec' executes statements that change a database");
  }
  check("the query failed");
  const std::vector<Column> columns = ColumnsOf(records);
  if (columns.empty()) return kExitDone;  // a statement without a result
  (words.csv ? PrintCsv : words.json ? PrintJson : PrintTable)(records, columns);
  check("the result broke off");
  return kExitDone;
}

std::string ReadScript(const DbWords& words) {
  const std::string& path = words.subject;
  std::ifstream file;
  if (path != "-") {
    errno = 0;
    file.open(path, std::ios::binary);
    // A folder can be opened, but not read.
    if (!file || file.peek() == std::ifstream::traits_type::eof()) {
      if (!file.eof() || errno != 0)
        throw SystemFailure("cannot read " + QuotedSubject(words), errno);
    }
  }
  std::istream& in = path == "-" ? std::cin : file;
  std::string script{std::istreambuf_iterator<char>(in), {}};
  if (std::ferror(stdin) != 0) throw SystemFailure("cannot read standard input", errno);
  return script;
}

int RunExec(const DbWords& words) {
  const std::vector<SqlStatement> statements = SplitSql(ReadScript(words));
  CDatabase database;
  if (!database.OpenEx(FromUtf8(words.connect))) {
    throw DatabaseFailure("cannot open the database", database.ErrorText());
  }
  for (std::size_t i = 0; i < statements.size(); ++i) {
    if (database.ExecuteSQL(FromUtf8(statements[i].text))) continue;
    const std::string what =
        fmt::format("{}, line {}: statement {} of {} failed", QuotedSubject(words),
                    statements[i].line, i + 1, statements.size());
    throw DatabaseFailure(what, database.ErrorText());
  }
  if (!statements.empty() && statements.back().leaves_open) {
    throw Failure(QuotedSubject(words) +
                  " ends inside a transaction: COMMIT is missing, its changes are rolled back");
  }
  const std::size_t count = statements.size();
  Print(words.json ? JsonLine({{"schema", kJsonSchema}, {"statements", count}})
                   : fmt::format("{} statement{} executed\n", count, count == 1 ? "" : "s"));
  return kExitDone;
}

struct Action {
  const char* name;
  const char* subject;  // null: none
  const char* subject_description;
  const char* description;
  const char* help;
  int (*run)(const DbWords&);
};

constexpr Action kActions[] = {
    {"drivers", nullptr, nullptr, "List the installed ODBC drivers", kDriversHelp, RunDrivers},
    {"tables", nullptr, nullptr, "List the tables of a database", kTablesHelp, RunTables},
    {"columns", "TABLE", "Name of the table", "List the columns of a table", kColumnsHelp,
     RunColumns},
    {"query", "SQL", "One statement", "Print the result of a query as a table, CSV or JSON",
     kQueryHelp, RunQuery},
    {"exec", "FILE", "Script, - for standard input",
     "Execute the statements of a file, - for standard input", kExecHelp, RunExec}};

void AddAction(Command db, const Action& action, int& exit_code) {
  auto words = std::make_shared<DbWords>();
  Command command = db.AddCommand(action.name, action.description);
  if (action.subject != nullptr) {
    command.AddOption(action.subject, words->subject, action.subject_description)
        .Required()
        .ValueName("");
  }
  const bool connects = action.run != RunDrivers;
  if (connects) {
    command.AddOption("--connect", words->connect, "ODBC connect string of the database")
        .Required()
        .FromEnvironment("POKERMATH_CONNECT")
        .ValueName("C");
  }
  const bool query = action.run == RunQuery;
  if (query) command.AddFlag("--csv", words->csv, "Print comma-separated values");
  command.AddFlag("--json", words->json,
                  query ? "Print JSON objects, one a line" : "Print a JSON object");
  command.SetFooter((connects ? kConnectHelp : "") + std::string(action.help));
  command.SetAction([words, run = action.run, &exit_code] { exit_code = run(*words); });
}

}  // namespace

void AddDb(Command program, int& exit_code) {
  Command db = program.AddCommand("db", "Databases behind ODBC: tables, queries, scripts");
  db.RequireCommand();
  db.SetFooter(kDbHelp);
  for (const Action& action : kActions) AddAction(db, action, exit_code);
}

}  // namespace pokermath::cli
