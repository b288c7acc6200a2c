// What may be shown of a connect string.

#ifndef POKERMATH_SUPPORT_ODBC_CONNECT_TEXT_H_
#define POKERMATH_SUPPORT_ODBC_CONNECT_TEXT_H_

#include "pokermath/text.h"

namespace pokermath {

/// The connect string with *** for every value that may be a secret: those of well-known keywords
/// (Driver, DSN, Server, Database, Uid ...) that look as such values do, and switches, are shown.
CString WithoutPasswords(const CString& connect);

/// A word of the user that may be a connect string in the wrong place (it has an equals sign and is
/// no option with a harmless name, or user:password@), as WithoutPasswords shows it; any other word
/// as it is.
CString WithoutPasswordsInWord(const CString& word);

/// The text with *** wherever it repeats what WithoutPasswords hides of the connect string: a whole
/// value, one in quotes inside it, or a word of it. One of less than four characters, or any word,
/// is hidden only where it stands alone, and a number of less than four digits only if its keyword
/// names a secret.
CString WithoutPasswordsOf(const CString& connect, const CString& text);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_ODBC_CONNECT_TEXT_H_
