// Values and how one kind becomes another. Numbers go through text without a locale, so that what
// was written is read back anywhere.

#include <langinfo.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/text.h"
#include "pokermath/odbc.h"

namespace pokermath {
namespace {

std::string_view Trimmed(std::string_view text) {
  constexpr const char* kBlanks = " \t\r\n\v\f";
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

// Reads the whole text as a number without its fraction; false if it is none or not in plain
// digits.
bool ParseWhole(std::string_view text, long& number) {
  text = Trimmed(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::string_view rest = text.substr(static_cast<std::size_t>(end - text.data()));
  const bool fraction =
      rest.starts_with('.') && rest.find_first_not_of("0123456789", 1) == rest.npos;
  return error == std::errc() && (rest.empty() || fraction);
}

// The nearest whole number, without its fraction.
template <typename Whole>
Whole Nearest(double value) {
  using Limits = std::numeric_limits<Whole>;
  if (std::isnan(value)) return 0;
  // The largest long is no double; the next double above it is 2^63.
  if (value >= static_cast<double>(Limits::max())) return Limits::max();
  if (value <= static_cast<double>(Limits::min())) return Limits::min();
  return static_cast<Whole>(value);
}

template <typename Whole>
Whole Nearest(long value) {
  using Limits = std::numeric_limits<Whole>;
  return static_cast<Whole>(std::clamp<long>(value, Limits::min(), Limits::max()));
}

// What the C library makes of a number that is out of the range of double: infinite, tiny or 0.
double OutOfRange(const std::string& number) {
  // Never freed: it is needed as long as the program runs.
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return plain == nullptr ? 0 : strtod_l(number.c_str(), nullptr, plain);
}

double ToDouble(std::string_view text) {
  text = Trimmed(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  // Not the words for infinite and for no number.
  const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
  if (digits.find_first_of("0123456789.") != 0) return 0;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end != text.data() + text.size()) return 0;
  return error == std::errc::result_out_of_range ? OutOfRange(std::string(text)) : number;
}

template <typename Number, typename... Format>
CString NumberText(Number number, Format... format) {
  char text[400];  // the longest double has 309 digits before its point
  const auto [end, error] = std::to_chars(text, text + sizeof(text), number, format...);
  return {text, end};
}

CString DoubleText(double number) { return NumberText(number, std::chars_format::fixed, 6); }

// As the user's locale has it; the "C" locale would leave out the century.
CString DateText(const CDBTimestamp& date) {
  std::tm parts = {};
  parts.tm_year = date.year - 1900;
  parts.tm_mon = date.month - 1;
  parts.tm_mday = date.day;
  parts.tm_hour = date.hour;
  parts.tm_min = date.minute;
  parts.tm_sec = date.second;
  std::tm copy = parts;
  timegm(&copy);
  parts.tm_wday = copy.tm_wday;
  parts.tm_yday = copy.tm_yday;
  locale_t locale = newlocale(LC_ALL_MASK, "", nullptr);
  if (locale == nullptr) locale = newlocale(LC_ALL_MASK, "C", nullptr);
  if (locale == nullptr) return {};
  const bool plain = std::string_view(nl_langinfo_l(D_FMT, locale)) == "%m/%d/%y";
  wchar_t text[256];
  const locale_t before = uselocale(locale);
  const std::size_t length =
      std::wcsftime(text, std::size(text), plain ? L"%Y-%m-%d %H:%M:%S" : L"%x %X", &parts);
  uselocale(before);
  freelocale(locale);
  return {text, length};
}

// Takes a number of at most so many digits from the front.
bool TakeNumber(std::string_view& text, std::size_t most, unsigned& number) {
  const std::size_t digits =
      std::min(std::min(text.find_first_not_of("0123456789"), text.size()), most);
  if (digits == 0) return false;
  number = 0;
  for (const char c : text.substr(0, digits)) number = 10 * number + static_cast<unsigned>(c - '0');
  text.remove_prefix(digits);
  return true;
}

bool Take(std::string_view& text, char sign) {
  if (!text.starts_with(sign)) return false;
  text.remove_prefix(1);
  return true;
}

bool TakeDay(std::string_view& text, CDBTimestamp& date) {
  unsigned year, month, day;
  if (!TakeNumber(text, 4, year) || !Take(text, '-') || !TakeNumber(text, 2, month) ||
      !Take(text, '-') || !TakeNumber(text, 2, day)) {
    return false;
  }
  date.year = static_cast<short>(year);
  date.month = static_cast<unsigned short>(month);
  date.day = static_cast<unsigned short>(day);
  return std::chrono::year_month_day(std::chrono::year(date.year), std::chrono::month(month),
                                     std::chrono::day(day))
      .ok();
}

bool TakeTime(std::string_view& text, CDBTimestamp& date) {
  unsigned hour, minute, second;
  if (!TakeNumber(text, 2, hour) || !Take(text, ':') || !TakeNumber(text, 2, minute) ||
      !Take(text, ':') || !TakeNumber(text, 2, second)) {
    return false;
  }
  date.hour = static_cast<unsigned short>(hour);
  date.minute = static_cast<unsigned short>(minute);
  date.second = static_cast<unsigned short>(second);
  if (Take(text, '.')) {
    const std::size_t before = text.size();
    if (!TakeNumber(text, 9, date.fraction)) return false;
    for (std::size_t digits = before - text.size(); digits < 9; ++digits) date.fraction *= 10;
  }
  return hour < 24 && minute < 60 && second < 62;
}

CDBTimestamp ParseDate(std::string_view text) {
  text = Trimmed(text);
  CDBTimestamp date;
  const bool has_day = text.find('-') != text.npos;
  if (has_day && !TakeDay(text, date)) return {};
  if (has_day && text.empty()) return date;
  if (has_day && !Take(text, ' ') && !Take(text, 'T')) return {};
  return TakeTime(text, date) && text.empty() ? date : CDBTimestamp();
}

}  // namespace
}  // namespace pokermath

CDBVariant::CDBVariant(const CDBVariant& other) : m_dblVal(0) {
  if (other.m_dwType == DBVT_DATE) {
    m_pdate = new CDBTimestamp(*other.m_pdate);
  } else if (other.m_dwType == DBVT_STRING) {
    m_pstring = new CString(*other.m_pstring);
  } else if (other.m_dwType == DBVT_BINARY) {
    m_pbinary = new CLongBinary(*other.m_pbinary);
  } else {
    std::memcpy(&m_dblVal, &other.m_dblVal, sizeof(m_dblVal));
  }
  m_dwType = other.m_dwType;
}

CDBVariant::CDBVariant(CDBVariant&& other) noexcept
    : m_dwType(std::exchange(other.m_dwType, DBVT_NULL)) {
  std::memcpy(&m_dblVal, &other.m_dblVal, sizeof(m_dblVal));
}

CDBVariant& CDBVariant::operator=(CDBVariant other) noexcept {
  double bytes;
  std::memcpy(&bytes, &m_dblVal, sizeof(bytes));
  std::memcpy(&m_dblVal, &other.m_dblVal, sizeof(bytes));
  std::memcpy(&other.m_dblVal, &bytes, sizeof(bytes));
  std::swap(m_dwType, other.m_dwType);
  return *this;
}

CDBVariant::~CDBVariant() { Clear(); }

void CDBVariant::Clear() {
  if (m_dwType == DBVT_DATE) delete m_pdate;
  if (m_dwType == DBVT_STRING) delete m_pstring;
  if (m_dwType == DBVT_BINARY) delete m_pbinary;
  m_dwType = DBVT_NULL;
  m_dblVal = 0;
}

void CDBVariant::SetKind(unsigned long kind) {
  if (m_dwType == kind) return;
  Clear();
  if (kind == DBVT_DATE) m_pdate = new CDBTimestamp;
  if (kind == DBVT_STRING) m_pstring = new CString;
  if (kind == DBVT_BINARY) m_pbinary = new CLongBinary;
  m_dwType = kind;
}

void CDBField::GetNull(bool& isNull, unsigned long& length) const {
  static constexpr unsigned long kSizes[] = {
      0, sizeof(bool), sizeof(char), sizeof(short), sizeof(long), sizeof(float), sizeof(double)};
  isNull = null_;
  if (null_) {
    length = 0;
  } else if (m_dwType == DBVT_STRING) {
    length = m_pstring->size();
  } else if (m_dwType == DBVT_BINARY) {
    length = m_pbinary->GetDataLength();
  } else {
    length = m_dwType == DBVT_DATE ? sizeof(CDBTimestamp) : kSizes[m_dwType];
  }
}

template <typename Whole>
Whole CDBField::AsWhole() const {
  using pokermath::Nearest;
  if (null_) return 0;
  switch (m_dwType) {
    case DBVT_BOOL:
      return m_boolVal ? 1 : 0;
    case DBVT_UCHAR:
      return Nearest<Whole>(static_cast<long>(m_chVal));
    case DBVT_SHORT:
      return Nearest<Whole>(static_cast<long>(m_iVal));
    case DBVT_LONG:
      return Nearest<Whole>(m_lVal);
    case DBVT_SINGLE:
      return Nearest<Whole>(static_cast<double>(m_fltVal));
    case DBVT_DOUBLE:
      return Nearest<Whole>(m_dblVal);
    case DBVT_STRING:
    case DBVT_BINARY: {
      // Not every long is a double.
      const std::string text = IsString() ? pokermath::ToUtf8(*m_pstring) : m_pbinary->bytes;
      long whole;
      if (pokermath::ParseWhole(text, whole)) return Nearest<Whole>(whole);
      return Nearest<Whole>(pokermath::ToDouble(text));
    }
    default:
      return 0;
  }
}

bool CDBField::AsBool() const {
  if (null_) return false;
  if (m_dwType == DBVT_BOOL) return m_boolVal;
  if (!IsString() && !IsBinary()) {
    const double number = AsDouble();
    return !IsDate() && number != 0 && !std::isnan(number);
  }
  const CString text = AsString();
  const bool is_t = text == L"T" || text == L"t";
  const bool is_true = text.size() == 4 && wcsncasecmp(text.c_str(), L"true", 4) == 0;
  return is_t || is_true || AsDouble() != 0;
}

unsigned char CDBField::AsChar() const { return AsWhole<unsigned char>(); }

short CDBField::AsShort() const { return AsWhole<short>(); }

int CDBField::AsInt() const { return AsWhole<int>(); }

long CDBField::AsLong() const { return AsWhole<long>(); }

float CDBField::AsFloat() const {
  if (!null_ && m_dwType == DBVT_SINGLE) return m_fltVal;
  constexpr double kMost = std::numeric_limits<float>::max();
  const double number = AsDouble();
  return static_cast<float>(std::isfinite(number) ? std::clamp(number, -kMost, kMost) : number);
}

double CDBField::AsDouble() const {
  if (null_) return 0;
  if (m_dwType == DBVT_DOUBLE) return m_dblVal;
  if (m_dwType == DBVT_SINGLE) return static_cast<double>(m_fltVal);
  if (IsString()) return pokermath::ToDouble(pokermath::ToUtf8(*m_pstring));
  if (IsBinary()) return pokermath::ToDouble(m_pbinary->bytes);
  return static_cast<double>(AsWhole<long>());
}

CDBTimestamp CDBField::AsDate() const {
  if (null_) return {};
  if (IsDate()) return *m_pdate;
  if (IsString()) return pokermath::ParseDate(pokermath::ToUtf8(*m_pstring));
  return IsBinary() ? pokermath::ParseDate(m_pbinary->bytes) : CDBTimestamp();
}

CString CDBField::AsString() const {
  if (null_) return {};
  switch (m_dwType) {
    case DBVT_BOOL:
      return m_boolVal ? L"T" : L"F";
    case DBVT_UCHAR:
      return CString(1, static_cast<wchar_t>(m_chVal));
    case DBVT_SHORT:
      return pokermath::NumberText(m_iVal);
    case DBVT_LONG:
      return pokermath::NumberText(m_lVal);
    case DBVT_SINGLE:
      return pokermath::DoubleText(static_cast<double>(m_fltVal));
    case DBVT_DOUBLE:
      return pokermath::DoubleText(m_dblVal);
    case DBVT_DATE:
      return pokermath::DateText(*m_pdate);
    case DBVT_STRING:
      return *m_pstring;
    case DBVT_BINARY:
      return pokermath::FromUtf8(m_pbinary->bytes);
    default:
      return {};
  }
}

CLongBinary CDBField::AsBinary() const {
  if (null_) return {};
  return IsBinary() ? *m_pbinary : CLongBinary{pokermath::ToUtf8(AsString())};
}

CDBField& CDBField::Assigned(unsigned long kind) {
  SetKind(kind);
  null_ = false;
  return *this;
}

CDBField& CDBField::operator=(bool value) {
  Assigned(DBVT_BOOL).m_boolVal = value;
  return *this;
}

CDBField& CDBField::operator=(char value) { return *this = static_cast<unsigned char>(value); }

CDBField& CDBField::operator=(unsigned char value) {
  Assigned(DBVT_UCHAR).m_chVal = value;
  return *this;
}

CDBField& CDBField::operator=(short value) {
  Assigned(DBVT_SHORT).m_iVal = value;
  return *this;
}

CDBField& CDBField::operator=(int value) { return *this = static_cast<long>(value); }

CDBField& CDBField::operator=(long value) {
  Assigned(DBVT_LONG).m_lVal = value;
  return *this;
}

CDBField& CDBField::operator=(float value) {
  Assigned(DBVT_SINGLE).m_fltVal = value;
  return *this;
}

CDBField& CDBField::operator=(double value) {
  Assigned(DBVT_DOUBLE).m_dblVal = value;
  return *this;
}

CDBField& CDBField::operator=(const CDBTimestamp& value) {
  *Assigned(DBVT_DATE).m_pdate = value;
  return *this;
}

CDBField& CDBField::operator=(const CString& value) {
  *Assigned(DBVT_STRING).m_pstring = value;
  return *this;
}

CDBField& CDBField::operator=(const wchar_t* value) { return *this = CString(value); }
