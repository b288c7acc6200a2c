#include "pages/range_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "pages/errors.h"
#include "pages/game.h"
#include "pages/range_picture.h"
#include "ranges/hand_classes.h"
#include "ranges/percent_ranges.h"

namespace pokermath {
namespace {

const char* GameName(const RangeOptions& options) {
  return NameOf(options.short_deck ? Game::kShortDeck : Game::kHoldem);
}

const char* TableName(const RangeOptions& options) {
  return options.percent_table == PercentTable::kCorvelle ? "corvelle" : "equilibrium";
}

Spec Read(const std::string& text, const RangeOptions& options) {
  RangeResult read = ParseRange(text, options);
  if (!read.error.empty()) Refuse(read.error);
  return std::move(read.range);
}

// The matrix cell of the only class that a text names.
int ReadClass(const std::string& text, const RangeOptions& options) {
  std::array<int, kHandClasses> matrix{};
  Read(text, options).MakeMatrix(matrix.data());
  const auto classes = std::ranges::count(matrix, 1);
  if (classes != 1) {
    Refuse(fmt::format("{} names {} classes: one hand is ranked, like AA, AKs, AKo or AhKd",
                       Quoted(text), classes));
  }
  return static_cast<int>(std::ranges::find(matrix, 1) - matrix.begin());
}

}  // namespace

RangeOptions ReadRangeOptions(Game game, std::string_view table, bool bare_offsuit,
                              std::string_view option) {
  if (std::ranges::find(kPercentTableNames, table) == kPercentTableNames.end()) {
    Refuse(fmt::format("{} {} is not known: {}", option, Quoted(table), OneOf(kPercentTableNames)));
  }
  RangeOptions options;
  options.bare_offsuit = bare_offsuit;
  options.short_deck = game == Game::kShortDeck;
  if (table == "corvelle") options.percent_table = PercentTable::kCorvelle;
  if (options.short_deck && table == "corvelle") {
    Refuse(fmt::format("{} corvelle is for 52 cards: the short deck has its equilibrium only",
                       option));
  }
  return options;
}

RangeAnswer DescribeRange(const std::string& text, const RangeOptions& options) {
  RangeAnswer answer;
  answer.options = options;
  answer.range = Read(text, options);
  answer.text = FormatRange(answer.range, options);
  answer.combos = answer.range.combinations().size();
  answer.percent = 100.0 * static_cast<double>(answer.combos) / (options.short_deck ? 630 : 1326);
  return answer;
}

std::string RangePage(const RangeAnswer& answer, const Colours& colours) {
  const RangeMatrix matrix(answer.range, answer.options.short_deck);
  return fmt::format("{}\n\n{}\n{} of {} holdings, {:.2f} %\n",
                     colours.Strong(answer.text.empty() ? "an empty range" : answer.text),
                     MatrixText(matrix, colours), answer.combos,
                     answer.options.short_deck ? "630" : "1,326", answer.percent);
}

Json RangeJson(const RangeAnswer& answer) {
  std::array<int, kHandClasses> matrix{};
  answer.range.MakeMatrix(matrix.data());
  return {{"schema", kJsonSchema},   {"game", GameName(answer.options)}, {"text", answer.text},
          {"combos", answer.combos}, {"percent", answer.percent},        {"matrix", matrix}};
}

std::string RangeSvg(const RangeAnswer& answer) {
  constexpr std::size_t kLongestTitle = 70;
  std::string title = fmt::format("{}  ({:.1f} %)", answer.text, answer.percent);
  if (title.size() > kLongestTitle) {
    title = fmt::format("{} holdings, {:.1f} %", answer.combos, answer.percent);
  }
  return MatrixSvg(RangeMatrix(answer.range, answer.options.short_deck), title);
}

RankAnswer FindRank(const std::string& text, const RangeOptions& options) {
  const int cell = ReadClass(text, options);
  Spec holdings;
  AddCell(cell, holdings);
  const Combination holding = *holdings.combinations().begin();
  const auto table = RangesByPercent(options.percent_table, options.short_deck);
  const auto enters = std::ranges::find_if(
      table, [&](const auto& row) { return row.second.combinations().contains(holding); });
  RankAnswer answer;
  answer.options = options;
  answer.name = RangeMatrix::Name(cell / 13, cell % 13);
  answer.order = options.short_deck ? 1 + static_cast<int>(std::distance(table.begin(), enters))
                                    : HandClassRank[cell];
  if (enters != table.end()) answer.percent = enters->first;
  answer.group = SklanskyGroup(CCard(holding.first), CCard(holding.second));
  return answer;
}

std::string RankPage(const RankAnswer& answer) {
  const bool short_deck = answer.options.short_deck;
  std::string text = fmt::format(
      "{}\n\n  class order      {} of {}, 1 is the strongest\n  {:<15}  {}\n", answer.name,
      answer.order, short_deck ? 81 : 169, TableName(answer.options),
      answer.percent ? fmt::format("at {} %", *answer.percent) : "in none of its ranges");
  if (!short_deck) {
    text += fmt::format(
        "  Sklansky group   {}\n",
        answer.group == 0 ? "none" : fmt::format("{} of 8, 1 is the best", answer.group));
  }
  return text;
}

Json RankJson(const RankAnswer& answer) {
  Json json = {{"schema", kJsonSchema},
               {"game", GameName(answer.options)},
               {"hand", answer.name},
               {"class_order", answer.order},
               {"table", TableName(answer.options)},
               {"enters_at_percent", nullptr}};
  if (answer.percent) json["enters_at_percent"] = *answer.percent;
  if (!answer.options.short_deck) json["sklansky_group"] = answer.group;
  return json;
}

}  // namespace pokermath
