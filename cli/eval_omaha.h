// `pokermath eval --game omaha`.

#ifndef POKERMATH_CLI_EVAL_OMAHA_H_
#define POKERMATH_CLI_EVAL_OMAHA_H_

#include <string>

namespace pokermath::cli {

/// Prints what an Omaha hand makes with a board, and which cards play.
///
/// @param hole_cards  4 or 5
/// @return the exit code; throws UsageError for cards that are no such hand and board
int RunEvalOmaha(const std::string& hand, const std::string& board, std::size_t hole_cards,
                 bool json);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EVAL_OMAHA_H_
