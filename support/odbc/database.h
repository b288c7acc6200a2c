// The database classes from inside: what throws instead of giving false, and how failures are told.

#ifndef POKERMATH_SUPPORT_ODBC_DATABASE_H_
#define POKERMATH_SUPPORT_ODBC_DATABASE_H_

#include <memory>
#include <new>

#include "platform/text.h"
#include "pokermath/odbc.h"
#include "support/odbc/handles.h"

namespace pokermath {

/// The members that throw DatabaseError and std::bad_alloc.
struct DatabaseAccess {
  static std::unique_ptr<CDatabase> Open(const CString& connect, unsigned long options);
  static const Connection& ConnectionOf(const CDatabase& database) { return *database.connection_; }
  static void Execute(CDatabase& database, const CString& sql) { database.Execute(sql); }
  static CString Shown(const CDatabase& database, const CString& text) {
    return database.Shown(text);
  }
  static void Query(CODBCRecordset& records, const CString& sql) { records.OpenOrThrow(sql); }
};

/// Runs `work`. What it throws comes back as a call of one of the other two, and as false; even the
/// telling may run out of memory.
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

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_DATABASE_H_
