// Record sets. The base class hands columns to variables; CODBCRecordset has a field for each.

#include <cwctype>
#include <new>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "platform/messages.h"
#include "platform/text.h"
#include "support/odbc/database.h"
#include "support/odbc/names.h"
#include "support/odbc/result_set.h"

using pokermath::DatabaseError;

namespace {

// Says, as long as it lives, that a record set is being opened.
class Opening {
 public:
  explicit Opening(bool& opening) : opening_(opening) { opening_ = true; }
  ~Opening() { opening_ = false; }
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;

 private:
  bool& opening_;
};

}  // namespace

CRecordset::CRecordset(CDatabase* database) : database_(database) {
  if (database_ != nullptr) database_->record_sets_.push_back(this);
}

CRecordset::~CRecordset() {
  if (database_ != nullptr) std::erase(database_->record_sets_, this);
}

void CRecordset::Close() {
  result_.reset();
  end_ = true;
}

bool CRecordset::Open(const wchar_t* sql, unsigned int, unsigned long) {
  try {
    OpenOrThrow(sql == nullptr ? L"" : sql);
    return true;
  } catch (...) {
    return Failed();
  }
}

void CRecordset::OpenOrThrow(const CString& sql) {
  Close();
  error_.clear();
  sql_ = sql;
  if (database_ == nullptr || !database_->IsOpen()) {
    throw DatabaseError(L"the database is not open");
  }
  result_ = std::make_unique<pokermath::ResultSet>(*database_->connection_, sql,
                                                   database_->query_timeout_);
  Executed();
  {
    const Opening opening(opening_);
    Move(1, fetchFirst);
  }
  if (failure_ == nullptr) return;
  Close();
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

bool CRecordset::Failed() {
  end_ = true;
  failure_ = std::current_exception();
  error_.clear();
  try {
    try {
      throw;
    } catch (const DatabaseError& error) {
      error_ = database_ == nullptr ? error.text() : database_->Shown(error.text());
    } catch (const std::bad_alloc&) {
      error_ = L"not enough memory";
    } catch (const std::exception& error) {
      error_ = pokermath::FromUtf8(error.what());
    }
  } catch (const std::bad_alloc&) {
    failure_ = std::current_exception();
    error_ = CString(1, L'?');  // short enough to need no memory
  }
  return false;
}

bool CRecordset::Move(long rows, unsigned short fetchType) {
  failure_ = nullptr;
  error_.clear();
  const bool end_before = end_;
  bool refused = false;
  try {
    if (result_ == nullptr) throw DatabaseError(L"no query is open");
    const bool first = fetchType == fetchFirst;
    if (fetchType != fetchRelative) rows = 1;
    refused = rows < 0 || (first && result_->row() > 1);
    if (refused) throw DatabaseError(L"the records come forward only");
    if (first && result_->row() == 1) return !end_;
    // The record set stands before the first record only while it is opened.
    for (; rows > 0 && (!end_ || opening_); --rows) end_ = !result_->Fetch();
    if (end_) return false;
    CFieldExchange exchange(*result_);
    DoFieldExchange(&exchange);
    return true;
  } catch (...) {
    Failed();
    if (refused) end_ = end_before;
    return false;
  }
}

void CRecordset::DoFieldExchange(CFieldExchange*) {}

int CRecordset::GetODBCFieldCount() const { return result_ == nullptr ? 0 : result_->size(); }

bool CRecordset::GetODBCFieldInfo(int index, CODBCFieldInfo& info) const {
  if (index < 0 || index >= GetODBCFieldCount()) return false;
  info = result_->info(index);
  return true;
}

int CFieldExchange::Next(unsigned long kind) {
  null_ = true;
  if (type_ != outputColumn || next_ >= result_.size()) return -1;
  const int column = next_++;
  null_ = result_.IsNull(column);
  return null_ || result_.kind(column) != kind ? -1 : column;
}

template <typename Value>
void CFieldExchange::Fixed(unsigned long kind, Value& value) {
  const int column = Next(kind);
  value = column < 0 ? Value() : result_.Get<Value>(column);
}

void CFieldExchange::Bool(bool& value) {
  const int column = Next(DBVT_BOOL);
  value = column >= 0 && result_.Get<unsigned char>(column) != 0;
}

void CFieldExchange::Byte(unsigned char& value) { Fixed(DBVT_UCHAR, value); }

void CFieldExchange::Long(long& value) { Fixed(DBVT_LONG, value); }

void CFieldExchange::Single(float& value) { Fixed(DBVT_SINGLE, value); }

void CFieldExchange::Double(double& value) { Fixed(DBVT_DOUBLE, value); }

void CFieldExchange::Date(CDBTimestamp& value) {
  const int column = Next(DBVT_DATE);
  value = {};
  if (column < 0) return;
  const auto from = result_.Get<SQL_TIMESTAMP_STRUCT>(column);
  value = {from.year, from.month, from.day, from.hour, from.minute, from.second, from.fraction};
}

void CFieldExchange::Text(CString& value) {
  const int column = Next(DBVT_STRING);
  if (column < 0) {
    value.clear();
  } else {
    pokermath::AssignUtf8(result_.Bytes(column), value);
  }
}

void CFieldExchange::LongBinary(CLongBinary& value) {
  const int column = Next(DBVT_BINARY);
  value.bytes.assign(column < 0 ? std::string_view() : result_.Bytes(column));
}

void CFieldExchange::Skip() { Next(DBVT_NULL); }

CODBCRecordset::CODBCRecordset(CDatabase* database) : CRecordset(database) {}

CODBCRecordset::~CODBCRecordset() = default;

bool CODBCRecordset::Open(const wchar_t* sql, unsigned int openType, unsigned long options) {
  const bool open = CRecordset::Open(sql, openType, options);
  if (!open) ShowFailure();
  return open;
}

bool CODBCRecordset::Move(long rows, unsigned short fetchType) {
  try {
    if (result_ != nullptr && std::exchange(load_fields_, false)) LoadFieldNamesMap();
  } catch (...) {
    return Failed();
  }
  const bool moved = CRecordset::Move(rows, fetchType);
  // While it is opened, whoever opens it tells the user.
  if (!moved && !opening_ && failure_ != nullptr) ShowFailure();
  const int unknown = std::exchange(unknown_columns_, 0);
  if (failure_ == nullptr && unknown > 0) {
    pokermath::Try(
        [unknown] {
          for (int i = 0; i < unknown; ++i) pokermath::ShowMessage(L"Неизвестный тип данных");
        },
        [](const CString&) {}, [] {});
  }
  return moved;
}

void CODBCRecordset::ShowFailure() const {
  if (!show_errors_) return;
  const auto sql = [this] { return database_ == nullptr ? sql_ : database_->Shown(sql_); };
  pokermath::Try(
      [this] { std::rethrow_exception(failure_); },
      [&](const CString&) {
        pokermath::ShowMessage(L"Ошибка " + error_ + L" Запрос [" + sql() + L"] !");
      },
      [&] { pokermath::ShowMessage(L"Ошибка памяти при чтении таблицы [" + sql() + L"] !"); });
}

void CODBCRecordset::LoadFieldNamesMap() {
  ids_.clear();
  unknown_columns_ = 0;
  const int count = result_->size();
  if (count > allocated_) {
    allocated_ = 0;
    fields_ = std::make_unique<CDBField[]>(static_cast<std::size_t>(count));
    allocated_ = count;
  }
  // Where the numbers of a name go on: thousands of columns may have the same one.
  std::unordered_map<CString, int> next_number;
  for (int i = 0; i < count; ++i) {
    CDBField& field = fields_[static_cast<std::size_t>(i)];
    field.Clear();
    field.null_ = true;
    if (result_->kind(i) == DBVT_NULL) ++unknown_columns_;
    field.SetKind(result_->kind(i));
    const CString upper = pokermath::UpperCase(result_->info(i).m_strName);
    CString name = upper;
    int& number = next_number.try_emplace(upper, 2).first->second;
    while (ids_.contains(name)) name = upper + std::to_wstring(number++);
    ids_[name] = i;
    field.name_ = std::move(name);
  }
}

void CODBCRecordset::DoFieldExchange(CFieldExchange* exchange) {
  exchange->SetFieldType(CFieldExchange::outputColumn);
  for (int i = 0; i < GetODBCFieldCount(); ++i) {
    CDBField& field = fields_[static_cast<std::size_t>(i)];
    // The host may have made it of another kind.
    field.SetKind(result_->kind(i));
    switch (field.m_dwType) {
      case DBVT_BOOL:
        exchange->Bool(field.m_boolVal);
        break;
      case DBVT_UCHAR:
        exchange->Byte(field.m_chVal);
        break;
      case DBVT_LONG:
        exchange->Long(field.m_lVal);
        break;
      case DBVT_SINGLE:
        exchange->Single(field.m_fltVal);
        break;
      case DBVT_DOUBLE:
        exchange->Double(field.m_dblVal);
        break;
      case DBVT_DATE:
        exchange->Date(*field.m_pdate);
        break;
      case DBVT_STRING:
        exchange->Text(*field.m_pstring);
        break;
      case DBVT_BINARY:
        exchange->LongBinary(*field.m_pbinary);
        break;
      default:
        exchange->Skip();
    }
    field.null_ = exchange->IsNull();
  }
}

int CODBCRecordset::GetFieldID(const wchar_t* name) const {
  if (name == nullptr) return -1;
  const auto found = ids_.find(pokermath::UpperCase(name));
  return found == ids_.end() ? -1 : found->second;
}

CString CODBCRecordset::GetFieldName(int index) const {
  const bool there = index >= 0 && index < GetODBCFieldCount() && index < allocated_;
  return there ? fields_[static_cast<std::size_t>(index)].GetName() : CString();
}

CDBField& CODBCRecordset::Field(int index) {
  if (index >= 0 && index < allocated_ && index < GetODBCFieldCount()) {
    return fields_[static_cast<std::size_t>(index)];
  }
  return missing_ = CDBField();
}
