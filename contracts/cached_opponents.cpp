#include "contracts/cached_opponents.h"

#include <omp.h>

#include "kernels/matchup.h"
#include "kernels/matchups.h"
#include "platform/isa.h"

namespace pokermath {

CachedOpponents::CachedOpponents(Deck deck, std::span<const int, 2> hand,
                                 std::span<const Combination> holdings, const Table& table,
                                 Street street)
    : groups_(EmptyBoardCounts(BestIsa(), deck, street), hand) {
  const std::uint64_t taken = Bits(hand) | AbsentCards(deck);
  const int boards = EmptyBoardCounts(BestIsa(), deck, street).Boards();
  const int key = HandKey(hand[0], hand[1]);
  for (const Combination& cards : holdings) {
    if ((Bits(cards) & taken) != 0) continue;
    const auto entry =
        table.empty() ? table.end() : table.find({key, HandKey(cards.first, cards.second)});
    if (entry == table.end()) {
      groups_.Add(cards);
    } else {
      known_.ties += entry->second;  // half wins
      known_.cases += boards;
    }
  }
  for (int rank_class = 0; rank_class < kRankClasses; ++rank_class) {
    if (groups_.Has(rank_class)) classes_.push_back(rank_class);
  }
}

Tally CachedOpponents::Count() const {
  Tally all = known_;
  for (const int rank_class : classes_) all += groups_.Count(rank_class);
  return all;
}

Tally CachedOpponents::CountInParallel() const {
  const int count = static_cast<int>(classes_.size());
  std::vector<Tally> tallies(classes_.size());
  omp_set_dynamic(1);
  // Every index writes its own slot only.
#pragma omp parallel for schedule(static)
  for (int i = 0; i < count; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    tallies[slot] = groups_.Count(classes_[slot]);
  }
  Tally all = known_;
  for (const Tally& tally : tallies) all += tally;
  return all;
}

}  // namespace pokermath
