// Working out the finite-state tables that are kept in files.

#ifndef POKERMATH_CONTRACTS_STATE_TABLES_H_
#define POKERMATH_CONTRACTS_STATE_TABLES_H_

#include <cstdint>
#include <functional>

#include "contracts/state_machines.h"

namespace pokermath {

/// The entries of a file, the same bytes on every machine. Six-plus-5 and six-plus-7 take a moment;
/// omaha7 some seconds and 1 GB.
///
/// @param go_on  called now and then with the rows done; returning false stops
/// @return the entries, none when stopped
StateEntries BuildStates(const StateFile& file,
                         const std::function<bool(std::int64_t)>& go_on = {});

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_STATE_TABLES_H_
