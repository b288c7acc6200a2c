// A question on every flop.

#ifndef POKERMATH_JOBS_FLOP_REPORT_H_
#define POKERMATH_JOBS_FLOP_REPORT_H_

#include <string>

#include "pages/equity_words.h"

namespace pokermath {

/// Lines of questions, one for each flop up to renamings of suits that change none of the ranges:
/// 1,755 where all suits are alike in them. The id says the flop, and how many flops it stands for:
/// {"flop":"2c3c4c","alike":4}. Throws UsageError for words that are no question, or have a board.
std::string FlopReport(const EquityWords& words);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_FLOP_REPORT_H_
