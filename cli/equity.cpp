// `pokermath equity`: players with hands and ranges against each other, counted or sampled.

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>

#include "cli/command.h"
#include "cli/equity_run.h"
#include "cli/errors.h"
#include "cli/line_mode.h"
#include "cli/output.h"
#include "jobs/question_line.h"
#include "pages/equity_detail.h"
#include "pages/equity_report.h"
#include "pages/equity_svg.h"
#include "pages/equity_words.h"
#include "pages/game.h"
#include "pages/json.h"

namespace pokermath::cli {
namespace {

constexpr const char* kEquityExamples =
    R"(A player is one word: a hand, a range or 'random'; a comma joins the pieces of a range, and a
board is one word. The cards of a hand may be apart. How ranges are written: pokermath range --help.
What takes less than about a second is counted exactly, everything else sampled to a standard error
of 0.05 %; the answer says which, and why. Ctrl-C stops and shows what was sampled so far.
Equity is the share of the pot: a pot shared by k players counts 1/k. In Hi/Lo "wins" are whole
pots, "ties" parts of one, and "low" is what of the equity comes from low hands.

Examples:
  pokermath equity AhKd 7s7c
  pokermath equity Ah Kd 7s 7c
  pokermath equity AhKd 7s7c --board 2c3d4h
  pokermath equity AhKd 7s7c --to turn --json
  pokermath equity AhKd 'TT+,AQs+,AKo' random
  pokermath equity 15% 15% --board 2c7dTh --by class --svg heat.svg
  pokermath equity AhKd QQ+ --board 2c7dTh --by next --csv next.csv
  pokermath equity AhKd 7s7c --folded AsQs --dead 2c
  pokermath equity AhKd 7s7c --game shortdeck
  pokermath equity AhKd random random random random random --trials 10000000
  pokermath equity AhKd random random --time-ms 500
  pokermath equity AhAdKhKd JsTs9c8c 7h7d6h6d --game omaha
  pokermath equity AhAdKhKd 'JTxx:ds,10%' --game omaha --board AsKs7c
  pokermath equity AhAdKhKd random --game omaha --exact
  pokermath equity Ah2h3c4d AsAdKsQd --game omaha-hilo
  pokermath equity AhAdKhKdQcJs 'AAxxxx:ts' --game omaha6 --board 2c7dTh
  pokermath equity - <questions.txt    one question a line in the same words, like
                                       'AhKd 7s7c --board 2c3d4h'; options beside
                                       the - hold for every line; empty lines and
                                       lines that start with # have no answer. A line
                                       may be an object:
    {"id":1,"game":"holdem","players":["AhKd","15%",["7s","7c"]],"folded":["AA"],
     "board":"2c3d4h","dead":[],"to":"river","method":"auto","standard_error":0.001,
     "trials":1000000,"time_ms":500,"seed":1,"detail":["hand","class","next","made"]})";

struct EquityOptions {
  EquityWords words;
  std::optional<std::string> threads, by, csv, svg;
  // Gone; they say what took their place.
  std::optional<std::string> players;
  bool by_class = false;
  bool json = false;
};

int ThreadsOf(const EquityOptions& options) {
  constexpr int kMostThreads = 1024;
  if (options.threads) {
    return ReadNumber("--threads", *options.threads, 1, kMostThreads);
  }
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostThreads);
}

void RefuseOldOptions(const EquityOptions& options) {
  if (options.players) {
    throw UsageError("--players is no option: write 'random' once for each opponent");
  }
  if (options.by_class) throw UsageError("--by-class is written --by class");
}

// The parser has taken options and other words apart; which one stood behind which is in its order.
void CheckOrder(const Command& command, const EquityWords& words) {
  const std::vector<GivenOption> given = command.Given();
  auto word = words.players.begin();
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (!given[i].positional) continue;
    if (i > 0) CheckWordBehind(given[i - 1].name, given[i - 1].first_value, *word);
    ++word;
  }
}

void PrintWarning(const std::string& warning) { PrintError("warning: " + warning); }

std::string AnswerWords(std::string_view line, const EquityOptions& options,
                        const LineOptions& one) {
  const AskedEquity asked = ReadEquity(SplitLine(line, options.words));
  const EquityRun run = RunLine(asked, one);
  return options.json ? EquityJson(asked, run, "") : EquityLine(asked, run);
}

int AnswerQuestionLines(const EquityOptions& options) {
  ReadOptions(options.words);
  const LineForm form{.json = options.json, .schema = kEquitySchema, .threads = ThreadsOf(options)};
  return AnswerLines(form, [&](std::string_view line, int threads, std::string& out) {
    const bool is_object = line.find_first_not_of(" \t") == line.find('{');
    const LineOptions one{.defaults = options.words, .threads = threads, .warn = PrintWarning};
    out += is_object ? AnswerObject(line, one) : AnswerWords(line, options, one);
  });
}

// The words of one question, not of lines.
AskedEquity ReadOne(const EquityOptions& options) {
  EquityWords words = options.words;
  if (options.by) words.by = {*options.by};
  if (options.csv && !options.by) throw UsageError("--csv needs --by, whose rows it writes");
  if (options.svg && !options.by) throw UsageError("--svg needs --by, which it draws");
  AskedEquity asked = ReadEquity(words);
  if (options.svg && !HasPicture(asked, asked.by[0])) {
    throw UsageError(
        "--svg draws --by hand, --by class, and --by next where one card comes, not a flop");
  }
  return asked;
}

int RunEquity(const EquityOptions& options) {
  RefuseOldOptions(options);
  if (options.words.players == std::vector<std::string>{"-"}) {
    if (options.by || options.csv || options.svg) {
      throw UsageError("--by is for one question: in lines, an object has the key \"detail\"");
    }
    return AnswerQuestionLines(options);
  }
  const bool csv_alone = IsAlone("--csv", options.csv, options.json);
  const bool svg_alone = IsAlone("--svg", options.svg, options.json);
  if (csv_alone && svg_alone) {
    throw UsageError("--csv - and --svg - do not go together: both are standard output");
  }
  const AskedEquity asked = ReadOne(options);
  for (const std::string& warning : asked.warnings) PrintWarning(warning);
  const EquityRun run = AnswerEquity(asked, ThreadsOf(options));
  if (options.csv) WriteDocument(*options.csv, DetailCsv(asked, run, asked.by[0]));
  if (options.svg) WriteDocument(*options.svg, DetailSvg(asked, run, asked.by[0]));
  if (csv_alone || svg_alone) return kExitDone;
  if (options.json) {
    Print(EquityJson(asked, run, ""));
    return kExitDone;
  }
  const Colours colours = ColoursForStandardOutput();
  std::string page = EquityPage(asked, run, colours);
  for (const By by : asked.by) page += DetailText(asked, run, by, colours);
  Print(page);
  return kExitDone;
}

void AddSamplingOptions(Command command, EquityOptions& options) {
  EquityWords& words = options.words;
  command.AddFlag("--exact", words.exact, "Count, however long it takes");
  command.AddFlag("--sampled", words.sampled, "Deal at random, even what could be counted");
  command
      .AddOption("--standard-error", words.standard_error,
                 "Sample until every equity is as good as this, a share of the pot [0.05%]")
      .ValueName("E");
  command.AddOption("--trials", words.trials, "Sample no more random deals than these [none]")
      .ValueName("N");
  command
      .AddOption("--time-ms", words.time_ms,
                 "Milliseconds for sampling, which then has no end of its own but --trials "
                 "and --standard-error [none]")
      .ValueName("N");
  command.AddOption("--seed", words.seed, "Start of the random numbers [1]").ValueName("N");
  command
      .AddOption("--threads", options.threads,
                 "Threads; the answer is the same for any number [all cores]")
      .ValueName("N");
}

}  // namespace

void AddEquity(Command program, int& exit_code) {
  auto options = std::make_shared<EquityOptions>();
  EquityWords& words = options->words;
  Command command =
      program.AddCommand("equity", "Equity of hands and ranges in Hold'em, short deck, Omaha");
  command
      .AddOption("PLAYER PLAYER ...", words.players,
                 "2 to 10 players, each a hand, a range or the word random; or - for one "
                 "question a line from standard input")
      .Required()
      .ValueName("")
      .ManyWords();
  command.AddOption("--game", words.game, std::string(GameNames()) + " [holdem]")
      .ValueName("GAME")
      .OneOf(ListOf(kAllGames));
  command.AddOption("--board", words.board, "Known board cards [none]").ValueName("CARDS");
  command.AddOption("--dead", words.dead, "Cards that nobody holds and that cannot come [none]")
      .ValueName("CARDS");
  command
      .AddOption("--folded", words.folded,
                 "The range of a player who is out: it takes cards away; once for each [none]")
      .ValueName("RANGE")
      .MayBeRepeated();
  command
      .AddOption("--to", words.to, "Compare the hands on the flop, the turn or the river [river]")
      .ValueName("STREET")
      .OneOf(kStreetNames);
  AddSamplingOptions(command, *options);
  command
      .AddOption("--by", options->by,
                 "Also show every hand, every class, what comes next, or what is made: hand, "
                 "class, next or made")
      .ValueName("WHAT")
      .OneOf(kByNames);
  command.AddOption("--csv", options->csv, "Also write the rows of --by as CSV; - for them alone")
      .ValueName("FILE");
  command
      .AddOption("--svg", options->svg,
                 "Also draw --by: curves of all hands, heat maps of classes, decks of next "
                 "cards; - for the picture alone")
      .ValueName("FILE");
  command.AddOption("--players", options->players, "").Hide();
  command.AddFlag("--by-class", options->by_class, "").Hide();
  command.AddFlag("--json", options->json, "Print a JSON object (one a line with -)");
  command.SetFooter(kEquityExamples);
  command.SetAction([options, command, &exit_code] {
    CheckOrder(command, options->words);
    exit_code = RunEquity(*options);
  });
}

}  // namespace pokermath::cli
