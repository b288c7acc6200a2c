// A question of equity as a user words it, and what it means.

#ifndef POKERMATH_PAGES_EQUITY_WORDS_H_
#define POKERMATH_PAGES_EQUITY_WORDS_H_

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/calculator.h"

namespace pokermath {

/// What an answer is broken down by.
enum class By { kHand, kClass, kNext, kMade };
/// The words for it, in this order.
inline constexpr std::array<std::string_view, 4> kByNames = {"hand", "class", "next", "made"};
/// The words for streets, from the flop on.
inline constexpr std::array<std::string_view, 3> kStreetNames = {"flop", "turn", "river"};

/// The words of a question, from the command line or from a line of input.
struct EquityWords {
  std::vector<std::string> players;  ///< the words that stand without an option
  std::vector<std::string> folded;
  std::optional<std::string> game, board, dead, to, standard_error, trials, time_ms, seed;
  std::vector<std::string> by;  ///< "hand", "class", "next", "made"
  bool exact = false;
  bool sampled = false;
  bool any_method = false;       ///< whatever the defaults say
  std::string by_name = "--by";  ///< what `by` is called where the words come from
  bool of_object = false;        ///< keys have the options' names, and every player is one text

  /// A key's name as the user wrote it: "time_ms", or the option "--time-ms".
  std::string Named(std::string_view key) const;
  /// Takes the options that are not there from others.
  void TakeMissing(const EquityWords& defaults);
};

/// A question, and how its parts were worded.
struct AskedEquity {
  EquityQuestion question;
  std::vector<std::string> players;  ///< as answers name them: "AhKd", "TT+,AQs+", "random"
  std::vector<std::string> folded;
  std::vector<int> board;  ///< in the order in which it was given
  std::vector<int> dead;
  std::optional<std::chrono::milliseconds> time;  ///< for sampling
  std::vector<By> by;
  std::vector<std::string> warnings;  ///< a line each
};

/// "players/1": a place in a list of a question, as errors name it.
std::string FieldInList(std::string_view key, std::size_t place);

/// Refuses a word that follows the cards of --board or --dead at once and is a card, or cards that
/// make a whole board of a part of one: it was meant as one of them and would be read as
/// a player's.
void CheckWordBehind(std::string_view option, std::string_view cards, std::string_view word);

/// The words of a line, and the options of `defaults` that it does not have itself;
/// refuses an option that is none.
EquityWords SplitLine(std::string_view line, const EquityWords& defaults);

/// The question without its players; refuses options that are wrong whatever the players are.
AskedEquity ReadOptions(const EquityWords& words);

/// Reads what the words say; refuses words that cannot be read. Whether the question has
/// an answer is the calculator's to say.
AskedEquity ReadEquity(const EquityWords& words);

/// The plan that answers it; refuses a question that the calculator refuses.
Calculation PlanOf(const AskedEquity& asked);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_WORDS_H_
