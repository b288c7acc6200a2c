// An Omaha hand plays three board cards, so what it makes with each triple of cards is all there is
// to know about it: a table [x][y][z] of the best value over its pairs of hole cards, x > y > z
// being places in a list of the cards that may be on the board. The value of a board is the largest
// of its ten triples.
//
// A board is a > b > c > d > e. From the triples follows what the hand makes with each four of the
// cards: a table [x][y][pair], the pairs d > e one behind the other in the order of d, then e. Nine
// of a board's triples are in its fours ab, ac and bc with the pair de, so a row of boards, one for
// each pair, costs three loads and three maxima a hand, and one comparison.

#include "equity/kernels/omaha_matchup.h"

#include <algorithm>
#include <vector>

#include "equity/kernels/hole_cards.h"
#include "equity/kernels/registers.h"
#include "eval/compact_keys.h"
#include "eval/omaha_best.h"
#include "pokermath/evaluators.h"
#include "pokermath/large_table.h"

namespace pokermath {
namespace {

constexpr int kPlaces = 48;  // no fewer than cards that may be on a board
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

template <typename Register, int kHands>
POKERMATH_KERNEL void CountRow(const std::array<Register, kHands>& values, const Register& counted,
                               std::array<Register, kHands>& shared) {
  if constexpr (kHands == 2) {
    shared[0] -= (values[0] > values[1]) & counted;
    shared[1] -= (values[0] == values[1]) & counted;
  } else {
    Register most = values[1];
    Register ties = values[1] == values[0];
    for (std::size_t hand = 2; hand < kHands; ++hand) {
      KeepLarger(most, values[hand]);
      ties += values[hand] == values[0];
    }
    shared[0] -= (values[0] > most) & counted;
    const Register not_beaten = (values[0] >= most) & counted;
    for (std::size_t k = 1; k < kHands; ++k) {
      shared[k] -= (ties == static_cast<std::int16_t>(-static_cast<int>(k))) & not_beaten;
    }
  }
}

// The boards of three cards with every pair.
template <typename Register, int kHands>
POKERMATH_KERNEL void CountTriple(const Layout& layout, std::span<const std::int16_t* const> hands,
                                  const Boards& boards, int a, int b, int c,
                                  std::array<Register, kHands>& shared) {
  constexpr int kStep = kLanes<Register>;
  std::array<Register, kHands> abc;
  const std::int16_t* rows[kHands][3];
  for (std::size_t hand = 0; hand < kHands; ++hand) {
    const std::int16_t* values = hands[hand];
    abc[hand] = Register{} + values[Layout::Triples(a, b) + c];
    rows[hand][0] = values + layout.Fours(a, b);
    rows[hand][1] = values + layout.Fours(a, c);
    rows[hand][2] = values + layout.Fours(b, c);
  }
  const auto count = [&](int pair, const Register& counted) __attribute__((always_inline)) {
    std::array<Register, kHands> best = abc;
    for (std::size_t hand = 0; hand < kHands; ++hand) {
      for (const std::int16_t* row : rows[hand]) KeepLarger(best[hand], row + pair);
    }
    CountRow<Register, kHands>(best, counted, shared);
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

template <typename Register, int kHands>
POKERMATH_KERNEL void Count(const Layout& layout, std::span<std::int16_t* const> hands,
                            const Boards& boards, SharedTally& tally) {
  for (std::int16_t* values : hands) AddFours<Register>(layout, boards, values);
  // Boards of one first card are summed up in 16 bits: they take less than 10,000 rows.
  std::array<Register, kHands> shared{};
  int first = -1;
  const auto add = [&]() __attribute__((always_inline)) {
    for (std::size_t k = 0; k < kHands; ++k) {
      int sum = 0;
      for (int lane = 0; lane < kLanes<Register>; ++lane) sum += shared[k][lane];
      tally.shared[k] += sum;
    }
    shared = {};
  };
  boards.ForEachTriple([&](int a, int b, int c) __attribute__((always_inline)) {
    if (a != first) add();
    first = a;
    CountTriple<Register, kHands>(layout, hands, boards, a, b, c, shared);
  });
  add();
}

using Hands = std::span<std::int16_t* const>;

template <int kHands>
void CountBaseline(const Layout& layout, Hands hands, const Boards& boards, SharedTally& tally) {
  Count<Registers16::Register, kHands>(layout, hands, boards, tally);
}
template <int kHands>
POKERMATH_TARGET_AVX2 void CountAvx2(const Layout& layout, Hands hands, const Boards& boards,
                                     SharedTally& tally) {
  Count<Registers32::Register, kHands>(layout, hands, boards, tally);
}
template <int kHands>
void CountHands(Isa isa, const Layout& layout, Hands hands, const Boards& boards,
                SharedTally& tally) {
  if constexpr (kHands <= SharedTally::kMostHands) {
    if (hands.size() > kHands) return CountHands<kHands + 1>(isa, layout, hands, boards, tally);
    const auto count = isa == Isa::kBaseline ? CountBaseline<kHands> : CountAvx2<kHands>;
    count(layout, hands, boards, tally);
  }
}

}  // namespace

SharedTally CountOmahaMatchup(Isa isa, std::span<const int> cards, int hand_size,
                              std::span<const int> dead, std::span<const int> board) {
  std::uint64_t taken = Bits(cards) | Bits(dead) | Bits(board);
  std::vector<int> places;
  for (int card = 0; card < 52; ++card) {
    if ((taken & Bit(card)) == 0) places.push_back(card);
  }
  const Boards boards = {static_cast<int>(places.size()), static_cast<int>(board.size())};
  const auto hole_cards = static_cast<std::size_t>(hand_size);
  const std::size_t hand_count = cards.size() / hole_cards;
  SharedTally tally;
  if (hand_count > SharedTally::kMostHands || boards.live < 5 - boards.known) return tally;
  tally.boards = Choose(boards.live, 5 - boards.known);
  if (hand_count == 1) {
    tally.shared[0] = tally.boards;
    return tally;
  }
  if (boards.known == 5) {
    const OmahaPairValues values(board);
    const int value = values.Best(cards.first(hole_cards));
    std::size_t ties = 0;
    for (std::size_t i = 1; i < hand_count; ++i) {
      const int other = values.Best(cards.subspan(i * hole_cards, hole_cards));
      if (other > value) return tally;
      ties += other == value ? 1 : 0;
    }
    tally.shared[ties] = 1;
    return tally;
  }
  places.insert(places.end(), board.begin(), board.end());
  const Layout layout(boards);
  const auto size = static_cast<std::size_t>(layout.size());
  LargeTable<std::int16_t> values(size * hand_count);
  std::vector<std::int16_t*> hands;
  for (std::size_t i = 0; i < hand_count; ++i) {
    hands.push_back(&values[i * size]);
    TripleValues(cards.subspan(i * hole_cards, hole_cards), places, hands.back());
  }
  CountHands<2>(isa, layout, hands, boards, tally);
  return tally;
}

}  // namespace pokermath
