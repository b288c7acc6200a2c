// Conversion between wide text and bytes.

#ifndef POKERMATH_PLATFORM_TEXT_H_
#define POKERMATH_PLATFORM_TEXT_H_

#include <string>
#include <string_view>

namespace pokermath {

/// Wide text as UTF-8; what is no Unicode character becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// UTF-8 as wide text; every invalid sequence becomes U+FFFD.
std::wstring FromUtf8(std::string_view bytes);

/// Windows-1252 as wide text; the five unused bytes stay control codes.
wchar_t FromWindows1252(char byte);
std::wstring FromWindows1252(std::string_view bytes);

/// The text with '?' for every character that would break a line or turn its direction.
std::wstring OnOneLine(std::wstring text);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_TEXT_H_
