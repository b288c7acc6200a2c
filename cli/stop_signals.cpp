#include "cli/stop_signals.h"

#include <iterator>

namespace pokermath::cli {
namespace {

volatile std::sig_atomic_t stop_requested = 0;

void RequestStop(int) { stop_requested = 1; }

}  // namespace

StopSignals::StopSignals() {
  struct sigaction action {};
  action.sa_handler = RequestStop;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
  }
}

StopSignals::~StopSignals() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], &before_[i], nullptr);
  }
}

bool StopRequested() { return stop_requested != 0; }

}  // namespace pokermath::cli
