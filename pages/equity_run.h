// The answer to a question of equity, and how the work for it went.

#ifndef POKERMATH_PAGES_EQUITY_RUN_H_
#define POKERMATH_PAGES_EQUITY_RUN_H_

#include <optional>

#include "pages/number_text.h"
#include "pokermath/calculator.h"

namespace pokermath {

struct EquityRun {
  EquityAnswer answer;
  bool interrupted = false;          ///< by who waited for it: fewer trials than asked for
  bool out_of_time = false;          ///< fewer trials, since the time allowed no more
  std::optional<Seconds> elapsed{};  ///< by who measured it
};

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_RUN_H_
