// The rules of poker, written to be read: which of two five-card hands is better.
//
// Everything that the evaluators know is filled from here, at build time.

#ifndef POKERMATH_EVAL_GENERATE_REFERENCE_H_
#define POKERMATH_EVAL_GENERATE_REFERENCE_H_

#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace pokermath {

/// Category (9 = straight flush .. 1 = high card) and then the ranks that break ties, best first;
/// a greater Strength is the better hand.
using Strength = std::array<int, 6>;

/// How many cards of each rank (0 = deuce .. 12 = ace) a hand holds.
using RankCounts = std::array<int, 13>;

/// Strength of five cards given as rank counts and whether all are of one suit.
Strength Classify(const RankCounts& counts, bool one_suit);

/// Every way to hold `cards` cards by rank, at most four of one.
std::vector<RankCounts> AllRankCounts(int cards);

/// The descending value 1..7462 of every five-card hand: its place among all different hands, the
/// best first.
class ReferenceValues {
 public:
  ReferenceValues();
  int Of(const RankCounts& counts, bool one_suit) const {
    return values_.at(Classify(counts, one_suit));
  }

 private:
  std::map<Strength, int> values_;
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_REFERENCE_H_
