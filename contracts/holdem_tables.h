// The binary equity tables and their files.

#ifndef POKERMATH_CONTRACTS_HOLDEM_TABLES_H_
#define POKERMATH_CONTRACTS_HOLDEM_TABLES_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "kernels/decks.h"
#include "pokermath/equity.h"

namespace pokermath {

/// A record of an equity table file, three little-endian 32-bit ints.
struct EquityRecord {
  std::int32_t hand1;  ///< key of the first hand
  std::int32_t hand2;
  std::int32_t value;  ///< 2 * wins + ties of the first hand
};

/// Works out the records of all ordered matchups in key order.
///
/// @param progress  called now and then with the records done; returning false stops
/// @return the records, or none when stopped
std::vector<EquityRecord> AllEquityRecords(Deck deck, Street street,
                                           const std::function<bool(std::int64_t)>& progress);

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_HOLDEM_TABLES_H_
