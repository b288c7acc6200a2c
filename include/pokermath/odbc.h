/// @file
/// Databases behind ODBC: a query with one call, batches of statements, and what a database holds.
///
/// Text is UTF-8 on its way to the driver and wide text here. What fails gives false and a message
/// (see messages.h), never an exception. Values of the connect string show as *** in it, but for
/// those of keywords that carry no secrets (Driver, DSN, Server, Database, Uid ...). A database
/// object and its record sets belong to one thread.
///
///     CDatabase* db = nullptr;
///     CODBCRecordset* rs = nullptr;
///     if (OpenODBC(L"Driver=SQLite3;Database=hands.db", db, rs, L"SELECT id, pot FROM hands")) {
///       for (; !rs->IsEOF(); rs->MoveNext()) Add(rs->GetLong(L"id"), rs->GetDouble(L"pot"));
///     }
///     delete rs;
///     delete db;

#ifndef POKERMATH_ODBC_H_
#define POKERMATH_ODBC_H_

#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// @cond
namespace pokermath {
class Connection;
class ResultSet;
struct DatabaseAccess;
}  // namespace pokermath

class CRecordset;
class CODBCRecordset;
/// @endcond

/// A connection to a database.
class POKERMATH_EXPORT CDatabase {
 public:
  /// How a database is opened; to be added up.
  enum DbOpenOptions : unsigned long {
    defaultOpen = 0,   ///< for reading and writing
    openReadOnly = 2,  ///< for reading
    noOdbcDialog = 8   ///< no meaning: there never is a dialog
  };

  /// A database that is not open.
  CDatabase();
  /// Closes it. Its record sets may live on, closed.
  virtual ~CDatabase();
  /// A connection cannot be copied.
  CDatabase(const CDatabase&) = delete;
  /// Likewise.
  CDatabase& operator=(const CDatabase&) = delete;

  /// Opens the database of a connect string; an open one is closed first. Never shows a dialog.
  /// Shows no message: ErrorText() tells why it is false. With openReadOnly SQLite and PostgreSQL
  /// refuse ordinary changes, though not statements made to get around it; other drivers are asked
  /// to. A file of SQLite's that is not there is made only without it, if the connect string has
  /// SQLite in it.
  bool OpenEx(const CString& connect, unsigned long options = defaultOpen);
  /// Whether it is open.
  bool IsOpen() const;

  /// Closes the database and its record sets; an unfinished transaction is rolled back.
  void Close();

  /// Seconds that a statement may take, of those that follow; 0 is no limit. Not every driver
  /// enforces it.
  void SetQueryTimeout(unsigned long seconds) { query_timeout_ = seconds; }

  /// Executes a statement and passes over its result; no message, see ErrorText().
  bool ExecuteSQL(const CString& sql);

  /// Why the last call failed; empty if it did not.
  const CString& ErrorText() const { return error_; }

 private:
  friend class CRecordset;
  friend class CODBCRecordset;
  friend struct pokermath::DatabaseAccess;

  void Connect(const CString& connect, unsigned long options);
  void Execute(const CString& sql);
  CString Shown(const CString& text) const;

  std::unique_ptr<pokermath::Connection> connection_;
  std::vector<CRecordset*> record_sets_;
  unsigned long query_timeout_ = 0;
  CString connect_;  // for the secrets that must not be shown
  CString error_;
};

/// A moment; fraction counts billionths of a second.
struct CDBTimestamp {
  short year = 0;             ///< of the calendar
  unsigned short month = 0;   ///< 1..12; 0 where there is no date
  unsigned short day = 0;     ///< 1..31; 0 where there is no date
  unsigned short hour = 0;    ///< 0..23
  unsigned short minute = 0;  ///< 0..59
  unsigned short second = 0;  ///< 0..61
  unsigned int fraction = 0;  ///< billionths of a second

  /// The same moment.
  bool operator==(const CDBTimestamp&) const = default;
};

/// A value of many bytes, or a long text as UTF-8.
class CLongBinary {
 public:
  /// How many bytes there are.
  unsigned long GetDataLength() const { return bytes.size(); }

  std::string bytes;  ///< the value
};

/// The kinds of a value.
enum : unsigned long {
  DBVT_NULL = 0,    ///< none
  DBVT_BOOL = 1,    ///< m_boolVal
  DBVT_UCHAR = 2,   ///< m_chVal
  DBVT_SHORT = 3,   ///< m_iVal; no column is of it
  DBVT_LONG = 4,    ///< m_lVal, of SMALLINT columns too
  DBVT_SINGLE = 5,  ///< m_fltVal
  DBVT_DOUBLE = 6,  ///< m_dblVal
  DBVT_DATE = 7,    ///< m_pdate
  DBVT_STRING = 8,  ///< m_pstring
  DBVT_BINARY = 9   ///< m_pbinary
};

/// A value of one of ten kinds. What it points to is its own.
class POKERMATH_EXPORT CDBVariant {
 public:
  /// Null.
  CDBVariant() : m_dblVal(0) {}
  /// A copy has a text, a moment or bytes of its own.
  CDBVariant(const CDBVariant& other);
  /// What is moved from is null.
  CDBVariant(CDBVariant&& other) noexcept;
  /// Takes the other value over, by copy or move.
  CDBVariant& operator=(CDBVariant other) noexcept;
  /// Frees what it points to.
  virtual ~CDBVariant();

  /// Makes it null.
  void Clear();

  unsigned long m_dwType = DBVT_NULL;  ///< which of the following it holds
  union {
    bool m_boolVal;          ///< of DBVT_BOOL
    unsigned char m_chVal;   ///< of DBVT_UCHAR
    short m_iVal;            ///< of DBVT_SHORT
    long m_lVal;             ///< of DBVT_LONG
    float m_fltVal;          ///< of DBVT_SINGLE
    double m_dblVal;         ///< of DBVT_DOUBLE
    CDBTimestamp* m_pdate;   ///< of DBVT_DATE; its own
    CString* m_pstring;      ///< of DBVT_STRING; its own
    CLongBinary* m_pbinary;  ///< of DBVT_BINARY; its own
  };

 protected:
  /// Makes it of a kind, with an empty value of it unless it is of that kind already.
  void SetKind(unsigned long kind);
};

/// One column of the current record, under a name in upper case.
///
/// Conversions never fail. Null gives false, 0 and what is empty, a value of the kind that is asked
/// for comes as it is, and binary is taken as the text that its bytes are in UTF-8. The others:
///
/// | to     | from bool | from a number | from a date | from text                         |
/// |--------|-----------|---------------|-------------|-----------------------------------|
/// | bool   |           | it is not 0   | false       | T or TRUE (any case), a number not 0 |
/// | number | 0 or 1    | the same      | 0           | a decimal number, else 0          |
/// | date   | zeros     | zeros         |             | YYYY-MM-DD, hh:mm:ss[.f] or both  |
/// | text   | T or F    | %ld or %f     | see below   |                                   |
/// | binary | as text   | as text       | as text     | its UTF-8                         |
///
/// Where a whole number is asked for, a fraction is cut off, what is too large or too small becomes
/// the largest or the smallest, and not-a-number 0. A char is the number of its code, but as text
/// the one character. Text may have white space around the number and nothing else. Numbers have a
/// point whatever the locale; a date is written as the user's locale has it, in the "C" locale as
/// YYYY-MM-DD hh:mm:ss.
///
/// `CString text = field;` converts; to assign to a text that is there already, use AsString().
class POKERMATH_EXPORT CDBField : public CDBVariant {
 public:
  /// Its name, in upper case and with a number where an earlier column has the same.
  const CString& GetName() const { return name_; }

  /// Whether the database has no value there.
  bool IsNull() const { return null_; }
  /// Whether it is null, and how long it is.
  ///
  /// @param isNull  out: as IsNull()
  /// @param length  out: characters of a text, bytes of anything else; 0 if it is null
  void GetNull(bool& isNull, unsigned long& length) const;

  /// @name Of which kind the value is, null or not
  /// @{

  /// Whether it is a truth value.
  bool IsBool() const { return m_dwType == DBVT_BOOL; }
  /// Whether it is a char.
  bool IsChar() const { return m_dwType == DBVT_UCHAR; }
  /// Whether it is a short.
  bool IsShort() const { return m_dwType == DBVT_SHORT; }
  /// Whether it is a long.
  bool IsInt() const { return m_dwType == DBVT_LONG; }
  /// Whether it is a long.
  bool IsLong() const { return m_dwType == DBVT_LONG; }
  /// Whether it is a float.
  bool IsFloat() const { return m_dwType == DBVT_SINGLE; }
  /// Whether it is a double.
  bool IsDouble() const { return m_dwType == DBVT_DOUBLE; }
  /// Whether it is a char, short, long, float or double.
  bool IsNumber() const { return m_dwType >= DBVT_UCHAR && m_dwType <= DBVT_DOUBLE; }
  /// Whether it is a moment.
  bool IsDate() const { return m_dwType == DBVT_DATE; }
  /// Whether it is a text.
  bool IsString() const { return m_dwType == DBVT_STRING; }
  /// Whether it is bytes.
  bool IsBinary() const { return m_dwType == DBVT_BINARY; }

  /// @}

  /// @name The value as another kind, by the table above
  /// @{

  /// As a truth value.
  bool AsBool() const;
  /// As the code of a character, 0..255.
  unsigned char AsChar() const;
  /// As a short.
  short AsShort() const;
  /// As an int.
  int AsInt() const;
  /// As a long.
  long AsLong() const;
  /// As a float.
  float AsFloat() const;
  /// As a double.
  double AsDouble() const;
  /// As a moment.
  CDBTimestamp AsDate() const;
  /// As a text.
  CString AsString() const;
  /// As bytes.
  CLongBinary AsBinary() const;

  /// AsBool().
  operator bool() const { return AsBool(); }
  /// AsChar().
  operator unsigned char() const { return AsChar(); }
  /// AsShort().
  operator short() const { return AsShort(); }
  /// AsInt().
  operator int() const { return AsInt(); }
  /// AsLong().
  operator long() const { return AsLong(); }
  /// AsFloat().
  operator float() const { return AsFloat(); }
  /// AsDouble().
  operator double() const { return AsDouble(); }
  /// AsDate().
  operator CDBTimestamp() const { return AsDate(); }
  /// AsString().
  operator CString() const { return AsString(); }
  /// AsBinary().
  operator CLongBinary() const { return AsBinary(); }

  /// @}

  /// @name Assignment sets value and kind; the database is not changed
  /// @{

  /// A truth value.
  CDBField& operator=(bool value);
  /// A char.
  CDBField& operator=(char value);
  /// A char.
  CDBField& operator=(unsigned char value);
  /// A short.
  CDBField& operator=(short value);
  /// A long.
  CDBField& operator=(int value);
  /// A long.
  CDBField& operator=(long value);
  /// A float.
  CDBField& operator=(float value);
  /// A double.
  CDBField& operator=(double value);
  /// A moment.
  CDBField& operator=(const CDBTimestamp& value);
  /// A text.
  CDBField& operator=(const CString& value);
  /// A text; not null.
  CDBField& operator=(const wchar_t* value);
  /// Narrow text would become a truth value.
  CDBField& operator=(const char* value) = delete;

  /// @}

 private:
  friend class CODBCRecordset;

  CDBField& Assigned(unsigned long kind);
  template <typename Whole>
  Whole AsWhole() const;

  CString name_;
  bool null_ = true;
};

/// What a driver says of a result column.
struct CODBCFieldInfo {
  CString m_strName;               ///< as the driver writes it
  short m_nSQLType = 0;            ///< SQL_INTEGER and the like, of ODBC's sql.h
  unsigned long m_nPrecision = 0;  ///< characters of a text, digits of a number
  short m_nScale = 0;              ///< digits behind the point
  short m_nNullability = 0;        ///< SQL_NO_NULLS, SQL_NULLABLE or SQL_NULLABLE_UNKNOWN
};

/// Hands the columns of the current record to variables, from the first on.
class POKERMATH_EXPORT CFieldExchange {
 public:
  /// Whether columns are exchanged.
  enum FieldType {
    noFieldType,  ///< nothing is
    outputColumn  ///< columns of the result
  };

  /// Nothing is exchanged before this has been called with outputColumn.
  void SetFieldType(FieldType type) { type_ = type; }

  /// @name The next column
  /// Each takes the next column and leaves an empty value if it is null. A variable of another type
  /// than the column's is left empty as well.
  /// @{

  /// Of DBVT_BOOL.
  void Bool(bool& value);
  /// Of DBVT_UCHAR.
  void Byte(unsigned char& value);
  /// Of DBVT_LONG.
  void Long(long& value);
  /// Of DBVT_SINGLE.
  void Single(float& value);
  /// Of DBVT_DOUBLE.
  void Double(double& value);
  /// Of DBVT_DATE.
  void Date(CDBTimestamp& value);
  /// Of DBVT_STRING.
  void Text(CString& value);
  /// Of DBVT_BINARY.
  void LongBinary(CLongBinary& value);
  /// Of any kind; its value is not asked for.
  void Skip();

  /// @}

  /// Whether the column that came last is null.
  bool IsNull() const { return null_; }

 private:
  friend class CRecordset;

  explicit CFieldExchange(pokermath::ResultSet& result) : result_(result) {}
  template <typename Value>
  void Fixed(unsigned long kind, Value& value);
  // The next column if there is one of that kind and it is not null, else -1.
  int Next(unsigned long kind);

  pokermath::ResultSet& result_;
  FieldType type_ = noFieldType;
  int next_ = 0;
  bool null_ = true;
};

/// The result of a query, one record at a time, forward only.
class POKERMATH_EXPORT CRecordset {
 public:
  /// What Open may be asked for; it is forwardOnly in any case.
  enum OpenType : unsigned int {
    dynaset,      ///< as forwardOnly
    snapshot,     ///< as forwardOnly
    forwardOnly,  ///< from the first record to the last, once
    dynamic       ///< as forwardOnly
  };
  /// What Open may be asked for; it is readOnly and executeDirect in any case.
  enum OpenOptions : unsigned long {
    none = 0,               ///< nothing
    readOnly = 4,           ///< records cannot be changed
    executeDirect = 0x2000  ///< the query is not prepared
  };
  /// Where Move goes.
  enum FetchType : unsigned short {
    fetchNext = 1,     ///< to the next record
    fetchFirst = 2,    ///< to the first, if no other has been read
    fetchRelative = 6  ///< so many records on
  };

  /// @param database  may be null: then nothing can be opened
  explicit CRecordset(CDatabase* database);
  /// A result cannot be copied.
  CRecordset(const CRecordset&) = delete;
  /// Likewise.
  CRecordset& operator=(const CRecordset&) = delete;

  /// Executes a query and goes to its first record. Whatever type and options say, the records come
  /// forward only, cannot be changed, and the query is executed directly.
  ///
  /// @param sql  null is an empty query
  /// @return whether the query could be executed; ErrorText() tells why not. A result without
  /// records
  ///         is open, and IsEOF() true
  virtual bool Open(const wchar_t* sql, unsigned int openType, unsigned long options);

  /// Goes `rows` records on; with fetchNext one, with fetchFirst to the first if no other has been
  /// read.
  ///
  /// @return whether there is a record; without one IsEOF() becomes true, and ErrorText() tells an
  ///         error from the end. A move backwards is an error that changes nothing
  virtual bool Move(long rows, unsigned short fetchType = fetchRelative);

  /// Called for every record: hands its columns to variables. Here: does nothing.
  virtual void DoFieldExchange(CFieldExchange* exchange);
  /// Closes it.
  virtual ~CRecordset();

  /// Goes to the next record; as Move.
  bool MoveNext() { return Move(1, fetchNext); }
  /// Whether a query is open.
  bool IsOpen() const { return result_ != nullptr; }
  /// Whether it stands behind the last record; true as well while no query is open.
  bool IsEOF() const { return end_; }
  /// Gives the result back; it may be opened anew.
  void Close();

  /// Why the last call failed; empty if it did not.
  const CString& ErrorText() const { return error_; }
  /// The query that was opened last.
  const CString& GetSQL() const { return sql_; }
  /// How many columns the result has; 0 while no query is open.
  int GetODBCFieldCount() const;
  /// What the driver says of a column.
  ///
  /// @return false if there is no such column
  bool GetODBCFieldInfo(int index, CODBCFieldInfo& info) const;

 protected:
  /// @cond
  friend class CDatabase;
  friend struct pokermath::DatabaseAccess;

  // Executes and moves to the first record; throws what fails.
  void OpenOrThrow(const CString& sql);
  // Between the two.
  virtual void Executed() {}
  // Keeps the exception that is being handled and its text; false.
  bool Failed();

  CDatabase* database_;
  std::unique_ptr<pokermath::ResultSet> result_;
  bool end_ = true;
  bool opening_ = false;
  CString sql_;
  CString error_;
  std::exception_ptr failure_;  // of the last call
  /// @endcond
};

/// A record set whose columns are fields with names.
class POKERMATH_EXPORT CODBCRecordset : public CRecordset {
 public:
  /// As CRecordset.
  explicit CODBCRecordset(CDatabase* database);
  /// Closes it.
  ~CODBCRecordset() override;

  /// As CRecordset::Open, with fields of the columns; a failure is shown (SetShowErrors).
  bool Open(const wchar_t* sql, unsigned int openType = forwardOnly,
            unsigned long options = readOnly | executeDirect) override;
  /// As CRecordset::Move; a failure is shown (SetShowErrors).
  bool Move(long rows, unsigned short fetchType = fetchRelative) override;
  /// Hands the columns to the fields.
  void DoFieldExchange(CFieldExchange* exchange) override;

  /// Whether errors are shown, as they are at first. ErrorText() has them in any case. That a
  /// column is of an unknown type is shown always.
  void SetShowErrors(bool show) { show_errors_ = show; }

  /// The column of a name in any case, or -1; also -1 for null.
  int GetFieldID(const wchar_t* name) const;
  /// The name of a column, or an empty text if there is no such column. A name that an earlier
  /// column has gets a number: SUM, SUM2, SUM3.
  CString GetFieldName(int index) const;

  /// A column of the current record. One that is not there is a field that is null.
  CDBField& Field(int index);
  /// The column of a name in any case, likewise.
  CDBField& Field(const wchar_t* name) { return Field(GetFieldID(name)); }
  /// Field(index).
  CDBField& operator()(int index) { return Field(index); }
  /// Field(name).
  CDBField& operator()(const wchar_t* name) { return Field(name); }

  /// @name Columns of the current record, by number or by name in any case, as CDBField converts
  /// them
  /// @{

  /// As a truth value.
  bool GetBool(int index) { return Field(index).AsBool(); }
  /// As the code of a character, 0..255.
  unsigned char GetChar(int index) { return Field(index).AsChar(); }
  /// As a short.
  short GetShort(int index) { return Field(index).AsShort(); }
  /// As an int.
  int GetInt(int index) { return Field(index).AsInt(); }
  /// As a long.
  long GetLong(int index) { return Field(index).AsLong(); }
  /// As a float.
  float GetFloat(int index) { return Field(index).AsFloat(); }
  /// As a double.
  double GetDouble(int index) { return Field(index).AsDouble(); }
  /// As a moment.
  CDBTimestamp GetDate(int index) { return Field(index).AsDate(); }
  /// As a text.
  CString GetString(int index) { return Field(index).AsString(); }
  /// As bytes.
  CLongBinary GetBinary(int index) { return Field(index).AsBinary(); }
  /// As a truth value.
  bool GetBool(const wchar_t* name) { return Field(name).AsBool(); }
  /// As the code of a character, 0..255.
  unsigned char GetChar(const wchar_t* name) { return Field(name).AsChar(); }
  /// As a short.
  short GetShort(const wchar_t* name) { return Field(name).AsShort(); }
  /// As an int.
  int GetInt(const wchar_t* name) { return Field(name).AsInt(); }
  /// As a long.
  long GetLong(const wchar_t* name) { return Field(name).AsLong(); }
  /// As a float.
  float GetFloat(const wchar_t* name) { return Field(name).AsFloat(); }
  /// As a double.
  double GetDouble(const wchar_t* name) { return Field(name).AsDouble(); }
  /// As a moment.
  CDBTimestamp GetDate(const wchar_t* name) { return Field(name).AsDate(); }
  /// As a text.
  CString GetString(const wchar_t* name) { return Field(name).AsString(); }
  /// As bytes.
  CLongBinary GetBinary(const wchar_t* name) { return Field(name).AsBinary(); }

  /// @}

 private:
  friend struct pokermath::DatabaseAccess;

  void Executed() override { load_fields_ = true; }
  void LoadFieldNamesMap();
  void ShowFailure() const;

  std::unique_ptr<CDBField[]> fields_;
  int allocated_ = 0;
  std::map<CString, int> ids_;
  CDBField missing_;
  bool load_fields_ = false;
  int unknown_columns_ = 0;  // that the user has not been told of yet
  bool show_errors_ = true;
};

/// Opens a database read-only if db is null; one that is given is used as it is.
///
/// @param db  in, out: null after an error, which is shown unless memory ran out; one that is given
///            and not open stays, without a message; the caller deletes it
/// @return whether db is open
POKERMATH_EXPORT bool OpenODBC(const CString& connect, CDatabase*& db);

/// Opens a database read-only if db is null, and a query on it (300 seconds at most); after that rs
/// stands on the first record.
///
/// @param db,rs  in, out: an rs that is given together with an open db is opened anew. The caller
///                deletes both, rs first; after a failure they have been deleted and are null. An
///                rs that is given with a null db is forgotten, not deleted. A db that is given and
///                not open is a failure without a message; the 300 seconds stay set on it
/// @param showErrors  whether a failure is shown, by one message; rs goes on like that
POKERMATH_EXPORT bool OpenODBC(const CString& connect, CDatabase*& db, CODBCRecordset*& rs,
                               const CString& sql, bool showErrors = true);

/// Executes a statement on a connection of its own.
///
/// @return false, with a message, if it fails
POKERMATH_EXPORT bool ExecuteSQL(CString connect, CString sql);
/// Executes statements one by one on a connection of its own, with 600 seconds at most for each.
/// Ends with a message at the first that fails; those before it stay executed.
POKERMATH_EXPORT bool ExecuteSQL(CString connect, const CStringArray& statements);

/// @name What there is
/// An environment is the driver manager's handle (SQLHENV). Only BuildSQLDriversList and
/// TestDSNDriver use it, and make one for the call where it is null; the others have their own.
/// Names of tables and columns are names: % and _ are ordinary characters in them.
/// @{

/// Lists the tables of a database; views and system tables are left out.
///
/// @return false if the database cannot be opened; a listing that fails later is shown, and true
POKERMATH_EXPORT bool BuildTableList(void* environment, const CString& connect,
                                     CStringArray& tables);

/// Whether there is a table or a view of that name.
POKERMATH_EXPORT bool IsTableODBC(void* environment, CString connect, const CString& table);

/// Whether a table has a column of that name, in any case.
POKERMATH_EXPORT bool IsColumnTableODBC(void* environment, const CString& connect,
                                        const CString& table, const CString& column);

/// Lists the installed drivers, two entries for each: its name and its attributes
/// ("Description=...;Driver=...").
///
/// @return false, without a message, if the driver manager fails; the list has what came before
POKERMATH_EXPORT bool BuildSQLDriversList(void* environment, CStringArray& list);

/// Whether the text stands in any entry of the list of drivers; shows a message if not.
POKERMATH_EXPORT bool TestDSNDriver(void* environment, CString driver);

/// @}

#endif  // POKERMATH_ODBC_H_
