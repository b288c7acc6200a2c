// std::mutex, also where there are no threads and standard libraries have none.

#ifndef POKERMATH_PLATFORM_MUTEX_H_
#define POKERMATH_PLATFORM_MUTEX_H_

#if defined(__wasm__)
namespace pokermath {
class Mutex {
 public:
  void lock() {}
  void unlock() {}
};
}  // namespace pokermath
#else
#include <mutex>
namespace pokermath {
using Mutex = std::mutex;
}  // namespace pokermath
#endif

#endif  // POKERMATH_PLATFORM_MUTEX_H_
