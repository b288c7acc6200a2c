// What a function requires of its caller: asserted in debug builds, nothing in release.

#ifndef POKERMATH_PLATFORM_REQUIRE_H_
#define POKERMATH_PLATFORM_REQUIRE_H_

#include <cassert>

#define POKERMATH_REQUIRE(condition) assert(condition)

#endif  // POKERMATH_PLATFORM_REQUIRE_H_
