// `pokermath tables`: builds, lists and verifies the table files.

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "cli/stop_signals.h"
#include "cli/table_files.h"
#include "cli/table_report.h"
#include "pages/json.h"
#include "platform/files.h"

namespace pokermath::cli {
namespace {

constexpr const char* kTablesHelp =
    R"(Tables: hand-ranks, river-equity, turn-equity, six-plus-5, six-plus-7, six-plus-equity,
matchups, six-plus-matchups, six-plus-straights-matchups, combinations, omaha-strength,
omaha5-strength, omaha-order, omaha5-order, three-way, omaha7; without a name, all of them (570 MB).
omaha5-strength and three-way take the longest, a minute or two each on one processor; when one of
them or omaha-strength is stopped, the next build goes on from there. With three-way, 'equity' counts
three ranges before the flop that it samples without it.
Folder: --dir, else $POKERMATH_DATA, else $XDG_DATA_HOME/pokermath, else
~/.local/share/pokermath.

Examples:
  pokermath tables build
  pokermath tables build river-equity --dir /srv/poker
  pokermath tables list --json
  pokermath tables verify hand-ranks)";

struct TablesOptions {
  std::vector<std::string> names;
  std::string dir;
  bool force = false;
  bool json = false;
};

// A table, what is said of it, and whether this run has built it.
struct Line {
  const TableFile* table;
  TableState state;
  bool built = false;
};

std::vector<const TableFile*> ChosenTables(const std::vector<std::string>& names) {
  std::vector<const TableFile*> chosen;
  std::string accepted;
  for (const TableFile& table : AllTables()) {
    accepted += (accepted.empty() ? "" : ", ") + std::string(table.name);
    if (names.empty()) chosen.push_back(&table);
  }
  for (const std::string& name : names) {
    const auto tables = AllTables();
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const TableFile& table) { return name == table.name; });
    if (found == tables.end()) throw UsageError(Quoted(name) + " is not a table: " + accepted);
    if (std::count(chosen.begin(), chosen.end(), &*found) == 0) chosen.push_back(&*found);
  }
  return chosen;
}

void CreateFolder(const std::string& dir) {
  std::error_code error;
  std::filesystem::create_directories(dir, error);
  if (error) throw SystemFailure("cannot create the folder " + Quoted(dir), error.value());
}

// A folder that --dir names has to be there; the usual one may come with the first build.
std::string FolderHeadline(const TablesOptions& options, const std::string& dir) {
  std::error_code error;
  std::filesystem::directory_iterator(dir, error);
  if (!error) return dir + "\n";
  const bool may_come = options.dir.empty() && error == std::errc::no_such_file_or_directory;
  if (!may_come) throw SystemFailure("cannot read the folder " + Quoted(dir), error.value());
  return dir + "\nThe folder is not there yet: 'pokermath tables build' makes it.\n";
}

std::string PathOf(const std::string& dir, const TableFile& table) {
  return dir + "/" + table.file;
}

Json ToJson(const std::string& dir, const std::vector<Line>& lines) {
  Json json = {{"schema", kJsonSchema}, {"dir", dir}, {"tables", Json::array()}};
  for (const Line& line : lines) {
    Json table = TableJson(*line.table, line.state);
    if (line.built) table["built"] = true;
    json["tables"].push_back(table);
  }
  return json;
}

// Both lists and verifies: they differ in how closely they look.
template <typename Check>
std::vector<Line> ReportTables(const TablesOptions& options, Check check) {
  const std::vector<const TableFile*> tables = ChosenTables(options.names);
  const std::string dir = TableFolder(options.dir);
  const std::string headline = FolderHeadline(options, dir);
  std::vector<Line> lines;
  if (!options.json) Print(headline);
  for (const TableFile* table : tables) {
    lines.push_back({table, check(*table, PathOf(dir, *table))});
    if (!options.json) Print(TableLine(*table, lines.back().state, lines.back().state.state));
  }
  if (options.json) Print(JsonLine(ToJson(dir, lines)));
  return lines;
}

int RunList(const TablesOptions& options) {
  ReportTables(options, CheckTable);
  return kExitDone;
}

int RunVerify(const TablesOptions& options) {
  const std::vector<Line> lines = ReportTables(options, VerifyTable);
  const bool all_ok =
      std::all_of(lines.begin(), lines.end(), [](const Line& line) { return line.state.ok(); });
  return all_ok ? kExitDone : kExitFailed;
}

// Builds a table unless a good one is there.
Line BuildOne(const TableFile& table, const std::string& path, bool force) {
  if (!force) {
    TableState state = CheckTable(table, path);
    if (state.ok()) return {&table, state};
  }
  // What takes minutes is not begun where it could not be written.
  if (!AtomicFile(path).ok()) throw SystemFailure("cannot write " + Quoted(path), errno);
  if (!table.build(table, path)) {
    throw Failure(fmt::format("stopped before {} was written; finished tables stay", table.name));
  }
  return {&table, {"ok", table.bytes, table.crc32}, true};
}

int RunBuild(const TablesOptions& options) {
  const std::vector<const TableFile*> tables = ChosenTables(options.names);
  const std::string dir = TableFolder(options.dir);
  CreateFolder(dir);
  const StopSignals signals;
  if (!options.json) Print(dir + "\n");
  std::vector<Line> lines;
  std::string error;
  for (const TableFile* table : tables) {
    try {
      lines.push_back(BuildOne(*table, PathOf(dir, *table), options.force));
    } catch (const Failure& failure) {
      error = failure.what();
      lines.push_back({table, {std::string("failed: ") + failure.what(), {}, {}}});
      break;
    }
    if (!options.json) {
      Print(
          TableLine(*table, lines.back().state, lines.back().built ? "built" : "is there already"));
    }
  }
  if (options.json) Print(JsonLine(ToJson(dir, lines)));
  if (error.empty()) return kExitDone;
  PrintError(error);
  return kExitFailed;
}

void AddAction(Command tables, const char* name, const char* description,
               int (*run)(const TablesOptions&), int& exit_code) {
  auto options = std::make_shared<TablesOptions>();
  Command action = tables.AddCommand(name, description);
  std::vector<std::string_view> names;
  for (const TableFile& table : AllTables()) names.emplace_back(table.name);
  action.AddOption("NAME", options->names, "Tables, by name [all]").ValueName("").OneOf(names);
  action.AddOption("--dir", options->dir, "Folder of the tables").ValueName("FOLDER");
  action.AddFlag("--json", options->json, "Print a JSON object");
  if (run == RunBuild) {
    action.AddFlag("--force", options->force, "Build tables that are there as well");
  }
  action.SetFooter(kTablesHelp);
  action.SetAction([options, run, &exit_code] { exit_code = run(*options); });
}

}  // namespace

void AddTables(Command program, int& exit_code) {
  Command tables = program.AddCommand("tables", "Table files: build, list, verify");
  tables.RequireCommand();
  tables.SetFooter(kTablesHelp);
  AddAction(tables, "build", "Write the tables that are not there", RunBuild, exit_code);
  AddAction(tables, "list", "Show size, checksum and state", RunList, exit_code);
  AddAction(tables, "verify", "Check every entry; exit code 1 if a table is not ok", RunVerify,
            exit_code);
}

}  // namespace pokermath::cli
