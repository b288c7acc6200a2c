// Ctrl-C and its like as a question that long work asks now and then.

#ifndef POKERMATH_CLI_STOP_SIGNALS_H_
#define POKERMATH_CLI_STOP_SIGNALS_H_

#include <csignal>
#include <iterator>

namespace pokermath::cli {

/// While one of these lives, SIGINT, SIGTERM, SIGHUP and SIGUSR1 do no more than make
/// StopRequested() true. A signal that the program was started to ignore stays ignored.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

 private:
  static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGUSR1};
  struct sigaction before_[std::size(kSignals)] = {};
};

/// Whether such a signal has come since the program started.
bool StopRequested();

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_STOP_SIGNALS_H_
