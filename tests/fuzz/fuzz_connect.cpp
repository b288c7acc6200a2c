// Any bytes as a connect string: a secret behind it never shows, however it is written, and one in
// braces that holds the bytes themselves is found in what a driver says.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/odbc/connect_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pokermath;
  const auto require = [](bool holds) {
    if (!holds) std::abort();
  };
  const CString bytes(data, data + size);
  const CString secret = L"\u0416QZQZ";  // not a byte
  for (const CString& part : {L"PWD=" + secret, L"PWD=\"a;" + secret + L";b\"",
                              L"Server=me:" + secret + L"@host", L"What={a;" + secret + L"}"}) {
    const CString connect = bytes + L";" + part;
    const CString shown = WithoutPasswords(connect);
    require(shown.find(secret) == shown.npos);
    require(WithoutPasswords(shown) == shown);
    const CString said = WithoutPasswordsOf(connect, bytes + L" near '" + secret + L"'");
    require(said.find(secret) == said.npos);
  }

  CString quoted = L"PWD={";
  for (const wchar_t c : bytes) quoted += c == L'}' ? CString(L"}}") : CString(1, c);
  quoted += L"};UID=me";
  require(WithoutPasswords(quoted) == L"PWD=***;UID=me");
  const bool visible = bytes.find_first_not_of(L" \t\r\n") != bytes.npos;
  if (visible && bytes.find(L'*') == bytes.npos) {
    // In the middle of a word only if it is long.
    const CString around = size >= 4 ? secret : L"'";
    const CString said = WithoutPasswordsOf(quoted, around + bytes + around);
    require(said.find(bytes) == said.npos);
  }
  return 0;
}
