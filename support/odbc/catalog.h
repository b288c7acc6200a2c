// Lists of what a database holds and of the drivers. All throw DatabaseError.

#ifndef POKERMATH_SUPPORT_ODBC_CATALOG_H_
#define POKERMATH_SUPPORT_ODBC_CATALOG_H_

#include <vector>

#include "pokermath/text.h"
#include "support/odbc/handles.h"

namespace pokermath {

struct ColumnDescription {
  CString schema;  // empty if the database has none
  CString name;
  CString type;  // as the database calls it
  bool nullable = true;
};

struct Driver {
  CString name;
  CString attributes;  // "key=value;key=value"
};

/// Appends to the list as long as all goes well.
void ListTables(const Connection& connection, CStringArray& tables);

/// The columns of the table of exactly that name, of each schema that has one; none if there is no
/// such table.
std::vector<ColumnDescription> ListColumns(const Connection& connection, const CString& table);

/// Appends the installed drivers. `environment` as in BuildSQLDriversList.
void ListDrivers(SQLHENV environment, std::vector<Driver>& drivers);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_CATALOG_H_
