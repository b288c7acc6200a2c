// Which version of pokermath this is. The build reads it from here.

#ifndef POKERMATH_VERSION_H_
#define POKERMATH_VERSION_H_

#include "pokermath/export.h"

// Of the headers that a host is compiled with.
#define POKERMATH_VERSION_MAJOR 0
#define POKERMATH_VERSION_MINOR 1
#define POKERMATH_VERSION_PATCH 0
#define POKERMATH_VERSION_STRING "0.1.0"
/// One number for comparisons: 10203 is 1.2.3.
#define POKERMATH_VERSION \
  (POKERMATH_VERSION_MAJOR * 10000 + POKERMATH_VERSION_MINOR * 100 + POKERMATH_VERSION_PATCH)

namespace pokermath {

/// The version of the library that the host runs with, "0.1.0".
POKERMATH_EXPORT const char* Version();

}  // namespace pokermath

#endif  // POKERMATH_VERSION_H_
