// The driver manager's handles, each released by its owner.
//
// All calls are the narrow ones, with UTF-8: the wide ones lose characters in one driver or the
// other, depending on the locale.

#ifndef POKERMATH_SUPPORT_ODBC_HANDLES_H_
#define POKERMATH_SUPPORT_ODBC_HANDLES_H_

#include <sql.h>
#include <sqlext.h>

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "pokermath/text.h"

namespace pokermath {

/// What the driver or the driver manager said. Never leaves the library.
class DatabaseError : public std::exception {
 public:
  explicit DatabaseError(CString text) : text_(std::move(text)) {}
  const CString& text() const { return text_; }

 private:
  CString text_;
};

/// The diagnostic records of a handle: "text (state); text (state)". To be read before any other
/// call on the handle. What is no memory to the driver is std::bad_alloc here.
CString Diagnostics(SQLSMALLINT type, SQLHANDLE handle);

/// Throws the diagnostics as a DatabaseError unless the call succeeded or found no data.
void CheckCall(SQLRETURN result, SQLSMALLINT type, SQLHANDLE handle);

class Environment {
 public:
  Environment();
  ~Environment() { SQLFreeHandle(SQL_HANDLE_ENV, handle_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  SQLHENV handle() const { return handle_; }

 private:
  SQLHENV handle_ = nullptr;
};

/// An open connection, with an environment of its own.
class Connection {
 public:
  /// @param read_only  asks the driver to refuse changes, and the databases that can do it
  Connection(const CString& connect, bool read_only);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  SQLHDBC handle() const { return handle_; }
  SQLUINTEGER Info(SQLUSMALLINT item) const;
  SQLUSMALLINT ShortInfo(SQLUSMALLINT item) const;
  std::string Text(SQLUSMALLINT item) const;
  /// A search pattern for the name: the driver's escape sign stands before its wildcards. As some
  /// drivers do not know an escaped escape sign, it may match other names as well.
  std::string AsPattern(const CString& name) const;

 private:
  void RefuseChanges() const;
  void Release();

  Environment environment_;
  SQLHDBC handle_ = nullptr;
};

class Statement {
 public:
  /// @param timeout  in seconds, 0 for none; not every driver keeps it
  explicit Statement(const Connection& connection, unsigned long timeout = 0);
  ~Statement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  SQLHSTMT handle() const { return handle_; }
  void Check(SQLRETURN result) const { CheckCall(result, SQL_HANDLE_STMT, handle_); }
  void Execute(const CString& sql);
  /// Passes over the results that are left: an error may come with any of them.
  void Finish();
  /// Goes to the next row; false at the end.
  bool Fetch();
  /// Reads a value of the current row whole, in as many pieces as it takes.
  ///
  /// @param type      SQL_C_CHAR or SQL_C_BINARY
  /// @param expected  how many bytes there are, if that is known
  /// @return false if it is null
  bool Read(int column, SQLSMALLINT type, std::string& bytes, std::size_t expected = 0) const;

 private:
  SQLHSTMT handle_ = nullptr;
};

/// A narrow text as ODBC takes it.
SQLCHAR* Narrow(std::string& text);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_HANDLES_H_
