// A question of equity as a user words it, and what it means.

#ifndef POKERMATH_CLI_EQUITY_QUESTION_H_
#define POKERMATH_CLI_EQUITY_QUESTION_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/game.h"
#include "pokermath/equity.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/ranges.h"

namespace pokermath::cli {

/// The words of a question, from the command line or from a line of input.
struct EquityWords {
  std::vector<std::string> hands;  ///< the words that stand without an option
  std::optional<std::string> game, board, dead, to, players, trials, seed, time_ms;
  bool exact = false;
  // Not in lines of input.
  bool by_class = false;
  std::optional<std::string> svg;
};

/// A question that has an answer: every card is there once, every number is in its range.
struct EquityQuestion {
  Game game = Game::kHoldem;
  std::vector<int> hand;
  // The opponents are hands, one but in Omaha, or a range, or neither: random hands.
  std::vector<std::vector<int>> opponents;
  std::optional<Spec> range;
  std::optional<std::variant<CSpecOmaha, CSpecOmahaFiveCards>> omaha_range;
  std::string range_text;
  std::vector<int> board;
  std::vector<int> dead;
  Street street = Street::kRiver;
  bool by_class = false;  ///< of the range, which is there then
  int players = 2;        ///< where opponents are random
  bool exact = false;     ///< what is not is sampled, against random hands or a range of Omaha
  std::int64_t trials = 1000000;
  std::uint64_t seed = 1;
  std::optional<std::chrono::milliseconds> time;  ///< for sampling

  bool HasRange() const { return range || omaha_range; }
};

/// Throws UsageError if a word that follows the cards of --board or --dead at once is a card: it
/// was meant as one of them and would be read as a part of a hand.
void CheckWordBehind(std::string_view option, std::string_view cards, std::string_view word);

/// The words of a line, and the options of `defaults` that it does not have itself; throws
/// UsageError for an option that is none.
EquityWords SplitLine(std::string_view line, const EquityWords& defaults);

/// Throws UsageError for options that are wrong whatever the question is.
void CheckOptions(const EquityWords& words);

/// Throws UsageError for words that are no question.
EquityQuestion ReadQuestion(const EquityWords& words);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_QUESTION_H_
