/// @file
/// What this machine is, for the log of a host: the first thing to ask when a user reports that
/// something is slow or wrong. Less than a millisecond; any number of threads.

#ifndef POKERMATH_DIAGNOSTICS_H_
#define POKERMATH_DIAGNOSTICS_H_

#include "pokermath/export.h"
#include "pokermath/text.h"

/// Appends a description of the operating system to a text file, in UTF-8, under a line with date
/// and time: its name and version, kernel, C library, memory and large pages, locale. The file is
/// made if there is none. What cannot be found out is left out.
///
/// @return 1; 0 and a message if the file cannot be opened or written
POKERMATH_EXPORT int OSInfoLog(const CString& path);

/// The same of the processor: model, processors and cores, caches, the instruction sets that the
/// library can use, and for which of them its kernels run.
POKERMATH_EXPORT int CPUInfoLog(const CString& path);

namespace pokermath {

/// What OSInfoLog writes, as text, a fact a line: "name            Debian GNU/Linux".
POKERMATH_EXPORT CString DescribeOs();
/// What CPUInfoLog writes, likewise.
POKERMATH_EXPORT CString DescribeCpu();

}  // namespace pokermath

#endif  // POKERMATH_DIAGNOSTICS_H_
