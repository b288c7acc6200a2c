// `pokermath equity`: a hand against hands or a range, exact, or against random hands, sampled
// where there is no exact count or it takes long.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

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

constexpr auto kPatience = std::chrono::milliseconds(500);  // before progress is shown

constexpr const char* kExamples =
    R"(Against hands or a range it is exact, and so is --by-class. Otherwise 'random' is sampled;
Ctrl-C stops and shows what was sampled so far. How ranges are written: pokermath range --help.
A comma joins the pieces of a range, and a board is one word; the cards of a hand may be apart.
Equity is the share of the pot: a pot shared by k players counts 1/k. The time of the first answer
is nearly all for tables, which further lines of - find ready.
In Omaha the opponents are hands, or a range, or random. A range and one random hand are exact on
a board, and before the flop with --exact, which takes seconds, with a wide range minutes; a range
to the flop or the turn is exact always. In Hi/Lo, which knows no ranges, "wins" are whole pots,
"ties" parts of one, and "low" is what of the equity comes from low hands.

Examples:
  pokermath equity AhKd 7s7c
  pokermath equity Ah Kd 7s 7c
  pokermath equity AhKd 7s7c --board 2c3d4h
  pokermath equity AhKd 7s7c --to turn --json
  pokermath equity AhKd 'TT+,AQs+,AKo' --board 2c3d4h
  pokermath equity AhKd 15% --board 2c7dTh --by-class --svg heat.svg
  pokermath equity AhKd 7s7c --game shortdeck
  pokermath equity AhKd random --players 6 --trials 10000000
  pokermath equity AhKd random --players 6 --time-ms 500
  pokermath equity AhAdKhKd JsTs9c8c 7h7d6h6d --game omaha
  pokermath equity AhAdKhKd random --game omaha --board AsKs7c
  pokermath equity AhAdKhKd 'JTxx:ds,10%' --game omaha --board AsKs7c
  pokermath equity AhAdKhKd 10% --game omaha --to flop
  pokermath equity Ah2h3c4d AsAdKsQd --game omaha-hilo
  pokermath equity - <questions.txt    one question a line in the same words, like
                                       'AhKd 7s7c --board 2c3d4h'; options beside
                                       the - hold for every line; empty lines and
                                       lines that start with # have no answer)";

EquityAnswer SampleWithProgress(const EquityQuestion& question) {
  const StopSignals signals;
  Progress progress("sampling", question.trials, "trials", kPatience);
  const auto start = std::chrono::steady_clock::now();
  return Sample(question, [&](std::int64_t done) {
    auto part = static_cast<double>(done) / static_cast<double>(question.trials);
    if (question.time) {
      const Seconds elapsed = std::chrono::steady_clock::now() - start;
      part = std::max(part, elapsed / Seconds(*question.time));
    }
    progress.Update(done, part);
    return !StopRequested();
  });
}

EquityAnswer CountWithProgress(const EquityQuestion& question) {
  const StopSignals signals;
  std::optional<Progress> progress;
  return Count(question, [&](std::int64_t done, std::int64_t all) {
    const char* unit = question.omaha_range ? "boards" : "kinds of board";
    if (!progress) progress.emplace("counting", all, unit, kPatience);
    progress->Update(done);
    return !StopRequested();
  });
}

int AnswerQuestionLines(const EquityWords& options, bool json) {
  return AnswerLines(json, [&](std::string_view line, std::string& out) {
    const EquityQuestion question = ReadQuestion(SplitLine(line, options));
    const EquityAnswer answer =
        question.exact ? Count(question) : Sample(question, [](std::int64_t) { return true; });
    out += json ? JsonLine(EquityJson(question, answer)) : EquityLine(question, answer);
  });
}

// The parser has taken options and other words apart; which one stood behind which is in its order.
void CheckOrder(const CLI::App& command, const EquityWords& words) {
  const CLI::Option* before = nullptr;
  auto word = words.hands.begin();
  for (const CLI::Option* option : command.parse_order()) {
    if (option->get_positional()) {
      if (before != nullptr) CheckWordBehind(before->get_name(), before->results()[0], *word);
      ++word;
    }
    before = option;
  }
}

struct EquityOptions {
  EquityWords words;
  bool json = false;
};

int RunEquity(const EquityOptions& options) {
  const EquityWords& words = options.words;
  if (words.hands == std::vector<std::string>{"-"}) {
    if (words.by_class) throw UsageError("--by-class answers one question, not lines of them");
    CheckOptions(words);
    return AnswerQuestionLines(words, options.json);
  }
  const EquityQuestion question = ReadQuestion(words);
  const bool picture_only = IsPictureAlone(words.svg, options.json);
  const EquityAnswer answer =
      question.exact ? CountWithProgress(question) : SampleWithProgress(question);
  const Colours colours = Colours::ForStandardOutput();
  std::string page = EquityPage(question, answer, colours);
  Json json = EquityJson(question, answer);
  if (question.by_class) {
    const std::vector<ClassAnswer> classes = CountByClass(question);
    if (words.svg) WritePicture(*words.svg, ClassSvg(question, answer, classes));
    if (picture_only) return kExitDone;
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
      program.add_subcommand("equity", "Equity of a Texas Hold'em, short-deck or Omaha hand");
  command
      ->add_option(
          "HAND OPPONENT", words.hands,
          "Two cards, then two cards, a range or the word random; in Omaha a hand, then "
          "hands, a range or the word random; or - for one question a line from standard input")
      ->required()
      ->type_name("")
      ->expected(-1);
  command
      ->add_option("--game", words.game,
                   "holdem, shortdeck, omaha, omaha5, omaha-hilo or omaha5-hilo [holdem]")
      ->type_name("GAME");
  command
      ->add_option("--board", words.board, "Known board cards, no more than the street has [none]")
      ->type_name("CARDS");
  command
      ->add_option("--dead", words.dead,
                   "Omaha: cards that nobody holds and that cannot come [none]")
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
  command
      ->add_option(
          "--time-ms", words.time_ms,
          "Milliseconds for sampling, which then has no end of its own but --trials [none]")
      ->type_name("N");
  command->add_flag("--exact", words.exact,
                    "Count, never sample; Omaha: a random hand or a range too");
  command->add_flag("--by-class", words.by_class,
                    "Also list the equity against each class of the range");
  command
      ->add_option("--svg", words.svg,
                   "Also write it as a heat map; - for the map alone; with --by-class")
      ->type_name("FILE");
  command->add_flag("--json", options->json, "Print a JSON object (one a line with -)");
  command->footer(kExamples);
  command->callback([options, command, &exit_code] {
    CheckOrder(*command, options->words);
    exit_code = RunEquity(*options);
  });
}

}  // namespace pokermath::cli
