#include "equity/kernels/matchup_tables.h"

#include <algorithm>
#include <utility>

#include "eval/compact_keys.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

std::vector<std::vector<int>> RankMultisets(int size) {
  std::vector<std::vector<int>> multisets = {{}};
  for (int i = 0; i < size; ++i) {
    std::vector<std::vector<int>> longer;
    for (const std::vector<int>& shorter : multisets) {
      for (int rank = shorter.empty() ? 0 : shorter.back(); rank < 13; ++rank) {
        longer.push_back(shorter);
        longer.back().push_back(rank);
      }
    }
    multisets = std::move(longer);
  }
  return multisets;
}

std::uint32_t KeyOf(const std::vector<int>& ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += kRankKeys[rank];
  return key;
}

std::uint32_t KeyOf(RankSet ranks) {
  std::uint32_t key = 0;
  for (std::size_t rank = 0; rank < 13; ++rank) key += (ranks >> rank & 1) * kRankKeys[rank];
  return key;
}

// Sets of `size` ranks, with kNoSet up to full groups.
std::vector<RankSet> RankSets(int size) {
  std::vector<RankSet> sets;
  for (unsigned set = 0; set <= kAllRanks; ++set) {
    if (__builtin_popcount(set) == size) sets.push_back(static_cast<RankSet>(set));
  }
  while (sets.size() % kGroup != 0) sets.push_back(kNoSet);
  return sets;
}

SuitBoards BuildSuitBoards(int suited, int others) {
  const std::vector<RankSet> sets = RankSets(suited);
  SuitBoards boards;
  boards.suited = suited;
  boards.sets = static_cast<int>(sets.size());
  boards.rests = RankMultisets(others);
  for (const std::vector<int>& rest : boards.rests) boards.rest_keys.push_back(KeyOf(rest));
  for (const RankSet set : sets) {
    boards.set_ranks.push_back(static_cast<std::int16_t>(set));
    boards.set_keys.push_back(KeyOf(set));
  }
  boards.flushes.resize(kHoldings * sets.size());
  for (RankSet hole = 0; hole <= kAllRanks; ++hole) {
    if (__builtin_popcount(hole) > 2) continue;
    std::int16_t* place = &boards.flushes[static_cast<std::size_t>(HoldingOf(hole)) * sets.size()];
    for (const RankSet set : sets) {
      *place++ = static_cast<std::int16_t>(kCompactTables.flush_values[(set | hole) & kAllRanks]);
    }
  }
  return boards;
}

}  // namespace

template <int kBoard>
MatchupTables<kBoard>::MatchupTables() : keys_(kSize) {
  const std::vector<std::vector<int>> multisets = RankMultisets(kBoard);
  weights_.resize(kSize, 0);
  counts_.resize(std::size_t{13} * kSize, 0);
  for (std::size_t i = 0; i < multisets.size(); ++i) {
    keys_[i] = KeyOf(multisets[i]);
    int weight = 1;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      const auto held = std::ranges::count(multisets[i], static_cast<int>(rank));
      weight *= Choose(4, static_cast<int>(held));
      counts_[rank * kSize + i] = static_cast<std::int16_t>(held);
    }
    weights_[i] = static_cast<std::int16_t>(weight);
  }
  int suited = 3;
  for (SuitBoards& boards : suit_boards_) {
    boards = BuildSuitBoards(suited, kBoard - suited);
    ++suited;
  }
}

template <int kBoard>
const MatchupTables<kBoard>& MatchupTables<kBoard>::Get() {
  static const MatchupTables tables;
  return tables;
}

template <int kBoard>
void MatchupTables<kBoard>::Build(int rank_class, ClassValues& values) const {
  const auto [low, high] = RanksOf(rank_class);
  const std::uint32_t hole_key = kRankKeys[high] + kRankKeys[low];
  const auto value = [hole_key](std::uint32_t key) {
    return static_cast<std::int16_t>(ValueOfRanks<kBoard + 2>(hole_key + key));
  };
  values.by_multiset.resize(kSize);
  std::ranges::transform(keys_, values.by_multiset.begin(), value);
  for (std::size_t i = 0; i < suit_boards_.size(); ++i) {
    const SuitBoards& boards = suit_boards_[i];
    Values& table = values.by_suit_boards[i];
    table.resize(boards.set_keys.size() * boards.rests.size());
    std::int16_t* place = table.data();
    for (std::size_t group = 0; group < boards.set_keys.size(); group += kGroup) {
      for (const std::uint32_t rest_key : boards.rest_keys) {
        for (std::size_t set = group; set < group + kGroup; ++set) {
          *place++ = value(rest_key + boards.set_keys[set]);
        }
      }
    }
  }
}

template class MatchupTables<3>;
template class MatchupTables<4>;
template class MatchupTables<5>;

}  // namespace pokermath
