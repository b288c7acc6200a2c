/// @file
/// The text, list and integer types of the interface.

#ifndef POKERMATH_TEXT_H_
#define POKERMATH_TEXT_H_

#include <cstdint>
#include <string>
#include <vector>

#include "pokermath/export.h"

/// Text of the interface: wide characters, a code point each.
using CString = std::wstring;
/// A list of texts.
using CStringArray = std::vector<std::wstring>;
#if !defined(__int64) && !defined(_MSC_EXTENSIONS)  // some compilers and hosts bring their own
/// A whole number of 64 bits.
using __int64 = std::int64_t;
#endif

/// Converts a NUL-terminated Windows-1252 text to wide text.
///
/// @param text  narrow text, one byte a character; not null
/// @param out   out: a new NUL-terminated array; the caller owns it and frees it with delete[]
POKERMATH_EXPORT void charTOwchar(const char* text, wchar_t*& out);

#endif  // POKERMATH_TEXT_H_
