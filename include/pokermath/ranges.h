// Random numbers for sampling; ranges of two-card hands will join them.

#ifndef POKERMATH_RANGES_H_
#define POKERMATH_RANGES_H_

#include <cstdint>

#include "pokermath/export.h"

/// Uniform integers of a closed interval, drawn from the C library's rand().
///
/// The generator behind it is the process's own: srand() seeds it for everybody.
class POKERMATH_EXPORT EasyRandom {
 public:
  EasyRandom(int low, int high) { SetInterval(low, high); }

  /// Draws from low..high from now on; low > high gives 0..1.
  void SetInterval(int low, int high);
  /// Seeds rand() from the calendar time.
  void SetTimerSeed();
  /// rand() mod the length of the interval, plus its low end.
  int DrawRandomNumber();

 private:
  int low_;
  int high_;
  std::int64_t span_;
};

#endif  // POKERMATH_RANGES_H_
