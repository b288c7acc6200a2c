// Free equity functions: exact counts, without any table to load.

#ifndef POKERMATH_EQUITY_H_
#define POKERMATH_EQUITY_H_

#include <cstdint>
#include <span>

#include "pokermath/export.h"

class Spec;

namespace pokermath {

/// The result of an exact count, seen from the first hand. Losses are cases - wins - ties.
struct Tally {
  std::int64_t wins = 0;   ///< boards that the first hand wins alone
  std::int64_t ties = 0;   ///< boards that both hands share
  std::int64_t cases = 0;  ///< boards counted

  bool operator==(const Tally&) const = default;
  /// Share of the pot, 0..1: a tie counts one half; 0 without cases.
  double Equity() const {
    if (cases == 0) return 0.0;
    return (static_cast<double>(wins) + 0.5 * static_cast<double>(ties)) /
           static_cast<double>(cases);
  }
};

/// Up to which board the hands are compared; the value is the number of board cards.
enum class Street : int { kFlop = 3, kTurn = 4, kRiver = 5 };

/// Exact Hold'em count of one hand against another over every board that the known cards leave.
///
/// @param hand1,hand2  two card codes each, 0..51
/// @param board        known board cards, 0 up to the street's number
/// @param street       the river (seven cards a hand), the turn (six) or the flop (five)
/// @return the count; no cases if the board is longer than the street. Cards are not checked: all
///         must be different.
///
/// About 3 µs without a board, 5 µs on a flop; one and two known cards take 1 ms and 70 µs. The
/// first call takes 1 ms longer: it builds small tables, and others are built when a hand of new
/// ranks comes (10 MB when all are). Thread-safe.
POKERMATH_EXPORT Tally HoldemHandVsHand(std::span<const int, 2> hand1,
                                        std::span<const int, 2> hand2,
                                        std::span<const int> board = {},
                                        Street street = Street::kRiver);

/// Exact Hold'em count of a hand against every holding of a range, over every board that the known
/// cards leave. A case is a board and a holding that share no card with each other or the known
/// cards.
///
/// @param hand    two card codes, 0..51
/// @param range   its holdings weigh the same
/// @param board   known board cards, 0 up to the street's number
/// @return the count; no cases if the range is wholly blocked or the board longer than the street
/// About 3 µs a holding without a board, 3 ns a case with one. Thread-safe.
POKERMATH_EXPORT Tally HoldemHandVsRange(std::span<const int, 2> hand, const Spec& range,
                                         std::span<const int> board = {},
                                         Street street = Street::kRiver);

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_H_
