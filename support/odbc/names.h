// Column names, and text as it comes from a driver.

#ifndef POKERMATH_SUPPORT_ODBC_NAMES_H_
#define POKERMATH_SUPPORT_ODBC_NAMES_H_

#include <string_view>

#include "pokermath/text.h"

namespace pokermath {

/// The text in upper case, whatever the locale of the program is.
CString UpperCase(CString text);

/// FromUtf8 into a text that keeps its memory.
void AssignUtf8(std::string_view bytes, CString& text);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_NAMES_H_
