/// @file
/// Services for a host that keeps a log and other files beside its program. Any number of threads,
/// but for a log one at a time.

#ifndef POKERMATH_UTILITIES_H_
#define POKERMATH_UTILITIES_H_

#include <cstdint>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// Cuts a file of `limitBytes` or more down to its last `keepBytes` bytes, in place: a program that
/// has it open for appending goes on writing to it. Of 2^32 and more the low 32 bits count, from
/// where all of them would begin. Where that is not possible the file is as it
/// was. What is written while this runs may be lost.
///
/// @throws std::system_error when keepBytes is more than the file has; the file is as it was
POKERMATH_EXPORT void TrimLogFile(CString path, std::uint64_t keepBytes, std::uint64_t limitBytes);

/// The folder of the running program, without a slash at its end.
///
/// Of a program's path only the first 259 characters are looked at: of a longer one the folder is
/// another.
/// @param buffer  out: the same; room for 260 characters, of which one ends the text
POKERMATH_EXPORT CString GetExecDir(wchar_t* buffer);

/// The system's text for an error code and a line end; "No text found for this error number" for a
/// code that it does not know.
POKERMATH_EXPORT void ErrorShow(unsigned long code, CString& text);

#endif  // POKERMATH_UTILITIES_H_
