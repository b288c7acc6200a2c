/// @file
/// Which version of pokermath this is. The build reads it from here.

#ifndef POKERMATH_VERSION_H_
#define POKERMATH_VERSION_H_

#include "pokermath/export.h"

/// @name The version of the headers that a host is compiled with
/// @{

/// The first number: of 1.2.3 the 1.
#define POKERMATH_VERSION_MAJOR 1
/// The second number: of 1.2.3 the 2.
#define POKERMATH_VERSION_MINOR 0
/// The third number: of 1.2.3 the 3.
#define POKERMATH_VERSION_PATCH 0
/// All three as text.
#define POKERMATH_VERSION_STRING "1.0.0"
/// One number for comparisons: 10203 is 1.2.3.
#define POKERMATH_VERSION \
  (POKERMATH_VERSION_MAJOR * 10000 + POKERMATH_VERSION_MINOR * 100 + POKERMATH_VERSION_PATCH)
/// @}

namespace pokermath {

/// The version of the library that the host runs with, "1.0.0". It lives as long as the program.
POKERMATH_EXPORT const char* Version();

}  // namespace pokermath

#endif  // POKERMATH_VERSION_H_
