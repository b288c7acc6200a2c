// What --by shows of an answer: every hand, every class of hands, what comes next, what is made.

#ifndef POKERMATH_PAGES_EQUITY_DETAIL_H_
#define POKERMATH_PAGES_EQUITY_DETAIL_H_

#include <string>
#include <vector>

#include "pages/colours.h"
#include "pages/equity_run.h"
#include "pages/equity_words.h"
#include "pages/json_writer.h"

namespace pokermath {

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

/// Hands that have a name together, like "AKs" or "aces, double-suited".
struct HandClass {
  std::string name;
  int hands = 0;
  Outcome outcome;
};

/// The classes of a player's hands: of two cards in the matrix layout of ranges.h, 169 of them, and
/// of more cards those that he has, by their names.
std::vector<HandClass> ClassesOf(const PlayerAnswer& player);

/// Tables or matrices, to go below the page.
std::string DetailText(const AskedEquity& asked, const EquityRun& run, By by,
                       const Colours& colours);

/// A line with titles, then a line for each row.
std::string DetailCsv(const AskedEquity& asked, const EquityRun& run, By by);

/// Puts a player's details into the object of his answer.
void WriteDetail(const AskedEquity& asked, const EquityRun& run, std::size_t player,
                 JsonWriter& json);

/// Puts what comes next, if it was asked for, into the object of an answer.
void WriteNext(const AskedEquity& asked, const EquityRun& run, JsonWriter& json);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_DETAIL_H_
