// The rows of a query: short values are bound to buffers, long ones are read piece by piece.

#ifndef POKERMATH_SUPPORT_ODBC_RESULT_SET_H_
#define POKERMATH_SUPPORT_ODBC_RESULT_SET_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/odbc.h"
#include "support/odbc/handles.h"

namespace pokermath {

/// The C type that a column of an SQL type is read as, or 0 for a type that we do not know.
SQLSMALLINT CTypeOf(SQLSMALLINT sql_type);

/// The kind of a field that is read as a C type.
unsigned long KindOf(SQLSMALLINT c_type);

class ResultSet {
 public:
  /// Executes the query. The connection has to outlive the result.
  ResultSet(const Connection& connection, const CString& sql, unsigned long timeout);

  int size() const { return static_cast<int>(columns_.size()); }
  const CODBCFieldInfo& info(int column) const { return At(column).info; }
  /// A short is long here: that is how it is read.
  unsigned long kind(int column) const { return At(column).kind; }
  /// Goes to the next row. `row` counts from 1 then.
  bool Fetch();
  long row() const { return row_; }

  // Of the current row.
  bool IsNull(int column) const { return At(column).length == SQL_NULL_DATA; }
  template <typename Value>
  Value Get(int column) const;
  /// The bytes of a text or binary column that is not null.
  std::string_view Bytes(int column) const;

 private:
  struct Column {
    CODBCFieldInfo info;
    unsigned long kind = DBVT_NULL;
    SQLSMALLINT read_as = 0;  // 0: not at all
    bool bound = false;
    std::string buffer;  // what the driver writes into
    std::string whole;   // a value that did not fit in there
    SQLLEN length = SQL_NULL_DATA;
  };

  const Column& At(int column) const { return columns_[static_cast<std::size_t>(column)]; }
  void Describe(int number, Column& column);
  void Bind(int number, Column& column, bool reads_bound);
  void ReadLong(int number, Column& column);

  Statement statement_;
  std::vector<Column> columns_;  // not moved once they are bound
  long row_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_RESULT_SET_H_
