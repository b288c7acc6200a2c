#include "cli/command.h"

#include <CLI/CLI.hpp>
#include <utility>

namespace pokermath::cli {

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

void Option::Hide() { option_->group(""); }

Command Command::AddCommand(const std::string& name, const std::string& description) {
  return Command(app_->add_subcommand(name, description));
}

void Command::RequireCommand() { app_->require_subcommand(1); }

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

}  // namespace pokermath::cli
