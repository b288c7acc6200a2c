#include "kernels/rank_boards.h"

#include <algorithm>
#include <span>

namespace pokermath {
namespace {

struct Pattern {
  int head_ranks;
  int times;
  Tail tail;
  bool below;  // all ranks of the tail are below those of the head
};

std::span<const Pattern> PatternsOf(int board) {
  static constexpr Pattern kThree[] = {
      {0, 0, Tail::kThree, false}, {1, 2, Tail::kOne, false}, {1, 3, Tail::kNone, false}};
  static constexpr Pattern kFour[] = {{1, 1, Tail::kThree, true},
                                      {1, 2, Tail::kTwo, false},
                                      {1, 2, Tail::kPair, true},
                                      {1, 3, Tail::kOne, false},
                                      {1, 4, Tail::kNone, false}};
  static constexpr Pattern kFive[] = {{2, 1, Tail::kThree, true}, {1, 2, Tail::kThree, false},
                                      {2, 2, Tail::kOne, false},  {1, 3, Tail::kTwo, false},
                                      {1, 3, Tail::kPair, false}, {1, 4, Tail::kOne, false}};
  if (board == 3) return kThree;
  if (board == 4) return kFour;
  return kFive;
}

template <Deck deck>
class Builder {
 public:
  explicit Builder(int board) {
    AddTails();
    for (const Pattern& pattern : PatternsOf(board)) AddHeads(pattern);
    boards_.size = (boards_.size + kGroup - 1) / kGroup * kGroup;
  }

  const RankBoards& boards() const { return boards_; }

 private:
  void AddTails() {
    for (unsigned set = 0; set <= kAllRanks; ++set) {
      if ((set & AbsentRanks(deck)) != 0) continue;
      const int ranks = __builtin_popcount(set);
      for (int tail = 0; tail < kTails; ++tail) {
        if (RanksIn(static_cast<Tail>(tail)) != ranks) continue;
        boards_.tails[static_cast<std::size_t>(tail)].push_back(static_cast<std::int16_t>(set));
      }
    }
    for (std::vector<std::int16_t>& sets : boards_.tails) {
      sets.resize(sets.size() + kGroup, static_cast<std::int16_t>(kAllRanks));
    }
  }

  void AddHeads(const Pattern& pattern) {
    if (pattern.head_ranks == 0) return AddBlock(pattern, {});
    for (int high = 12; high >= LowestRank(deck); --high) {
      if (pattern.head_ranks == 1) AddBlock(pattern, {high, high});
      for (int low = high - 1; pattern.head_ranks == 2 && low >= LowestRank(deck); --low) {
        AddBlock(pattern, {high, low});
      }
    }
  }

  void AddBlock(const Pattern& pattern, const std::array<int, 2>& head) {
    int tails = 13 - LowestRank(deck);
    if (pattern.below) tails = head[1] - LowestRank(deck);
    const int size = Choose(tails, RanksIn(pattern.tail));
    if (size <= 0) return;
    BoardBlock block{.head = head,
                     .head_ranks = pattern.head_ranks,
                     .tail = pattern.tail,
                     .size = size,
                     .first = boards_.size};
    for (std::size_t i = 0; i < static_cast<std::size_t>(pattern.head_ranks); ++i) {
      block.times[i] = pattern.times;
      block.head_set = static_cast<std::uint16_t>(block.head_set | 1 << head[i]);
    }
    boards_.blocks.push_back(block);
    boards_.size += size;
  }

  RankBoards boards_;
};

template <Deck deck>
std::uint32_t KeyOf(const RankBoards& boards, const BoardBlock& block, int place) {
  std::uint32_t key = 0;
  const auto add = [&key](int rank, int times) {
    key += static_cast<std::uint32_t>(times) * DeckValues<deck>::KeyOf(rank);
  };
  for (std::size_t i = 0; i < static_cast<std::size_t>(block.head_ranks); ++i) {
    add(block.head[i], block.times[i]);
  }
  const int tail =
      boards.tails[static_cast<std::size_t>(block.tail)][static_cast<std::size_t>(place)];
  for (auto rest = static_cast<unsigned>(tail); rest != 0; rest &= rest - 1) {
    add(__builtin_ctz(rest), block.tail == Tail::kPair ? 2 : 1);
  }
  return key;
}

}  // namespace

template <Deck deck, int kBoard>
RankBoardTables<deck, kBoard>::RankBoardTables() : boards_(Builder<deck>(kBoard).boards()) {
  keys_.reserve(static_cast<std::size_t>(boards_.size));
  for (const BoardBlock& block : boards_.blocks) {
    for (int place = 0; place < block.size; ++place)
      keys_.push_back(KeyOf<deck>(boards_, block, place));
  }
  keys_.resize(static_cast<std::size_t>(boards_.size), keys_[0]);
}

template <Deck deck, int kBoard>
const RankBoardTables<deck, kBoard>& RankBoardTables<deck, kBoard>::Get() {
  static const RankBoardTables tables;
  return tables;
}

template <Deck deck, int kBoard>
void RankBoardTables<deck, kBoard>::Build(int rank_class, Values& values) const {
  const auto [low, high] = RanksOf(rank_class);
  const std::uint32_t hole_key = DeckValues<deck>::KeyOf(high) + DeckValues<deck>::KeyOf(low);
  values.resize(keys_.size());
  std::ranges::transform(keys_, values.begin(), [hole_key](std::uint32_t key) {
    return DeckValues<deck>::template OfRanks<kBoard + 2>(hole_key + key);
  });
}

template class RankBoardTables<Deck::kFull, 3>;
template class RankBoardTables<Deck::kFull, 4>;
template class RankBoardTables<Deck::kFull, 5>;
template class RankBoardTables<Deck::kShort, 3>;
template class RankBoardTables<Deck::kShort, 4>;
template class RankBoardTables<Deck::kShort, 5>;

}  // namespace pokermath
