// A hand on an empty board against a range, with the help of an equity table.

#ifndef POKERMATH_CONTRACTS_CACHED_OPPONENTS_H_
#define POKERMATH_CONTRACTS_CACHED_OPPONENTS_H_

#include <span>

#include "contracts/equity_files.h"
#include "kernels/decks.h"
#include "pokermath/combination_set.h"
#include "pokermath/equity.h"

namespace pokermath {

/// A hand against the holdings that share no card with it, to the river: from an equity table, and
/// what that lacks from the matchups that the library knows. Switches OpenMP's dynamic team sizing
/// on and shares the holdings out among its team.
Tally CountWithTable(Deck deck, std::span<const int, 2> hand, std::span<const Combination> holdings,
                     const EquityTable& table);

/// The same of Hold'em to the turn, where what the table lacks is counted.
Tally CountWithTurnTable(std::span<const int, 2> hand, std::span<const Combination> holdings,
                         const EquityTable& table);

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_CACHED_OPPONENTS_H_
