// A connect string is "keyword=value;...", where a value in braces may hold semicolons, and a
// closing brace if it is doubled.
//
// Which values are secrets only the drivers know, so that we ask which are none: those of a few
// keywords, while they look harmless, are shown, and every other is hidden. People also write what
// no driver manager reads: values in quotes, URLs, braces that are not closed. What may belong to a
// hidden value by any such reading is hidden with it. A driver may repeat pieces of such values, as
// it has cut them, so that their words are looked for in what it says.

#include "support/odbc/connect_text.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace pokermath {
namespace {

using View = std::wstring_view;

constexpr View kStars = L"***";
constexpr View kBlanks = L" \t\r\n";

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

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsWordSign(wchar_t c) {
  return IsDigit(c) || (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == L'_' ||
         c > 0x7F;
}

// Keywords come as "User ID", "UserID" and "user_id".
CString Name(View keyword) {
  CString name = Lower(keyword);
  std::erase_if(name, [](wchar_t c) { return kBlanks.find(c) != View::npos || c == L'_'; });
  return name;
}

bool IsUserName(View name) {
  return name == L"uid" || name == L"user" || name == L"userid" || name == L"username";
}

bool IsKnown(View name) {
  constexpr View kKnown[] = {L"address",
                             L"app",
                             L"applicationname",
                             L"clientcharset",
                             L"maxlongvarcharsize",
                             L"maxvarcharsize",
                             L"option",
                             L"readonly",
                             L"tdsversion",
                             L"usedeclarefetch",
                             L"charset",
                             L"connecttimeout",
                             L"database",
                             L"datasource",
                             L"dbname",
                             L"dbq",
                             L"driver",
                             L"dsn",
                             L"encoding",
                             L"fetch",
                             L"filedsn",
                             L"host",
                             L"hostname",
                             L"initialcatalog",
                             L"journalmode",
                             L"port",
                             L"protocol",
                             L"schema",
                             L"server",
                             L"servername",
                             L"sslmode",
                             L"syncpragma",
                             L"timeout",
                             L"connectiontimeout",
                             L"logintimeout",
                             L"language",
                             L"trustedconnection",
                             L"querytimeout"};
  return IsUserName(name) || std::ranges::find(kKnown, name) != std::end(kKnown);
}

bool MentionsSecret(View text) {
  const CString lower = Lower(text);
  return std::ranges::any_of(std::initializer_list<View>{L"pwd", L"pass", L"secret", L"token",
                                                         L"credential", L"identified"},
                             [&lower](View word) { return lower.find(word) != CString::npos; });
}

// Of names with these words in them many are no secrets ("Mapping", "Keyset").
bool EndsInPinOrKey(View name) {
  name = name.substr(0, name.find_last_not_of(L"0123456789") + 1);
  return name.ends_with(L"pin") || name.ends_with(L"key");
}

bool IsSecretName(View name) { return MentionsSecret(name) || EndsInPinOrKey(name); }

// @param astray  whether it may be a piece of the value before it
bool IsKeyword(View text, bool astray) {
  const View word = Trimmed(text);
  if (word.empty() || IsKnown(Name(word))) return true;
  return (!astray || MentionsSecret(word)) && std::ranges::all_of(word, [](wchar_t c) {
           return c <= 0x7F && (IsWordSign(c) || c == L'-' || c == L'.');
         });
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

bool IsPort(View text) { return text.size() <= 5 && std::ranges::all_of(text, IsDigit); }

// "tcp:" and the like, and an address in brackets, that a server's name begins with.
std::size_t LengthOfServerStart(View value) {
  std::size_t length = 0;
  for (const View protocol : {L"tcp:", L"np:", L"lpc:", L"admin:"}) {
    if (Lower(value).starts_with(protocol)) length = protocol.size();
  }
  if (value.substr(length, 1) != L"[") return length;
  const std::size_t end = value.find_first_not_of(L"0123456789ABCDEFabcdef:.", length + 1);
  return end != value.npos && value[end] == L']' ? end + 1 : length;
}

// A colon goes before a port or after a drive, or begins a name such as SQLite's ":memory:"; else
// it may separate a user from his password.
bool HasHarmlessColons(View value) {
  const std::size_t start = LengthOfServerStart(value);
  for (std::size_t colon = value.find(L':', start == 0 ? 1 : start); colon != value.npos;
       colon = value.find(L':', colon + 1)) {
    const View behind = value.substr(colon + 1);
    const bool in_name = behind.empty() || behind[0] == L'/' || behind[0] == L'\\';
    if (!in_name && !IsPort(behind)) return false;
  }
  return true;
}

// In names of users and servers, and in numbers, a blank may go before what is none of it.
bool MayHaveBlanks(View name) {
  constexpr View kNames[] = {
      L"app", L"applicationname", L"database",       L"datasource", L"dbname", L"dbq", L"driver",
      L"dsn", L"filedsn",         L"initialcatalog", L"language",   L"schema"};
  return std::ranges::find(kNames, name) != std::end(kNames);
}

// What is no path may be a user with his password.
bool IsPath(View value) {
  return value.find(L'/') == value.npos || value[0] == L'/' || value[0] == L'.' ||
         value.substr(1, 1) == L":";
}

bool MayBeShown(View keyword, View value) {
  const CString name = Name(keyword);
  const CString plain = Plain(value);
  if (MentionsSecret(name)) return false;
  if (Trimmed(plain).empty()) return true;
  if (EndsInPinOrKey(name)) return false;
  const CString lower = Lower(plain);
  for (const View harmless : {L"0", L"1", L"no", L"yes", L"false", L"true"}) {
    if (lower == harmless) return true;
  }
  if (!MayHaveBlanks(name) && plain.find(L' ') != plain.npos) return false;
  if (name == L"dbq" && !IsPath(plain)) return false;
  const View signs = IsUserName(name) ? L" ._-@\\$" : L" ._-/\\:,+~()[]#$";
  return IsKnown(name) && HasHarmlessColons(plain) && !MentionsSecret(plain) &&
         std::ranges::all_of(
             plain, [signs](wchar_t c) { return IsWordSign(c) || signs.find(c) != signs.npos; });
}

// Where the value ends that begins at `begin`: at a semicolon or at the end of the text. One that
// begins with braces or quotes and does not end with them goes on to the end.
std::size_t EndOfValue(View connect, std::size_t begin) {
  const std::size_t size = connect.size();
  const std::size_t first = std::min(connect.find_first_not_of(kBlanks, begin), size);
  std::size_t at = first;
  if (connect.substr(first, 1) == L"{") {
    for (++at; at < size; ++at) {
      if (connect[at] != L'}') continue;
      if (connect.substr(at + 1, 1) != L"}") break;
      ++at;
    }
    const std::size_t behind = connect.find_first_not_of(kBlanks, at + 1);
    return behind != connect.npos && connect[behind] == L';' ? behind : size;
  }
  std::size_t quote = connect.npos;  // where the last one was opened, while it is open
  for (; at < size; ++at) {
    const wchar_t c = connect[at];
    if (quote == connect.npos) {
      if (c == L';') return at;
      if (c == L'"' || c == L'\'') quote = at;
    } else if (c == L'\\') {
      ++at;
    } else if (c == connect[quote]) {
      quote = connect.npos;
    }
  }
  // In the middle of a value it may be an apostrophe.
  return quote == connect.npos || quote == first ? size : std::min(connect.find(L';', quote), size);
}

// A part of the connect string that is not to be shown.
struct Hidden {
  std::size_t begin, end;
  bool password;  // for certain
};

std::vector<Hidden> HiddenParts(View connect) {
  std::vector<Hidden> found;
  bool astray = false;
  for (std::size_t at = 0; at < connect.size();) {
    const std::size_t sign = std::min(connect.find_first_of(L"=;", at), connect.size());
    const View keyword = connect.substr(at, sign - at);
    const bool has_value = connect.substr(sign, 1) == L"=" && IsKeyword(keyword, astray);
    const std::size_t begin = has_value ? sign + 1 : at;
    const std::size_t end = EndOfValue(connect, begin);
    const View value = Trimmed(connect.substr(begin, end - begin));
    at = end + 1;
    if (!has_value && value.empty()) continue;
    const bool shown = has_value && MayBeShown(keyword, value);
    if (!shown) found.push_back({begin, end, has_value && IsSecretName(Name(keyword))});
    // A semicolon that is in no braces may have been meant to belong to the value.
    astray = !shown && !value.starts_with(L'{') && value != kStars;
  }
  return found;
}

// A text of a URL without its %-codes.
CString Decoded(View text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string code = ToUtf8(text.substr(i, 3));
    unsigned value = 0;
    const char* const end = code.data() + code.size();
    if (code.size() == 3 && code[0] == '%' &&
        std::from_chars(code.data() + 1, end, value, 16).ptr == end) {
      bytes += static_cast<char>(value);
      i += 2;
    } else {
      bytes += ToUtf8(text.substr(i, 1));
    }
  }
  return FromUtf8(bytes);
}

struct Piece {
  View raw;
  CString plain;  // without the backslashes that go before signs that stand for themselves
};

// The piece from `at` to before one of `ends`, where `at` is then.
Piece ReadUntil(View ends, View value, std::size_t& at) {
  const std::size_t begin = at;
  CString plain;
  for (; at < value.size() && ends.find(value[at]) == ends.npos; ++at) {
    if (value[at] == L'\\' && at + 1 < value.size()) ++at;
    plain += value[at];
  }
  return {value.substr(begin, at - begin), plain};
}

// What is to be hidden in other texts.
class Secrets {
 public:
  explicit Secrets(View connect) {
    for (const Hidden& part : HiddenParts(connect)) {
      const View value = Trimmed(connect.substr(part.begin, part.end - part.begin));
      const CString plain = Plain(value);
      // A small number, such as that of an option, is in many texts.
      if (!part.password && plain.size() < kShortest && std::ranges::all_of(plain, IsDigit)) {
        continue;
      }
      AddValue(value, part.password);
      if (plain != value) AddValue(plain, part.password);
    }
  }

  CString HideIn(const CString& text) const {
    const CString folded = Lower(text);  // a database may have folded them
    std::vector<bool> hidden(text.size());
    for (const auto& [secret, anywhere] : anywhere_) {
      for (std::size_t at = folded.find(secret); at != folded.npos;
           at = folded.find(secret, at + 1)) {
        const std::size_t end = at + secret.size();
        const bool alone = (at == 0 || !IsWordSign(text[at - 1])) &&
                           (end == text.size() || !IsWordSign(text[end]));
        if (!anywhere && !alone) continue;
        std::fill_n(hidden.begin() + static_cast<std::ptrdiff_t>(at), secret.size(), true);
      }
    }
    CString shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (!hidden[i]) {
        shown += text[i];
      } else if (i == 0 || !hidden[i - 1]) {
        shown += kStars;
      }
    }
    return shown;
  }

 private:
  void AddValue(View value, bool password) {
    Add(value, true);
    AddQuoted(value);
    AddFromUrl(value);
    // A parser of options cuts at blanks; others may cut at any sign.
    AddWords(value, L" \t\r\n=", password);
    AddWords(value, L" \t\r\n=;:,@/?&(){}[]<>|'\"", password);
  }

  // One of a few letters stands in many words, and starring those would give it away.
  static constexpr std::size_t kShortest = 4;

  void Add(View text, bool anywhere) {
    if (Trimmed(text).empty()) return;
    anywhere = anywhere && text.size() >= kShortest;
    anywhere_[Lower(text)] |= anywhere;
    if (text.find(L'%') != text.npos) anywhere_[Lower(Decoded(text))] |= anywhere;
    if (text.find_first_of(L"'\"") == text.npos) return;
    // What stands for it in a statement.
    CString single, twice, escaped;
    for (const wchar_t c : text) {
      single += c == L'\'' ? CString(2, c) : CString(1, c);
      twice += c == L'"' ? CString(2, c) : CString(1, c);
      escaped += c == L'\'' ? CString{L'\\', c} : CString(1, c);
    }
    for (const CString& form : {single, twice, escaped}) anywhere_[Lower(form)] |= anywhere;
  }

  void Add(const Piece& piece, bool anywhere) {
    Add(piece.raw, anywhere);
    if (piece.plain != piece.raw) Add(piece.plain, anywhere);
  }

  void AddQuoted(View value) {
    std::size_t at = value.find_first_of(L"'\"");
    while (at < value.size()) {
      const View quote = value.substr(at, 1);
      Add(ReadUntil(quote, value, ++at), true);
      at = value.find_first_of(L"'\"", at + 1);
    }
  }

  // user:password@host, where the password may hold colons and at signs.
  void AddFromUrl(View value) {
    const std::size_t scheme = value.find(L"://");
    const std::size_t begin = scheme == value.npos ? 0 : scheme + 3;
    for (const std::size_t end : {value.find(L'@', begin), value.rfind(L'@')}) {
      for (const std::size_t colon : {value.find(L':', begin), value.rfind(L':', end)}) {
        if (end != value.npos && colon < end) {
          Add(value.substr(colon + 1, end - colon - 1), true);
        }
      }
    }
  }

  // @param password  whether short words are secret as well
  void AddWords(View value, View ends, bool password) {
    bool announced = false;
    for (std::size_t at = 0; at < value.size(); ++at) {
      const Piece word = ReadUntil(ends, value, at);
      if (word.raw.empty()) continue;
      const CString name = Name(word.raw);
      const bool ordinary = IsKnown(name) || name == L"password" || name == L"pwd";
      if (!ordinary && (password || word.raw.size() >= kShortest)) Add(word, announced);
      announced = MentionsSecret(name);
      password |= announced;
    }
  }

  std::map<CString, bool> anywhere_;  // else only as a word
};

// Any word with an equals sign may be one, but for an option such as "--bord=2c3d4h".
bool MayBeConnectString(View word) {
  const std::size_t sign = word.find(L'=');
  if (sign == word.npos) return false;
  return !word.starts_with(L"--") || word.find(L'=', sign + 1) != word.npos ||
         MentionsSecret(word) || EndsInPinOrKey(Name(word.substr(0, sign)));
}

}  // namespace

CString WithoutPasswords(const CString& connect) {
  CString shown;
  std::size_t done = 0;
  for (const Hidden& part : HiddenParts(connect)) {
    shown.append(connect, done, part.begin - done).append(kStars);
    done = part.end;
  }
  return shown.append(connect, done);
}

CString WithoutPasswordsInWord(const CString& word) {
  const bool url = word.find(L':') < word.find(L'@') && word.find(L'@') != word.npos;
  return url || MayBeConnectString(word) ? WithoutPasswords(word) : word;
}

CString WithoutPasswordsOf(const CString& connect, const CString& text) {
  return Secrets(connect).HideIn(text);
}

}  // namespace pokermath
