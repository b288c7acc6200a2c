#include "cli/table_report.h"

#include <fmt/format.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "pages/errors.h"
#include "pages/number_text.h"

namespace pokermath::cli {
namespace {

// An unset or empty variable counts as none.
std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string Crc32Text(std::uint32_t crc32) { return fmt::format("0x{:08x}", crc32); }

}  // namespace

std::string TableFolder(const std::string& dir) {
  if (!dir.empty()) return dir;
  if (const std::string data = Environment("POKERMATH_DATA"); !data.empty()) return data;
  if (const std::string data = Environment("XDG_DATA_HOME"); data.starts_with("/")) {
    return data + "/pokermath";
  }
  const std::string home = Environment("HOME");
  if (home.empty()) throw UsageError("HOME is not set: say --dir FOLDER or set POKERMATH_DATA");
  return home + "/.local/share/pokermath";
}

Json TableJson(const TableFile& table, const TableState& state) {
  Json json = {{"name", table.name}, {"file", table.file}};
  json["bytes"] = state.bytes ? Json(*state.bytes) : Json();
  json["crc32"] = state.crc32 ? Json(Crc32Text(*state.crc32)) : Json();
  json["state"] = state.state;
  return json;
}

std::string TableLine(const TableFile& table, const TableState& state, std::string_view said) {
  std::string size, crc32;
  if (state.bytes) size = Grouped(static_cast<std::int64_t>(*state.bytes)) + " bytes";
  if (state.crc32) crc32 = "crc32 " + Crc32Text(*state.crc32);
  return fmt::format("{:<15}  {:<23}  {:>17}  {:<16}  {}\n", table.name, table.file, size, crc32,
                     said);
}

}  // namespace pokermath::cli
