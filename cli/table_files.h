// The table files: which there are, how they are built, and how one tells a good file.

#ifndef POKERMATH_CLI_TABLE_FILES_H_
#define POKERMATH_CLI_TABLE_FILES_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace pokermath::cli {

struct TableFile {
  const char* name;
  const char* file;
  std::uint64_t bytes;
  std::uint32_t crc32;
  /// Works the table out and writes it: the file appears complete or not at all. False when it was
  /// stopped by a signal; throws Failure when the file cannot be written.
  bool (*build)(const TableFile& table, const std::string& path);
  /// What is wrong with the entries of a file of the right length; empty when nothing is.
  std::string (*fault)(const std::string& path);
};

/// Every table, in the order in which they are built and listed.
std::span<const TableFile> AllTables();

/// What is on the disk.
struct TableState {
  std::string state;                   ///< "ok", "missing", "unreadable: ...", "damaged: ..."
  std::optional<std::uint64_t> bytes;  ///< none when there is nothing to read
  std::optional<std::uint32_t> crc32;

  bool ok() const { return state == "ok"; }
};

/// Compares length and checksum with what they must be.
TableState CheckTable(const TableFile& table, const std::string& path);

/// The same, and walks through the entries: says what is wrong with them.
TableState VerifyTable(const TableFile& table, const std::string& path);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_TABLE_FILES_H_
