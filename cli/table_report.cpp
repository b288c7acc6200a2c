#include "cli/table_report.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "pages/errors.h"
#include "pages/number_text.h"
#include "platform/table_folder.h"

namespace pokermath::cli {
namespace {

std::string Crc32Text(std::uint32_t crc32) { return fmt::format("0x{:08x}", crc32); }

}  // namespace

std::string TableFolder(const std::string& dir) {
  std::string folder = dir.empty() ? pokermath::TableFolder() : dir;
  if (folder.empty()) throw UsageError("HOME is not set: say --dir FOLDER or set POKERMATH_DATA");
  return folder;
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
