// Work that is told to stop ends with the step that it is in, which may take seconds; nobody waits
// for that. Its thread owns what it works on and dies with the process, in which no object of this
// module is destroyed: __cxa_atexit, which would see to that, does nothing here (the linker's
// --wrap).

#include "python/src/attend.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

extern "C" int __wrap___cxa_atexit(void (*destroy)(void*), void* object, void* module);
extern "C" int __wrap___cxa_atexit(void (*)(void*), void*, void*) { return 0; }

namespace pokermath {
namespace {

namespace py = pybind11;

constexpr auto kLook = std::chrono::milliseconds(20);  // between looks at signals

struct Job {
  std::function<void(Attention&)> work;
  Attention attention;
  std::mutex mutex;
  std::condition_variable ended;
  bool has_ended = false;
  std::exception_ptr thrown;
};

void Work(const std::shared_ptr<Job>& job) {
  try {
    job->work(job->attention);
  } catch (...) {
    job->thrown = std::current_exception();
  }
  const std::lock_guard lock(job->mutex);
  job->has_ended = true;
  job->ended.notify_all();
}

bool IsEnding() {
#if PY_VERSION_HEX >= 0x030D0000
  return Py_IsFinalizing() != 0;
#else
  return _Py_IsFinalizing() != 0;
#endif
}

// Whether the work has ended within the time of a look.
bool WaitALook(Job& job) {
  PyThreadState* const state = GiveLock();
  bool has_ended = false;
  {
    std::unique_lock lock(job.mutex);
    has_ended = job.ended.wait_for(lock, kLook, [&] { return job.has_ended; });
  }
  TakeLock(state);
  return has_ended;
}

}  // namespace

PyThreadState* GiveLock() {
  // Who has the lock while the interpreter ends is the thread that ends it, and keeps it.
  return IsEnding() ? nullptr : PyEval_SaveThread();
}

void TakeLock(PyThreadState* state) {
  if (state == nullptr) return;
  // Any other that asks for the lock then would be ended in the middle of a call.
  while (IsEnding()) std::this_thread::sleep_for(std::chrono::hours(1));
  PyEval_RestoreThread(state);
}

void Attend(std::function<void(Attention&)> work, const py::object& progress) {
  const auto job = std::make_shared<Job>();
  job->work = std::move(work);
  std::thread([job] { Work(job); }).detach();
  try {
    while (!WaitALook(*job)) {
      if (PyErr_CheckSignals() != 0) throw py::error_already_set();
      if (!progress.is_none()) progress(job->attention.done.load(), job->attention.part.load());
    }
  } catch (...) {
    job->attention.stop = true;
    throw;
  }
  if (job->thrown) std::rethrow_exception(job->thrown);
  if (!progress.is_none()) progress(job->attention.done.load(), 1.0);
}

}  // namespace pokermath
