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
  multisets.reserve(static_cast<std::size_t>(MultisetsOf(size)));
  AddMultisets({}, LowestRank(deck), size, multisets);
  return multisets;
}

template <typename Values>
std::uint32_t KeyOf(const RankList& ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += Values::KeyOf(rank);
  return key;
}

template <typename Values>
std::uint32_t KeyOf(RankSet ranks) {
  std::uint32_t key = 0;
  for (unsigned rest = ranks & kAllRanks; rest != 0; rest &= rest - 1) {  // kNoSet has no ranks
    key += Values::KeyOf(__builtin_ctz(rest));
  }
  return key;
}

// Sets of `size` ranks, with kNoSet up to full groups.
std::vector<RankSet> RankSets(Deck deck, int size) {
  std::vector<RankSet> sets;
  ForEachSubset(static_cast<RankSet>(kAllRanks & ~AbsentRanks(deck)), size,
                [&sets](RankSet set) { sets.push_back(set); });
  while (sets.size() % kGroup != 0) sets.push_back(kNoSet);
  return sets;
}

// Calls use with the DeckValues of the rules, which have the cards of `deck`.
template <Deck deck, typename Use>
void WithValues(Deck rules, const Use& use) {
  if (rules == deck) return use(DeckValues<deck>());
  if constexpr (deck == Deck::kShort) use(DeckValues<Deck::kShortStraights>());
}

template <Deck deck, typename Values>
SuitBoards BuildSuitBoards(int suited, int others) {
  const std::vector<RankSet> sets = RankSets(deck, suited);
  SuitBoards boards;
  boards.suited = suited;
  boards.sets = static_cast<int>(sets.size());
  boards.rests = RankMultisets(deck, others);
  for (const RankList& rest : boards.rests) boards.rest_keys.push_back(KeyOf<Values>(rest));
  for (const RankSet set : sets) {
    boards.set_ranks.push_back(static_cast<std::int16_t>(set));
    boards.set_keys.push_back(KeyOf<Values>(set));
  }
  boards.flushes.resize(kHoldings * sets.size());
  for (int held = 0; held <= 2; ++held) {
    ForEachSubset(static_cast<RankSet>(kAllRanks), held, [&](RankSet hole) {
      std::int16_t* place =
          &boards.flushes[static_cast<std::size_t>(HoldingOf(hole)) * sets.size()];
      for (const RankSet set : sets) {
        *place++ = DeckValues<deck>::OfFlush((set | hole) & kAllRanks);
      }
    });
  }
  return boards;
}

// What a rank class makes with boards, by their rank keys.
template <typename ValueOfKey>
void FillSuitBoards(const SuitBoards& boards, const ValueOfKey& value, Values& table) {
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

}  // namespace

template <Deck deck, int kBoard>
MatchupTables<deck, kBoard>::MatchupTables(Deck rules) : rules_(rules), keys_(kSize) {
  const std::vector<RankList> multisets = RankMultisets(deck, kBoard);
  weights_.resize(kSize, 0);
  counts_.resize(std::size_t{13} * kSize, 0);
  for (std::size_t i = 0; i < multisets.size(); ++i) {
    // Ways to take k + 1 of a rank's four cards are those to take k, times 4 - k, by k + 1.
    int weight = 1;
    for (const int rank : multisets[i]) {
      std::int16_t& held = counts_[static_cast<std::size_t>(rank * kSize) + i];
      weight = weight * (4 - held) / (held + 1);
      ++held;
    }
    weights_[i] = static_cast<std::int16_t>(weight);
  }
  WithValues<deck>(rules, [&]<typename Values>(Values) {
    std::ranges::transform(multisets, keys_.begin(),
                           [](const RankList& ranks) { return KeyOf<Values>(ranks); });
    int suited = 3;
    for (SuitBoards& boards : suit_boards_) {
      boards = BuildSuitBoards<deck, Values>(suited, kBoard - suited);
      ++suited;
    }
  });
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
  WithValues<deck>(rules_, [&]<typename Of>(Of) {
    const auto [low, high] = RanksOf(rank_class);
    const std::uint32_t hole_key = Of::KeyOf(high) + Of::KeyOf(low);
    const auto value = [hole_key](std::uint32_t key) {
      return Of::template OfRanks<kBoard + 2>(hole_key + key);
    };
    values.by_multiset.resize(kSize);
    std::ranges::transform(keys_, values.by_multiset.begin(), value);
    for (std::size_t i = 0; i < suit_boards_.size(); ++i) {
      FillSuitBoards(suit_boards_[i], value, values.by_suit_boards[i]);
    }
  });
}

template class MatchupTables<Deck::kFull, 3>;
template class MatchupTables<Deck::kFull, 4>;
template class MatchupTables<Deck::kFull, 5>;
template class MatchupTables<Deck::kShort, 3>;
template class MatchupTables<Deck::kShort, 4>;
template class MatchupTables<Deck::kShort, 5>;

}  // namespace pokermath
