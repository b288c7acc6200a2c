// The database classes from inside: what throws instead of giving false, and how failures are told.

#ifndef POKERMATH_SUPPORT_ODBC_DATABASE_H_
#define POKERMATH_SUPPORT_ODBC_DATABASE_H_

#include <memory>

#include "pokermath/odbc.h"
#include "support/odbc/handles.h"

namespace pokermath {

/// The members that throw DatabaseError and std::bad_alloc.
struct DatabaseAccess {
  static std::unique_ptr<CDatabase> Open(const CString& connect, unsigned long options);
  static const Connection& ConnectionOf(const CDatabase& database) { return *database.connection_; }
  static void Execute(CDatabase& database, const CString& sql) { database.Execute(sql); }
  static void Query(CODBCRecordset& records, const CString& sql) { records.OpenOrThrow(sql); }
};

/// Shows a text without the passwords of a connect string.
void ShowWithoutPasswords(const CString& connect, const CString& text);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_DATABASE_H_
