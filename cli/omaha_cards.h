// The words of questions about an Omaha hand on a board.

#ifndef POKERMATH_CLI_OMAHA_CARDS_H_
#define POKERMATH_CLI_OMAHA_CARDS_H_

#include "cli/command.h"
#include "pages/omaha_hand.h"

namespace pokermath::cli {

struct OmahaWords : OmahaQuestion {
  bool json = false;
};

/// Adds HAND, BOARD, --game and --json to a subcommand.
void AddOmahaWords(Command command, OmahaWords& words);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_OMAHA_CARDS_H_
