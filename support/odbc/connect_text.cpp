// A connect string is "keyword=value;...", where a value in braces may hold semicolons, and a
// closing brace if it is doubled.

#include "support/odbc/connect_text.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace pokermath {
namespace {

using View = std::wstring_view;

constexpr View kStars = L"***";
constexpr View kBlanks = L" \t\r\n";

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
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

// Where the value ends that begins at `begin`: at a semicolon or at the end of the text.
std::size_t EndOfValue(View connect, std::size_t begin) {
  std::size_t at = std::min(connect.find_first_not_of(kBlanks, begin), connect.size());
  if (at < connect.size() && connect[at] == L'{') {
    for (++at; at < connect.size(); ++at) {
      if (connect[at] != L'}') continue;
      if (connect.substr(at + 1, 1) != L"}") break;
      ++at;
    }
  }
  return std::min(connect.find(L';', at), connect.size());
}

bool IsSecret(View keyword) {
  const CString key = Lower(Trimmed(keyword));
  return key.ends_with(L"pwd") || key.ends_with(L"password") || key.ends_with(L"passwd");
}

// The passwords inside a value: options for the server may bring one, as in
// pqopt={password = 'x' host=y}. There a backslash goes before a sign that stands for itself.
//
// @param ends  what one that is not quoted ends at
std::vector<CString> NestedPasswords(View value, View ends) {
  std::vector<CString> found;
  for (std::size_t sign = value.find(L'='); sign != value.npos; sign = value.find(L'=', sign + 1)) {
    if (!IsSecret(value.substr(0, sign))) continue;
    View rest = Trimmed(value.substr(sign + 1));
    const bool quoted = rest.starts_with(L'\'') || rest.starts_with(L'"');
    const View end = quoted ? rest.substr(0, 1) : ends;
    if (quoted) rest.remove_prefix(1);
    CString plain;
    std::size_t at = 0;
    for (; at < rest.size() && end.find(rest[at]) == end.npos; ++at) {
      if (rest[at] == L'\\' && at + 1 < rest.size()) ++at;
      plain += rest[at];
    }
    found.emplace_back(rest.substr(0, at));
    found.push_back(plain);
  }
  return found;
}

// The values of a connect string that are not to be shown.
std::vector<Span> Passwords(View connect) {
  std::vector<Span> found;
  for (std::size_t at = 0; at < connect.size();) {
    const std::size_t sign = connect.find_first_of(L"=;", at);
    if (sign == connect.npos) break;
    at = sign + 1;
    if (connect[sign] == L';') continue;
    const std::size_t key = connect.rfind(L';', sign) + 1;  // npos + 1 is 0
    const std::size_t end = EndOfValue(connect, at);
    if (IsSecret(connect.substr(key, sign - key)) ||
        !NestedPasswords(connect.substr(at, end - at), kBlanks).empty()) {
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

bool IsWordSign(wchar_t c) {
  return (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') ||
         c == L'_' || c > 0x7F;
}

// Adds to passwords with quotes in them what stands for them in a statement.
void AddQuoted(std::vector<CString>& secrets) {
  for (std::size_t i = 0, count = secrets.size(); i < count; ++i) {
    if (secrets[i].find_first_of(L"'\"") == CString::npos) continue;
    CString single, twice, escaped;
    for (const wchar_t c : secrets[i]) {
      single += c == L'\'' ? CString(2, c) : CString(1, c);
      twice += c == L'"' ? CString(2, c) : CString(1, c);
      escaped += c == L'\'' ? CString{L'\\', c} : CString(1, c);
    }
    for (CString* form : {&single, &twice, &escaped}) secrets.push_back(std::move(*form));
  }
}

// Whatever the case of its letters: a database may have folded them.
void ReplaceAll(CString& text, View what) {
  // One of a few letters stands in many words, and starring those would give it away: it is hidden
  // where it stands alone.
  constexpr std::size_t kShortest = 4;
  const bool alone = what.size() < kShortest;
  CString folded = Lower(text);
  const CString sought = Lower(what);
  for (std::size_t at = folded.find(sought); at != text.npos; at = folded.find(sought, at)) {
    const std::size_t end = at + what.size();
    if (alone &&
        ((at > 0 && IsWordSign(text[at - 1])) || (end < text.size() && IsWordSign(text[end])))) {
      ++at;
      continue;
    }
    text.replace(at, what.size(), kStars);
    folded.replace(at, what.size(), kStars);
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
  std::vector<CString> secrets;
  for (const Span& password : Passwords(connect)) {
    const View value = View(connect).substr(password.begin, password.end - password.begin);
    const CString plain = Plain(value);
    secrets.emplace_back(Trimmed(value));
    secrets.push_back(plain);
    // Where the braces have not been closed, the value itself may go on behind a semicolon.
    for (CString& nested : NestedPasswords(value, L" \t\r\n;}")) {
      secrets.push_back(std::move(nested));
    }
    for (CString& nested : NestedPasswords(plain, kBlanks)) secrets.push_back(std::move(nested));
  }
  AddQuoted(secrets);
  // One may be a part of another.
  std::ranges::sort(secrets, std::ranges::greater(), &CString::size);
  for (const CString& secret : secrets) {
    if (!Trimmed(secret).empty()) ReplaceAll(text, secret);
  }
  return text;
}

}  // namespace pokermath
