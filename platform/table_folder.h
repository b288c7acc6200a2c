// The folder of the table files, which `pokermath tables build` writes.

#ifndef POKERMATH_PLATFORM_TABLE_FOLDER_H_
#define POKERMATH_PLATFORM_TABLE_FOLDER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "pokermath/large_table.h"

namespace pokermath {

#if defined(__wasm__)

// There are no files.
inline std::optional<LargeTable<std::uint8_t>> ReadTable(const char*, std::size_t) {
  return std::nullopt;
}

#else

/// As the environment names it: $POKERMATH_DATA, else $XDG_DATA_HOME/pokermath, else
/// ~/.local/share/pokermath; empty if it names none.
std::string TableFolder();

/// All bytes of a file there; nothing if there is none, if it cannot be read or has more than
/// `most`.
std::optional<LargeTable<std::uint8_t>> ReadTable(const char* file, std::size_t most);

#endif

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_TABLE_FOLDER_H_
