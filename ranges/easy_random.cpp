// Random integers from the C library, as hosts seed and expect them.

#include <cstdlib>
#include <ctime>

#include "pokermath/ranges.h"

void EasyRandom::SetInterval(int low, int high) {
  low_ = low <= high ? low : 0;
  high_ = low <= high ? high : 1;
  span_ = std::int64_t{high_} - low_ + 1;
}

void EasyRandom::SetTimerSeed() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::srand(static_cast<unsigned>(now % 19937 + local.tm_min + local.tm_sec + local.tm_mday));
}

int EasyRandom::DrawRandomNumber() { return static_cast<int>(std::rand() % span_ + low_); }
