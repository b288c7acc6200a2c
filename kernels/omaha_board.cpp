#include "kernels/omaha_board.h"

#include <algorithm>
#include <bit>

#include "eval/omaha_best.h"
#include "eval/omaha_low.h"

namespace pokermath {
namespace {

constexpr int kBestFlush = 7140;  // full houses begin above it, straights end below all flushes
constexpr std::size_t kValues = 7463;

// Bits for pairs of suits, first * 4 + second: of the first card, and of the second.
constexpr unsigned RowsOf(unsigned suits) {
  return ((suits & 1) | (suits & 2) << 3 | (suits & 4) << 6 | (suits & 8) << 9) * 15;
}
constexpr unsigned ColumnsOf(unsigned suits) { return suits * 0x1111; }

std::uint16_t BestOf(const QuadClass& quad, std::span<const std::uint16_t> of_pairs) {
  std::uint16_t best = 0;
  for (const std::uint8_t pair : quad.rank_pairs) best = std::max(best, of_pairs[pair]);
  return best;
}

template <typename Visit>
void ForEachRankPair(const Visit& visit) {
  std::size_t pair = 0;
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) visit(pair++, high, low);
  }
}

}  // namespace

void OmahaBoard::Set(CardSet board, std::span<const std::uint16_t> classes, bool with_lows) {
  cards_ = board;
  flush_suit_ = kNoSuit;
  for (unsigned suit = 0; suit < 4; ++suit) {
    const auto ranks = static_cast<unsigned>(board.bits() >> 13 * suit & kAllRanks);
    if (std::popcount(ranks) < 3) continue;
    flush_suit_ = suit;
    straight_flushes_.Set(ranks);
  }
  for (std::size_t rank = 0; rank < 13; ++rank) {
    unsigned suits = 0;
    for (unsigned suit = 0; suit < 4; ++suit) {
      suits |= (board.Contains(static_cast<int>(13 * suit + rank)) ? 0u : 1u) << suit;
    }
    free_suits_[rank] = static_cast<std::uint8_t>(suits);
  }
  SetValues(classes, with_lows);
  Sort(classes);
}

void OmahaBoard::SetValues(std::span<const std::uint16_t> classes, bool with_lows) {
  std::vector<int> cards(cards_.begin(), cards_.end());
  const OmahaPairValues values(cards);
  RankPairs value_of, low_of{};
  // Cards of two suits, so there is no flush.
  ForEachRankPair([&](std::size_t pair, int high, int low) {
    value_of[pair] = static_cast<std::uint16_t>(values.Of(high, 13 + low));
  });
  if (with_lows) {
    for (int& card : cards) card %= 13;
    const OmahaPairLows lows(cards);
    ForEachRankPair([&](std::size_t pair, int high, int low) {
      low_of[pair] = static_cast<std::uint16_t>(lows.Of(high, 13 + low));
    });
  }
  has_lows_ = std::ranges::max(low_of) > 0;
  for (const std::uint16_t number : classes) {
    const QuadClass& quad = QuadClasses()[number];
    const std::uint16_t value = BestOf(quad, value_of);
    const std::uint16_t low = has_lows_ ? BestOf(quad, low_of) : std::uint16_t{0};
    of_class_[number] = {value, static_cast<std::uint8_t>(low), value > kBestFlush};
  }
}

// By counting.
void OmahaBoard::Sort(std::span<const std::uint16_t> classes) {
  std::array<std::uint64_t, kValues / 64 + 1> occurs{};
  for (const std::uint16_t number : classes) {
    const std::uint16_t value = of_class_[number].value;
    occurs[value / 64] |= std::uint64_t{1} << value % 64;
  }
  std::array<std::uint16_t, kValues / 64 + 1> levels_before;
  std::size_t levels = 0;
  for (std::size_t i = 0; i < occurs.size(); ++i) {
    levels_before[i] = static_cast<std::uint16_t>(levels);
    levels += static_cast<std::size_t>(std::popcount(occurs[i]));
  }
  const auto level_of = [&](std::uint16_t value) {
    const std::uint64_t below = (std::uint64_t{1} << value % 64) - 1;
    return levels_before[value / 64] +
           static_cast<std::size_t>(std::popcount(occurs[value / 64] & below));
  };
  std::array<std::size_t, MultisetsOf(2) + 1> next{};
  below_full_ = 0;
  for (const std::uint16_t number : classes) {
    ++next[level_of(of_class_[number].value) + 1];
    below_full_ += of_class_[number].full ? 0 : 1;
  }
  for (std::size_t i = 0; i < levels; ++i) next[i + 1] += next[i];
  classes_.resize(classes.size());
  for (const std::uint16_t number : classes) {
    ClassOnBoard& of = classes_[next[level_of(of_class_[number].value)]++];
    of.quad = &QuadClasses()[number];
    of.number = number;
    of.value = of_class_[number].value;
    of.low = of_class_[number].low;
    SetLanes(of);
  }
}

void OmahaBoard::SetLanes(ClassOnBoard& of) const {
  const std::array<std::uint8_t, 4>& ranks = of.quad->ranks;
  of.live_blocks = of.blocks =
      static_cast<std::uint16_t>(RowsOf(free_suits_[ranks[0]]) & ColumnsOf(free_suits_[ranks[1]]));
  of.live_lanes =
      static_cast<std::uint16_t>(RowsOf(free_suits_[ranks[2]]) & ColumnsOf(free_suits_[ranks[3]]));
  of.lanes.fill(of.live_lanes);
  if (flush_suit_ == kNoSuit) return;
  const unsigned row = RowsOf(1u << flush_suit_), column = ColumnsOf(1u << flush_suit_);
  const auto take = [&](std::initializer_list<std::size_t> places, unsigned taken) {
    for (const std::size_t i : places) {
      of.lanes[i] = static_cast<std::uint16_t>(of.lanes[i] & ~taken);
    }
  };
  if (of.value <= kBestFlush) {
    // Hands with two cards of the suit.
    take({0}, row & column);
    take({1, 2}, row | column);
    of.blocks = static_cast<std::uint16_t>(of.blocks & ~(row & column));
    return;
  }
  for (const RankSet missing : straight_flushes_.missing()) {
    const auto make_it = [&](std::size_t i, std::size_t j) {
      return missing == (1u << ranks[i] | 1u << ranks[j]);
    };
    if (make_it(0, 1)) take({3}, 0xFFFF);
    if (make_it(0, 2)) take({2, 3}, row);
    if (make_it(0, 3)) take({2, 3}, column);
    if (make_it(1, 2)) take({1, 3}, row);
    if (make_it(1, 3)) take({1, 3}, column);
    if (make_it(2, 3)) take({0, 1, 2, 3}, row & column);
  }
}

}  // namespace pokermath
