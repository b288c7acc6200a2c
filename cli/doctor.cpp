// `pokermath doctor`: what this machine is and what pokermath finds on it, for a report of a fault.

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <vector>

#include "cli/command.h"
#include "cli/output.h"
#include "cli/table_report.h"
#include "pages/errors.h"
#include "pages/json.h"
#include "platform/text.h"
#include "pokermath/version.h"
#include "support/odbc/catalog.h"
#include "support/system_facts.h"

namespace pokermath::cli {
namespace {

constexpr const char* kDoctorHelp =
    R"(Prints the operating system, the processor, the tables with their state and the ODBC drivers. Every
table that is there is read to its end, which takes about a second for all of them. Exit code 1 if
something is broken: a table that is damaged or cannot be read, a file in place of the folder of the
tables, or a driver manager that does not answer. Tables that are missing are no fault.

Examples:
  pokermath doctor
  pokermath doctor --json)";

struct DoctorOptions {
  std::string dir;
  bool json = false;
};

// Text appears section by section, JSON at the end.
class Report {
 public:
  explicit Report(bool json) : json_(json) {
    object_ = {{"schema", kJsonSchema}, {"version", Version()}};
    Say(fmt::format("pokermath {}\n", Version()));
  }

  void AddFacts(const char* title, const char* key, const std::vector<Fact>& facts) {
    Say(fmt::format("\n{}\n{}", title, FactLines(facts)));
    Json list = Json::object();
    for (const Fact& fact : facts) {
      std::string name = fact.name;
      std::replace(name.begin(), name.end(), ' ', '_');
      list[name] = fact.value;
    }
    object_[key] = list;
  }

  void AddTables(const std::string& dir_option) {
    object_["dir"] = Json();
    object_["tables"] = Json::array();
    std::string dir;
    try {
      dir = TableFolder(dir_option);
      object_["dir"] = dir;
      std::error_code unknown;
      const auto status = std::filesystem::status(dir, unknown);
      if (std::filesystem::exists(status) && !std::filesystem::is_directory(status)) {
        broken_.emplace_back("tables");
        throw UsageError(Quoted(dir) + " is no folder");
      }
    } catch (const UsageError& error) {
      Say(fmt::format("\nTables\n  {}\n", error.what()));
      object_["dir_error"] = error.what();
      return;
    }
    Say(fmt::format("\nTables in {}\n", ToUtf8(OnOneLine(FromUtf8(dir)))));
    for (const TableFile& table : AllTables()) {
      const TableState state = CheckTable(table, dir + "/" + table.file);
      Say("  " + TableLine(table, state, state.state));
      object_["tables"].push_back(TableJson(table, state));
      if (!state.ok() && state.state != "missing") broken_.emplace_back(table.name);
    }
  }

  void AddDrivers() {
    std::vector<Driver> drivers;
    Say("\nODBC drivers\n");
    try {
      ListDrivers(Environment().handle(), drivers);
      if (drivers.empty()) Say("  none\n");
    } catch (const DatabaseError& error) {
      const std::string text = ToUtf8(OnOneLine(error.text()));
      Say(fmt::format("  cannot be listed: {}\n", text));
      object_["drivers_error"] = text;
      broken_.emplace_back("ODBC");
    }
    object_["drivers"] = Json::array();
    for (const Driver& driver : drivers) {
      Say(fmt::format("  {}\n", ToUtf8(driver.name)));
      object_["drivers"].push_back(ToUtf8(driver.name));
    }
  }

  int Finish() {
    object_["broken"] = broken_;
    Say(broken_.empty() ? "\nNothing is broken.\n"
                        : fmt::format("\nBroken: {}\n", fmt::join(broken_, ", ")));
    if (json_) Print(JsonLine(object_));
    return broken_.empty() ? kExitDone : kExitFailed;
  }

 private:
  void Say(const std::string& text) {
    if (!json_) Print(text);
  }

  bool json_;
  Json object_;
  std::vector<std::string> broken_;
};

int RunDoctor(const DoctorOptions& options) {
  Report report(options.json);
  report.AddFacts("Operating system", "system", OsFacts());
  report.AddFacts("Processor", "processor", CpuFacts());
  report.AddTables(options.dir);
  report.AddDrivers();
  return report.Finish();
}

}  // namespace

void AddDoctor(Command program, int& exit_code) {
  auto options = std::make_shared<DoctorOptions>();
  Command command = program.AddCommand(
      "doctor", "The machine, the tables and the database drivers, for a report of a fault");
  command.AddOption("--dir", options->dir, "Folder of the tables").ValueName("FOLDER");
  command.AddFlag("--json", options->json, "Print a JSON object");
  command.SetFooter(kDoctorHelp);
  command.SetAction([options, &exit_code] { exit_code = RunDoctor(*options); });
}

}  // namespace pokermath::cli
