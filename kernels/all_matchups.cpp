#include "kernels/all_matchups.h"

#include "kernels/matchup.h"

namespace pokermath {

MatchupValues::MatchupValues(Deck deck, Street street)
    : deck_(deck), street_(street), known_(KnownMatchups::Of(deck)), places_(deck) {
  if (street != Street::kRiver) values_.resize(places_.size(), -1);
}

int MatchupValues::Get(int a, int b, int c, int d) {
  const ClassedHand classed1 = known_.Class(a, b);
  const ClassedHand classed2 = known_.Class(c, d);
  if (street_ == Street::kRiver) {
    const Counts counts = known_.Count(classed1, classed2);
    return 2 * counts.wins + counts.ties;
  }
  const int hand1[2] = {a, b};
  const int hand2[2] = {c, d};
  if (classed1.number <= classed2.number) return Count(classed1, hand1, classed2, hand2);
  return 2 * BoardsOf(street_) - Count(classed2, hand2, classed1, hand1);
}

int MatchupValues::Count(ClassedHand classed1, const int* hand1, ClassedHand classed2,
                         const int* hand2) {
  std::int32_t& value = values_[places_.Of(classed1, classed2)];
  if (value < 0) {
    const Tally tally = CountMatchup(BestIsa(), deck_, hand1, hand2, street_);
    value = static_cast<std::int32_t>(2 * tally.wins + tally.ties);
  }
  return value;
}

}  // namespace pokermath
