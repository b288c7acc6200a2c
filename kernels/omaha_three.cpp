// The hands of all three ranges go by from weak to strong, level by level. A hand beats the pairs
// of hands of the other two ranges below its level that share no card with it or with each other.
// With X[T], Y[T] the weights of those hands below that hold all cards of a set T and none of the
// hand's, by inclusion and exclusion over the cards that two hands share they weigh
//
//   the sum over all sets T beside the hand of (-1)^|T| X[T] Y[T].
//
// The same sum counts pairs that are not above the level, pairs on it, and all pairs: wins, ties
// with both, and what is left is ties with one.
//
// Nearly all of the time goes into sets of three cards. What holds T and none of the hand's cards a
// is x[T] - sum over a of x[T + a], so rows of weights with a card in common lie side by side: rows
// of sets by all but their lowest card, whose place in the row it is. For two cards it is x[T] less
// that with one of the hand's cards more, and that with two again. For one card it is a third of
// the sum over sets of two with it, and for none a quarter of that over cards. Four cards are a
// hand, which is in both ranges: the products of both weights are a sum of their own.

#include "kernels/omaha_three.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "eval/omaha_best.h"
#include "kernels/registers.h"

namespace pokermath {
namespace {

constexpr std::size_t kCards = 49;  // beside a board of three
constexpr std::size_t kBlock = 8;   // rows have a multiple of so many places
constexpr std::size_t kBlocks = (kCards + kBlock - 1) / kBlock;
constexpr std::int64_t kMostWeight = 10000;
// Of hands beside another one, all of them, and those that hold one, two and three cards.
constexpr std::int64_t kMostOf[] = {148995 * kMostWeight, 13244 * kMostWeight, 903 * kMostWeight,
                                    42 * kMostWeight};
static_assert(3 * kMostOf[1] < INT32_MAX);
static_assert(kMostOf[0] < INT64_MAX / kMostOf[0] / 2);
static_assert(4 * kMostOf[0] < INT64_MAX / kMostOf[1] / 2);
static_assert(static_cast<std::int64_t>(kCards) * kMostOf[2] * kMostOf[2] < std::int64_t{1} << 53);
static_assert(4 * kMostOf[0] * kMostOf[3] < std::int64_t{1} << 53);

constexpr std::size_t PaddedSize(std::size_t places) {
  return (places + kBlock - 1) / kBlock * kBlock;
}

// Where rows of pairs (by their higher card) and triples (by the two higher ones) start.
struct Rows {
  std::array<std::size_t, kCards> pairs{};
  std::array<std::array<std::size_t, kCards>, kCards> triples{};
  std::size_t pair_places = 0, triple_places = 0;
};
constexpr Rows kRows = [] {
  Rows rows;
  for (std::size_t high = 0; high < kCards; ++high) {
    rows.pairs[high] = rows.pair_places;
    rows.pair_places += PaddedSize(high);
    for (std::size_t middle = 0; middle < high; ++middle) {
      rows.triples[high][middle] = rows.triple_places;
      rows.triple_places += PaddedSize(middle);
    }
  }
  return rows;
}();

using FourCards = std::array<std::uint8_t, 4>;

std::size_t PlaceOf(std::size_t low, std::size_t high) { return kRows.pairs[high] + low; }
std::size_t PlaceOf(std::size_t low, std::size_t middle, std::size_t high) {
  return kRows.triples[high][middle] + low;
}
std::size_t PairNumber(std::size_t low, std::size_t high) { return high * (high - 1) / 2 + low; }
constexpr std::size_t kPairNumbers = kCards * (kCards - 1) / 2;

// The pairs of four cards, each with the other two.
constexpr std::uint8_t kPairsOfFour[6][4] = {{0, 1, 2, 3}, {0, 2, 1, 3}, {0, 3, 1, 2},
                                             {1, 2, 0, 3}, {1, 3, 0, 2}, {2, 3, 0, 1}};
// The cards beside each of four.
constexpr std::uint8_t kOthersOfFour[4][3] = {{1, 2, 3}, {0, 2, 3}, {0, 1, 3}, {0, 1, 2}};

using Numbers = std::vector<std::int32_t>;

// Weights of hands of one range, by the cards that they hold.
struct Weights {
  Numbers pairs = Numbers(kRows.pair_places);
  Numbers triples = Numbers(kRows.triple_places);
  // Of hands with one card, and with two.
  Numbers pairs_with_card = Numbers(kCards * kRows.pair_places);
  Numbers triples_with_card = Numbers(kCards * kRows.triple_places);
  Numbers pairs_with_pair = Numbers(kPairNumbers * kRows.pair_places);

  void Add(const FourCards& cards, std::int32_t weight) {
    for (const auto& [i, j, k, l] : kPairsOfFour) {
      pairs[PlaceOf(cards[i], cards[j])] += weight;
      pairs_with_pair[PairNumber(cards[k], cards[l]) * kRows.pair_places +
                      PlaceOf(cards[i], cards[j])] += weight;
      for (const std::size_t other : {k, l}) {
        pairs_with_card[cards[other] * kRows.pair_places + PlaceOf(cards[i], cards[j])] += weight;
      }
    }
    for (std::size_t i = 0; i < 4; ++i) {
      const auto& [j, k, l] = kOthersOfFour[i];
      const std::size_t place = PlaceOf(cards[j], cards[k], cards[l]);
      triples[place] += weight;
      triples_with_card[cards[i] * kRows.triple_places + place] += weight;
    }
  }
};

// Products of the weights of hands in two ranges, by the cards that they hold.
struct Products {
  std::int64_t all = 0;
  std::vector<std::int64_t> cards = std::vector<std::int64_t>(kCards);
  std::vector<std::int64_t> pairs = std::vector<std::int64_t>(kRows.pair_places);
  std::vector<std::int64_t> triples = std::vector<std::int64_t>(kRows.triple_places);

  void Add(const FourCards& of, std::int64_t product) {
    all += product;
    for (const std::uint8_t card : of) cards[card] += product;
    for (const auto& pair : kPairsOfFour) pairs[PlaceOf(of[pair[0]], of[pair[1]])] += product;
    for (const auto& [j, k, l] : kOthersOfFour) triples[PlaceOf(of[j], of[k], of[l])] += product;
  }
  // Those of hands that share no card with one whose own product, if it is in, is given.
  std::int64_t Beside(const FourCards& of, std::int64_t own) const {
    std::int64_t sum = all + own;
    for (const std::uint8_t card : of) sum -= cards[card];
    for (const auto& pair : kPairsOfFour) sum += pairs[PlaceOf(of[pair[0]], of[pair[1]])];
    for (const auto& [j, k, l] : kOthersOfFour) sum -= triples[PlaceOf(of[j], of[k], of[l])];
    return sum;
  }
};

using Block = std::int32_t __attribute__((vector_size(4 * kBlock), aligned(4), may_alias));
using Reals = double __attribute__((vector_size(8 * kBlock)));

POKERMATH_KERNEL const Block& At(const std::int32_t* row, std::size_t block) {
  return *reinterpret_cast<const Block*>(row + block * kBlock);
}

// What a hand leaves of sets of cards: -1 for those that it does not hold.
struct Beside {
  explicit Beside(const FourCards& cards) {
    for (std::int32_t& card : mask) card = -1;
    for (const std::uint8_t card : cards) mask[card] = 0;
  }
  bool Leaves(std::size_t card) const { return mask[card] != 0; }

  std::array<std::int32_t, kBlocks * kBlock> mask;
};

// Weights beside a hand of sets of two cards, and three times those of single ones.
struct PairsBeside {
  std::array<std::int32_t, kRows.pair_places> pairs{};
  std::array<std::int32_t, kBlocks * kBlock> cards{};
};

POKERMATH_KERNEL void FindPairs(const Weights& weights, const FourCards& hand, const Beside& beside,
                                PairsBeside& found) {
  for (std::size_t high = 1; high < kCards; ++high) {
    if (!beside.Leaves(high)) continue;
    const std::size_t row = kRows.pairs[high];
    Block sum{};
    for (std::size_t block = 0; block < PaddedSize(high) / kBlock; ++block) {
      Block rest = At(&weights.pairs[row], block);
      for (const std::uint8_t card : hand) {
        rest -= At(&weights.pairs_with_card[card * kRows.pair_places + row], block);
      }
      for (const auto& pair : kPairsOfFour) {
        const std::size_t number = PairNumber(hand[pair[0]], hand[pair[1]]);
        rest += At(&weights.pairs_with_pair[number * kRows.pair_places + row], block);
      }
      rest &= At(beside.mask.data(), block);
      std::memcpy(&found.pairs[row + block * kBlock], &rest, sizeof rest);
      const Block cards = At(found.cards.data(), block) + rest;
      std::memcpy(&found.cards[block * kBlock], &cards, sizeof cards);
      sum += rest;
    }
    for (std::size_t lane = 0; lane < kBlock; ++lane) found.cards[high] += sum[lane];
  }
}

// The sum of products over sets of two cards.
POKERMATH_KERNEL void MultiplyPairs(const PairsBeside& x, const PairsBeside& y, std::int64_t& sum) {
  for (std::size_t high = 1; high < kCards; ++high) {
    const std::size_t row = kRows.pairs[high];
    Reals of_row{};
    for (std::size_t block = 0; block < PaddedSize(high) / kBlock; ++block) {
      of_row += __builtin_convertvector(At(&x.pairs[row], block), Reals) *
                __builtin_convertvector(At(&y.pairs[row], block), Reals);
    }
    double all = 0;
    for (std::size_t lane = 0; lane < kBlock; ++lane) all += of_row[lane];
    sum += static_cast<std::int64_t>(all);
  }
}

// The same over sets of three.
POKERMATH_KERNEL void MultiplyTriples(const Weights& x, const Weights& y, const FourCards& hand,
                                      const Beside& beside, std::int64_t& sum) {
  const auto with = [&hand](const Weights& weights, std::size_t i) POKERMATH_INLINE {
    return &weights.triples_with_card[hand[i] * kRows.triple_places];
  };
  const std::int32_t* const x_with[] = {with(x, 0), with(x, 1), with(x, 2), with(x, 3)};
  const std::int32_t* const y_with[] = {with(y, 0), with(y, 1), with(y, 2), with(y, 3)};
  Reals products{};
  for (std::size_t high = 2; high < kCards; ++high) {
    if (!beside.Leaves(high)) continue;
    for (std::size_t middle = 1; middle < high; ++middle) {
      if (!beside.Leaves(middle)) continue;
      const std::size_t row = kRows.triples[high][middle];
      for (std::size_t block = 0; block < PaddedSize(middle) / kBlock; ++block) {
        const Block of_x = At(&x.triples[row], block) - At(x_with[0] + row, block) -
                           At(x_with[1] + row, block) - At(x_with[2] + row, block) -
                           At(x_with[3] + row, block);
        const Block of_y = At(&y.triples[row], block) - At(y_with[0] + row, block) -
                           At(y_with[1] + row, block) - At(y_with[2] + row, block) -
                           At(y_with[3] + row, block);
        products += __builtin_convertvector(of_x & At(beside.mask.data(), block), Reals) *
                    __builtin_convertvector(of_y, Reals);
      }
    }
  }
  double all = 0;
  for (std::size_t lane = 0; lane < kBlock; ++lane) all += products[lane];
  sum += static_cast<std::int64_t>(all);
}

// Pairs of hands that share no card, but for what equal hands add.
POKERMATH_KERNEL void CountPairs(const Weights& x, const Weights& y, const FourCards& hand,
                                 std::int64_t& count) {
  const Beside beside(hand);
  PairsBeside of_x, of_y;
  FindPairs(x, hand, beside, of_x);
  FindPairs(y, hand, beside, of_y);
  std::int64_t all_x = 0, all_y = 0, cards = 0, pairs = 0, triples = 0;
  for (std::size_t card = 0; card < kCards; ++card) {
    const std::int64_t one_x = of_x.cards[card] / 3, one_y = of_y.cards[card] / 3;
    all_x += one_x;
    all_y += one_y;
    cards += one_x * one_y;
  }
  MultiplyPairs(of_x, of_y, pairs);
  MultiplyTriples(x, y, hand, beside, triples);
  count = all_x / 4 * (all_y / 4) - cards + pairs - triples;
}

void CountPairsBaseline(const Weights& x, const Weights& y, const FourCards& hand,
                        std::int64_t& count) {
  CountPairs(x, y, hand, count);
}
POKERMATH_TARGET_AVX2 void CountPairsAvx2(const Weights& x, const Weights& y, const FourCards& hand,
                                          std::int64_t& count) {
  CountPairs(x, y, hand, count);
}
POKERMATH_TARGET_AVX512 void CountPairsAvx512(const Weights& x, const Weights& y,
                                              const FourCards& hand, std::int64_t& count) {
  CountPairs(x, y, hand, count);
}

}  // namespace

// Hands that are in so far.
class OmahaThreeSweep::Inserted {
 public:
  explicit Inserted(Isa isa)
      : count_(isa == Isa::kAvx512 ? CountPairsAvx512
               : isa == Isa::kAvx2 ? CountPairsAvx2
                                   : CountPairsBaseline) {}

  // A hand, one time or, to take it out, minus one time.
  void Add(const Holding& holding, std::int32_t times = 1) {
    for (std::size_t i = 0; i < 3; ++i) {
      if (holding.weights[i] == 0) continue;
      weights_[i].Add(holding.cards, times * holding.weights[i]);
      hands_[i] += times;
    }
    for (std::size_t i = 0; i < 3; ++i) {
      const std::int64_t product = ProductOf(holding, i);
      if (product > 0) products_[i].Add(holding.cards, times * product);
    }
  }
  // Whether both others of a player have hands.
  bool HasPairs(std::size_t player) const {
    return hands_[(player + 1) % 3] > 0 && hands_[(player + 2) % 3] > 0;
  }
  bool HasHands(std::size_t player) const { return hands_[player] > 0; }
  // Pairs of hands of the others that share no card with a player's hand or with each other.
  std::int64_t PairsFor(const Holding& holding, std::size_t player, bool is_in) const {
    if (!HasPairs(player)) return 0;
    std::int64_t count = 0;
    count_(weights_[(player + 1) % 3], weights_[(player + 2) % 3], holding.cards, count);
    return count + products_[player].Beside(holding.cards, is_in ? ProductOf(holding, player) : 0);
  }

 private:
  static std::int64_t ProductOf(const Holding& holding, std::size_t player) {
    return std::int64_t{holding.weights[(player + 1) % 3]} * holding.weights[(player + 2) % 3];
  }

  void (*count_)(const Weights&, const Weights&, const FourCards&, std::int64_t&);
  std::array<Weights, 3> weights_;
  std::array<Products, 3> products_;  // of the two others of a player
  std::array<std::int64_t, 3> hands_{};
};

OmahaThreeSweep::OmahaThreeSweep(Isa isa, const Ranges& ranges, CardSet board) : isa_(isa) {
  const std::vector<int> board_cards(board.begin(), board.end());
  const OmahaPairValues values(board_cards);
  struct Member {
    CardSet cards;
    std::uint32_t player, hand;
  };
  std::vector<Member> members;
  for (std::uint32_t player = 0; player < 3; ++player) {
    for (std::uint32_t hand = 0; hand < ranges[player].size(); ++hand) {
      const CardSet cards = ranges[player][hand].cards;
      if (!cards.Meets(board)) members.push_back({cards, player, hand});
    }
  }
  std::ranges::sort(members, {}, [](const Member& member) { return member.cards; });
  CardSet last;
  for (const Member& member : members) {
    if (member.cards != last) {
      last = member.cards;
      Holding& holding = holdings_.emplace_back();
      const std::vector<int> hand(last.begin(), last.end());
      holding.value = values.Best(hand);
      for (std::size_t i = 0; i < 4; ++i) {
        const std::uint64_t lower = (std::uint64_t{1} << hand[i]) - 1;
        holding.cards[i] = static_cast<std::uint8_t>(hand[i] - std::popcount(board.bits() & lower));
      }
    }
    holdings_.back().weights[member.player] = ranges[member.player][member.hand].weight;
    holdings_.back().hands[member.player] = member.hand;
  }
  std::ranges::stable_sort(holdings_, {}, &Holding::value);
}

void OmahaThreeSweep::Count(std::size_t first, std::size_t last, const Asked& asked,
                            const Visit& visit) const {
  Inserted below(isa_), on_level(isa_);
  std::vector<std::array<ThreeTally, 3>> tallies(last - first);
  // Calls use(player, hand, tally) for the hands from .. to that are counted.
  const auto for_each = [&](std::size_t from, std::size_t to, const auto& use) {
    for (std::size_t i = std::max(from, first); i < std::min(to, last); ++i) {
      for (std::size_t player = 0; player < 3; ++player) {
        if (holdings_[i].weights[player] == 0 || !asked.players[player]) continue;
        use(player, holdings_[i], tallies[i - first][player]);
      }
    }
  };
  for (std::size_t begin = 0; begin < holdings_.size();) {
    std::size_t end = begin;
    while (end < holdings_.size() && holdings_[end].value == holdings_[begin].value) ++end;
    for_each(begin, end, [&](std::size_t player, const Holding& holding, ThreeTally& tally) {
      tally.wins = below.PairsFor(holding, player, false);
    });
    const bool is_counted = begin < last && end > first;
    for (std::size_t i = begin; i < end; ++i) {
      below.Add(holdings_[i]);
      if (is_counted) on_level.Add(holdings_[i]);
    }
    for_each(begin, end, [&](std::size_t player, const Holding& holding, ThreeTally& tally) {
      const bool ties = on_level.HasHands((player + 1) % 3) || on_level.HasHands((player + 2) % 3);
      if (!ties) return;
      tally.shares3 = on_level.PairsFor(holding, player, true);
      tally.shares2 = below.PairsFor(holding, player, true) - tally.wins - tally.shares3;
    });
    for (std::size_t i = begin; is_counted && i < end; ++i) on_level.Add(holdings_[i], -1);
    begin = end;
  }
  for_each(first, last, [&](std::size_t player, const Holding& holding, ThreeTally& tally) {
    if (asked.cases[player]) tally.cases = below.PairsFor(holding, player, true);
    visit(player, holding.hands[player], tally);
  });
}

}  // namespace pokermath
