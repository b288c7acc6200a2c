// `pokermath range --game omaha`: how many hands a range has, what kinds of hands they are, its
// text in short; and where one hand stands among all.

#ifndef POKERMATH_CLI_RANGE_OMAHA_H_
#define POKERMATH_CLI_RANGE_OMAHA_H_

#include <optional>
#include <string>

#include "pages/game.h"

namespace pokermath::cli {

struct OmahaRangeQuestion {
  Game game;         // of OmahaGames(false)
  std::string text;  // of the range, if it is not about a hand's rank
  std::optional<std::string> rank, dead;
  bool list = false;
  bool json = false;
};

/// Answers and returns the exit code; throws UsageError for wrong text.
int RunRangeOmaha(const OmahaRangeQuestion& question);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_RANGE_OMAHA_H_
