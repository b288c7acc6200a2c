// Hands in words.

#ifndef POKERMATH_CLI_WORDS_H_
#define POKERMATH_CLI_WORDS_H_

#include <span>
#include <string>

namespace pokermath::cli {

/// "two pair Ace King kicker 7"; five to seven cards.
std::string InWords(std::span<const int> cards);

/// "two pair", "royal flush" of an ascending value 1..7462.
const char* CategoryName(int ascending);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_WORDS_H_
