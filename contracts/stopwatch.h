// Time taken, as contracts report it.

#ifndef POKERMATH_CONTRACTS_STOPWATCH_H_
#define POKERMATH_CONTRACTS_STOPWATCH_H_

#include <chrono>

namespace pokermath {

class Stopwatch {
 public:
  int Milliseconds() const {
    return static_cast<int>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start_).count());
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
};

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_STOPWATCH_H_
