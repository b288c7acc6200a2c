// Ranges of Omaha as text and JSON; and where one hand stands among all.

#ifndef POKERMATH_PAGES_OMAHA_RANGE_PAGE_H_
#define POKERMATH_PAGES_OMAHA_RANGE_PAGE_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pages/colours.h"
#include "pages/json.h"
#include "pokermath/game.h"

namespace pokermath {

/// What hands are called and how many there are, the most frequent first.
using Kinds = std::vector<std::pair<std::string, int>>;

/// What a range of Omaha holds.
struct OmahaRangeAnswer {
  Game game{};
  std::string text;
  std::vector<int> dead;
  int hands = 0;
  int all_hands = 0;
  double percent = 0;
  Kinds suits, types;                      ///< of hands, as OmahaHandName has them
  std::vector<std::vector<int>> examples;  ///< six hands at the most
};

/// A range without the hands that hold a dead card; refuses a text that is none.
///
/// @param game  without lows: of OmahaGames(false)
OmahaRangeAnswer DescribeOmahaRange(Game game, const std::string& text,
                                    const std::vector<int>& dead);

std::string OmahaRangePage(const OmahaRangeAnswer& answer, const Colours& colours);
Json OmahaRangeJson(const OmahaRangeAnswer& answer);

/// Every hand of it on a line, the high cards first.
std::string OmahaRangeList(Game game, const std::string& text, const std::vector<int>& dead);

/// Where a hand stands among all, in percent: small is strong.
struct OmahaRankAnswer {
  Game game;
  std::vector<int> hand;
  std::string name;
  double percentile;
};

/// Refuses a text that is no hand of the game, and for a game without an order.
///
/// @param option  what the text is called where it comes from
OmahaRankAnswer FindOmahaRank(Game game, const std::string& text,
                              std::string_view option = "--rank ");

std::string OmahaRankPage(const OmahaRankAnswer& answer, const Colours& colours);
Json OmahaRankJson(const OmahaRankAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_OMAHA_RANGE_PAGE_H_
