#include "kernels/omaha_board.h"

#include <algorithm>
#include <bit>

#include "eval/omaha_best.h"
#include "eval/omaha_low.h"

namespace pokermath {
namespace {

constexpr int kBestFlush = 7140;  // full houses begin above it, straights end below all flushes
constexpr std::size_t kValues = 7463;

// [card][its suits]: a bit for each choice of suits of some cards, the first one counting most.
template <std::size_t cards>
constexpr auto kSuitBits = [] {
  std::array<std::array<BlockBits<cards + 2>, 16>, cards> bits{};
  for (std::size_t card = 0; card < cards; ++card) {
    for (std::size_t suits = 0; suits < 16; ++suits) {
      for (std::size_t bit = 0; bit < std::size_t{1} << 2 * cards; ++bit) {
        const std::uint64_t has = suits >> (bit >> 2 * (cards - 1 - card) & 3) & 1;
        bits[card][suits] = static_cast<BlockBits<cards + 2>>(bits[card][suits] | has << bit);
      }
    }
  }
  return bits;
}();
// Of the last two cards.
constexpr unsigned RowsOf(unsigned suits) { return kSuitBits<2>[0][suits]; }
constexpr unsigned ColumnsOf(unsigned suits) { return kSuitBits<2>[1][suits]; }

template <std::size_t hand_size>
std::uint16_t BestOf(const HandClass<hand_size>& of, std::span<const std::uint16_t> of_pairs) {
  std::uint16_t best = 0;
  for (const std::uint8_t pair : of.rank_pairs) best = std::max(best, of_pairs[pair]);
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

template <std::size_t hand_size>
void OmahaBoard<hand_size>::Set(CardSet board, std::span<const std::uint16_t> classes,
                                bool with_lows, bool with_flushes) {
  cards_ = board;
  flush_suit_ = kNoSuit;
  for (unsigned suit = 0; suit < 4; ++suit) {
    const auto ranks = static_cast<unsigned>(board.bits() >> 13 * suit & kAllRanks);
    if (!with_flushes || std::popcount(ranks) < 3) continue;
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

template <std::size_t hand_size>
void OmahaBoard<hand_size>::SetValues(std::span<const std::uint16_t> classes, bool with_lows) {
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
    const HandClass<hand_size>& of = HandClasses<hand_size>()[number];
    const std::uint16_t value = BestOf(of, value_of);
    const std::uint16_t low = has_lows_ ? BestOf(of, low_of) : std::uint16_t{0};
    of_class_[number] = {value, static_cast<std::uint8_t>(low), value > kBestFlush};
  }
}

// By counting.
template <std::size_t hand_size>
void OmahaBoard<hand_size>::Sort(std::span<const std::uint16_t> classes) {
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
    ClassOnBoard<hand_size>& of = classes_[next[level_of(of_class_[number].value)]++];
    of.hand_class = &HandClasses<hand_size>()[number];
    of.number = number;
    of.value = of_class_[number].value;
    of.low = of_class_[number].low;
    SetLanes(of);
  }
}

template <std::size_t hand_size>
void OmahaBoard<hand_size>::SetLanes(ClassOnBoard<hand_size>& of) const {
  constexpr std::size_t kFirst = hand_size - 2;  // cards before those of the lanes
  constexpr std::size_t kRow = kFirst, kColumn = kFirst + 1;
  const std::array<std::uint8_t, hand_size>& ranks = of.hand_class->ranks;
  of.live_blocks = static_cast<BlockBits<hand_size>>(~BlockBits<hand_size>{0});
  for (std::size_t i = 0; i < kFirst; ++i) {
    of.live_blocks = static_cast<BlockBits<hand_size>>(of.live_blocks &
                                                       kSuitBits<kFirst>[i][free_suits_[ranks[i]]]);
  }
  of.blocks = of.live_blocks;
  of.live_lanes = static_cast<std::uint16_t>(RowsOf(free_suits_[ranks[kRow]]) &
                                             ColumnsOf(free_suits_[ranks[kColumn]]));
  of.lanes.fill(of.live_lanes);
  if (flush_suit_ == kNoSuit) return;
  const unsigned suit = 1u << flush_suit_, row = RowsOf(suit), column = ColumnsOf(suit);
  // Where of the first cards at least some are of the suit.
  const auto take = [&](std::size_t some, unsigned taken) {
    for (std::size_t of_suit = 0; of_suit < of.lanes.size(); ++of_suit) {
      if ((some & ~of_suit) != 0) continue;
      of.lanes[of_suit] = static_cast<std::uint16_t>(of.lanes[of_suit] & ~taken);
    }
  };
  const auto bit = [](std::size_t i) { return std::size_t{1} << (kFirst - 1 - i); };
  if (of.value <= kBestFlush) {
    // Hands with two cards of the suit.
    take(0, row & column);
    for (std::size_t i = 0; i < kFirst; ++i) {
      take(bit(i), row | column);
      for (std::size_t j = i + 1; j < kFirst; ++j) {
        of.blocks = static_cast<BlockBits<hand_size>>(
            of.blocks & ~(kSuitBits<kFirst>[i][suit] & kSuitBits<kFirst>[j][suit]));
      }
    }
    return;
  }
  for (const RankSet missing : straight_flushes_.missing()) {
    for (std::size_t i = 0; i < hand_size; ++i) {
      for (std::size_t j = i + 1; j < hand_size; ++j) {
        if (missing != (1u << ranks[i] | 1u << ranks[j])) continue;
        const std::size_t some = (i < kFirst ? bit(i) : 0) | (j < kFirst ? bit(j) : 0);
        const unsigned of_row = i == kRow ? row : 0xFFFF;
        take(some, j == kRow ? row : j == kColumn ? column & of_row : 0xFFFF);
      }
    }
  }
}

template class OmahaBoard<4>;
template class OmahaBoard<5>;

}  // namespace pokermath
