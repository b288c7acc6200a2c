// Long work on a thread of its own, while the thread of Python that asked for it looks after
// signals and progress.

#ifndef POKERMATH_PYTHON_ATTEND_H_
#define POKERMATH_PYTHON_ATTEND_H_

#include <pybind11/pybind11.h>

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace pokermath {

/// What work says of itself while it is attended, and what it is told.
struct Attention {
  std::atomic<bool> stop = false;      ///< nobody waits any more
  std::atomic<std::int64_t> done = 0;  ///< steps, or trials
  std::atomic<double> part = 0;        ///< 0..1
};

/// Runs work on a thread of its own, without the interpreter's lock. The caller holds the lock, and
/// holds it again on return.
///
/// What the work throws is thrown here. If a signal's handler or `progress` raises, the work is
/// told to stop and left behind: it has to own all that it uses, and may touch nothing of Python.
///
/// @param progress  None, or called now and then with what is done and which part of all that is
void Attend(std::function<void(Attention&)> work, const pybind11::object& progress);

/// The same for work with a result.
template <typename Work>
auto Attended(Work work, const pybind11::object& progress = pybind11::none()) {
  using Value = std::invoke_result_t<Work&, Attention&>;
  const auto value = std::make_shared<std::optional<Value>>();
  Attend(
      [work = std::move(work), value](Attention& attention) mutable { *value = work(attention); },
      progress);
  return std::move(**value);
}

/// Gives the interpreter's lock away, and takes it again; null if it is kept.
PyThreadState* GiveLock();
void TakeLock(PyThreadState* state);

/// Runs short work without the interpreter's lock; it may touch nothing of Python.
template <typename Work>
auto WithoutLock(const Work& work) {
  PyThreadState* const state = GiveLock();
  try {
    auto value = work();
    TakeLock(state);
    return value;
  } catch (const std::exception&) {
    TakeLock(state);
    throw;
  }
}

}  // namespace pokermath

#endif  // POKERMATH_PYTHON_ATTEND_H_
