// The intrinsics of x86-64, without the warnings of g++ 12 about its own header: it makes undefined
// registers of themselves.

#ifndef POKERMATH_PLATFORM_INTRINSICS_H_
#define POKERMATH_PLATFORM_INTRINSICS_H_

#if defined(__x86_64__)
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
#endif

#endif  // POKERMATH_PLATFORM_INTRINSICS_H_
