#include "kernels/matchup_tables.h"

#include <algorithm>
#include <utility>

namespace pokermath {
namespace {

void AddMultisets(const RankList& shorter, int lowest, int missing,
                  std::vector<RankList>& multisets) {
  if (missing == 0) {
    multisets.push_back(shorter);
    return;
  }
  for (int rank = lowest; rank < 13; ++rank) {
    RankList longer = shorter;
    longer.Add(rank);
    AddMultisets(longer, rank, missing - 1, multisets);
  }
}

// In rising order.
std::vector<RankList> RankMultisets(Deck deck, int size) {
  std::vector<RankList> multisets;
  AddMultisets({}, LowestRank(deck), size, multisets);
  return multisets;
}

using KeyOfRank = std::uint32_t (*)(int rank);

std::uint32_t KeyOf(KeyOfRank key_of, const RankList& ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += key_of(rank);
  return key;
}

std::uint32_t KeyOf(KeyOfRank key_of, RankSet ranks) {
  std::uint32_t key = 0;
  for (int rank = 0; rank < 13; ++rank) {
    if ((ranks >> rank & 1) != 0) key += key_of(rank);
  }
  return key;
}

// Sets of `size` ranks, with kNoSet up to full groups.
std::vector<RankSet> RankSets(Deck deck, int size) {
  std::vector<RankSet> sets;
  for (unsigned set = 0; set <= kAllRanks; ++set) {
    if ((set & AbsentRanks(deck)) != 0) continue;
    if (__builtin_popcount(set) == size) sets.push_back(static_cast<RankSet>(set));
  }
  while (sets.size() % kGroup != 0) sets.push_back(kNoSet);
  return sets;
}

template <Deck deck>
SuitBoards BuildSuitBoards(KeyOfRank key_of, int suited, int others) {
  const std::vector<RankSet> sets = RankSets(deck, suited);
  SuitBoards boards;
  boards.suited = suited;
  boards.sets = static_cast<int>(sets.size());
  boards.rests = RankMultisets(deck, others);
  for (const RankList& rest : boards.rests) boards.rest_keys.push_back(KeyOf(key_of, rest));
  for (const RankSet set : sets) {
    boards.set_ranks.push_back(static_cast<std::int16_t>(set));
    boards.set_keys.push_back(KeyOf(key_of, set));
  }
  boards.flushes.resize(kHoldings * sets.size());
  for (RankSet hole = 0; hole <= kAllRanks; ++hole) {
    if (__builtin_popcount(hole) > 2) continue;
    std::int16_t* place = &boards.flushes[static_cast<std::size_t>(HoldingOf(hole)) * sets.size()];
    for (const RankSet set : sets) {
      *place++ = DeckValues<deck>::OfFlush((set | hole) & kAllRanks);
    }
  }
  return boards;
}

}  // namespace

template <Deck deck, int kBoard>
MatchupTables<deck, kBoard>::MatchupTables(Deck rules)
    : key_of_(DeckValues<deck>::KeyOf),
      value_(DeckValues<deck>::template OfRanks<kBoard + 2>),
      keys_(kSize) {
  if (rules == Deck::kShortStraights) {
    key_of_ = DeckValues<Deck::kShortStraights>::KeyOf;
    value_ = DeckValues<Deck::kShortStraights>::OfRanks<kBoard + 2>;
  }
  const std::vector<RankList> multisets = RankMultisets(deck, kBoard);
  weights_.resize(kSize, 0);
  counts_.resize(std::size_t{13} * kSize, 0);
  for (std::size_t i = 0; i < multisets.size(); ++i) {
    keys_[i] = KeyOf(key_of_, multisets[i]);
    // Ways to take k + 1 of a rank's four cards are those to take k, times 4 - k, by k + 1.
    int weight = 1;
    for (const int rank : multisets[i]) {
      std::int16_t& held = counts_[static_cast<std::size_t>(rank * kSize) + i];
      weight = weight * (4 - held) / (held + 1);
      ++held;
    }
    weights_[i] = static_cast<std::int16_t>(weight);
  }
  int suited = 3;
  for (SuitBoards& boards : suit_boards_) {
    boards = BuildSuitBoards<deck>(key_of_, suited, kBoard - suited);
    ++suited;
  }
}

template <Deck deck, int kBoard>
const MatchupTables<deck, kBoard>& MatchupTables<deck, kBoard>::Get(Deck rules) {
  if (deck == Deck::kFull || rules == deck) {
    static const MatchupTables tables(deck);
    return tables;
  }
  static const MatchupTables others(rules);
  return others;
}

template <Deck deck, int kBoard>
void MatchupTables<deck, kBoard>::Build(int rank_class, ClassValues& values) const {
  const auto [low, high] = RanksOf(rank_class);
  const std::uint32_t hole_key = key_of_(high) + key_of_(low);
  const auto value = [this, hole_key](std::uint32_t key) { return value_(hole_key + key); };
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

template class MatchupTables<Deck::kFull, 3>;
template class MatchupTables<Deck::kFull, 4>;
template class MatchupTables<Deck::kFull, 5>;
template class MatchupTables<Deck::kShort, 3>;
template class MatchupTables<Deck::kShort, 4>;
template class MatchupTables<Deck::kShort, 5>;

}  // namespace pokermath
