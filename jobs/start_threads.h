// Threads, as many as the system gives.

#ifndef POKERMATH_JOBS_START_THREADS_H_
#define POKERMATH_JOBS_START_THREADS_H_

#include <system_error>
#include <thread>
#include <vector>

namespace pokermath {

/// Starts threads that do `act(their number)`, and returns how many there are: where the system has
/// no more of them, those that run do the work. Throws std::system_error if there is none.
template <typename Act>
int StartThreads(int count, std::vector<std::jthread>& threads, const Act& act) {
  threads.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    try {
      threads.emplace_back(act, i);
    } catch (const std::system_error&) {
      if (threads.empty()) throw;
      break;
    }
  }
  return static_cast<int>(threads.size());
}

}  // namespace pokermath

#endif  // POKERMATH_JOBS_START_THREADS_H_
