// Field values and how one kind becomes another.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

#include "pokermath/odbc.h"

namespace pokermath {
namespace {

template <typename Value>
CDBField FieldOf(const Value& value) {
  CDBField field;
  field = value;
  return field;
}

TEST(OdbcField, AssignmentSetsTheKind) {
  CDBField field;
  EXPECT_TRUE(field.IsNull());
  const auto kind = [&field](const auto& value) {
    field = value;
    EXPECT_FALSE(field.IsNull());
    return field.m_dwType;
  };
  EXPECT_EQ(kind(true), DBVT_BOOL);
  EXPECT_EQ(kind('a'), DBVT_UCHAR);
  EXPECT_EQ(kind(static_cast<unsigned char>(1)), DBVT_UCHAR);
  EXPECT_EQ(kind(static_cast<short>(1)), DBVT_SHORT);
  EXPECT_EQ(kind(1), DBVT_LONG);
  EXPECT_EQ(kind(1L), DBVT_LONG);
  EXPECT_EQ(kind(1.0f), DBVT_SINGLE);
  EXPECT_EQ(kind(CDBTimestamp()), DBVT_DATE);
  EXPECT_EQ(kind(L"text"), DBVT_STRING);
  EXPECT_EQ(kind(CString(L"text")), DBVT_STRING);
  EXPECT_EQ(kind(1.0), DBVT_DOUBLE) << "after a text";
  bool null;
  unsigned long length;
  FieldOf(L"four").GetNull(null, length);
  EXPECT_TRUE(!null && length == 4);
}

TEST(OdbcField, CopiesAreTheirOwn) {
  CDBField one = FieldOf(L"one");
  CDBField two = one;
  two = L"two";
  EXPECT_EQ(one.AsString(), L"one");
  one = two;
  two = 5;
  EXPECT_EQ(one.AsString(), L"two");
  one = std::move(two);
  EXPECT_EQ(one.AsInt(), 5);
  CDBField& same = one;
  one = same;
  EXPECT_EQ(one.AsInt(), 5);
}

// 1 and zeros.
CString Digits(std::size_t count) { return L"1" + CString(count - 1, L'0'); }

TEST(OdbcField, NumbersFromText) {
  const auto number = [](const CString& text) { return FieldOf(text).AsLong(); };
  EXPECT_EQ(number(L" -42\n"), -42);
  EXPECT_EQ(number(L"+7"), 7);
  EXPECT_EQ(number(L"9223372036854775807"), std::numeric_limits<long>::max());
  EXPECT_EQ(number(L"9223372036854775808"), std::numeric_limits<long>::max());
  EXPECT_EQ(number(L"-1e400"), std::numeric_limits<long>::min());
  EXPECT_EQ(number(L"1e-400"), 0);
  EXPECT_EQ(FieldOf(Digits(400)).AsDouble(), std::numeric_limits<double>::infinity());
  EXPECT_EQ(FieldOf(Digits(400) + L"e-399").AsLong(), 1);
  EXPECT_EQ(FieldOf(L"-0." + CString(400, L'0') + L"1e399").AsDouble(), -0.01);
  EXPECT_EQ(FieldOf(L"-0." + CString(400, L'0') + L"1").AsLong(), 0);
  EXPECT_EQ(number(L"2.99"), 2);
  EXPECT_EQ(number(L"1234567890123456789.75"), 1234567890123456789);
  EXPECT_EQ(number(L"1.2.3"), 0);
  for (const wchar_t* text :
       {L"", L" ", L"12abc", L"+-1", L"0x10", L"1,5", L"nan", L"inf", L"-infinity", L"é", L"--1"}) {
    EXPECT_EQ(number(text), 0) << text;
    EXPECT_FALSE(FieldOf(text).AsBool()) << text;
  }
  EXPECT_EQ(FieldOf(L"1e2").AsDouble(), 100);
  EXPECT_EQ(FieldOf(L"0.5").AsFloat(), 0.5f);
  EXPECT_EQ(FieldOf(L"300").AsChar(), 255);
  EXPECT_TRUE(FieldOf(L"T").AsBool() && FieldOf(L"true").AsBool() && FieldOf(L"-0.1").AsBool());
  EXPECT_FALSE(FieldOf(L"F").AsBool() || FieldOf(L"0").AsBool());
}

TEST(OdbcField, NumbersFromNumbers) {
  EXPECT_EQ(FieldOf(true).AsLong(), 1);
  EXPECT_EQ(FieldOf(false).AsDouble(), 0);
  EXPECT_EQ(FieldOf(70000).AsShort(), 32767);
  EXPECT_EQ(FieldOf(-1).AsChar(), 0);
  EXPECT_EQ(FieldOf(-2.9).AsInt(), -2);
  EXPECT_EQ(FieldOf(1e300).AsInt(), 2147483647);
  EXPECT_EQ(FieldOf(9.3e18).AsLong(), std::numeric_limits<long>::max());
  EXPECT_EQ(FieldOf(std::numeric_limits<double>::quiet_NaN()).AsInt(), 0);
  EXPECT_TRUE(FieldOf(0.25).AsBool());
  EXPECT_EQ(FieldOf('a').AsInt(), 97);
  EXPECT_EQ(FieldOf(CDBTimestamp{2024, 1, 2, 3, 4, 5, 6}).AsInt(), 0);
  const long large = 9007199254740993;  // no double
  EXPECT_EQ(static_cast<long>(FieldOf(large)), large);
  const int whole = FieldOf(7);
  const CString text = FieldOf(7);
  EXPECT_TRUE(whole == 7 && text == L"7");
}

TEST(OdbcField, Texts) {
  EXPECT_EQ(FieldOf(true).AsString(), L"T");
  EXPECT_EQ(FieldOf(false).AsString(), L"F");
  EXPECT_EQ(FieldOf('a').AsString(), L"a");
  EXPECT_EQ(FieldOf(static_cast<short>(-5)).AsString(), L"-5");
  EXPECT_EQ(FieldOf(-5000000000L).AsString(), L"-5000000000");
  EXPECT_EQ(FieldOf(0.1f).AsString(), L"0.100000");
  EXPECT_EQ(FieldOf(-2.0 / 3).AsString(), L"-0.666667");
  EXPECT_EQ(FieldOf(1e308).AsString().size(), 316u);
  EXPECT_EQ(CDBField().AsString(), L"");
  EXPECT_EQ(FieldOf(L"é€\U0001F0A1").AsBinary().bytes, "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x82\xA1");
  EXPECT_EQ(FieldOf(12).AsBinary().bytes, "12");
}

TEST(OdbcField, Dates) {
  const CDBTimestamp date = {2024, 2, 29, 7, 8, 9, 500000000};
  EXPECT_EQ(FieldOf(date).AsDate(), date);
  const char* const before = std::getenv("LC_ALL");
  const std::string kept = before == nullptr ? "C" : before;
  setenv("LC_ALL", "C", 1);
  EXPECT_EQ(FieldOf(date).AsString(), L"2024-02-29 07:08:09");
  setenv("LC_ALL", kept.c_str(), 1);
  EXPECT_EQ(FieldOf(L" 2024-02-29 07:08:09.5 ").AsDate(), date);
  EXPECT_EQ(FieldOf(L"2024-02-29T07:08:09.500000000").AsDate(), date);
  EXPECT_EQ(FieldOf(L"2024-12-31").AsDate(), (CDBTimestamp{2024, 12, 31, 0, 0, 0, 0}));
  EXPECT_EQ(FieldOf(L"23:59:58").AsDate(), (CDBTimestamp{0, 0, 0, 23, 59, 58, 0}));
  for (const wchar_t* text : {L"", L"x", L"2024-13-01", L"2023-02-29", L"2024-1", L"24:00:00",
                              L"2024-01-01 10:00:00.", L"2024-01-01 10:00:00 Z"}) {
    EXPECT_EQ(FieldOf(text).AsDate(), CDBTimestamp()) << text;
  }
}

}  // namespace
}  // namespace pokermath
