// A line on the terminal that says how far long work has come.

#ifndef POKERMATH_CLI_PROGRESS_H_
#define POKERMATH_CLI_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace pokermath::cli {

/// Shows percent, rate and time left on standard error, when that is a terminal, once the work has
/// taken as long as `patience`. The line is wiped when the object goes.
class Progress {
 public:
  /// @param what   what is being done, the start of the line
  /// @param total  units of the whole work
  /// @param unit   their name in the plural
  Progress(std::string what, std::int64_t total, std::string unit,
           std::chrono::milliseconds patience);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `done` units are ready. May be called often.
  void Update(std::int64_t done);
  /// The same for work of which `part`, 0..1, is ready: something else than the units may end it.
  void Update(std::int64_t done, double part);
  /// Makes room for a message; the next update shows the line again.
  void Wipe();

 private:
  using Clock = std::chrono::steady_clock;

  std::string what_;
  std::int64_t total_;
  std::string unit_;
  bool terminal_;
  bool shown_ = false;
  Clock::time_point start_;
  Clock::time_point next_;
};

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_PROGRESS_H_
