// What may be shown of a connect string.

#ifndef POKERMATH_SUPPORT_ODBC_CONNECT_TEXT_H_
#define POKERMATH_SUPPORT_ODBC_CONNECT_TEXT_H_

#include "pokermath/text.h"

namespace pokermath {

/// The connect string with *** for every password.
CString WithoutPasswords(const CString& connect);

/// The text with *** wherever a password of the connect string stands in it; one of less than four
/// characters only where it is a word of its own.
CString WithoutPasswordsOf(const CString& connect, CString text);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_CONNECT_TEXT_H_
