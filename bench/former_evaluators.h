// How hands were evaluated before, to be measured against: keys of 26 bits drawn at random, a load
// for every card, short-deck hands by the numbers of their rank multisets. Values are taken from
// the tables of today.

#ifndef POKERMATH_BENCH_FORMER_EVALUATORS_H_
#define POKERMATH_BENCH_FORMER_EVALUATORS_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <vector>

#include "eval/compact_keys.h"
#include "eval/omaha_rows.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// Visits every multiset of `left` ranks from `lowest` on: counts by rank.
template <typename Visit>
void ForEachRanks(int left, std::size_t lowest, std::array<std::uint32_t, 13>& counts,
                  const Visit& visit) {
  if (left == 0) return visit(counts);
  for (std::size_t rank = lowest; rank < 13; ++rank) {
    if (counts[rank] == 4) continue;
    ++counts[rank];
    ForEachRanks(left - 1, rank, counts, visit);
    --counts[rank];
  }
}

class FormerTables {
 public:
  static const FormerTables& Get() {
    static const FormerTables tables;
    return tables;
  }

  std::uint64_t card_words[52];
  std::vector<std::uint16_t> rows[3];
  std::vector<std::uint16_t> values[3];

  template <int count, typename Card>
  int Value(const Card* cards) const {
    std::uint64_t sum = CompactTables::kSuitStart;
    for (int i = 0; i < count; ++i) sum += card_words[static_cast<int>(cards[i])];
    if (const std::uint64_t flush = sum & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
      const int suit = __builtin_ctzll(flush) / 4;
      unsigned mask = 0;
      for (int i = 0; i < count; ++i) {
        const int card = static_cast<int>(cards[i]);
        mask |= static_cast<unsigned>(card / 13 == suit) << (card % 13);
      }
      return kCompactTables.flush_values[mask];
    }
    return ValueOfKey<count>(sum >> kShift);
  }
  /// By the words and the bits of the cards.
  template <int count>
  int Value(std::uint64_t sum, std::uint64_t cards) const {
    if (const std::uint64_t flush = sum & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
      return kCompactTables.flush_values[cards >> 13 * (__builtin_ctzll(flush) / 4) & 0x1FFF];
    }
    return ValueOfKey<count>(sum >> kShift);
  }

 private:
  static constexpr int kShift = 38;
  static constexpr int kColumnBits = 13;
  static constexpr std::uint64_t kColumns = 1u << kColumnBits;
  static constexpr std::uint32_t kKeys[13] = {0,       7082613, 6762242, 7532291, 491263,
                                              3832396, 4266056, 5465834, 7157994, 7361427,
                                              3525027, 6405612, 4262093};

  template <int count>
  int ValueOfKey(std::uint64_t key) const {
    return values[count - 5][rows[count - 5][key >> kColumnBits] + (key & (kColumns - 1))];
  }

  FormerTables() {
    for (std::size_t card = 0; card < 52; ++card) {
      card_words[card] = std::uint64_t{kKeys[card % 13]} << kShift | std::uint64_t{1}
                                                                         << (card / 13 * 4);
    }
    Fill<5>();
    Fill<6>();
    Fill<7>();
  }

  template <int count>
  void Fill() {
    struct Entry {
      std::size_t column;
      std::uint16_t value;
    };
    std::vector<std::vector<Entry>> entries(kColumns);
    std::array<std::uint32_t, 13> counts{};
    ForEachRanks(count, 0, counts, [&](const auto& of_rank) {
      const auto sum = [&](const std::uint32_t* keys) {
        return std::inner_product(of_rank.begin(), of_rank.end(), keys, std::uint32_t{0});
      };
      const std::uint32_t key = sum(kKeys);
      entries[key >> kColumnBits].push_back(
          {key % kColumns, static_cast<std::uint16_t>(ValueOfRanks<count>(sum(kRankKeys)))});
    });
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, std::greater<>(),
                             [&](std::size_t i) { return entries[i].size(); });
    std::vector<std::uint16_t>& packed = values[count - 5];
    packed.resize(1u << 17);
    rows[count - 5].resize(entries.size());
    for (const std::size_t row : order) {
      std::size_t offset = 0;
      const auto fits = [&](const Entry& entry) {
        const std::uint16_t there = packed[offset + entry.column];
        return there == 0 || there == entry.value;
      };
      while (!std::ranges::all_of(entries[row], fits)) ++offset;
      for (const Entry& entry : entries[row]) packed[offset + entry.column] = entry.value;
      rows[count - 5][row] = static_cast<std::uint16_t>(offset);
    }
  }
};

/// Omaha hands on boards of five, every pair with its number beside its value.
class FormerOmaha {
 public:
  template <std::size_t holes>
  static int Value(const int* hand, const int* board) {
    const int plain = BestPlain<holes>(hand, board);
    const int suit = SuitOf<holes>(hand, board);
    return std::max(plain, suit >= 0 ? BestSuited<holes>(hand, board, suit) : 0) >> kPairBits;
  }

 private:
  static constexpr int kPairBits = 12;

  static int Packed(int value, std::size_t i, std::size_t j) {
    return value << kPairBits | static_cast<int>(4095 - (i * 64 + j));
  }

  template <std::size_t holes>
  static int BestPlain(const int* hand, const int* board) {
    std::uint32_t key = 0;
    for (std::size_t i = 0; i < 5; ++i) key += kRankKeys[board[i] % 13];
    const std::uint16_t* of_pairs = OmahaRows::Get().OfCompactKey(key);
    int ranks[holes];
    for (std::size_t i = 0; i < holes; ++i) ranks[i] = hand[i] % 13;
    int best = 0;
    for (std::size_t i = 0; i + 1 < holes; ++i) {
      for (std::size_t j = i + 1; j < holes; ++j) {
        best = std::max(best, Packed(of_pairs[PairOf(ranks[i], ranks[j])], i, j));
      }
    }
    return best;
  }

  template <std::size_t holes>
  static int SuitOf(const int* hand, const int* board) {
    unsigned on_board = 0x7D7D7D7D;
    unsigned in_hand = 0x7E7E7E7E;
    for (std::size_t i = 0; i < 5; ++i) on_board += 1u << board[i] / 13 * 8;
    for (std::size_t i = 0; i < holes; ++i) in_hand += 1u << hand[i] / 13 * 8;
    const unsigned suits = on_board & in_hand & 0x80808080;
    return suits == 0 ? -1 : __builtin_ctz(suits) / 8;
  }

  template <std::size_t holes>
  static int BestSuited(const int* hand, const int* board, int suit) {
    unsigned ranks = 0;
    for (std::size_t i = 0; i < 5; ++i) {
      ranks |= board[i] / 13 == suit ? 1u << board[i] % 13 : 0u;
    }
    int best = 0;
    for (std::size_t i = 0; i + 1 < holes; ++i) {
      for (std::size_t j = i + 1; j < holes; ++j) {
        if (hand[i] / 13 != suit || hand[j] / 13 != suit) continue;
        best = std::max(best, Packed(Flush(ranks, 1u << hand[i] % 13 | 1u << hand[j] % 13), i, j));
      }
    }
    return best;
  }

  static int Flush(unsigned board, unsigned holes) {
    int best = 0;
    for (unsigned a = board; a != 0; a &= a - 1) {
      for (unsigned b = a & (a - 1); b != 0; b &= b - 1) {
        for (unsigned c = b & (b - 1); c != 0; c &= c - 1) {
          const unsigned ranks = (a & -a) | (b & -b) | (c & -c) | holes;
          best = std::max<int>(best, kCompactTables.flush_values[ranks]);
        }
      }
    }
    return best;
  }
};

/// Seven short-deck cards.
class FormerShortDeck {
 public:
  static const FormerShortDeck& Get() {
    static const FormerShortDeck values;
    return values;
  }

  int Value(const int* cards) const {
    std::uint32_t key = 0;
    std::uint64_t bits = 0;
    for (int i = 0; i < 7; ++i) {
      const int rank = cards[i] % 13;
      if (rank < kLowest) return 0;
      key += 1u << 3 * (rank - kLowest);
      bits |= std::uint64_t{1} << cards[i];
    }
    for (int suit = 0; suit < 4; ++suit) {
      const auto ranks = static_cast<unsigned>(bits >> 13 * suit & 0x1FFF);
      if (__builtin_popcount(ranks) >= 5) return kShortDeckTables.FlushOf(0, ranks);
    }
    return plain_[PlaceOf(key)];
  }

 private:
  static constexpr int kLowest = ShortDeckTables::kLowestRank;

  FormerShortDeck() {
    for (std::size_t i = 0; i < 7; ++i) {
      for (std::size_t rank = 0; rank < 9; ++rank) {
        std::size_t choose = 1;
        for (std::size_t k = 0; k <= i; ++k) choose = choose * (rank + i - k) / (k + 1);
        places_[i][rank] = static_cast<std::uint16_t>(choose);
      }
    }
    std::array<std::uint32_t, 13> counts{};
    ForEachRanks(7, kLowest, counts, [&](const auto& of_rank) {
      std::uint32_t key = 0;
      std::uint32_t sum = 0;
      for (std::size_t rank = kLowest; rank < 13; ++rank) {
        key += of_rank[rank] << 3 * (rank - kLowest);
        sum += of_rank[rank] * kShortDeckKeys[rank];
      }
      plain_[PlaceOf(key)] = static_cast<std::uint16_t>(kShortDeckTables.ValueOfRanks<7>(sum));
    });
  }

  std::size_t PlaceOf(std::uint32_t key) const {
    std::size_t place = 0;
    std::size_t card = 0;
    for (std::size_t rank = 0; key != 0; ++rank, key >>= 3) {
      for (std::uint32_t count = key & 7; count > 0; --count) place += places_[card++][rank];
    }
    return place;
  }

  std::array<std::array<std::uint16_t, 9>, 7> places_{};
  std::array<std::uint16_t, 6435> plain_{};
};

}  // namespace pokermath

#endif  // POKERMATH_BENCH_FORMER_EVALUATORS_H_
