// How the parts of a question of equity are read. All of it throws UsageError.

#ifndef POKERMATH_CLI_EQUITY_READING_H_
#define POKERMATH_CLI_EQUITY_READING_H_

#include <string>
#include <string_view>
#include <vector>

#include "cli/card_words.h"
#include "cli/equity_question.h"

namespace pokermath::cli {

/// The pieces of a list with a comma between them.
std::string Pieces(std::string_view text);

/// The words of each player, at least of one; cards that are too few for a hand go on in the next
/// word: Ah Kd 7s 7c.
std::vector<std::string> PlayerTexts(const std::vector<std::string>& words, std::size_t hand_size);

/// Whether a piece is the word random, in any letters.
bool IsRandom(std::string_view piece);

/// The street, the board and the dead cards.
void ReadBoard(const EquityWords& words, EquityQuestion& question);

/// The numbers that are there: players, trials, seed and time.
void ReadNumbers(const EquityWords& words, EquityQuestion& question);

/// The option that goes with sampling only and is there, or null.
const char* SamplingOption(const EquityWords& words);

/// Refuses a card that is there twice.
void CheckCardsDiffer(const EquityQuestion& question);

/// Refuses the options that are not for the question's game.
void CheckHoldemOptions(const EquityWords& words, const EquityQuestion& question);
void CheckOmahaOptions(const EquityWords& words, const EquityQuestion& question);

/// All that a question has besides its game.
void ReadHoldemQuestion(const EquityWords& words, EquityQuestion& question);
void ReadOmahaQuestion(const EquityWords& words, EquityQuestion& question);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_READING_H_
