// `pokermath history`: the lines of a hand-history file, also while it grows.

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "cli/stop_signals.h"
#include "pages/json.h"
#include "pages/number_text.h"
#include "platform/text.h"
#include "pokermath/hand_history.h"
#include "pokermath/showdown.h"

namespace pokermath::cli {
namespace {

constexpr const char* kHistoryHelp =
    R"(Lines go to standard output as UTF-8. With --json each is an object, with the game's code where the
line names a game, and the last object says at which position the next call goes on; a line that is
not complete yet is marked and comes again then, whole. From a position beyond its end a file is
read from its start: it is taken for another one. A followed file may be replaced or be missing for
a while.

Examples:
  pokermath history hands.txt
  pokermath history hands.txt --json --from 18240
  pokermath history hands.txt --follow            until Ctrl-C)";

struct HistoryOptions {
  std::string path;
  std::string from = "0";
  bool follow = false;
  bool json = false;
};

// The code of the game that a line names, or -1.
int GameIn(const CString& line) {
  // A name that holds another one comes first, also if it has no code.
  static constexpr const wchar_t* kNames[] = {
      L"6+ Hold'em No Limit",    L"6 Card Omaha Pot Limit", L"5 Card Omaha Hi/Lo Pot Limit",
      L"5 Card Omaha Pot Limit", L"Omaha Pot Limit",        L"Hold'em No Limit",
      L"Courchevel Pot Limit"};
  for (const wchar_t* name : kNames) {
    if (line.find(name) != line.npos) return GetTypeGameHH(name);
  }
  return -1;
}

void PrintLines(const CStringArray& lines, bool json, bool unfinished) {
  std::string out;
  for (const CString& line : lines) {
    if (!json) {
      out += ToUtf8(line) + "\n";
      continue;
    }
    Json object = {{"schema", kJsonSchema}, {"line", ToUtf8(line)}};
    if (const int game = GameIn(line); game >= 0) object["game"] = game;
    if (unfinished) object["unfinished"] = true;
    out += JsonLine(object);
  }
  Print(out);
}

int RunHistory(const HistoryOptions& options) {
  const StopSignals signals;
  HistoryReader reader(options.path, ReadNumber("--from", options.from, std::int64_t{0},
                                                std::numeric_limits<std::int64_t>::max()));
  bool seen = false;
  const auto check = [&](bool good) {
    // A file that is being replaced can be missing for a moment, or not be ready.
    const bool moment = errno == ENOENT || errno == ENOTDIR || errno == EACCES || errno == ESTALE;
    if (!good && !(options.follow && seen && moment)) {
      throw SystemFailure("cannot read " + Quoted(options.path), errno);
    }
    seen = true;
  };
  CStringArray lines;
  while (!StopRequested()) {
    lines.clear();
    check(reader.Read(lines));
    PrintLines(lines, options.json, false);
    if (reader.more()) continue;
    if (!options.follow) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  if (!options.follow) {
    lines.clear();
    check(reader.ReadUnfinished(lines));
    PrintLines(lines, options.json, true);
  }
  if (options.json) {
    Print(JsonLine({{"schema", kJsonSchema}, {"position", reader.position()}}));
  }
  return kExitDone;
}

}  // namespace

void AddHistory(Command program, int& exit_code) {
  auto options = std::make_shared<HistoryOptions>();
  Command command =
      program.AddCommand("history", "The lines of a hand-history file, also while it grows");
  command.AddOption("FILE", options->path, "The file").Required().ValueName("");
  command.AddOption("--from", options->from, "Position in bytes at which to begin [0]")
      .ValueName("POSITION");
  command.AddFlag("--follow", options->follow, "Go on while the file grows, until Ctrl-C");
  command.AddFlag("--json", options->json, "Print JSON objects, one a line");
  command.SetFooter(kHistoryHelp);
  command.SetAction([options, &exit_code] { exit_code = RunHistory(*options); });
}

}  // namespace pokermath::cli
