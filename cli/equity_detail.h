// What --by shows of an answer: every hand, every class of hands, what comes next, what is made.

#ifndef POKERMATH_CLI_EQUITY_DETAIL_H_
#define POKERMATH_CLI_EQUITY_DETAIL_H_

#include <array>
#include <string>
#include <vector>

#include "cli/equity_run.h"
#include "cli/equity_words.h"
#include "cli/output.h"

namespace pokermath::cli {

/// One line of a detail: of a player's hand, class or category, or of cards that come next.
struct DetailRow {
  std::size_t player;
  std::string name;
  std::string size;  ///< a hand's weight, hands of a class, flops that are alike; may be empty
  Outcome outcome;
};

/// All rows of a detail, player by player, or for what comes next card by card; classes and hands
/// from the strongest equity down.
std::vector<DetailRow> DetailRows(const AskedEquity& asked, const EquityRun& run, By by);

/// Whether one card comes next, and not a flop or the rest of one.
bool ComesOneCard(const AskedEquity& asked);

/// The classes of a player's hands in the matrix layout of ranges.h; for games of two cards.
std::array<Outcome, 169> ClassesOf(const PlayerAnswer& player);

/// Tables or matrices, to go below the page.
std::string DetailText(const AskedEquity& asked, const EquityRun& run, By by,
                       const Colours& colours);

/// A line with titles, then a line for each row.
std::string DetailCsv(const AskedEquity& asked, const EquityRun& run, By by);

/// Puts the detail into the object of an answer.
void AddDetailJson(const AskedEquity& asked, const EquityRun& run, By by, Json& json);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_EQUITY_DETAIL_H_
