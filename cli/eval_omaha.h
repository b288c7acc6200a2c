// `pokermath eval --game omaha`.

#ifndef POKERMATH_CLI_EVAL_OMAHA_H_
#define POKERMATH_CLI_EVAL_OMAHA_H_

#include "cli/omaha_cards.h"

namespace pokermath::cli {

/// Prints what an Omaha hand makes with a board, and which cards play.
///
/// @return the exit code; throws UsageError for cards that are no such hand and board
int RunEvalOmaha(const OmahaWords& words);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EVAL_OMAHA_H_
