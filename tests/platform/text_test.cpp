#include "platform/text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/messages.h"
#include "pokermath/text.h"

namespace pokermath {
namespace {

TEST(Text, OnOneLineHasNothingThatBreaksOrTurnsIt) {
  EXPECT_EQ(OnOneLine(L"A\u2660 Kh \u00e4\u4e2d"), L"A\u2660 Kh \u00e4\u4e2d");
  for (const wchar_t c : {L'\n', L'\r', L'\t', L'\x1b', L'\x7f', L'\x85', L'\u2028', L'\u2029',
                          L'\u202e', L'\u2066', L'\u200f'}) {
    EXPECT_EQ(OnOneLine(std::wstring(L"a") + c + L"b"), L"a?b") << static_cast<int>(c);
  }
}

TEST(Text, EveryUnicodeCharacterSurvivesUtf8) {
  std::wstring all;
  for (int code = 0; code <= 0x10FFFF; ++code) {
    if (code < 0xD800 || code > 0xDFFF) all += static_cast<wchar_t>(code);
  }
  const std::string bytes = ToUtf8(all);
  EXPECT_EQ(bytes.size(), 0x80u + 2 * 0x780u + 3 * 0xF000u + 4 * 0x100000u);
  EXPECT_TRUE(FromUtf8(bytes) == all);
  EXPECT_EQ(ToUtf8(L"A\u2660\U0001F0A1"), "A\xE2\x99\xA0\xF0\x9F\x82\xA1");
}

TEST(Text, WhatIsNoCharacterBecomesTheReplacement) {
  const wchar_t no_characters[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xDFFF),
                                   static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1)};
  for (const wchar_t code : no_characters) {
    EXPECT_EQ(ToUtf8(std::wstring{L'a', code, L'b'}),
              "a\xEF\xBF\xBD"
              "b");
  }
  const std::string bad_bytes[] = {
      "\x80", "\xFF", "\xC0\xAF", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF0\x9F\x82"};
  for (const std::string& bad : bad_bytes) {
    EXPECT_EQ(FromUtf8("a" + bad + "b"), L"a\uFFFDb") << ::testing::PrintToString(bad);
    EXPECT_EQ(FromUtf8("a" + bad), L"a\uFFFD") << ::testing::PrintToString(bad);
  }
}

TEST(Text, NarrowTextIsWindows1252) {
  wchar_t* wide = nullptr;
  charTOwchar("Az\x80\x8A\x9F\xA0\xE9\xFF", wide);
  const std::unique_ptr<wchar_t[]> owner(wide);
  EXPECT_EQ(std::wstring(wide), L"Az\u20AC\u0160\u0178\u00A0\u00E9\u00FF");
  charTOwchar("", wide);
  const std::unique_ptr<wchar_t[]> empty(wide);
  EXPECT_EQ(wide[0], L'\0');
}

TEST(Messages, GoToTheHandlerElseToStandardError) {
  CString heard;
  SetMessageHandler([&](const CString& text) {
    heard = text;
    SetMessageHandler({});  // a handler may do that: no lock is held while it runs
  });
  ShowMessage(L"two\nlines \u2660");
  EXPECT_EQ(heard, L"two\nlines \u2660");

  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  ::testing::internal::CaptureStderr();
  ShowMessage(L"one\nline \u2660");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "one line \xE2\x99\xA0\n");
}

}  // namespace
}  // namespace pokermath
