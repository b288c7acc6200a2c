// Ctrl-C and its like as a question that long work asks now and then.

#ifndef POKERMATH_CLI_STOP_SIGNALS_H_
#define POKERMATH_CLI_STOP_SIGNALS_H_

#include <csignal>

namespace pokermath::cli {

/// While one of these lives, SIGINT, SIGTERM and SIGHUP do no more than make StopRequested() true.
/// A signal that the program was started to ignore stays ignored.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

 private:
  static constexpr int kSignals[3] = {SIGINT, SIGTERM, SIGHUP};
  struct sigaction before_[3] = {};
};

/// Whether such a signal has come since the program started.
bool StopRequested();

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_STOP_SIGNALS_H_
