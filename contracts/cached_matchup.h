// Hand against hand as contracts put it: wins and boards, with the help of an equity table.

#ifndef POKERMATH_CONTRACTS_CACHED_MATCHUP_H_
#define POKERMATH_CONTRACTS_CACHED_MATCHUP_H_

#include "contracts/equity_files.h"
#include "contracts/shares.h"
#include "kernels/matchups.h"
#include "pokermath/equity.h"

namespace pokermath {

/// The outputs of the exact functions: wins with ties as one half, and the boards counted.
inline void Answer(const Tally& tally, double& wins, double& boards) {
  wins = WinsOf(tally);
  boards = static_cast<double>(tally.cases);
}

/// Answers from a table, from the symmetry of twins, or by counting.
///
/// @param all_boards  that two hands leave
/// @param count       callable, counts the matchup: a Tally
template <typename Count>
void AnswerMatchup(const EquityTable& table, const int* hand1, const int* hand2, int all_boards,
                   double& wins, double& boards, Count count) {
  boards = all_boards;
  const auto entry = table.find({HandKey(hand1[0], hand1[1]), HandKey(hand2[0], hand2[1])});
  if (entry != table.end()) {
    wins = entry->second * 0.5;
  } else if (AreTwins(hand1, hand2)) {
    wins = boards / 2;
  } else {
    Answer(count(), wins, boards);
  }
}

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_CACHED_MATCHUP_H_
