#include "cli/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

#include "pages/number_text.h"

namespace pokermath::cli {
namespace {

constexpr auto kBetweenLines = std::chrono::milliseconds(200);
constexpr const char* kWipeLine = "\r\x1b[K";

}  // namespace

Progress::Progress(std::string what, std::int64_t total, std::string unit,
                   std::chrono::milliseconds patience)
    : what_(std::move(what)),
      total_(total),
      unit_(std::move(unit)),
      terminal_(isatty(STDERR_FILENO) == 1),
      start_(Clock::now()),
      next_(start_ + patience) {}

Progress::~Progress() { Wipe(); }

void Progress::Wipe() {
  if (std::exchange(shown_, false)) std::fputs(kWipeLine, stderr);
}

void Progress::Update(std::int64_t done) {
  Update(done, static_cast<double>(done) / static_cast<double>(total_));
}

void Progress::Update(std::int64_t done, double part) {
  if (!terminal_ || done <= 0) return;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + kBetweenLines;
  shown_ = true;
  const Seconds elapsed = now - start_;
  fmt::print(stderr, "{}{}: {:.1f} %, {} {}/s, {} left", kWipeLine, what_, 100 * part,
             RoughCount(static_cast<double>(done) / elapsed.count()), unit_,
             DurationText(elapsed * (1 / part - 1)));
  std::fflush(stderr);
}

}  // namespace pokermath::cli
