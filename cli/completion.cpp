// `pokermath completion`: scripts with which shells complete its commands, options and values.
//
// A script is data about every command, written from what the parser knows, and a few lines that
// find the command in which the cursor stands. Values of options are passed over on the way: a
// folder called "equity" is no command.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"

namespace pokermath::cli {
namespace {

constexpr const char* kCompletionHelp =
    R"(To have it in every new shell:
  bash  pokermath completion bash >~/.local/share/bash-completion/completions/pokermath
        or, in ~/.bashrc: source <(pokermath completion bash)
  zsh   in ~/.zshrc, behind compinit: source <(pokermath completion zsh)
  fish  pokermath completion fish >~/.config/fish/completions/pokermath.fish
A Debian package of pokermath has all three in place.)";

using Writer = std::function<void(const CommandFacts& command)>;

void ForEachCommand(const CommandFacts& command, const Writer& write) {
  write(command);
  for (const CommandFacts& inner : command.commands) ForEachCommand(inner, write);
}

std::vector<std::string> CommandNames(const CommandFacts& command) {
  std::vector<std::string> names;
  for (const CommandFacts& inner : command.commands) names.push_back(inner.name());
  return names;
}

// Of all options, or of those that have a value.
std::vector<std::string> OptionNames(const CommandFacts& command, bool with_value) {
  std::vector<std::string> names;
  for (const OptionFacts& option : command.options) {
    if (with_value && option.value.empty()) continue;
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

// How many words of its own a command completes. Where it has commands, that is the first one,
// which stands in the place of their names.
constexpr int kAnyWords = 999;
int MostWords(const CommandFacts& command) {
  if (!command.commands.empty()) return 1;
  const bool any = !command.words.empty() && command.words.back().repeated;
  return any ? kAnyWords : static_cast<int>(command.words.size());
}

std::string Replaced(std::string text, std::string_view of, std::string_view by) {
  for (std::size_t at = text.find(of); at != text.npos; at = text.find(of, at + by.size())) {
    text.replace(at, of.size(), by);
  }
  return text;
}

// In single quotes, as bash and zsh read them.
std::string ShellQuoted(const std::string& text) {
  return "'" + Replaced(text, "'", R"('\'')") + "'";
}

// --- bash ---

constexpr const char* kBashWalk = R"(
_pokermath() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local command=pokermath commands options with_value most values paths word i given=0
  # Readline takes --game=omaha apart.
  if [[ $cur == = ]]; then
    cur=
  elif [[ $prev == = ]] && ((COMP_CWORD > 1)); then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  _pokermath_command "$command"
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    [[ -n $word ]] || continue
    if [[ " $with_value " == *" $word "* ]]; then
      ((++i))
      [[ ${COMP_WORDS[i]} != = ]] || ((++i))
    elif [[ " $commands " == *" $word "* ]]; then
      command+=" $word" given=0
      _pokermath_command "$command"
    elif [[ $word == - || $word != -* ]]; then
      ((++given))
    fi
  done

  COMPREPLY=()
  if [[ " $with_value " == *" $prev "* ]]; then
    _pokermath_values "$command $prev"
  elif [[ $cur == -* ]]; then
    values=$options paths=
  else
    values='' paths=''
    if ((given < most)); then
      _pokermath_values "$command"
      values="$commands $values"
    fi
    # Where nothing is known of a word, options may follow as well.
    [[ -n $cur || -n $paths || -n ${values// /} ]] || values=$options
  fi
  mapfile -t COMPREPLY < <(compgen -W "$values" -- "$cur")
  if [[ -n $paths ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen "$paths" -- "$cur")
  fi
}
complete -F _pokermath pokermath
)";

std::string BashValues(const std::string& of, const OptionFacts& option) {
  if (option.values.empty() && option.paths == Paths::kNone) return "";
  const char* paths = option.paths == Paths::kFiles     ? "-f"
                      : option.paths == Paths::kFolders ? "-d"
                                                        : "";
  return fmt::format("    '{}') values='{}' paths={} ;;\n", of, fmt::join(option.values, " "),
                     paths);
}

std::string BashScript(const CommandFacts& program) {
  std::string commands, values;
  ForEachCommand(program, [&](const CommandFacts& command) {
    commands += fmt::format(
        "    '{}')\n      commands='{}'\n      options='{}'\n      with_value='{}'\n      most={}\n"
        "      ;;\n",
        command.path, fmt::join(CommandNames(command), " "),
        fmt::join(OptionNames(command, false), " "), fmt::join(OptionNames(command, true), " "),
        MostWords(command));
    for (const OptionFacts& option : command.options) {
      for (const std::string& name : option.names) {
        values += BashValues(command.path + " " + name, option);
      }
    }
    // What the last of them may be, for all.
    if (!command.words.empty()) values += BashValues(command.path, command.words.back());
  });
  return "# Completion of pokermath in bash.\n\n_pokermath_command() {\n  case $1 in\n" + commands +
         "  esac\n}\n\n_pokermath_values() {\n  values='' paths=''\n  case $1 in\n" + values +
         "  esac\n}\n" + kBashWalk;
}

// --- zsh ---

// In a specification of _arguments, where these have a meaning.
std::string ZshText(std::string text) {
  for (const char* special : {"\\", "[", "]", ":"}) {
    text = Replaced(text, special, std::string("\\") + special);
  }
  return text;
}

std::string ZshFunction(const CommandFacts& command) {
  return "_" + Replaced(command.path, " ", "_");
}

// What may stand there: values, paths, or words of which nothing is known.
std::string ZshAction(const OptionFacts& option) {
  const std::string files = option.paths == Paths::kFiles     ? "_files"
                            : option.paths == Paths::kFolders ? "_files -/"
                                                              : "";
  const std::string values = fmt::format("{}", fmt::join(option.values, " "));
  if (values.empty()) return files.empty() ? " " : files;
  if (files.empty()) return "(" + values + ")";
  // A blank in front, or _arguments puts options of its own behind the first word.
  return fmt::format(" _alternative \"values:value:({})\" \"files:file:{}\"", values, files);
}

std::string ZshOption(const OptionFacts& option) {
  std::string text;
  for (const std::string& name : option.names) {
    // The short and the long name of an option exclude each other.
    std::string spec = option.repeated ? "*" : fmt::format("({})", fmt::join(option.names, " "));
    spec += name + (option.value.empty() ? "" : "=") + "[" + ZshText(option.help) + "]";
    if (!option.value.empty()) spec += ":" + ZshText(option.value) + ":" + ZshAction(option);
    text += " \\\n    " + ShellQuoted(spec);
  }
  return text;
}

std::string ZshOptions(const CommandFacts& command) {
  std::string text;
  for (const OptionFacts& option : command.options) text += ZshOption(option);
  return text;
}

std::string ZshWords(const CommandFacts& command) {
  std::string text;
  for (const OptionFacts& word : command.words) {
    const bool last = &word == &command.words.back() && word.repeated;
    text += " \\\n    " +
            ShellQuoted((last ? "*:" : ":") + ZshText(word.value) + ":" + ZshAction(word));
  }
  return text;
}

// The first word is a command, or else one of the words that the command itself takes.
std::string ZshCommands(const CommandFacts& command) {
  std::string names, cases;
  for (const CommandFacts& inner : command.commands) {
    names += "\n        " + ShellQuoted(inner.name() + ":" + ZshText(inner.description));
    cases += fmt::format("        {}) {} ;;\n", inner.name(), ZshFunction(inner));
  }
  std::string other;
  if (!command.words.empty()) {
    const OptionFacts& word = command.words.back();
    if (!word.values.empty())
      other += fmt::format("      compadd {}\n", fmt::join(word.values, " "));
    if (word.paths != Paths::kNone) other += "      _files\n";
  }
  return fmt::format(
      "  case $state in\n    command)\n      commands=({})\n      _describe command commands\n{}"
      "      ;;\n    words)\n      case $line[1] in\n{}{}      esac\n      ;;\n  esac\n",
      names, other, cases,
      other.empty() ? "" : "        *) _arguments" + ZshOptions(command) + " '*: :_files' ;;\n");
}

std::string ZshScript(const CommandFacts& program) {
  std::string text = "#compdef pokermath\n# Completion of pokermath in zsh.\n";
  ForEachCommand(program, [&](const CommandFacts& command) {
    const bool has_commands = !command.commands.empty();
    text += "\n" + ZshFunction(command) + "() {\n";
    if (has_commands)
      text +=
          "  local curcontext=$curcontext state line\n  local -a commands\n  typeset -A opt_args\n";
    text += has_commands ? "  _arguments -C" : "  _arguments";
    text += ZshOptions(command);
    text += has_commands
                ? " \\\n    '1: :->command' \\\n    '*:: :->words'\n" + ZshCommands(command)
                : ZshWords(command) + "\n";
    text += "}\n";
  });
  return text +
         "\nif [[ $funcstack[1] == _pokermath ]]; then\n  _pokermath \"$@\"\nelse\n"
         "  compdef _pokermath pokermath\nfi\n";
}

// --- fish ---

constexpr const char* kFishWalk = R"(
# Whether the words before the cursor end in this command, and fewer than so many words of its own.
function __pokermath_at -a most
    set -l command pokermath
    set -l given 0
    set -l words (commandline -opc)
    set -l is_value 0
    for word in $words[2..]
        if test $is_value = 1
            set is_value 0
        else if contains -- "$command $word" $__pokermath_with_value
            set is_value 1
        else if contains -- "$command $word" $__pokermath_commands
            set command "$command $word"
            set given 0
        else if string match -qvr -- '^-.' $word
            set given (math $given + 1)
        end
    end
    test "$command" = "$argv[2..]" -a $given -lt $most
end

complete -c pokermath -f
)";

std::string FishQuoted(const std::string& text) {
  return "'" + Replaced(Replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
}

std::string FishLine(const CommandFacts& command, int most, const std::string& what) {
  return fmt::format("complete -c pokermath -n '__pokermath_at {} {}' {}\n", most, command.path,
                     what);
}

std::string FishValues(const OptionFacts& option) {
  std::string text;
  if (option.paths == Paths::kFiles) text += " -F";
  std::string values = fmt::format("{}", fmt::join(option.values, " "));
  if (option.paths == Paths::kFolders) values = "(__fish_complete_directories (commandline -ct))";
  return values.empty() ? text : text + " -a " + FishQuoted(values);
}

std::string FishOption(const OptionFacts& option) {
  std::string text;
  for (const std::string& name : option.names) {
    const bool is_long = name.starts_with("--");
    text += (is_long ? " -l " : " -s ") + name.substr(is_long ? 2 : 1);
  }
  if (!option.value.empty())
    text += (option.paths == Paths::kFiles ? " -r" : " -x") + FishValues(option);
  return text.substr(1) + " -d " + FishQuoted(option.help);
}

std::string FishScript(const CommandFacts& program) {
  std::string commands, with_value, lines;
  ForEachCommand(program, [&](const CommandFacts& command) {
    for (const std::string& name : OptionNames(command, true)) {
      with_value += " " + FishQuoted(command.path + " " + name);
    }
    const int most = MostWords(command);
    for (const CommandFacts& inner : command.commands) {
      commands += " " + FishQuoted(inner.path);
      lines +=
          FishLine(command, most, "-a " + inner.name() + " -d " + FishQuoted(inner.description));
    }
    for (const OptionFacts& option : command.options)
      lines += FishLine(command, kAnyWords, FishOption(option));
    if (command.words.empty()) return;
    const std::string values = FishValues(command.words.back());
    if (!values.empty()) lines += FishLine(command, most, values.substr(1));
  });
  return "# Completion of pokermath in fish.\n\nset -g __pokermath_commands" + commands +
         "\nset -g __pokermath_with_value" + with_value + "\n" + kFishWalk + lines;
}

struct Shell {
  std::string_view name;
  std::string (*script)(const CommandFacts& program);
};
constexpr std::array<Shell, 3> kShells = {
    {{"bash", BashScript}, {"zsh", ZshScript}, {"fish", FishScript}}};
constexpr auto kShellNames = [] {
  std::array<std::string_view, kShells.size()> names;
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = kShells[i].name;
  return names;
}();

}  // namespace

void AddCompletion(Command program) {
  auto shell = std::make_shared<std::string>();
  Command command = program.AddCommand("completion", "A script that completes words in a shell");
  command.AddOption("SHELL", *shell, OneOf(kShellNames))
      .Required()
      .ValueName("")
      .OneOf(kShellNames);
  command.SetFooter(kCompletionHelp);
  command.SetAction([program, shell] {
    for (const Shell& known : kShells) {
      if (known.name == *shell) return Print(known.script(program.Facts()));
    }
    throw UsageError(Quoted(*shell) + " is no shell that is known: " + OneOf(kShellNames));
  });
}

}  // namespace pokermath::cli
