// Where a driver can read a bound column a second time, every column is bound to a buffer of
// moderate size, and only a value that does not fit is read again, whole. Where it cannot, every
// column is read by itself, in order, which any driver can.

#include "support/odbc/result_set.h"

#include <algorithm>
#include <cstring>

#include "platform/text.h"

namespace pokermath {
namespace {

constexpr std::size_t kMostBound = 1024;

bool IsBytes(SQLSMALLINT c_type) { return c_type == SQL_C_CHAR || c_type == SQL_C_BINARY; }

// How a column is read: wider where a driver gives more than the type promises.
SQLSMALLINT ReadAs(SQLSMALLINT c_type, SQLSMALLINT sql_type) {
  if (c_type == SQL_C_SLONG || c_type == SQL_C_SSHORT) return SQL_C_SBIGINT;
  if (c_type == SQL_C_TIMESTAMP) return SQL_C_TYPE_TIMESTAMP;
  // As binary, a driver loses the last byte of a long text.
  if (sql_type == SQL_LONGVARCHAR) return SQL_C_CHAR;
  return c_type;
}

std::size_t BufferSize(SQLSMALLINT read_as, std::size_t precision) {
  if (!IsBytes(read_as)) return std::max(sizeof(SQL_TIMESTAMP_STRUCT), sizeof(SQLBIGINT));
  // Up to four bytes for a character, and a NUL. Some drivers say 0 for what they do not know.
  return precision == 0 || precision >= kMostBound / 4 ? kMostBound : 4 * precision + 1;
}

}  // namespace

SQLSMALLINT CTypeOf(SQLSMALLINT sql_type) {
  switch (sql_type) {
    case SQL_WLONGVARCHAR:
    case SQL_WVARCHAR:
    case SQL_WCHAR:
    case SQL_BIGINT:
    case SQL_CHAR:
    case SQL_NUMERIC:
    case SQL_DECIMAL:
    case SQL_VARCHAR:
      return SQL_C_CHAR;
    case SQL_BIT:
      return SQL_C_BIT;
    case SQL_TINYINT:
      return SQL_C_UTINYINT;
    case SQL_LONGVARBINARY:
    case SQL_VARBINARY:
    case SQL_BINARY:
    case SQL_LONGVARCHAR:
      return SQL_C_BINARY;
    case SQL_INTEGER:
      return SQL_C_SLONG;
    case SQL_SMALLINT:
      return SQL_C_SSHORT;
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return SQL_C_DOUBLE;
    case SQL_REAL:
      return SQL_C_FLOAT;
    // Codes of both versions of ODBC.
    case SQL_DATE:
    case SQL_TIME:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIME:
    case SQL_TYPE_TIMESTAMP:
      return SQL_C_TIMESTAMP;
    default:
      return 0;
  }
}

unsigned long KindOf(SQLSMALLINT c_type) {
  switch (c_type) {
    case SQL_C_BIT:
      return DBVT_BOOL;
    case SQL_C_UTINYINT:
      return DBVT_UCHAR;
    case SQL_C_SSHORT:  // exchanged as a long
    case SQL_C_SLONG:
      return DBVT_LONG;
    case SQL_C_FLOAT:
      return DBVT_SINGLE;
    case SQL_C_DOUBLE:
      return DBVT_DOUBLE;
    case SQL_C_TIMESTAMP:
      return DBVT_DATE;
    case SQL_C_CHAR:
      return DBVT_STRING;
    case SQL_C_BINARY:
      return DBVT_BINARY;
    default:
      return DBVT_NULL;
  }
}

ResultSet::ResultSet(const Connection& connection, const CString& sql, unsigned long timeout)
    : statement_(connection, timeout) {
  statement_.Execute(sql);
  SQLSMALLINT count = 0;
  statement_.Check(SQLNumResultCols(statement_.handle(), &count));
  columns_.resize(static_cast<std::size_t>(std::max<SQLSMALLINT>(count, 0)));
  constexpr SQLUINTEGER kNeeded = SQL_GD_ANY_COLUMN | SQL_GD_BOUND;
  const bool reads_bound = (connection.Info(SQL_GETDATA_EXTENSIONS) & kNeeded) == kNeeded;
  for (int i = 0; i < size(); ++i) {
    Column& column = columns_[static_cast<std::size_t>(i)];
    Describe(i, column);
    Bind(i, column, reads_bound);
  }
}

void ResultSet::Describe(int number, Column& column) {
  std::string name(256, '\0');
  for (;;) {
    SQLSMALLINT length = 0;
    SQLULEN size = 0;
    CODBCFieldInfo& info = column.info;
    statement_.Check(SQLDescribeCol(statement_.handle(), static_cast<SQLUSMALLINT>(number + 1),
                                    Narrow(name), static_cast<SQLSMALLINT>(name.size()), &length,
                                    &info.m_nSQLType, &size, &info.m_nScale, &info.m_nNullability));
    info.m_nPrecision = size;
    const auto needed = static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0));
    if (needed < name.size() || name.size() > 0x4000) {
      info.m_strName = FromUtf8(std::string_view(name).substr(0, std::min(needed, name.size())));
      return;
    }
    name.resize(std::min<std::size_t>(needed + 1, 0x7FFF));
  }
}

void ResultSet::Bind(int number, Column& column, bool reads_bound) {
  const SQLSMALLINT c_type = CTypeOf(column.info.m_nSQLType);
  column.kind = KindOf(c_type);
  if (c_type == 0) return;
  column.read_as = ReadAs(c_type, column.info.m_nSQLType);
  column.buffer.resize(BufferSize(column.read_as, column.info.m_nPrecision));
  column.bound = reads_bound;
  if (!column.bound) return;
  statement_.Check(SQLBindCol(statement_.handle(), static_cast<SQLUSMALLINT>(number + 1),
                              column.read_as, column.buffer.data(),
                              static_cast<SQLLEN>(column.buffer.size()), &column.length));
}

bool ResultSet::Fetch() {
  if (columns_.empty() || !statement_.Fetch()) return false;
  ++row_;
  for (int i = 0; i < size(); ++i) {
    Column& column = columns_[static_cast<std::size_t>(i)];
    column.whole.clear();
    if (column.read_as == 0) continue;
    if (!column.bound) {
      ReadLong(i, column);
    } else if (IsBytes(column.read_as) && column.length != SQL_NULL_DATA) {
      const std::size_t room = column.buffer.size() - (column.read_as == SQL_C_CHAR ? 1 : 0);
      const bool fits = column.length >= 0 && static_cast<std::size_t>(column.length) <= room;
      if (!fits) ReadLong(i, column);
    }
  }
  return true;
}

void ResultSet::ReadLong(int number, Column& column) {
  if (IsBytes(column.read_as)) {
    const std::size_t expected = column.length > 0 ? static_cast<std::size_t>(column.length) : 0;
    const bool there = statement_.Read(number, column.read_as, column.whole, expected);
    column.length = there ? static_cast<SQLLEN>(column.whole.size()) : SQL_NULL_DATA;
    return;
  }
  const SQLRETURN result =
      SQLGetData(statement_.handle(), static_cast<SQLUSMALLINT>(number + 1), column.read_as,
                 column.buffer.data(), static_cast<SQLLEN>(column.buffer.size()), &column.length);
  statement_.Check(result);
  if (result == SQL_NO_DATA) column.length = SQL_NULL_DATA;
}

std::string_view ResultSet::Bytes(int column) const {
  const Column& from = At(column);
  const std::string& bytes = from.whole.empty() ? from.buffer : from.whole;
  return std::string_view(bytes).substr(0, static_cast<std::size_t>(from.length));
}

template <typename Value>
Value ResultSet::Get(int column) const {
  Value value;
  std::memcpy(&value, At(column).buffer.data(), sizeof(value));
  return value;
}

template unsigned char ResultSet::Get(int) const;
template long ResultSet::Get(int) const;
template float ResultSet::Get(int) const;
template double ResultSet::Get(int) const;
template SQL_TIMESTAMP_STRUCT ResultSet::Get(int) const;

}  // namespace pokermath
