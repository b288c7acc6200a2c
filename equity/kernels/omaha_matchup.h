// Omaha hands against each other on every board that they leave.

#ifndef POKERMATH_EQUITY_KERNELS_OMAHA_MATCHUP_H_
#define POKERMATH_EQUITY_KERNELS_OMAHA_MATCHUP_H_

#include <array>
#include <cstdint>
#include <span>

#include "platform/isa.h"

namespace pokermath {

inline constexpr int kMostOmahaHands = 11;

/// How the first of several hands does.
struct OmahaTally {
  std::int64_t boards = 0;
  /// [k]: boards that it shares with k others, k = 0 being those that it wins alone.
  std::array<std::int64_t, kMostOmahaHands> shared{};

  bool operator==(const OmahaTally&) const = default;
};

/// Counts every way to complete a board to five cards.
///
/// @param isa        instructions to use; the machine must have them
/// @param cards      hands, one behind the other; nothing is counted for more than eleven
/// @param hand_size  4 or 5
/// @param dead       cards that nobody holds and that cannot come
/// @param board      0, 3 or 4 known cards; all cards different
OmahaTally CountOmahaMatchup(Isa isa, std::span<const int> cards, int hand_size,
                             std::span<const int> dead, std::span<const int> board);

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_KERNELS_OMAHA_MATCHUP_H_
