// Ranges of two cards as text, JSON and a picture; and where one class of hands stands among all.

#ifndef POKERMATH_PAGES_RANGE_PAGE_H_
#define POKERMATH_PAGES_RANGE_PAGE_H_

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "pages/colours.h"
#include "pages/json.h"
#include "pokermath/game.h"
#include "pokermath/ranges.h"

namespace pokermath {

/// Where percentages come from.
inline constexpr std::array<std::string_view, 2> kPercentTableNames = {"equilibrium", "corvelle"};

/// How range text is read, as words; refuses a table that is none.
///
/// @param option  what the table is called where the words come from
RangeOptions ReadRangeOptions(Game game, std::string_view table, bool bare_offsuit,
                              std::string_view option = "--table");

/// What a range of two cards holds.
struct RangeAnswer {
  Spec range;
  RangeOptions options;  ///< that it was read with
  std::string text;
  std::size_t combos;
  double percent;
};

/// Refuses a text that is no range.
RangeAnswer DescribeRange(const std::string& text, const RangeOptions& options);

std::string RangePage(const RangeAnswer& answer, const Colours& colours);
Json RangeJson(const RangeAnswer& answer);
/// A stand-alone SVG document: the matrix.
std::string RangeSvg(const RangeAnswer& answer);

/// Where a class stands. The order of all classes and the Sklansky groups are for 52 cards; in the
/// short deck the order is that of the percentages.
struct RankAnswer {
  RangeOptions options;
  std::string name;               ///< "AKs"
  int order;                      ///< 1 is the strongest
  std::optional<double> percent;  ///< at which it enters the table's ranges
  int group;                      ///< 1 (best) .. 8, 0 for none
};

/// Refuses a text that is not one class.
RankAnswer FindRank(const std::string& text, const RangeOptions& options);

std::string RankPage(const RankAnswer& answer);
Json RankJson(const RankAnswer& answer);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_RANGE_PAGE_H_
