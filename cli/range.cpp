// `pokermath range`: what a range text holds, as numbers, as a matrix and as a picture; and where
// one hand stands among all. Omaha has a source of its own.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/command.h"
#include "cli/output.h"
#include "cli/range_omaha.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/player_words.h"
#include "pages/range_page.h"

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

RangeOptions ReadOptions(const RangeWords& words, Game game) {
  const RangeOptions options =
      ReadRangeOptions(game, words.table.value_or("equilibrium"), words.bare_offsuit);
  if (words.dead || words.list) {
    throw UsageError(fmt::format("{} goes with --game {}", words.dead ? "--dead" : "--list",
                                 NamesOf(OmahaGames(false))));
  }
  return options;
}

std::string TextOf(const RangeWords& words) {
  return fmt::format("{}", fmt::join(words.text, " "));
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
  const RangeOptions options = ReadOptions(words, game);
  if (words.rank) {
    if (!words.text.empty() || words.svg) {
      throw UsageError("--rank stands alone: it asks about one hand, not a range");
    }
    const RankAnswer answer = FindRank(*words.rank, options);
    Print(words.json ? JsonLine(RankJson(answer)) : RankPage(answer));
    return kExitDone;
  }
  const bool picture_only = IsAlone("--svg", words.svg, words.json);
  const RangeAnswer answer = DescribeRange(TextOf(words), options);
  if (words.svg) WriteDocument(*words.svg, RangeSvg(answer));
  if (picture_only) return kExitDone;
  Print(words.json ? JsonLine(RangeJson(answer)) : RangePage(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace

void AddRange(Command program, int& exit_code) {
  auto words = std::make_shared<RangeWords>();
  Command command = program.AddCommand("range", "Hands of a range");
  command.AddOption("TEXT", words->text, "Range text; several words are one list").ValueName("");
  command.AddOption("--game", words->game, NamesOf(kHighGames) + " [holdem]")
      .ValueName("GAME")
      .OneOf(ListOf(kHighGames));
  command
      .AddOption("--table", words->table,
                 fmt::format("Where percentages come from: {} [{}]",
                             pokermath::OneOf(kPercentTableNames), kPercentTableNames[0]))
      .ValueName("TABLE")
      .OneOf(kPercentTableNames);
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
