// An Omaha hand plays three board cards, so what it makes with each triple of cards is all there is
// to know about it: a table [x][y][z] of the best value over its pairs of hole cards, x > y > z
// being places in a list of the cards that may be on the board. The value of a board is the largest
// of its ten triples.
//
// A board is a > b > c > d > e. From the triples follows what the hand makes with each four of the
// cards: a table [x][y][pair], the pairs d > e one behind the other in the order of d, then e. Nine
// of a board's triples are in its fours ab, ac and bc with the pair de, so a row of boards, one for
// each pair, costs three loads and three maxima a hand, and one comparison. Lows are numbers that
// are larger for the better one too, so they are the same with another table.

#include "kernels/omaha_matchup.h"

#include <algorithm>
#include <vector>

#include "eval/compact_keys.h"
#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "kernels/hole_cards.h"
#include "kernels/registers.h"
#include "pokermath/evaluators.h"
#include "pokermath/large_table.h"

namespace pokermath {
namespace {

constexpr int kPlaces = 52;  // no fewer than cards that may be on a board
constexpr int kMostLanes = kLanes<Registers32::Register>;

// The number of a pair x > y.
constexpr int PairOf(int x, int y) { return x * (x - 1) / 2 + y; }

// The cards that may be on a board by their places: those that may come, and behind them the known
// ones.
struct Boards {
  int live = 0;
  int known = 0;  // 0, 3 or 4

  // The pairs d > e of boards with such a c.
  int FirstPair() const { return known == 4 ? PairOf(live, 0) : 0; }
  int LastPair(int c) const {
    return known == 4 ? PairOf(live, live - 1) : PairOf(std::min(c, live), 0) - 1;
  }

  // Visits the first three cards of every board.
  template <typename Visit>
  [[gnu::always_inline]] void ForEachTriple(const Visit& visit) const {
    const int last = live + known - 1;
    if (known > 0) return visit(last, last - 1, last - 2);
    for (int a = last; a >= 4; --a)
      for (int b = 3; b < a; ++b)
        for (int c = 2; c < b; ++c) visit(a, b, c);
  }
  // Visits every two of such three cards, the pairs of places in rising order.
  template <typename Visit>
  [[gnu::always_inline]] void ForEachTwo(const Visit& visit) const {
    const int last = live + known - 1;
    for (int x = known > 0 ? last - 1 : 3; x <= last; ++x)
      for (int y = known > 0 ? last - 2 : 2; y < x; ++y) visit(x, y);
  }
};

// Where the rows of each pair of places are, for triples and for fours.
class Layout {
 public:
  explicit Layout(const Boards& boards) {
    int next = PairOf(kPlaces, 0) * kPlaces;
    boards.ForEachTwo([&](int x, int y) {
      // The row is as long as it must be, though only its end is there for a known turn.
      rows_[static_cast<std::size_t>(PairOf(x, y))] = next;
      next += boards.LastPair(y) + 1;
    });
    size_ = next + kMostLanes;
  }
  static int Triples(int x, int y) { return PairOf(x, y) * kPlaces; }
  int Fours(int x, int y) const { return rows_[static_cast<std::size_t>(PairOf(x, y))]; }
  int size() const { return size_; }

 private:
  std::array<int, PairOf(kPlaces, 0)> rows_;
  int size_ = 0;
};

// What a hand makes with every triple of the cards in a list.
class TripleValues {
 public:
  // `values` is where they go; what is not written is not looked at, whatever is there.
  TripleValues(std::span<const int> hand, std::span<const int> cards, std::int16_t* values)
      : values_(values) {
    const PlainTable plain = PlainValues(hand);
    std::array<std::uint8_t, kPlaces> ranks;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      ranks[i] = static_cast<std::uint8_t>(cards[i] % 13);
    }
    const int size = static_cast<int>(cards.size());
    for (int x = 0; x < size; ++x) {
      for (int y = 0; y < x; ++y) {
        std::int16_t* row = values_ + Layout::Triples(x, y);
        const auto& from =
            plain[ranks[static_cast<std::size_t>(x)]][ranks[static_cast<std::size_t>(y)]];
        for (int z = 0; z < y; ++z) row[z] = from[ranks[static_cast<std::size_t>(z)]];
      }
    }
    for (int suit = 0; suit < 4; ++suit) AddFlushes(hand, cards, suit);
  }

 private:
  using PlainTable = std::array<std::array<std::array<std::int16_t, 13>, 13>, 13>;

  // By three ranks in any order.
  static PlainTable PlainValues(std::span<const int> hand) {
    std::vector<std::uint32_t> pairs;
    for (std::size_t i = 0; i < hand.size(); ++i) {
      for (std::size_t j = i + 1; j < hand.size(); ++j) {
        pairs.push_back(kRankKeys[hand[i] % 13] + kRankKeys[hand[j] % 13]);
      }
    }
    std::ranges::sort(pairs);
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    PlainTable values;
    for (std::size_t a = 0; a < 13; ++a) {
      for (std::size_t b = 0; b <= a; ++b) {
        for (std::size_t c = 0; c <= b; ++c) {
          const std::uint32_t key = kRankKeys[a] + kRankKeys[b] + kRankKeys[c];
          int best = 0;
          for (const std::uint32_t pair : pairs) best = std::max(best, ValueOfRanks<5>(key + pair));
          const auto value = static_cast<std::int16_t>(best);
          values[a][b][c] = values[a][c][b] = values[b][a][c] = value;
          values[b][c][a] = values[c][a][b] = values[c][b][a] = value;
        }
      }
    }
    return values;
  }

  void AddFlushes(std::span<const int> hand, std::span<const int> cards, int suit) {
    std::vector<unsigned> pairs;
    for (std::size_t i = 0; i < hand.size(); ++i) {
      for (std::size_t j = i + 1; j < hand.size(); ++j) {
        if (hand[i] / 13 == suit && hand[j] / 13 == suit) {
          pairs.push_back(1u << hand[i] % 13 | 1u << hand[j] % 13);
        }
      }
    }
    if (pairs.empty()) return;
    const auto rank_of = [&](int place) {
      return 1u << cards[static_cast<std::size_t>(place)] % 13;
    };
    std::vector<int> places;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      if (cards[i] / 13 == suit) places.push_back(static_cast<int>(i));
    }
    for (std::size_t i = 2; i < places.size(); ++i) {
      for (std::size_t j = 1; j < i; ++j) {
        for (std::size_t k = 0; k < j; ++k) {
          const unsigned ranks = rank_of(places[i]) | rank_of(places[j]) | rank_of(places[k]);
          std::int16_t& best = values_[Layout::Triples(places[i], places[j]) + places[k]];
          for (const unsigned pair : pairs) {
            best = std::max(best,
                            static_cast<std::int16_t>(kCompactTables.flush_values[ranks | pair]));
          }
        }
      }
    }
  }

  std::int16_t* values_;
};

// The best lows of a hand with every triple of the cards in a list.
void FillTripleLows(std::span<const int> hand, std::span<const int> cards, std::int16_t* lows) {
  // By the low ranks of a triple, as bits.
  std::array<std::int16_t, 256> best{};
  for (unsigned triple = 0; triple < best.size(); ++triple) {
    if (__builtin_popcount(triple) != 3) continue;
    for (std::size_t i = 0; i < hand.size(); ++i) {
      for (std::size_t j = i + 1; j < hand.size(); ++j) {
        const int low = BestLow(LowBit(hand[i] % 13) | LowBit(hand[j] % 13), triple);
        best[triple] = std::max(best[triple], static_cast<std::int16_t>(low));
      }
    }
  }
  std::vector<unsigned> bits;
  for (const int card : cards) bits.push_back(LowBit(card % 13));
  for (std::size_t x = 0; x < cards.size(); ++x) {
    for (std::size_t y = 0; y < x; ++y) {
      std::int16_t* row = lows + Layout::Triples(static_cast<int>(x), static_cast<int>(y));
      for (std::size_t z = 0; z < y; ++z) row[z] = best[bits[x] | bits[y] | bits[z]];
    }
  }
}

template <typename Register>
POKERMATH_KERNEL void KeepLarger(Register& best, const Register& other) {
  best = best > other ? best : other;
}
template <typename Register>
POKERMATH_KERNEL void KeepLarger(Register& best, const std::int16_t* values) {
  Register other;
  Load(other, values);
  KeepLarger(best, other);
}

// What a hand makes with every four of the cards, out of its triples.
template <typename Register>
POKERMATH_KERNEL void AddFours(const Layout& layout, const Boards& boards, std::int16_t* values) {
  boards.ForEachTwo([&](int x, int y) __attribute__((always_inline)) {
    const std::int16_t* xy = values + Layout::Triples(x, y);
    std::int16_t* fours = values + layout.Fours(x, y);
    const int below = std::min(y, boards.live);
    const int first = boards.known == 4 ? below : 1;
    const int last = boards.known == 4 ? below : below - 1;
    for (int d = first; d <= last; ++d) {
      const std::int16_t* xd = values + Layout::Triples(x, d);
      const std::int16_t* yd = values + Layout::Triples(y, d);
      std::int16_t* row = fours + PairOf(d, 0);
      // What is written beyond the row is overwritten by the next one.
      for (int e = 0; e < d; e += kLanes<Register>) {
        Register best = Register{} + xy[d];
        KeepLarger(best, xy + e);
        KeepLarger(best, xd + e);
        KeepLarger(best, yd + e);
        __builtin_memcpy(row + e, &best, sizeof best);
      }
    }
  });
}

// How the first hand stands: where it is the best one alone, where it is not beaten, and (negative)
// how many others are as good.
template <typename Register>
struct Standing {
  Register alone, not_beaten, ties;
};

template <typename Register, int kHands>
POKERMATH_KERNEL void Compare(const std::array<Register, kHands>& values,
                              Standing<Register>& standing) {
  Register most = values[1];
  standing.ties = values[1] == values[0];
  for (std::size_t hand = 2; hand < kHands; ++hand) {
    KeepLarger(most, values[hand]);
    standing.ties += values[hand] == values[0];
  }
  standing.alone = values[0] > most;
  standing.not_beaten = values[0] >= most;
}

// Adds to [k] where the first hand is not beaten and shares with k others.
template <typename Register, int kHands>
POKERMATH_KERNEL void CountShared(const Standing<Register>& standing, const Register& counted,
                                  Register* shared) {
  shared[0] -= standing.alone & counted;
  if constexpr (kHands == 2) {
    shared[1] -= standing.ties & counted;
  } else {
    const Register not_beaten = standing.not_beaten & counted;
    for (std::size_t k = 1; k < kHands; ++k) {
      shared[k] -= (standing.ties == static_cast<std::int16_t>(-static_cast<int>(k))) & not_beaten;
    }
  }
}

// What is won: the pot, by values; or by values and lows, which may be 0, the pot where nobody has
// a low, its high half and its low half, all of it alone, nothing, and any low.
template <typename Register, int kHands, int kTables>
struct Counters {
  std::array<std::array<Register, kHands>, kTables == 1 ? 1 : 3> shared{};
  Register scoops{}, losses{}, lows{};
};

template <typename Register, int kHands, int kTables>
POKERMATH_KERNEL void CountRow(const std::array<std::array<Register, kHands>, kTables>& values,
                               const Register& counted,
                               Counters<Register, kHands, kTables>& counters) {
  Standing<Register> high;
  Compare<Register, kHands>(values[0], high);
  if constexpr (kTables == 1) {
    CountShared<Register, kHands>(high, counted, counters.shared[0].data());
  } else {
    const std::array<Register, kHands>& lows = values[1];
    Register any_low = lows[0];
    for (std::size_t hand = 1; hand < kHands; ++hand) any_low |= lows[hand];
    any_low = any_low > 0;
    Standing<Register> low;
    Compare<Register, kHands>(lows, low);
    const Register own_low = lows[0] > 0;
    CountShared<Register, kHands>(high, counted & ~any_low, counters.shared[0].data());
    CountShared<Register, kHands>(high, counted & any_low, counters.shared[1].data());
    CountShared<Register, kHands>(low, counted & own_low, counters.shared[2].data());
    counters.scoops -= counted & high.alone & (~any_low | (own_low & low.alone));
    counters.lows -= counted & any_low;
    counters.losses -= counted & ~(high.not_beaten | (own_low & low.not_beaten));
  }
}

// Tables of triples and fours: of the hands' values, and behind these of their lows.
using Tables = std::span<std::int16_t* const>;

// The boards of three cards with every pair.
template <typename Register, int kHands, int kTables>
POKERMATH_KERNEL void CountTriple(const Layout& layout, Tables tables, const Boards& boards, int a,
                                  int b, int c, Counters<Register, kHands, kTables>& counters) {
  constexpr int kStep = kLanes<Register>;
  std::array<std::array<Register, kHands>, kTables> abc;
  const std::int16_t* rows[kTables][kHands][3];
  for (std::size_t table = 0; table < kTables; ++table) {
    for (std::size_t hand = 0; hand < kHands; ++hand) {
      const std::int16_t* values = tables[table * kHands + hand];
      abc[table][hand] = Register{} + values[Layout::Triples(a, b) + c];
      rows[table][hand][0] = values + layout.Fours(a, b);
      rows[table][hand][1] = values + layout.Fours(a, c);
      rows[table][hand][2] = values + layout.Fours(b, c);
    }
  }
  const auto count = [&](int pair, const Register& counted) __attribute__((always_inline)) {
    std::array<std::array<Register, kHands>, kTables> best = abc;
    for (std::size_t table = 0; table < kTables; ++table) {
      for (std::size_t hand = 0; hand < kHands; ++hand) {
        for (const std::int16_t* row : rows[table][hand]) KeepLarger(best[table][hand], row + pair);
      }
    }
    CountRow<Register, kHands, kTables>(best, counted, counters);
  };
  int pair = boards.FirstPair();
  const int end = boards.LastPair(c) + 1;
  for (; pair + kStep <= end; pair += kStep) count(pair, Register{} - 1);
  if (pair < end) {
    Register numbers;
    for (int i = 0; i < kStep; ++i) numbers[i] = static_cast<std::int16_t>(i);
    count(pair, numbers < static_cast<std::int16_t>(end - pair));
  }
}

// By pot and by how many others share it; and on how many boards it is all, nothing, and split.
struct Sums {
  std::array<std::array<std::int64_t, SharedTally::kMostHands>, 3> shared{};
  std::int64_t scoops = 0;
  std::int64_t losses = 0;
  std::int64_t lows = 0;
};

template <typename Register>
POKERMATH_KERNEL std::int64_t SumOf(const Register& lanes) {
  int sum = 0;
  for (int lane = 0; lane < kLanes<Register>; ++lane) sum += lanes[lane];
  return sum;
}

template <typename Register, int kHands, int kTables>
POKERMATH_KERNEL void Count(const Layout& layout, Tables tables, const Boards& boards, Sums& sums) {
  for (std::int16_t* values : tables) AddFours<Register>(layout, boards, values);
  // Boards of one first card are summed up in 16 bits: they take no more than 31,773 rows.
  Counters<Register, kHands, kTables> counters;
  int first = -1;
  const auto add = [&]() __attribute__((always_inline)) {
    for (std::size_t pot = 0; pot < counters.shared.size(); ++pot) {
      for (std::size_t k = 0; k < kHands; ++k) {
        sums.shared[pot][k] += SumOf(counters.shared[pot][k]);
      }
    }
    sums.scoops += SumOf(counters.scoops);
    sums.losses += SumOf(counters.losses);
    sums.lows += SumOf(counters.lows);
    counters = {};
  };
  boards.ForEachTriple([&](int a, int b, int c) __attribute__((always_inline)) {
    if (a != first) add();
    first = a;
    CountTriple<Register, kHands, kTables>(layout, tables, boards, a, b, c, counters);
  });
  add();
}

template <int kHands, int kTables>
void CountHands(Isa isa, const Layout& layout, Tables tables, const Boards& boards, Sums& sums) {
  if constexpr (kHands <= SharedTally::kMostHands) {
    if (tables.size() > kHands * kTables) {
      return CountHands<kHands + 1, kTables>(isa, layout, tables, boards, sums);
    }
    Dispatch<Isa::kAvx2>(isa, [&](auto level) POKERMATH_INLINE {
      using Register = typename RegistersOf<level>::Register;
      Count<Register, kHands, kTables>(layout, tables, boards, sums);
    });
  }
}

// With how many others the first of some numbers is the largest; -1 if another one is larger.
int SharedWith(std::span<const int> values) {
  int ties = 0;
  for (const int other : values.subspan(1)) {
    if (other > values[0]) return -1;
    ties += other == values[0] ? 1 : 0;
  }
  return ties;
}

// On a board to which nothing comes.
template <int kTables>
void CountBoard(std::span<const int> cards, std::size_t hole_cards, std::span<const int> board,
                Sums& sums) {
  const OmahaPairValues pair_values(board);
  std::vector<int> values, lows;
  for (std::size_t i = 0; i < cards.size(); i += hole_cards) {
    values.push_back(pair_values.Best(cards.subspan(i, hole_cards)));
    lows.push_back(BestOmahaLow(cards.subspan(i, hole_cards), board));
  }
  const bool split = kTables == 2 && std::ranges::max(lows) > 0;
  const int high = SharedWith(values);
  const int low = split && lows[0] > 0 ? SharedWith(lows) : -1;
  if (high >= 0) ++sums.shared[split ? 1 : 0][static_cast<std::size_t>(high)];
  if (low >= 0) ++sums.shared[2][static_cast<std::size_t>(low)];
  sums.scoops = high == 0 && (!split || low == 0) ? 1 : 0;
  sums.losses = high < 0 && low < 0 ? 1 : 0;
  sums.lows = split ? 1 : 0;
}

// All boards; nothing if there is none.
template <int kTables>
std::int64_t CountMatchup(Isa isa, std::span<const int> cards, int hand_size,
                          std::span<const int> dead, std::span<const int> board, Sums& sums) {
  std::uint64_t taken = Bits(cards) | Bits(dead) | Bits(board);
  std::vector<int> places;
  for (int card = 0; card < 52; ++card) {
    if ((taken & Bit(card)) == 0) places.push_back(card);
  }
  const Boards boards = {static_cast<int>(places.size()), static_cast<int>(board.size())};
  if (hand_size < 1) return 0;
  const auto hole_cards = static_cast<std::size_t>(hand_size);
  const std::size_t hands = cards.size() / hole_cards;
  if (hands < 1 || hands > SharedTally::kMostHands || boards.live < 5 - boards.known) return 0;
  const int all = Choose(boards.live, 5 - boards.known);
  if (hands == 1) {
    sums.shared[0][0] = sums.scoops = all;
    return all;
  }
  if (boards.known == 5) {
    CountBoard<kTables>(cards, hole_cards, board, sums);
    return all;
  }
  places.insert(places.end(), board.begin(), board.end());
  const Layout layout(boards);
  const auto size = static_cast<std::size_t>(layout.size());
  LargeTable<std::int16_t> values(size * hands * kTables);
  std::vector<std::int16_t*> tables;
  for (std::size_t i = 0; i < hands * kTables; ++i) {
    tables.push_back(&values[i * size]);
    const auto hand = cards.subspan(i % hands * hole_cards, hole_cards);
    if (i < hands) {
      TripleValues(hand, places, tables.back());
    } else {
      FillTripleLows(hand, places, tables.back());
    }
  }
  CountHands<2, kTables>(isa, layout, tables, boards, sums);
  return all;
}

}  // namespace

SharedTally CountOmahaMatchup(Isa isa, std::span<const int> cards, int hand_size,
                              std::span<const int> dead, std::span<const int> board) {
  Sums sums;
  const std::int64_t boards = CountMatchup<1>(isa, cards, hand_size, dead, board, sums);
  return {boards, sums.shared[0]};
}

HighLowTally CountHighLowMatchup(Isa isa, std::span<const int> cards, int hand_size,
                                 std::span<const int> dead, std::span<const int> board) {
  Sums sums;
  const std::int64_t boards = CountMatchup<2>(isa, cards, hand_size, dead, board, sums);
  return {boards,      sums.shared[0], sums.shared[1], sums.shared[2],
          sums.scoops, sums.losses,    sums.lows};
}

}  // namespace pokermath
