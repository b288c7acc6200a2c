#include "cli/command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <utility>

#include "cli/nearest.h"
#include "pages/errors.h"

namespace pokermath::cli {
namespace {

// What the parser's options have no place for.
struct Known {
  std::vector<std::string> values;
  bool may_be_file = false;
};

Known& KnownOf(const CLI::Option* option) {
  static std::map<const CLI::Option*, Known> known;
  return known[option];
}

bool IsHidden(const std::string& group) { return group.empty(); }

Paths PathsOf(const CLI::Option* option, const std::string& value) {
  if (value == "FOLDER") return Paths::kFolders;
  return value == "FILE" || KnownOf(option).may_be_file ? Paths::kFiles : Paths::kNone;
}

OptionFacts FactsOf(const CLI::Option* option) {
  OptionFacts facts;
  for (const std::string& name : option->get_snames()) facts.names.push_back("-" + name);
  for (const std::string& name : option->get_lnames()) facts.names.push_back("--" + name);
  const bool is_flag = option->get_items_expected_max() == 0;
  if (option->get_positional()) {
    facts.value = option->get_name(true);
  } else if (!is_flag) {
    facts.value = option->get_type_name();
  }
  facts.help = option->get_description();
  facts.environment = option->get_envname();
  facts.values = KnownOf(option).values;
  facts.paths = PathsOf(option, facts.value);
  facts.required = option->get_required();
  facts.repeated =
      !is_flag && (option->get_items_expected_max() > 1 ||
                   option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll);
  return facts;
}

CommandFacts FactsOf(const CLI::App* app, const std::string& parents) {
  CommandFacts facts;
  facts.path = parents + app->get_name();
  facts.description = app->get_description();
  facts.footer = app->get_footer();
  facts.needs_command = app->get_require_subcommand_min() > 0;
  for (const CLI::Option* option : app->get_options()) {
    if (IsHidden(option->get_group())) continue;
    (option->get_positional() ? facts.words : facts.options).push_back(FactsOf(option));
  }
  for (const CLI::App* command : app->get_subcommands([](const CLI::App*) { return true; })) {
    if (!IsHidden(command->get_group()))
      facts.commands.push_back(FactsOf(command, facts.path + " "));
  }
  return facts;
}

}  // namespace

Option Option::Required() {
  option_->required();
  return *this;
}

Option Option::ValueName(const std::string& name) {
  option_->type_name(name);
  return *this;
}

Option Option::ManyWords() {
  option_->expected(-1);
  return *this;
}

Option Option::MayBeRepeated() {
  option_->expected(1)->take_all();
  return *this;
}

Option Option::FromEnvironment(const std::string& variable) {
  option_->envname(variable);
  return *this;
}

Option Option::OneOf(std::span<const std::string_view> values) {
  KnownOf(option_).values.assign(values.begin(), values.end());
  return *this;
}

Option Option::OrFile() {
  KnownOf(option_).may_be_file = true;
  return *this;
}

void Option::Hide() { option_->group(""); }

Command Command::AddCommand(const std::string& name, const std::string& description) {
  CLI::App* const command = app_->add_subcommand(name, description);
  command->footer("");  // not its parent's
  return Command(command);
}

void Command::RequireCommand() { app_->require_subcommand(1); }

void Command::Hide() { app_->group(""); }

Option Command::AddOption(const std::string& name, std::string& value, const std::string& help) {
  return Option(app_->add_option(name, value, help));
}

Option Command::AddOption(const std::string& name, std::optional<std::string>& value,
                          const std::string& help) {
  return Option(app_->add_option(name, value, help));
}

Option Command::AddOption(const std::string& name, std::vector<std::string>& values,
                          const std::string& help) {
  return Option(app_->add_option(name, values, help));
}

Option Command::AddFlag(const std::string& name, bool& value, const std::string& help) {
  return Option(app_->add_flag(name, value, help));
}

void Command::SetFooter(const std::string& text) { app_->footer(text); }

void Command::SetAction(std::function<void()> action) { app_->callback(std::move(action)); }

bool Command::HasCommand() const { return !app_->get_subcommands().empty(); }

std::vector<GivenOption> Command::Given() const {
  std::vector<GivenOption> given;
  for (const CLI::Option* option : app_->parse_order()) {
    given.push_back({option->get_name(), option->results()[0], option->get_positional()});
  }
  return given;
}

CommandFacts Command::Facts() const { return FactsOf(app_, ""); }

std::string Command::HintFor(const std::string& error) const {
  for (const CLI::Option* option : app_->get_options()) {
    std::vector<std::string> known = KnownOf(option).values;
    if (known.empty()) continue;
    std::vector<std::string> given = option->results();
    if (const auto commands = Facts().commands; option->get_positional() && !commands.empty()) {
      // Only the first word stands where a command might.
      for (const CommandFacts& command : commands) known.push_back(command.name());
      if (given.size() > 1) given.resize(1);
    }
    for (const std::string& value : given) {
      const bool is_wrong = std::ranges::find(known, value) == known.end() &&
                            error.find(Quoted(value)) != std::string::npos;
      if (is_wrong) return NearestHint(value, known);
    }
  }
  const std::vector<CLI::App*> given = app_->get_subcommands();
  return given.empty() ? "" : Command(given.front()).HintFor(error);
}

}  // namespace pokermath::cli
