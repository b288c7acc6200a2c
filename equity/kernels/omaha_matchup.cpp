// An Omaha hand plays three board cards, so what it makes with each triple of cards is all there is
// to know about it: a table [x][y][z] of the best value over its pairs of hole cards, x > y > z
// being places in a list of the cards that may be on the board. The value of a board is the largest
// of its ten triples.
//
// A board is a > b > c > d > e. What does not depend on e is carried down the loops; the last card
// runs along rows of the tables, so a row of boards costs three loads and four maxima a hand, and
// one comparison.

#include "equity/kernels/omaha_matchup.h"

#include <algorithm>
#include <vector>

#include "equity/kernels/hole_cards.h"
#include "equity/kernels/registers.h"
#include "eval/compact_keys.h"
#include "pokermath/evaluators.h"
#include "pokermath/large_table.h"

namespace pokermath {
namespace {

// A row of places is one register or two.
constexpr int kRow = kLanes<Registers32::Register>;
constexpr int kPlaces = 48;  // a multiple of a row, and no fewer than cards that may be on a board

// What a hand makes with every triple of the cards in a list.
class TripleValues {
 public:
  TripleValues(std::span<const int> hand, std::span<const int> cards) {
    // Places that are not read weigh nothing, whatever is there.
    values_.resize(cards.size() * kPlaces * kPlaces);
    const PlainTable plain = PlainValues(hand);
    std::array<std::uint8_t, kPlaces> ranks;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      ranks[i] = static_cast<std::uint8_t>(cards[i] % 13);
    }
    for (std::size_t x = 0; x < cards.size(); ++x) {
      for (std::size_t y = 0; y < x; ++y) {
        std::int16_t* row = &values_[(x * kPlaces + y) * kPlaces];
        const auto& from = plain[ranks[x]][ranks[y]];
        for (std::size_t z = 0; z < y; ++z) row[z] = from[ranks[z]];
        std::fill(row + y, row + (y + kRow) / kRow * kRow, std::int16_t{0});
      }
    }
    for (int suit = 0; suit < 4; ++suit) AddFlushes(hand, cards, suit);
  }

  /// [z] for z < y.
  const std::int16_t* Row(int x, int y) const {
    return &values_[static_cast<std::size_t>((x * kPlaces + y) * kPlaces)];
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
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      if (cards[i] / 13 == suit) places.push_back(i);
    }
    for (std::size_t x = 2; x < places.size(); ++x) {
      for (std::size_t y = 1; y < x; ++y) {
        for (std::size_t z = 0; z < y; ++z) {
          const unsigned ranks = 1u << cards[places[x]] % 13 | 1u << cards[places[y]] % 13 |
                                 1u << cards[places[z]] % 13;
          std::int16_t& best = values_[(places[x] * kPlaces + places[y]) * kPlaces + places[z]];
          for (const unsigned pair : pairs) {
            best = std::max(best,
                            static_cast<std::int16_t>(kCompactTables.flush_values[ranks | pair]));
          }
        }
      }
    }
  }

  LargeTable<std::int16_t> values_;
};

template <typename Register>
POKERMATH_KERNEL void KeepLarger(Register& best, const Register& other) {
  const Register larger = best > other;
  best = (best & larger) | (other & ~larger);
}

// What a hand makes of three board cards, and of two of them with another one.
template <typename Register>
struct Carried {
  Register rows[kPlaces / kLanes<Register>];
  std::int16_t abc = 0;
};

// The places that a board card may have: one if it is known.
struct Places {
  int first;
  int last;
};

struct Boards {
  int live = 0;  // cards that may come; the known ones have the places behind them
  int known = 0;

  // Of the card number `card` of a board, 0 to 4, that comes after one at `before`.
  Places Of(int card, int before) const {
    if (card < known) return {live + known - 1 - card, live + known - 1 - card};
    return {4 - card, std::min(before, live) - 1};
  }
};

template <typename Register, int kHands>
POKERMATH_KERNEL void CountRow(const std::array<Register, kHands>& values, int lanes,
                               const Register& numbers, std::array<Register, kHands>& shared) {
  const Register inside = numbers < static_cast<std::int16_t>(lanes);
  Register beaten = values[1] > values[0];
  Register ties = -(values[1] == values[0]);
  for (int hand = 2; hand < kHands; ++hand) {
    const auto index = static_cast<std::size_t>(hand);
    beaten |= values[index] > values[0];
    ties -= values[index] == values[0];
  }
  const Register counted = inside & ~beaten;
  for (int k = 0; k < kHands; ++k) {
    shared[static_cast<std::size_t>(k)] -= (ties == static_cast<std::int16_t>(k)) & counted;
  }
}

template <typename Register, int kHands>
POKERMATH_KERNEL void Count(std::span<const TripleValues> hands, const Boards& boards,
                            OmahaTally& tally) {
  constexpr int kStep = kLanes<Register>;
  Register numbers;
  for (int i = 0; i < kStep; ++i) numbers[i] = static_cast<std::int16_t>(i);
  std::array<Carried<Register>, kHands> carried;
  const Places as = boards.Of(0, boards.live + boards.known);
  for (int a = as.first; a <= as.last; ++a) {
    const Places bs = boards.Of(1, a);
    for (int b = bs.first; b <= bs.last; ++b) {
      const Places cs = boards.Of(2, b);
      for (int c = cs.first; c <= cs.last; ++c) {
        for (std::size_t hand = 0; hand < kHands; ++hand) {
          const TripleValues& values = hands[hand];
          carried[hand].abc = values.Row(a, b)[c];
          for (int row = 0; row * kStep < c; ++row) {
            Register best, other;
            Load(best, values.Row(a, b) + row * kStep);
            Load(other, values.Row(a, c) + row * kStep);
            KeepLarger(best, other);
            Load(other, values.Row(b, c) + row * kStep);
            KeepLarger(best, other);
            carried[hand].rows[row] = best;
          }
        }
        // Up to 48 * 3 rows are summed up in 16 bits.
        std::array<Register, kHands> shared{};
        const Places ds = boards.Of(3, c);
        for (int d = ds.first; d <= ds.last; ++d) {
          std::array<std::int16_t, kHands> with_d;
          for (std::size_t hand = 0; hand < kHands; ++hand) {
            const TripleValues& values = hands[hand];
            with_d[hand] = std::max(
                {carried[hand].abc, values.Row(a, b)[d], values.Row(a, c)[d], values.Row(b, c)[d]});
          }
          const int es = boards.Of(4, d).last + 1;
          for (int row = 0; row * kStep < es; ++row) {
            std::array<Register, kHands> best;
            for (std::size_t hand = 0; hand < kHands; ++hand) {
              const TripleValues& values = hands[hand];
              best[hand] = carried[hand].rows[row];
              Register other;
              Load(other, values.Row(a, d) + row * kStep);
              KeepLarger(best[hand], other);
              Load(other, values.Row(b, d) + row * kStep);
              KeepLarger(best[hand], other);
              Load(other, values.Row(c, d) + row * kStep);
              KeepLarger(best[hand], other);
              const Register zero{};
              KeepLarger(best[hand], zero + with_d[hand]);
            }
            CountRow<Register, kHands>(best, es - row * kStep, numbers, shared);
          }
        }
        for (std::size_t k = 0; k < kHands; ++k) {
          int sum = 0;
          for (int lane = 0; lane < kStep; ++lane) sum += shared[k][lane];
          tally.shared[k] += sum;
        }
      }
    }
  }
}

template <int kHands>
void CountBaseline(std::span<const TripleValues> hands, const Boards& boards, OmahaTally& tally) {
  Count<Registers16::Register, kHands>(hands, boards, tally);
}
template <int kHands>
POKERMATH_TARGET_AVX2 void CountAvx2(std::span<const TripleValues> hands, const Boards& boards,
                                     OmahaTally& tally) {
  Count<Registers32::Register, kHands>(hands, boards, tally);
}

template <int kHands>
void CountHands(Isa isa, std::span<const TripleValues> hands, const Boards& boards,
                OmahaTally& tally) {
  if constexpr (kHands <= kMostOmahaHands) {
    if (hands.size() > kHands) return CountHands<kHands + 1>(isa, hands, boards, tally);
    if (isa == Isa::kBaseline) {
      CountBaseline<kHands>(hands, boards, tally);
    } else {
      CountAvx2<kHands>(hands, boards, tally);
    }
  }
}

}  // namespace

OmahaTally CountOmahaMatchup(Isa isa, std::span<const int> cards, int hand_size,
                             std::span<const int> dead, std::span<const int> board) {
  std::uint64_t taken = Bits(cards) | Bits(dead) | Bits(board);
  std::vector<int> places;
  for (int card = 0; card < 52; ++card) {
    if ((taken & Bit(card)) == 0) places.push_back(card);
  }
  const Boards boards = {static_cast<int>(places.size()), static_cast<int>(board.size())};
  places.insert(places.end(), board.begin(), board.end());
  std::vector<TripleValues> hands;
  for (std::size_t i = 0; i < cards.size(); i += static_cast<std::size_t>(hand_size)) {
    hands.emplace_back(cards.subspan(i, static_cast<std::size_t>(hand_size)), places);
  }
  OmahaTally tally;
  if (hands.size() > kMostOmahaHands || boards.live < 5 - boards.known) return tally;
  tally.boards = Choose(boards.live, 5 - boards.known);
  if (hands.size() == 1) {
    tally.shared[0] = tally.boards;
    return tally;
  }
  CountHands<2>(isa, hands, boards, tally);
  return tally;
}

}  // namespace pokermath
