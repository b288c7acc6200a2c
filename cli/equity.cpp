// `pokermath equity`: a Hold'em hand against a hand or a range, exact, or against random hands,
// sampled.

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/equity_answer.h"
#include "cli/equity_question.h"
#include "cli/equity_report.h"
#include "cli/errors.h"
#include "cli/line_mode.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/stop_signals.h"

namespace pokermath::cli {
namespace {

constexpr const char* kExamples =
    R"(Against a hand or a range it is exact, and so is --by-class. Otherwise 'random' is sampled;
Ctrl-C stops and shows what was sampled so far. How ranges are written: pokermath range --help.
Equity is the share of the pot: a pot shared by k players counts 1/k.

Examples:
  pokermath equity AhKd 7s7c
  pokermath equity Ah Kd 7s 7c
  pokermath equity AhKd 7s7c --board 2c3d4h
  pokermath equity AhKd 7s7c --to turn --json
  pokermath equity AhKd 'TT+,AQs+,AKo' --board 2c3d4h
  pokermath equity AhKd 15% --board 2c7dTh --by-class --svg heat.svg
  pokermath equity AhKd 7s7c --game shortdeck
  pokermath equity AhKd random --players 6 --trials 10000000
  pokermath equity - <questions.txt    one question a line in the same words, like
                                       'AhKd 7s7c --board 2c3d4h'; options beside
                                       the - hold for every line; empty lines and
                                       lines that start with # have no answer)";

EquityAnswer SampleWithProgress(const EquityQuestion& question) {
  const StopSignals signals;
  Progress progress("sampling", question.trials, "trials", std::chrono::seconds(1));
  return Sample(question, [&progress](std::int64_t done) {
    progress.Update(done);
    return !StopRequested();
  });
}

int AnswerQuestionLines(const EquityWords& options, bool json) {
  return AnswerLines(json, [&](std::string_view line, std::string& out) {
    const EquityQuestion question = ReadQuestion(SplitLine(line, options));
    const EquityAnswer answer =
        question.IsExact() ? Count(question) : Sample(question, [](std::int64_t) { return true; });
    out += json ? JsonLine(EquityJson(question, answer)) : EquityLine(question, answer);
  });
}

struct EquityOptions {
  EquityWords words;
  std::string svg;
  bool json = false;
};

int RunEquity(const EquityOptions& options) {
  const bool lines = options.words.hands == std::vector<std::string>{"-"};
  if (lines && options.words.by_class) {
    throw UsageError("--by-class answers one question, not lines of them");
  }
  if (!options.svg.empty() && !options.words.by_class) {
    throw UsageError("--svg goes with --by-class: it draws the equity against every class");
  }
  if (lines) {
    CheckOptions(options.words);
    return AnswerQuestionLines(options.words, options.json);
  }
  const EquityQuestion question = ReadQuestion(options.words);
  const EquityAnswer answer = question.IsExact() ? Count(question) : SampleWithProgress(question);
  const Colours colours = Colours::ForStandardOutput();
  std::string page = EquityPage(question, answer, colours);
  Json json = EquityJson(question, answer);
  if (question.by_class) {
    const std::vector<ClassAnswer> classes = CountByClass(question);
    if (!options.svg.empty()) WriteFile(options.svg, ClassSvg(question, answer, classes));
    if (!classes.empty()) page += "\n" + ClassTable(classes, colours);
    json["by_class"] = ClassJson(classes);
  }
  Print(options.json ? JsonLine(json) : page);
  return kExitDone;
}

}  // namespace

void AddEquity(CLI::App& program, int& exit_code) {
  auto options = std::make_shared<EquityOptions>();
  EquityWords& words = options->words;
  CLI::App* command =
      program.add_subcommand("equity", "Equity of a Texas Hold'em or short-deck hand");
  command
      ->add_option("HAND OPPONENT", words.hands,
                   "Two cards, then two cards, a range or the word random; or - for one "
                   "question a line from standard input")
      ->required()
      ->type_name("")
      ->expected(-1);
  command->add_option("--game", words.game, "holdem or shortdeck [holdem]")->type_name("GAME");
  command
      ->add_option("--board", words.board, "Known board cards, no more than the street has [none]")
      ->type_name("CARDS");
  command
      ->add_option("--to", words.to, "Compare the hands on the flop, the turn or the river [river]")
      ->type_name("STREET");
  command
      ->add_option("--players", words.players,
                   "Players at the table against random hands, 2 to 10 [2]")
      ->type_name("N");
  command->add_option("--trials", words.trials, "Random deals [1000000]")->type_name("N");
  command->add_option("--seed", words.seed, "Start of the random numbers [1]")->type_name("N");
  command->add_flag("--by-class", words.by_class,
                    "Also list the equity against each class of the range");
  command->add_option("--svg", options->svg, "Also write it as a heat map; with --by-class")
      ->type_name("FILE");
  command->add_flag("--json", options->json, "Print a JSON object (one a line with -)");
  command->footer(kExamples);
  command->callback([options, &exit_code] { exit_code = RunEquity(*options); });
}

}  // namespace pokermath::cli
