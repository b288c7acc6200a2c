// The command-line tool. A subcommand parses its words, checks them, calls the library and prints;
// here is what they share: the program's own options, errors and exit codes.

#include <fcntl.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/nearest.h"
#include "cli/output.h"
#include "platform/text.h"
#include "pokermath/instructions.h"
#include "pokermath/messages.h"
#include "pokermath/version.h"
#include "support/odbc/connect_text.h"

namespace pokermath::cli {
namespace {

constexpr const char* kMainExamples =
    R"(Cards are a rank (23456789TJQKA or 10) and a suit (cdhs or ♣♦♥♠), in either case: AhKd, 10c.

Examples:
  pokermath eval AhKhQhJhTh2c3d
  pokermath equity AhKd 7s7c
  pokermath equity AhKd 15% random --board 2c7dTh
  pokermath nuts AhKhQsJs Th9h2h
  pokermath outs AsKsQsJs Ts9s2d3c
  pokermath low Ah2dKsQc 3c7d8h
  pokermath points AhAdKhKd
  pokermath range 'TT+,A9s+,KJo+'
  pokermath pots --stakes 100,50,100 --scores 5,9,7
  pokermath db query 'SELECT * FROM hands' --connect 'Driver=SQLite3;Database=hands.db'
  pokermath tables build
  pokermath doctor

'pokermath SUBCOMMAND --help' says more and shows examples.
Exit codes: 0 done, 1 failed, 2 wrong usage.)";

// A file that we open must never become standard output because the caller had closed that: what
// is closed becomes something that can be neither read, for standard input, nor written.
void OccupyStandardStreams() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    const int mode = fd == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (fcntl(fd, F_GETFD) == -1 && open("/dev/null", mode) != fd) std::abort();
  }
}

std::vector<std::string> NamesOfSubcommands(CLI::App& command) {
  std::vector<std::string> names;
  for (const CommandFacts& subcommand : Command(&command).Facts().commands) {
    names.push_back(subcommand.name());
  }
  return names;
}

std::vector<std::string> NamesOfOptions(CLI::App& command) {
  std::vector<std::string> names;
  for (const OptionFacts& option : Command(&command).Facts().options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

// The parser takes a word in brackets for a list and splits it; ranks in brackets may begin and end
// a range. A blank behind the word hides it from the parser.
std::string Hidden(std::string word) {
  const std::size_t value = word.starts_with("--") ? word.find('=') + 1 : 0;
  if (word.substr(value).starts_with('[') && word.find_last_not_of(' ') == word.rfind(']')) {
    word += ' ';
  }
  return word;
}

// The value as the user gave it.
std::string Shown(std::string value) {
  const bool in_brackets =
      value.starts_with('[') && value.find_last_not_of(' ') == value.rfind(']');
  if (in_brackets && value.ends_with(' ')) value.pop_back();
  return value;
}

// A word of the user in quotes; it may be a connect string in the wrong place.
std::string QuotedWord(const std::string& word) {
  return Quoted(ToUtf8(WithoutPasswordsInWord(FromUtf8(Shown(word)))));
}

// Why the words that came to `command` could not be parsed, on one line.
std::string ParseErrorText(const CLI::ParseError& error, CLI::App& command) {
  const std::vector<std::string> surplus = command.remaining();
  const std::vector<std::string> subcommands = NamesOfSubcommands(command);
  const auto option = std::find_if(surplus.begin(), surplus.end(),
                                   [](const std::string& word) { return word.starts_with("-"); });
  if (option != surplus.end()) {
    return QuotedWord(*option) +
           (subcommands.empty() ? " is not an option" : " is not an option before a subcommand") +
           NearestHint(option->substr(0, option->find('=')), NamesOfOptions(command));
  }
  const bool mismatch = dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr ||
                        dynamic_cast<const CLI::ValidationError*>(&error) != nullptr;
  if (!subcommands.empty() && !mismatch) {
    const std::string list = fmt::format(": {}", fmt::join(subcommands, ", "));
    if (surplus.empty()) return "a subcommand is missing" + list;
    return QuotedWord(surplus.front()) + " is not a subcommand" + list +
           NearestHint(surplus.front(), subcommands);
  }
  if (!surplus.empty()) return QuotedWord(surplus.front()) + " is one word too many";
  if (mismatch) {
    const std::string text = error.what();
    const std::string name = text.substr(0, text.find(':'));
    const CLI::Option* known = command.get_option_no_throw(name);
    return name + (known != nullptr && known->count() > 1 ? " is given twice" : " needs a value");
  }
  return error.what();
}

// The command that could not be parsed is the first with words that it does not know, else the
// last one.
UsageError ToUsageError(const CLI::ParseError& error, CLI::App& program) {
  CLI::App* command = &program;
  std::string words = program.get_name();
  while (command->remaining_size() == 0 && !command->get_subcommands().empty()) {
    command = command->get_subcommands().front();
    words += " " + command->get_name();
  }
  return UsageError(fmt::format("{} (see {} --help)", ParseErrorText(error, *command), words));
}

// An option that is there needs a value: an empty one comes from a variable that is not set.
void CheckValues(CLI::App& command) {
  for (CLI::Option* option : command.get_options()) {
    option->transform(Shown);
    if (option->get_positional()) continue;
    option->check([](const std::string& value) { return value.empty() ? "empty" : ""; });
  }
  for (CLI::App* subcommand : command.get_subcommands([](CLI::App*) { return true; })) {
    CheckValues(*subcommand);
  }
}

// The library passes over a level that it cannot use; a user who asked for one is told.
void CheckInstructionLevel() {
  const char* name = std::getenv("POKERMATH_ISA");
  if (name == nullptr || *name == '\0' || UseInstructionLevel(name)) return;
  std::string levels;
  for (const std::string_view level : InstructionLevels()) {
    levels += (levels.empty() ? "" : ", ") + std::string(level);
  }
  throw UsageError(
      fmt::format("POKERMATH_ISA is {}, which is no level of instructions of this "
                  "machine ({})",
                  Quoted(name), levels));
}

int ParseAndRun(CLI::App& program, int argc, char** argv) {
  int exit_code = kExitDone;
  AddEval(Command(&program), exit_code);
  AddEquity(Command(&program), exit_code);
  AddNuts(Command(&program), exit_code);
  AddOuts(Command(&program), exit_code);
  AddLow(Command(&program), exit_code);
  AddPoints(Command(&program), exit_code);
  AddRange(Command(&program), exit_code);
  AddPots(Command(&program), exit_code);
  AddHistory(Command(&program), exit_code);
  AddDb(Command(&program), exit_code);
  AddBulk(Command(&program), exit_code);
  AddTables(Command(&program), exit_code);
  AddDoctor(Command(&program), exit_code);
  AddCompletion(Command(&program));
  AddManual(Command(&program));
  CheckValues(program);
  try {
    // The last word comes first.
    std::vector<std::string> words;
    for (int i = argc - 1; i > 0; --i) words.push_back(Hidden(argv[i]));
    program.parse(std::move(words));
  } catch (const CLI::CallForHelp&) {
    Print(program.help());
  } catch (const CLI::CallForVersion& version) {
    Print(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    throw ToUsageError(error, program);
  }
  return exit_code;
}

int Run(int argc, char** argv) {
  CLI::App program("Exact poker mathematics: hand values, equity, ranges, tables.", "pokermath");
  program.set_version_flag("--version", std::string("pokermath ") + Version(), "Print the version");
  program.require_subcommand(1);
  program.footer(kMainExamples);
  try {
    CheckInstructionLevel();
    return ParseAndRun(program, argc, argv);
  } catch (const UsageError& error) {
    if (argc <= 1) {
      const std::string help = program.help();
      std::fwrite(help.data(), 1, help.size(), stderr);
    } else {
      PrintError(error.what() + Command(&program).HintFor(error.what()));
    }
    return kExitUsage;
  } catch (const std::bad_alloc&) {
    PrintError("not enough memory");
  } catch (const std::exception& error) {
    PrintError(error.what());
  }
  return kExitFailed;
}

}  // namespace
}  // namespace pokermath::cli

int main(int argc, char** argv) {
  pokermath::cli::OccupyStandardStreams();
  // A limit on file sizes is an error like a full disk, not a reason to be killed.
  std::signal(SIGXFSZ, SIG_IGN);
  pokermath::SetMessageHandler(
      [](const CString& text) { pokermath::cli::PrintError(pokermath::ToUtf8(text)); });
  return pokermath::cli::Run(argc, argv);
}
