// The subcommands, one source each, and how they say what words they take.

#ifndef POKERMATH_CLI_COMMAND_H_
#define POKERMATH_CLI_COMMAND_H_

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command_facts.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace pokermath::cli {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitAgain = 75;  // stopped in good order: start it again

// Commands and options are handles of the parser's objects, which live as long as the program. The
// parser's own headers take compilers twenty seconds a source, so only command.cpp and main.cpp
// see them.

/// An option with a value, or words that belong to none.
class Option {
 public:
  explicit Option(CLI::Option* option) : option_(option) {}

  Option Required();
  Option ValueName(const std::string& name);  ///< as the help shows it: "CARDS"
  Option ManyWords();                         ///< takes one or more
  Option MayBeRepeated();                     ///< with one value each time
  Option FromEnvironment(const std::string& variable);
  /// What values there are, for those who complete words or mistype them; who reads the value
  /// checks it.
  Option OneOf(std::span<const std::string_view> values);
  Option OrFile();  ///< may be a file, though it is not called FILE
  void Hide();      ///< from the help

 private:
  CLI::Option* option_;
};

struct GivenOption {
  std::string name;
  std::string first_value;  ///< of all times that it was given
  bool positional;          ///< words that belong to none
};

class Command {
 public:
  explicit Command(CLI::App* app) : app_(app) {}

  Command AddCommand(const std::string& name, const std::string& description);
  void RequireCommand();  ///< one of them has to be given
  void Hide();            ///< from the help, the man page and completion

  // Values live until the command has run.
  Option AddOption(const std::string& name, std::string& value, const std::string& help);
  Option AddOption(const std::string& name, std::optional<std::string>& value,
                   const std::string& help);
  Option AddOption(const std::string& name, std::vector<std::string>& values,
                   const std::string& help);
  Option AddFlag(const std::string& name, bool& value, const std::string& help);

  void SetFooter(const std::string& text);
  void SetAction(std::function<void()> action);

  /// Whether one of its commands was given.
  bool HasCommand() const;
  /// Options and words in the order in which they were given.
  std::vector<GivenOption> Given() const;
  /// All that is not hidden.
  CommandFacts Facts() const;
  /// "; did you mean 'omaha'?" where a value given, or a word in a command's place, is quoted in an
  /// error and is near to one that there is.
  std::string HintFor(const std::string& error) const;

 private:
  CLI::App* app_;
};

// Each adds its subcommand to the program. What the subcommand returns goes to `exit_code`, which
// has to live until the command line has been parsed.
void AddEval(Command program, int& exit_code);
void AddEquity(Command program, int& exit_code);
void AddNuts(Command program, int& exit_code);
void AddOuts(Command program, int& exit_code);
void AddLow(Command program, int& exit_code);
void AddPoints(Command program, int& exit_code);
void AddRange(Command program, int& exit_code);
void AddPots(Command program, int& exit_code);
void AddHistory(Command program, int& exit_code);
void AddDb(Command program, int& exit_code);
void AddBulk(Command program, int& exit_code);
void AddTables(Command program, int& exit_code);
void AddDoctor(Command program, int& exit_code);
void AddCompletion(Command program);
void AddManual(Command program);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_COMMAND_H_
