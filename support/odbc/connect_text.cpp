// A connect string is "keyword=value;...", where a value in braces may hold semicolons, and a
// closing brace if it is doubled.

#include "support/odbc/connect_text.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace pokermath {
namespace {

using View = std::wstring_view;

constexpr View kStars = L"***";

// A part of the connect string: from one place to before another.
struct Span {
  std::size_t begin, end;
};

CString Lower(View text) {
  CString lower(text);
  for (wchar_t& c : lower) {
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
  }
  return lower;
}

View Trimmed(View text) {
  const std::size_t begin = std::min(text.find_first_not_of(L" \t\r\n"), text.size());
  return text.substr(begin, text.find_last_not_of(L" \t\r\n") + 1 - begin);
}

// Where the value ends that begins at `begin`: at a semicolon or at the end of the text.
std::size_t EndOfValue(View connect, std::size_t begin) {
  std::size_t at = std::min(connect.find_first_not_of(L" \t\r\n", begin), connect.size());
  if (at < connect.size() && connect[at] == L'{') {
    for (++at; at < connect.size(); ++at) {
      if (connect[at] != L'}') continue;
      if (connect.substr(at + 1, 1) != L"}") break;
      ++at;
    }
  }
  return std::min(connect.find(L';', at), connect.size());
}

// Options for the server may bring a password as well: pqopt={password=...}.
bool IsSecret(View keyword, View value) {
  const CString key = Lower(Trimmed(keyword));
  if (key.ends_with(L"pwd") || key.ends_with(L"password")) return true;
  const CString inside = Lower(value);
  return inside.find(L"password=") != inside.npos || inside.find(L"pwd=") != inside.npos;
}

std::vector<Span> Passwords(View connect) {
  std::vector<Span> found;
  for (std::size_t at = 0; at < connect.size();) {
    const std::size_t sign = connect.find_first_of(L"=;", at);
    if (sign == connect.npos) break;
    at = sign + 1;
    if (connect[sign] == L';') continue;
    const std::size_t key = connect.rfind(L';', sign) + 1;  // npos + 1 is 0
    const std::size_t end = EndOfValue(connect, at);
    if (IsSecret(connect.substr(key, sign - key), connect.substr(at, end - at))) {
      found.push_back({at, end});
    }
    at = std::min(end + 1, connect.size());
  }
  return found;
}

// The value without its braces.
CString Plain(View value) {
  value = Trimmed(value);
  if (!value.starts_with(L'{')) return CString(value);
  value.remove_prefix(1);
  if (value.ends_with(L'}')) value.remove_suffix(1);
  CString plain;
  for (std::size_t i = 0; i < value.size(); ++i) {
    plain += value[i];
    if (value.substr(i, 2) == L"}}") ++i;
  }
  return plain;
}

void ReplaceAll(CString& text, View what) {
  // A password of a few letters stands in many words, and starring those would give it away.
  constexpr std::size_t kShortest = 4;
  if (what.size() < kShortest) return;
  for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at)) {
    text.replace(at, what.size(), kStars);
    at += kStars.size();
  }
}

}  // namespace

CString WithoutPasswords(const CString& connect) {
  CString shown;
  std::size_t done = 0;
  for (const Span& password : Passwords(connect)) {
    shown.append(connect, done, password.begin - done).append(kStars);
    done = password.end;
  }
  return shown.append(connect, done);
}

CString WithoutPasswordsOf(const CString& connect, CString text) {
  for (const Span& password : Passwords(connect)) {
    const CString value = connect.substr(password.begin, password.end - password.begin);
    ReplaceAll(text, Trimmed(value));
    ReplaceAll(text, Plain(value));
  }
  return text;
}

}  // namespace pokermath
