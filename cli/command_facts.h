// What commands, options and words there are, as plain data: what the man page and the completion
// of shells are written from, so that they say what the parser takes.

#ifndef POKERMATH_CLI_COMMAND_FACTS_H_
#define POKERMATH_CLI_COMMAND_FACTS_H_

#include <string>
#include <vector>

namespace pokermath::cli {

enum class Paths { kNone, kFiles, kFolders };

/// An option, or words that belong to none.
struct OptionFacts {
  std::vector<std::string> names;  ///< "-h", "--help"; none for words
  std::string value;               ///< "CARDS"; empty for a flag
  std::string help;
  std::string environment;          ///< the variable that may have the value
  std::vector<std::string> values;  ///< all that there are; empty for any
  Paths paths = Paths::kNone;       ///< what of the disk it may name
  bool required = false;
  bool repeated = false;
};

struct CommandFacts {
  std::string path;  ///< "pokermath db query"
  std::string description;
  std::string footer;
  std::vector<OptionFacts> options;
  std::vector<OptionFacts> words;
  std::vector<CommandFacts> commands;
  bool needs_command = false;

  /// The last word of the path.
  std::string name() const { return path.substr(path.rfind(' ') + 1); }
};

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_COMMAND_FACTS_H_
