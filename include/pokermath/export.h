/// @file
/// POKERMATH_EXPORT marks what a host may use. Everything else is hidden in the shared library.

#ifndef POKERMATH_EXPORT_H_
#define POKERMATH_EXPORT_H_

/// Stands before what is exported.
#define POKERMATH_EXPORT __attribute__((visibility("default")))

#endif  // POKERMATH_EXPORT_H_
