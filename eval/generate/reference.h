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

/// A deck has the ranks from a lowest one to the ace.
struct DeckRules {
  int lowest_rank = 0;
  bool short_order = false;  ///< a flush beats a full house, three of a kind beats a straight
};
inline constexpr DeckRules kFullDeck = {};
inline constexpr DeckRules kShortDeck = {4, true};  ///< six and better

/// Strength of five cards given as rank counts and whether all are of one suit.
Strength Classify(const DeckRules& rules, const RankCounts& counts, bool one_suit);

/// Every way to hold `cards` cards of a deck by rank, at most four of one.
std::vector<RankCounts> AllRankCounts(const DeckRules& rules, int cards);

/// The values of every five-card hand of a deck: its place among all different hands.
class ReferenceValues {
 public:
  explicit ReferenceValues(const DeckRules& rules);
  const DeckRules& rules() const { return rules_; }
  /// From the best, which is 1.
  int Of(const RankCounts& counts, bool one_suit) const {
    return values_.at(Classify(rules_, counts, one_suit));
  }
  /// From the worst, which is 1.
  int Ascending(const RankCounts& counts, bool one_suit) const {
    return static_cast<int>(values_.size()) + 1 - Of(counts, one_suit);
  }

 private:
  DeckRules rules_;
  std::map<Strength, int> values_;
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_REFERENCE_H_
