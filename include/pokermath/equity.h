// Free equity functions: exact counts, without any table to load.

#ifndef POKERMATH_EQUITY_H_
#define POKERMATH_EQUITY_H_

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "pokermath/export.h"

class Spec;

namespace pokermath {

/// The result of an exact count, seen from the first hand. Losses are cases - wins - ties.
struct Tally {
  std::int64_t wins = 0;   ///< boards that the first hand wins alone
  std::int64_t ties = 0;   ///< boards that both hands share
  std::int64_t cases = 0;  ///< boards counted

  bool operator==(const Tally&) const = default;
  Tally& operator+=(const Tally& other) {
    wins += other.wins;
    ties += other.ties;
    cases += other.cases;
    return *this;
  }
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
/// 2 to 4 µs without a board, less than 1 µs with a flop, 0.6 ms with one known card. The first
/// call takes up to 3 ms longer: it builds tables, and others are built when a hand of new ranks
/// comes (15 MB when all are). Thread-safe.
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
///
/// For 200 holdings about 0.1 ms without a board, 2 µs on a flop, 1 µs on a turn. Thread-safe; the
/// first call takes longer, as above.
POKERMATH_EXPORT Tally HoldemHandVsRange(std::span<const int, 2> hand, const Spec& range,
                                         std::span<const int> board = {},
                                         Street street = Street::kRiver);

/// A hand's two card codes, the lower one first, and its count.
struct HandTally {
  std::pair<int, int> hand;
  Tally tally;
};

/// HoldemHandVsRange for every hand that shares no card with the board, in the order of their
/// cards: 1,326 without a board, 1,176 on a flop. What a heat map shows, and the equity of a range
/// against a range when summed up over the hands of one. About 0.5 ms on a flop.
POKERMATH_EXPORT std::vector<HandTally> HoldemEveryHandVsRange(const Spec& range,
                                                               std::span<const int> board = {},
                                                               Street street = Street::kRiver);

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_H_
