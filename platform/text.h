// Conversion between wide text and bytes.

#ifndef POKERMATH_PLATFORM_TEXT_H_
#define POKERMATH_PLATFORM_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace pokermath {

/// Wide text as UTF-8; what is no Unicode character becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// Converts the ASCII characters at the start of `bytes`, fast; their number. `out` has room for as
/// many as there are bytes, of which those behind the number are spoilt.
std::size_t WidenAscii(std::string_view bytes, wchar_t* out);

/// UTF-8 as wide text; every invalid sequence becomes U+FFFD.
std::wstring FromUtf8(std::string_view bytes);

/// Windows-1252 as wide text; the five unused bytes stay control codes.
wchar_t FromWindows1252(char byte);
std::wstring FromWindows1252(std::string_view bytes);

/// The text with '?' for every character that would break a line or turn its direction.
std::wstring OnOneLine(std::wstring text);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_TEXT_H_
