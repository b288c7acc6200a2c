// Loading equity tables from their binary files.

#ifndef POKERMATH_CONTRACTS_EQUITY_FILES_H_
#define POKERMATH_CONTRACTS_EQUITY_FILES_H_

#include <map>
#include <utility>

#include "pokermath/text.h"

namespace pokermath {

/// Matchup of two hand keys → 2 * wins + ties of the first hand.
using EquityTable = std::map<std::pair<int, int>, int>;

/// Adds the records of a file to a table; a matchup that is there keeps its value. A record below 1
/// is shown as a message and left out.
///
/// @return 1; 0 with a message when there is no such file or it cannot be read
int LoadEquityTable(const CString& name, EquityTable& table);

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_EQUITY_FILES_H_
