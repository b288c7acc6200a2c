// States are found level by level, one level for each number of cards, by what the rules want to be
// remembered. Then the rows are made from the last level back to the first, and rows that are equal
// become one: what has the same future is the same state.

#include "eval/state_table_builder.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "eval/numbering.h"

namespace pokermath {
namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;

// Different rows of one level, in the order in which they come.
class RowSet {
 public:
  explicit RowSet(std::size_t width) : width_(width), slots_(1024, kNone) {}

  std::uint32_t NumberOf(const std::uint32_t* row) {
    if (2 * size_ >= slots_.size()) Grow();
    std::size_t slot = Hash(row) & (slots_.size() - 1);
    while (slots_[slot] != kNone) {
      if (std::memcmp(Row(slots_[slot]), row, width_ * sizeof *row) == 0) return slots_[slot];
      slot = (slot + 1) & (slots_.size() - 1);
    }
    slots_[slot] = static_cast<std::uint32_t>(size_);
    rows_.insert(rows_.end(), row, row + width_);
    return static_cast<std::uint32_t>(size_++);
  }
  std::size_t size() const { return size_; }
  const std::uint32_t* Row(std::size_t number) const { return &rows_[number * width_]; }

 private:
  std::uint64_t Hash(const std::uint32_t* row) const {
    std::uint64_t hash = 0;
    for (std::size_t i = 0; i + 1 < width_; i += 2) {
      std::uint64_t two;
      std::memcpy(&two, row + i, sizeof two);
      hash = (hash ^ two) * 0x9E3779B97F4A7C15u;
      hash ^= hash >> 29;
    }
    return hash;
  }
  void Grow() {
    slots_.assign(slots_.size() * 2, kNone);
    for (std::size_t number = 0; number < size_; ++number) {
      std::size_t slot = Hash(Row(number)) & (slots_.size() - 1);
      while (slots_[slot] != kNone) slot = (slot + 1) & (slots_.size() - 1);
      slots_[slot] = static_cast<std::uint32_t>(number);
    }
  }

  std::size_t width_;
  std::size_t size_ = 0;
  std::vector<std::uint32_t> slots_;
  StateEntries rows_;
};

// States of so many cards, and the numbers of those that follow.
struct Level {
  std::vector<std::uint64_t> states;
  std::vector<std::uint32_t> next;  // [state][card], kNone where no card can come
};

std::vector<Level> FindStates(const StateRules& rules, const StateTableShape& shape) {
  std::vector<Level> levels(static_cast<std::size_t>(shape.cards));
  levels[0].states = {StateRules::kStart};
  for (int cards = 0; cards + 1 < shape.cards; ++cards) {
    Level& level = levels[static_cast<std::size_t>(cards)];
    Numbering numbers;
    for (const std::uint64_t state : level.states) {
      for (int card = 0; card < shape.width; ++card) {
        const std::uint64_t next = rules.Next(state, cards, card);
        level.next.push_back(next == StateRules::kImpossible ? kNone : numbers.NumberOf(next));
      }
    }
    levels[static_cast<std::size_t>(cards) + 1].states = numbers.ids();
  }
  return levels;
}

}  // namespace

StateEntries BuildStateTable(const StateRules& rules, const StateTableShape& shape,
                             const std::function<bool(std::int64_t)>& go_on) {
  constexpr std::size_t kReportEvery = 1 << 13;
  const auto width = static_cast<std::size_t>(shape.width);
  const std::vector<Level> levels = FindStates(rules, shape);
  std::vector<RowSet> rows;  // the last level first
  std::vector<std::uint32_t> row_of_next;
  std::vector<std::uint32_t> row(width);
  std::size_t done = 0;
  for (std::size_t i = levels.size(); i-- > 0;) {
    const Level& level = levels[i];
    rows.emplace_back(width);
    std::vector<std::uint32_t> row_of(level.states.size());
    for (std::size_t state = 0; state < level.states.size(); ++state) {
      if (i + 1 == levels.size()) {
        rules.FillValues(level.states[state], row.data());
      } else {
        for (std::size_t card = 0; card < width; ++card) {
          const std::uint32_t next = level.next[state * width + card];
          row[card] = next == kNone ? kNone : row_of_next[next];
        }
      }
      row_of[state] = rows.back().NumberOf(row.data());
      if (++done % kReportEvery == 0 && go_on && !go_on(static_cast<std::int64_t>(done))) return {};
    }
    row_of_next = std::move(row_of);
  }

  // Row 0 is zero, then the levels from the first to the last.
  std::ranges::reverse(rows);
  std::size_t count = 1;
  for (const RowSet& level : rows) count += level.size();
  StateEntries entries;
  entries.reserve(count * width + static_cast<std::size_t>(shape.first_index));
  entries.resize(width + static_cast<std::size_t>(shape.first_index), 0);
  std::size_t first_of_next = 1;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool last = i + 1 == rows.size();
    first_of_next += rows[i].size();
    for (std::size_t number = 0; number < rows[i].size(); ++number) {
      const std::uint32_t* from = rows[i].Row(number);
      for (std::size_t card = 0; card < width; ++card) {
        const std::uint32_t next = from[card];
        entries.push_back(last ? next
                          : next == kNone
                              ? 0
                              : static_cast<std::uint32_t>((first_of_next + next) * width));
      }
    }
  }
  return entries;
}

CardList::CardList(std::uint64_t packed) {
  for (; packed > 1; packed >>= 7) {
    cards_[static_cast<std::size_t>(size_++)] = static_cast<int>(packed & 127);
  }
}

int CardList::CountRank(int rank) const {
  int count = 0;
  for (int i = 0; i < size_; ++i) count += RankAt(i) == rank ? 1 : 0;
  return count;
}

int CardList::CountSuit(int suit) const {
  int count = 0;
  for (int i = 0; i < size_; ++i) count += SuitAt(i) == suit ? 1 : 0;
  return count;
}

bool CardList::Holds(int rank, int suit) const {
  const auto end = cards_.begin() + size_;
  return std::find(cards_.begin(), end, rank * 5 + suit) != end;
}

unsigned CardList::RanksOf(int suit) const {
  unsigned ranks = 0;
  for (int i = 0; i < size_; ++i) ranks |= SuitAt(i) == suit ? 1u << RankAt(i) : 0u;
  return ranks;
}

void CardList::ForgetSuit(int suit) {
  for (int i = 0; i < size_; ++i) {
    if (SuitAt(i) == suit) cards_[static_cast<std::size_t>(i)] = RankAt(i) * 5 + kNoSuit;
  }
}

std::uint64_t CardList::Pack() const {
  std::array<int, 7> sorted{};
  for (int i = 0; i < size_; ++i) {
    auto place = static_cast<std::size_t>(i);
    for (; place > 0 && sorted[place - 1] > cards_[static_cast<std::size_t>(i)]; --place) {
      sorted[place] = sorted[place - 1];
    }
    sorted[place] = cards_[static_cast<std::size_t>(i)];
  }
  std::uint64_t packed = 1;  // ends the list
  for (int i = 0; i < size_; ++i) {
    packed = packed << 7 | static_cast<std::uint64_t>(sorted[static_cast<std::size_t>(i)]);
  }
  return packed;
}

std::uint64_t AnyFiveRules::Next(std::uint64_t state, int cards, int card) const {
  CardList list(state);
  const int rank = lowest_rank_ + card / 4;
  const int suit = suits_[static_cast<std::size_t>(card % 4)];
  if (list.CountRank(rank) == 4 || list.Holds(rank, suit)) return kImpossible;
  const int to_come = cards_ - cards - 1;
  // A suit that was forgotten cannot come back: it lacks the cards that are forgotten.
  list.Add(rank, suit);
  for (int i = 0; i < 4; ++i) {
    if (list.CountSuit(i) + to_come < 5) list.ForgetSuit(i);
  }
  return list.Pack();
}

void AnyFiveRules::FillValues(std::uint64_t state, std::uint32_t* row) const {
  const CardList list(state);
  std::array<int, 13> counts{};
  for (int i = 0; i < list.size(); ++i) ++counts[static_cast<std::size_t>(list.RankAt(i))];
  // With one card to come at most one suit is remembered.
  std::array<unsigned, 4> suited{};
  unsigned flush = 0;
  for (int suit = 0; suit < 4; ++suit) {
    suited[static_cast<std::size_t>(suit)] = list.RanksOf(suit);
    if (list.CountSuit(suit) >= 5) flush = list.RanksOf(suit);
  }
  for (int rank = lowest_rank_; rank < 13; ++rank) {
    int& count = counts[static_cast<std::size_t>(rank)];
    const bool fifth = count == 4;
    ++count;
    const std::uint32_t plain = fifth || flush != 0 ? 0 : ValueOfRanks(counts);
    --count;
    for (std::size_t i = 0; i < 4; ++i, ++row) {
      const auto suit = static_cast<std::size_t>(suits_[i]);
      const unsigned ranks = suited[suit] | 1u << rank;
      if (fifth || ranks == suited[suit]) {
        *row = 0;
      } else if (__builtin_popcount(ranks) >= 5) {
        *row = ValueOfFlush(ranks);
      } else {
        *row = flush != 0 ? ValueOfFlush(flush) : plain;
      }
    }
  }
}

}  // namespace pokermath
