// Databases behind ODBC: a query with one call, batches of statements, and what a database holds.
//
// Text is UTF-8 on its way to the driver and wide text here. What fails gives false and a message
// (see messages.h), never an exception. Values of the connect string show as *** in it, but for
// those of keywords that carry no secrets (Driver, DSN, Server, Database, Uid ...). A database
// object and its record sets belong to one thread.
//
//     CDatabase* db = nullptr;
//     CODBCRecordset* rs = nullptr;
//     if (OpenODBC(L"Driver=SQLite3;Database=hands.db", db, rs, L"SELECT id, pot FROM hands")) {
//       for (; !rs->IsEOF(); rs->MoveNext()) Add(rs->GetLong(L"id"), rs->GetDouble(L"pot"));
//     }
//     delete rs;
//     delete db;

#ifndef POKERMATH_ODBC_H_
#define POKERMATH_ODBC_H_

#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pokermath/export.h"
#include "pokermath/text.h"

namespace pokermath {
class Connection;
class ResultSet;
struct DatabaseAccess;
}  // namespace pokermath

class CRecordset;
class CODBCRecordset;

/// A connection to a database.
class POKERMATH_EXPORT CDatabase {
 public:
  enum DbOpenOptions : unsigned long { defaultOpen = 0, openReadOnly = 2, noOdbcDialog = 8 };

  CDatabase();
  virtual ~CDatabase();
  CDatabase(const CDatabase&) = delete;
  CDatabase& operator=(const CDatabase&) = delete;

  /// Opens the database of a connect string; an open one is closed first. Never shows a dialog.
  /// Shows no message: ErrorText() tells why it is false. With openReadOnly SQLite and PostgreSQL
  /// refuse ordinary changes, though not statements made to get around it; other drivers are asked
  /// to. A file of SQLite's that is not there is made only without it, if the connect string has
  /// SQLite in it.
  bool OpenEx(const CString& connect, unsigned long options = defaultOpen);
  bool IsOpen() const;

  /// Closes the database and its record sets; an unfinished transaction is rolled back.
  void Close();

  /// For the statements that follow; 0 is none. Not every driver enforces it.
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
  short year = 0;
  unsigned short month = 0, day = 0, hour = 0, minute = 0, second = 0;
  unsigned int fraction = 0;

  bool operator==(const CDBTimestamp&) const = default;
};

/// A value of many bytes, or a long text as UTF-8.
class CLongBinary {
 public:
  unsigned long GetDataLength() const { return bytes.size(); }

  std::string bytes;
};

/// The kinds of a value.
enum : unsigned long {
  DBVT_NULL = 0,
  DBVT_BOOL = 1,
  DBVT_UCHAR = 2,
  DBVT_SHORT = 3,
  DBVT_LONG = 4,
  DBVT_SINGLE = 5,
  DBVT_DOUBLE = 6,
  DBVT_DATE = 7,
  DBVT_STRING = 8,
  DBVT_BINARY = 9
};

/// A value of one of ten kinds. What it points to is its own.
class POKERMATH_EXPORT CDBVariant {
 public:
  CDBVariant() : m_dblVal(0) {}
  CDBVariant(const CDBVariant& other);
  CDBVariant(CDBVariant&& other) noexcept;
  CDBVariant& operator=(CDBVariant other) noexcept;
  virtual ~CDBVariant();

  /// Makes it null.
  void Clear();

  unsigned long m_dwType = DBVT_NULL;
  union {
    bool m_boolVal;
    unsigned char m_chVal;
    short m_iVal;
    long m_lVal;
    float m_fltVal;
    double m_dblVal;
    CDBTimestamp* m_pdate;
    CString* m_pstring;
    CLongBinary* m_pbinary;
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
/// | number | 0 or 1    | the nearest   | 0           | a decimal number, else 0          |
/// | date   | zeros     | zeros         |             | YYYY-MM-DD, hh:mm:ss[.f] or both  |
/// | text   | T or F    | %ld or %f     | see below   |                                   |
/// | binary | as text   | as text       | as text     | its UTF-8                         |
///
/// A fraction is cut off, what is too large or too small becomes the largest or the smallest, and
/// not-a-number 0. A char is the number of its code, but as text the one character. Text may have
/// white space around the number and nothing else. Numbers have a point whatever the locale; a date
/// is written as the user's locale has it, in the "C" locale as YYYY-MM-DD hh:mm:ss.
///
/// `CString text = field;` converts; to assign to a text that is there already, use AsString().
class POKERMATH_EXPORT CDBField : public CDBVariant {
 public:
  const CString& GetName() const { return name_; }

  bool IsNull() const { return null_; }
  /// @param isNull  out: as IsNull()
  /// @param length  out: characters of a text, bytes of anything else; 0 if it is null
  void GetNull(bool& isNull, unsigned long& length) const;

  bool IsBool() const { return m_dwType == DBVT_BOOL; }
  bool IsChar() const { return m_dwType == DBVT_UCHAR; }
  bool IsShort() const { return m_dwType == DBVT_SHORT; }
  bool IsInt() const { return m_dwType == DBVT_LONG; }
  bool IsLong() const { return m_dwType == DBVT_LONG; }
  bool IsFloat() const { return m_dwType == DBVT_SINGLE; }
  bool IsDouble() const { return m_dwType == DBVT_DOUBLE; }
  /// char, short, long, float or double
  bool IsNumber() const { return m_dwType >= DBVT_UCHAR && m_dwType <= DBVT_DOUBLE; }
  bool IsDate() const { return m_dwType == DBVT_DATE; }
  bool IsString() const { return m_dwType == DBVT_STRING; }
  bool IsBinary() const { return m_dwType == DBVT_BINARY; }

  bool AsBool() const;
  unsigned char AsChar() const;
  short AsShort() const;
  int AsInt() const;
  long AsLong() const;
  float AsFloat() const;
  double AsDouble() const;
  CDBTimestamp AsDate() const;
  CString AsString() const;
  CLongBinary AsBinary() const;

  operator bool() const { return AsBool(); }
  operator unsigned char() const { return AsChar(); }
  operator short() const { return AsShort(); }
  operator int() const { return AsInt(); }
  operator long() const { return AsLong(); }
  operator float() const { return AsFloat(); }
  operator double() const { return AsDouble(); }
  operator CDBTimestamp() const { return AsDate(); }
  operator CString() const { return AsString(); }
  operator CLongBinary() const { return AsBinary(); }

  /// Each sets the kind: char and unsigned char give a char, int and long a long.
  CDBField& operator=(bool value);
  CDBField& operator=(char value);
  CDBField& operator=(unsigned char value);
  CDBField& operator=(short value);
  CDBField& operator=(int value);
  CDBField& operator=(long value);
  CDBField& operator=(float value);
  CDBField& operator=(double value);
  CDBField& operator=(const CDBTimestamp& value);
  CDBField& operator=(const CString& value);
  CDBField& operator=(const wchar_t* value);  // not null
  CDBField& operator=(const char* value) = delete;

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
  CString m_strName;
  short m_nSQLType = 0;
  unsigned long m_nPrecision = 0;
  short m_nScale = 0;
  short m_nNullability = 0;
};

/// Hands the columns of the current record to variables, from the first on.
class POKERMATH_EXPORT CFieldExchange {
 public:
  enum FieldType { noFieldType, outputColumn };

  /// Nothing is exchanged before this has been called with outputColumn.
  void SetFieldType(FieldType type) { type_ = type; }

  // Each takes the next column and leaves an empty value if it is null. A variable of another type
  // than the column's is left empty as well.
  void Bool(bool& value);
  void Byte(unsigned char& value);
  void Long(long& value);
  void Single(float& value);
  void Double(double& value);
  void Date(CDBTimestamp& value);
  void Text(CString& value);
  void LongBinary(CLongBinary& value);
  void Skip();

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
  enum OpenType : unsigned int { dynaset, snapshot, forwardOnly, dynamic };
  enum OpenOptions : unsigned long { none = 0, readOnly = 4, executeDirect = 0x2000 };
  enum FetchType : unsigned short { fetchNext = 1, fetchFirst = 2, fetchRelative = 6 };

  /// @param database  may be null: then nothing can be opened
  explicit CRecordset(CDatabase* database);
  CRecordset(const CRecordset&) = delete;
  CRecordset& operator=(const CRecordset&) = delete;

  /// Executes a query and goes to its first record. Whatever type and options say, the records come
  /// forward only, cannot be changed, and the query is executed directly.
  virtual bool Open(const wchar_t* sql, unsigned int openType, unsigned long options);

  /// Goes `rows` records on; with fetchNext one, with fetchFirst to the first if no other has been
  /// read.
  ///
  /// @return whether there is a record; without one IsEOF() becomes true, and ErrorText() tells an
  ///         error from the end. A move backwards is an error that changes nothing
  virtual bool Move(long rows, unsigned short fetchType = fetchRelative);

  /// Called for every record: hands its columns to variables. Here: does nothing.
  virtual void DoFieldExchange(CFieldExchange* exchange);
  virtual ~CRecordset();

  bool MoveNext() { return Move(1, fetchNext); }
  bool IsOpen() const { return result_ != nullptr; }
  bool IsEOF() const { return end_; }
  void Close();

  /// Why the last call failed; empty if it did not.
  const CString& ErrorText() const { return error_; }
  const CString& GetSQL() const { return sql_; }
  int GetODBCFieldCount() const;
  /// @return false if there is no such column
  bool GetODBCFieldInfo(int index, CODBCFieldInfo& info) const;

 protected:
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
};

/// A record set whose columns are fields with names.
class POKERMATH_EXPORT CODBCRecordset : public CRecordset {
 public:
  explicit CODBCRecordset(CDatabase* database);
  ~CODBCRecordset() override;

  bool Open(const wchar_t* sql, unsigned int openType = forwardOnly,
            unsigned long options = readOnly | executeDirect) override;
  bool Move(long rows, unsigned short fetchType = fetchRelative) override;
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
  CDBField& Field(const wchar_t* name) { return Field(GetFieldID(name)); }
  CDBField& operator()(int index) { return Field(index); }
  CDBField& operator()(const wchar_t* name) { return Field(name); }

  bool GetBool(int index) { return Field(index).AsBool(); }
  unsigned char GetChar(int index) { return Field(index).AsChar(); }
  short GetShort(int index) { return Field(index).AsShort(); }
  int GetInt(int index) { return Field(index).AsInt(); }
  long GetLong(int index) { return Field(index).AsLong(); }
  float GetFloat(int index) { return Field(index).AsFloat(); }
  double GetDouble(int index) { return Field(index).AsDouble(); }
  CDBTimestamp GetDate(int index) { return Field(index).AsDate(); }
  CString GetString(int index) { return Field(index).AsString(); }
  CLongBinary GetBinary(int index) { return Field(index).AsBinary(); }
  bool GetBool(const wchar_t* name) { return Field(name).AsBool(); }
  unsigned char GetChar(const wchar_t* name) { return Field(name).AsChar(); }
  short GetShort(const wchar_t* name) { return Field(name).AsShort(); }
  int GetInt(const wchar_t* name) { return Field(name).AsInt(); }
  long GetLong(const wchar_t* name) { return Field(name).AsLong(); }
  float GetFloat(const wchar_t* name) { return Field(name).AsFloat(); }
  double GetDouble(const wchar_t* name) { return Field(name).AsDouble(); }
  CDBTimestamp GetDate(const wchar_t* name) { return Field(name).AsDate(); }
  CString GetString(const wchar_t* name) { return Field(name).AsString(); }
  CLongBinary GetBinary(const wchar_t* name) { return Field(name).AsBinary(); }

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
/// @param db  in, out: null after an error, which is shown; the caller deletes it
/// @return whether db is open
POKERMATH_EXPORT bool OpenODBC(const CString& connect, CDatabase*& db);

/// Opens a database read-only if db is null, and a query on it (300 seconds at most); after that rs
/// stands on the first record.
///
/// @param db, rs  in, out: an rs that is given together with an open db is opened anew. The caller
///                deletes both, rs first; after a failure they have been deleted and are null
/// @param showErrors  whether a failure is shown, by one message; rs goes on like that
POKERMATH_EXPORT bool OpenODBC(const CString& connect, CDatabase*& db, CODBCRecordset*& rs,
                               const CString& sql, bool showErrors = true);

/// Executes statements one by one on a connection of its own, a list with 600 seconds at most for
/// each. Ends with a message at the first that fails; those before it stay executed.
POKERMATH_EXPORT bool ExecuteSQL(CString connect, CString sql);
POKERMATH_EXPORT bool ExecuteSQL(CString connect, const CStringArray& statements);

// An environment is the driver manager's handle (SQLHENV); with null one is made for the call.
// Names of tables and columns are names: % and _ are ordinary characters in them.

/// Lists the tables of a database; views and system tables are left out.
///
/// @return false if the database cannot be opened
POKERMATH_EXPORT bool BuildTableList(void* environment, const CString& connect,
                                     CStringArray& tables);

/// Whether there is a table or a view of that name.
POKERMATH_EXPORT bool IsTableODBC(void* environment, CString connect, const CString& table);

/// Whether a table has a column of that name, in any case.
POKERMATH_EXPORT bool IsColumnTableODBC(void* environment, const CString& connect,
                                        const CString& table, const CString& column);

/// Lists the installed drivers, two entries for each: its name and its attributes
/// ("Description=...;Driver=...").
POKERMATH_EXPORT bool BuildSQLDriversList(void* environment, CStringArray& list);

/// Whether the text stands in any entry of the list of drivers; shows a message if not.
POKERMATH_EXPORT bool TestDSNDriver(void* environment, CString driver);

#endif  // POKERMATH_ODBC_H_
