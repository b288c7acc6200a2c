// `pokermath range`: what a range text holds, as numbers, as a matrix and as a picture; and where
// one hand stands among all. Omaha has a source of its own.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/command.h"
#include "cli/output.h"
#include "cli/range_omaha.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/json.h"
#include "pages/player_words.h"
#include "pages/range_picture.h"
#include "pokermath/ranges.h"
#include "ranges/hand_classes.h"
#include "ranges/percent_ranges.h"

namespace pokermath::cli {
namespace {

constexpr const char* kRangeExamples =
    R"(A list of classes (AA, AKs, AKo, AK), classes and all better ones (TT+, A9s+, KJo+),
runs (JJ-88, A9s-A5s), holdings (AhKd), percentages (15%) and the word random.
In the matrix a star marks a class of which the range holds some holdings only.

Omaha: hands (AsKsQhJh), patterns with x for any card (AAxx, KQJx, [T-A][T-A]xx, AsKsxx),
percentages (10%, 5%-20%; none with six cards) and random; behind them suit shapes (:ds, :ss, :3,
:4; with four cards :r, with five :5, with six :5, :6, and :ts in place of :ss) and exclusions
(AAxx!AAAx). A piece that begins with ! is taken off all before it.

Examples:
  pokermath range 'TT+,A9s+,KJo+'
  pokermath range 15% --svg range.svg
  pokermath range 30% --game shortdeck
  pokermath range 'AA AhKd' --json
  pokermath range --rank AKs
  pokermath range --game omaha 10%:ds
  pokermath range --game omaha 'AAxx!AAAx,KKxx:ds' --dead Ah7c
  pokermath range --game omaha5 --rank AsKsQhJh9c
  pokermath range --game omaha6 'AAxxxx:ts')";

struct RangeWords {
  std::vector<std::string> text;
  std::string game = "holdem";
  std::optional<std::string> table, rank, svg, dead;
  bool bare_offsuit = false;
  bool list = false;
  bool json = false;
};

std::string TableOf(const RangeWords& words) { return words.table.value_or("equilibrium"); }

RangeOptions ReadOptions(const RangeWords& words) {
  const std::string table = TableOf(words);
  if (table != "equilibrium" && table != "corvelle") {
    throw UsageError("--table " + Quoted(table) + " is not known: equilibrium or corvelle");
  }
  if (words.dead || words.list) {
    throw UsageError(fmt::format("{} goes with --game {}", words.dead ? "--dead" : "--list",
                                 NamesOf(OmahaGames(false))));
  }
  RangeOptions options;
  options.bare_offsuit = words.bare_offsuit;
  options.short_deck = words.game == NameOf(Game::kShortDeck);
  if (table == "corvelle") options.percent_table = PercentTable::kCorvelle;
  if (options.short_deck && table == "corvelle") {
    throw UsageError("--table corvelle is for 52 cards: the short deck has its equilibrium only");
  }
  return options;
}

std::string TextOf(const RangeWords& words) {
  return fmt::format("{}", fmt::join(words.text, " "));
}

Spec ReadRange(const std::string& text, const RangeOptions& options) {
  RangeResult read = ParseRange(text, options);
  if (!read.error.empty()) throw UsageError(read.error);
  return std::move(read.range);
}

struct RangeAnswer {
  Spec range;
  std::string text;
  std::size_t combos;
  double percent;
};

RangeAnswer Describe(const RangeWords& words, const RangeOptions& options) {
  RangeAnswer answer;
  answer.range = ReadRange(TextOf(words), options);
  answer.text = FormatRange(answer.range, options);
  answer.combos = answer.range.combinations().size();
  answer.percent = 100.0 * static_cast<double>(answer.combos) / (options.short_deck ? 630 : 1326);
  return answer;
}

Json ToJson(const RangeAnswer& answer, const RangeWords& words) {
  std::array<int, kHandClasses> matrix{};
  answer.range.MakeMatrix(matrix.data());
  return {{"schema", kJsonSchema},   {"game", words.game},        {"text", answer.text},
          {"combos", answer.combos}, {"percent", answer.percent}, {"matrix", matrix}};
}

std::string ToText(const RangeAnswer& answer, const RangeOptions& options) {
  const RangeMatrix matrix(answer.range, options.short_deck);
  const Colours colours = ColoursForStandardOutput();
  return fmt::format("{}\n\n{}\n{} of {} holdings, {:.2f} %\n",
                     colours.Strong(answer.text.empty() ? "an empty range" : answer.text),
                     MatrixText(matrix, colours), answer.combos,
                     options.short_deck ? "630" : "1,326", answer.percent);
}

void WriteSvg(const std::string& path, const RangeAnswer& answer, bool short_deck) {
  constexpr std::size_t kLongestTitle = 70;
  std::string title = fmt::format("{}  ({:.1f} %)", answer.text, answer.percent);
  if (title.size() > kLongestTitle) {
    title = fmt::format("{} holdings, {:.1f} %", answer.combos, answer.percent);
  }
  WriteDocument(path, MatrixSvg(RangeMatrix(answer.range, short_deck), title));
}

// The matrix cell of the only class that a text names.
int ReadClass(const std::string& text, const RangeOptions& options) {
  std::array<int, kHandClasses> matrix{};
  ReadRange(text, options).MakeMatrix(matrix.data());
  const auto classes = std::ranges::count(matrix, 1);
  if (classes != 1) {
    throw UsageError(
        fmt::format("{} names {} classes: one hand is ranked, like AA, AKs, AKo or AhKd",
                    Quoted(text), classes));
  }
  return static_cast<int>(std::ranges::find(matrix, 1) - matrix.begin());
}

// Where one class stands. The order of all classes and the Sklansky groups are for 52 cards; in the
// short deck the order is that of the percentages.
int RunRank(const RangeWords& words, const RangeOptions& options) {
  const int cell = ReadClass(*words.rank, options);
  const std::string name = RangeMatrix::Name(cell / 13, cell % 13);
  Spec holdings;
  AddCell(cell, holdings);
  const Combination holding = *holdings.combinations().begin();
  const auto table = RangesByPercent(options.percent_table, options.short_deck);
  const auto enters = std::ranges::find_if(
      table, [&](const auto& row) { return row.second.combinations().contains(holding); });
  const bool short_deck = options.short_deck;
  const auto order = short_deck ? 1 + std::distance(table.begin(), enters) : HandClassRank[cell];
  const int group = SklanskyGroup(CCard(holding.first), CCard(holding.second));
  if (words.json) {
    Json answer = {
        {"schema", kJsonSchema}, {"game", words.game},      {"hand", name},
        {"class_order", order},  {"table", TableOf(words)}, {"enters_at_percent", nullptr}};
    if (enters != table.end()) answer["enters_at_percent"] = enters->first;
    if (!short_deck) answer["sklansky_group"] = group;
    Print(JsonLine(answer));
    return kExitDone;
  }
  std::string text = fmt::format(
      "{}\n\n  class order      {} of {}, 1 is the strongest\n  {:<15}  {}\n", name, order,
      short_deck ? 81 : 169, TableOf(words),
      enters == table.end() ? "in none of its ranges" : fmt::format("at {} %", enters->first));
  if (!short_deck) {
    text += fmt::format("  Sklansky group   {}\n",
                        group == 0 ? "none" : fmt::format("{} of 8, 1 is the best", group));
  }
  Print(text);
  return kExitDone;
}

int AskOmaha(const RangeWords& words, Game game) {
  if (words.svg || words.table || words.bare_offsuit) {
    throw UsageError(fmt::format("{} is for two cards, not for {}",
                                 words.svg     ? "--svg"
                                 : words.table ? "--table"
                                               : "--bare-offsuit",
                                 TitleOf(game)));
  }
  return RunRangeOmaha({game, TextOf(words), words.rank, words.dead, words.list, words.json});
}

int RunRange(const RangeWords& words) {
  const Game game = ReadGame(words.game, kHighGames);
  if (!words.rank && Pieces(TextOf(words)).empty()) {
    throw UsageError(IsOmaha(game) ? "a range is needed, like AAxx:ds or 10%"
                                   : "a range is needed, like 'TT+,A9s+' or 15%");
  }
  if (IsOmaha(game)) return AskOmaha(words, game);
  const RangeOptions options = ReadOptions(words);
  if (words.rank) {
    if (!words.text.empty() || words.svg) {
      throw UsageError("--rank stands alone: it asks about one hand, not a range");
    }
    return RunRank(words, options);
  }
  const bool picture_only = IsAlone("--svg", words.svg, words.json);
  const RangeAnswer answer = Describe(words, options);
  if (words.svg) WriteSvg(*words.svg, answer, options.short_deck);
  if (picture_only) return kExitDone;
  Print(words.json ? JsonLine(ToJson(answer, words)) : ToText(answer, options));
  return kExitDone;
}

}  // namespace

void AddRange(Command program, int& exit_code) {
  auto words = std::make_shared<RangeWords>();
  Command command = program.AddCommand("range", "Hands of a range");
  command.AddOption("TEXT", words->text, "Range text; several words are one list").ValueName("");
  command.AddOption("--game", words->game, NamesOf(kHighGames) + " [holdem]").ValueName("GAME");
  command
      .AddOption("--table", words->table,
                 "Where percentages come from: equilibrium or corvelle [equilibrium]")
      .ValueName("TABLE");
  command.AddFlag("--bare-offsuit", words->bare_offsuit,
                  "A bare AK is offsuit only, in what is read and in what is written");
  command.AddOption("--rank", words->rank, "Where one hand stands among all").ValueName("HAND");
  command
      .AddOption("--svg", words->svg, "Also write the matrix as a picture; - for a picture alone")
      .ValueName("FILE");
  command.AddOption("--dead", words->dead, "Omaha: cards that no hand may hold").ValueName("CARDS");
  command.AddFlag("--list", words->list, "Omaha: print every hand, one a line");
  command.AddFlag("--json", words->json, "Print a JSON object");
  command.SetFooter(kRangeExamples);
  command.SetAction([words, &exit_code] { exit_code = RunRange(*words); });
}

}  // namespace pokermath::cli
