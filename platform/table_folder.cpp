#include "platform/table_folder.h"

#include <cstdlib>

#include "platform/input_file.h"

namespace pokermath {
namespace {

// An unset or empty variable counts as none.
std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

std::string TableFolder() {
  if (std::string data = Environment("POKERMATH_DATA"); !data.empty()) return data;
  if (const std::string data = Environment("XDG_DATA_HOME"); data.starts_with("/")) {
    return data + "/pokermath";
  }
  const std::string home = Environment("HOME");
  return home.empty() ? "" : home + "/.local/share/pokermath";
}

std::optional<LargeTable<std::uint8_t>> ReadTable(const char* file, std::size_t most) {
  const std::string folder = TableFolder();
  if (folder.empty()) return std::nullopt;
  const InputFile input(folder + "/" + file);
  if (!input.ok() || static_cast<std::uint64_t>(input.size()) > most) return std::nullopt;
  LargeTable<std::uint8_t> bytes(static_cast<std::size_t>(input.size()));
  if (!input.ReadAll(0, bytes.data(), bytes.size())) return std::nullopt;
  return bytes;
}

}  // namespace pokermath
