// `pokermath manual`: the man page, pokermath(1). Commands and options are what the parser knows;
// the rest of the page stands here.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "cli/command.h"
#include "cli/output.h"
#include "pokermath/version.h"

namespace pokermath::cli {
namespace {

// A line of text as the formatter reads it. A hyphen is always a minus, which can be copied into a
// shell.
std::string Roff(std::string_view text) {
  std::string escaped;
  if (text.starts_with('.')) escaped = "\\&";
  for (const char c : text) {
    switch (c) {
      case '\\':
        escaped += "\\e";
        break;
      case '-':
        escaped += "\\-";
        break;
      case '\'':
        escaped += "\\(aq";
        break;
      case '`':
        escaped += "\\(ga";
        break;
      case '^':
        escaped += "\\(ha";
        break;
      case '~':
        escaped += "\\(ti";
        break;
      case '"':
        escaped += "\\(dq";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Bold(std::string_view text) { return "\\fB" + Roff(text) + "\\fR"; }
std::string Italic(std::string_view text) { return "\\fI" + Roff(text) + "\\fR"; }

// The text of a help page: paragraphs are filled, and lines that are set in stay as they are.
std::string Body(std::string_view text) {
  if (text.empty()) return "";
  std::string page = ".PP\n";
  bool as_it_is = false;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const bool set_in = line.starts_with(' ');
    if (set_in && !as_it_is) page += ".PP\n.EX\n";
    if (!set_in && as_it_is) page += ".EE\n.PP\n";
    if (!line.empty()) page += Roff(line) + "\n";
    if (line.empty() && !as_it_is) page += ".PP\n";
    as_it_is = set_in;
  }
  if (as_it_is) page += ".EE\n";
  return page;
}

// "One of them" where the help does not name them all.
std::string ValuesText(const OptionFacts& option) {
  const bool named = std::ranges::all_of(option.values, [&](const std::string& value) {
    return option.help.find(value) != std::string::npos;
  });
  return named
             ? ""
             : fmt::format("Known: {}.\n", Roff(fmt::format("{}", fmt::join(option.values, ", "))));
}

std::string Entry(const OptionFacts& option) {
  std::string head;
  for (const std::string& name : option.names) head += (head.empty() ? "" : ", ") + Bold(name);
  if (!option.value.empty()) head += (head.empty() ? "" : " ") + Italic(option.value);
  std::string text = ".TP\n" + head + "\n" + Roff(option.help) + ".\n" + ValuesText(option);
  const bool required = option.required && !option.names.empty();
  if (required && option.environment.empty()) text += "It has to be given.\n";
  if (option.repeated && !option.names.empty()) text += "It may be given several times.\n";
  if (!option.environment.empty()) {
    text += "Without it, it is taken from the variable " + Bold(option.environment) + ".\n";
  }
  return text;
}

std::string Synopsis(const CommandFacts& command) {
  std::string text = Bold(command.path) + " [" + Italic("OPTION") + "]...";
  for (const OptionFacts& word : command.words) {
    std::string name = Italic(word.value);
    if (word.repeated && !word.value.ends_with("...")) name += "...";
    text += word.required ? " " + name : " [" + name + "]";
  }
  if (!command.commands.empty()) {
    text += command.needs_command ? " " + Italic("COMMAND") : " [" + Italic("COMMAND") + "]";
  }
  return text;
}

void AppendCommand(const CommandFacts& command, std::string& page) {
  page += ".SS " + Roff(command.path) + "\n" + Synopsis(command) + "\n.PP\n" +
          Roff(command.description) + ".\n";
  for (const OptionFacts& word : command.words) page += Entry(word);
  for (const OptionFacts& option : command.options) page += Entry(option);
  page += Body(command.footer);
  for (const CommandFacts& inner : command.commands) AppendCommand(inner, page);
}

struct Term {
  const char* head;
  const char* text;
};

std::string Terms(std::initializer_list<Term> terms) {
  std::string text;
  for (const Term& term : terms) text += ".TP\n" + Bold(term.head) + "\n" + Roff(term.text) + "\n";
  return text;
}

std::string Examples(std::initializer_list<Term> terms) {
  std::string text;
  for (const Term& term : terms) {
    text += ".PP\n" + Roff(term.text) + "\n.PP\n.EX\n    " + Roff(term.head) + "\n.EE\n";
  }
  return text;
}

std::string Ending() {
  return ".SH EXIT STATUS\n" +
         Terms({{"0", "What was asked for is done."},
                {"1",
                 "It failed: a file that cannot be read or written, a database that refuses, a "
                 "question among many that has no answer. Standard error says why."},
                {"2", "Wrong usage: standard error names the word that was not understood."},
                {"75", "Bulk work was stopped in good order: started again, it goes on."}}) +
         ".SH ENVIRONMENT\n" +
         Terms(
             {{"POKERMATH_DATA", "The folder of the table files."},
              {"XDG_DATA_HOME, HOME",
               "Without POKERMATH_DATA, table files are in $XDG_DATA_HOME/pokermath, and without "
               "that in $HOME/.local/share/pokermath."},
              {"POKERMATH_ISA",
               "The level of vector instructions: baseline, avx2 or avx512, where the machine has "
               "it. Without it the best one is taken."},
              {"POKERMATH_CONNECT",
               "The connect string of a database where --connect is not given."},
              {"NO_COLOR, TERM",
               "Where NO_COLOR is set, or TERM is dumb or not set, pages have no colours."},
              {"SLURM_ARRAY_TASK_ID, SLURM_ARRAY_TASK_MIN, SLURM_ARRAY_TASK_MAX, "
               "SLURM_ARRAY_TASK_STEP, OMPI_COMM_WORLD_RANK, OMPI_COMM_WORLD_SIZE, PARALLEL_SEQ",
               "Which shard of bulk work a process does, where a scheduler has set them."}}) +
         ".SH FILES\n" +
         Terms({{"~/.local/share/pokermath/",
                 "Table files that 'pokermath tables build' has written. "
                 "No answer needs them."},
                {"/etc/odbcinst.ini, /etc/odbc.ini, ~/.odbc.ini",
                 "Drivers and sources of databases behind ODBC."}}) +
         ".SH EXAMPLES\n" +
         Examples({{"pokermath equity AhKd 7s7c", "Hand against hand, counted:"},
                   {"pokermath equity 15% AA:0.5,KK 'QQ+,AK' --board 2c7dTh",
                    "Three ranges on a flop, one of them with weights:"},
                   {"pokermath equity AhKd QQ+ --board 2c7dTh --by next",
                    "A hand against a range, with each card that may come:"},
                   {"pokermath eval AhKhQhJhTh2c3d", "What cards are worth:"},
                   {"pokermath range 15% --svg -", "A range as a picture:"},
                   {"pokermath pots --stakes 100,50,100 --scores 5,9,7",
                    "The pot and a side pot, and who gets them:"},
                   {"pokermath bulk flop-report AhKd QQ+ --out report",
                    "A question on every flop, in a folder where it can be stopped and started "
                    "again:"}}) +
         ".SH SEE ALSO\n"
         "The shared library's interface is documented in its headers, and longer texts on ranges, "
         "bulk\n"
         "work, clusters and table files are in\n.IR /usr/share/doc/pokermath/docs/ .\n"
         ".PP\n.BR odbcinst (1),\n.BR sbatch (1),\n.BR parallel (1)\n";
}

std::string Manual(const CommandFacts& program) {
  std::string page = fmt::format(
      ".TH POKERMATH 1 \"\" \"pokermath {}\" \"User Commands\"\n.nh\n"
      ".SH NAME\npokermath \\- exact poker mathematics: hand values, equity, ranges, tables\n"
      ".SH SYNOPSIS\n{} {} [{}]... [{}]...\n.br\n{}\n.br\n{} {}\n",
      Version(), Bold("pokermath"), Italic("SUBCOMMAND"), Italic("OPTION"), Italic("WORD"),
      Bold("pokermath --version"), Bold("pokermath"), "[\\fISUBCOMMAND\\fR] " + Bold("--help"));
  page +=
      ".SH DESCRIPTION\n"
      "Works out what poker hands are worth, how often hands and ranges win against each other, "
      "which\n"
      "cards improve a hand, and who gets which pot, in Texas Hold\\(aqem, short deck and Omaha "
      "with four\n"
      "to six cards. What can be counted in about a second is counted exactly; longer questions "
      "are\n"
      "sampled, and the answer says so.\n"
      ".PP\n"
      "A card is a rank (23456789TJQKA or 10) and a suit (cdhs), in either case: AhKd, 10c.\n"
      ".PP\n"
      "Every subcommand but \\fBcompletion\\fR and \\fBbulk submit\\fR prints JSON with "
      "\\fB\\-\\-json\\fR.\n"
      ".SH OPTIONS\n";
  for (const OptionFacts& option : program.options) page += Entry(option);
  page += ".SH SUBCOMMANDS\n";
  for (const CommandFacts& command : program.commands) AppendCommand(command, page);
  return page + Ending();
}

}  // namespace

void AddManual(Command program) {
  Command command = program.AddCommand("manual", "The man page, as its formatter reads it");
  command.Hide();
  command.SetAction([program] { Print(Manual(program.Facts())); });
}

}  // namespace pokermath::cli
