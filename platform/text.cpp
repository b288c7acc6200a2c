#include "platform/text.h"

#include <utf8/unchecked.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "pokermath/text.h"

namespace pokermath {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Windows-1252 differs from Latin-1 in these 32 places; the five unused bytes stay control codes.
constexpr wchar_t kWindows1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The end of what was written.
wchar_t* DecodeUtf8(std::string_view bytes, wchar_t* out) {
  if (utf8::is_valid(bytes.begin(), bytes.end())) {
    return utf8::unchecked::utf8to32(bytes.begin(), bytes.end(), out);
  }
  std::string valid;
  utf8::unchecked::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(valid),
                                   kReplacement);
  return utf8::unchecked::utf8to32(valid.begin(), valid.end(), out);
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (const wchar_t wide : text) {
    const auto code = static_cast<char32_t>(wide);
    const bool valid = code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
    utf8::unchecked::append(valid ? code : kReplacement, std::back_inserter(bytes));
  }
  return bytes;
}

wchar_t FromWindows1252(char narrow) {
  const auto byte = static_cast<unsigned char>(narrow);
  return byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : static_cast<wchar_t>(byte);
}

std::wstring FromWindows1252(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](char byte) { return FromWindows1252(byte); });
  return text;
}

std::size_t WidenAscii(std::string_view bytes, wchar_t* out) {
  // Whole blocks without a branch inside, so that the compiler makes vectors of them.
  constexpr std::size_t kBlock = 16;
  std::size_t done = 0;
  for (; bytes.size() - done >= kBlock; done += kBlock) {
    unsigned all = 0;
    for (std::size_t i = done; i < done + kBlock; ++i) {
      const auto byte = static_cast<unsigned char>(bytes[i]);
      out[i] = byte;
      all |= byte;
    }
    if (all >= 0x80) break;
  }
  for (; done < bytes.size() && static_cast<unsigned char>(bytes[done]) < 0x80; ++done) {
    out[done] = static_cast<wchar_t>(bytes[done]);
  }
  return done;
}

std::wstring FromUtf8(std::string_view bytes) {
  // Nothing has more characters than bytes.
  std::wstring text(bytes.size(), L'\0');
  wchar_t* end = text.data();
  while (!bytes.empty()) {
    const std::size_t plain = WidenAscii(bytes, end);
    end += plain;
    bytes.remove_prefix(plain);
    // What is not ASCII stands by itself: no sequence, valid or not, goes on behind an ASCII byte.
    const std::string_view other(
        bytes.begin(), std::find_if(bytes.begin(), bytes.end(),
                                    [](char byte) { return static_cast<signed char>(byte) >= 0; }));
    end = DecodeUtf8(other, end);
    bytes.remove_prefix(other.size());
  }
  text.resize(static_cast<std::size_t>(end - text.data()));
  return text;
}

std::wstring OnOneLine(std::wstring text) {
  const auto between = [](wchar_t c, wchar_t low, wchar_t high) { return c >= low && c <= high; };
  for (wchar_t& c : text) {
    const bool control = c < 0x20 || between(c, 0x7F, 0x9F);
    const bool line_end = between(c, 0x2028, 0x2029);
    const bool direction =
        between(c, 0x200E, 0x200F) || between(c, 0x202A, 0x202E) || between(c, 0x2066, 0x2069);
    if (control || line_end || direction) c = L'?';
  }
  return text;
}

}  // namespace pokermath

void charTOwchar(const char* text, wchar_t*& out) {
  const std::size_t length = std::strlen(text);
  out = new wchar_t[length + 1];
  for (std::size_t i = 0; i <= length; ++i) out[i] = pokermath::FromWindows1252(text[i]);
}
