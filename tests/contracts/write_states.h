// Table files of the finite-state evaluators, for tests.

#ifndef POKERMATH_TESTS_CONTRACTS_WRITE_STATES_H_
#define POKERMATH_TESTS_CONTRACTS_WRITE_STATES_H_

#include <string>

#include "contracts/state_tables.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {

inline std::string FileBytes(const StateFile& file) {
  const StateEntries entries = BuildStates(file);
  const auto header = StateHeader(file, entries.size());
  std::string bytes(reinterpret_cast<const char*>(header.data()), header.size());
  bytes.append(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof entries[0]);
  return bytes;
}

inline void WriteStates(const ScratchFolder& folder, const StateFile& file) {
  SetContent(folder / file.name, FileBytes(file));
}

}  // namespace pokermath

#endif  // POKERMATH_TESTS_CONTRACTS_WRITE_STATES_H_
