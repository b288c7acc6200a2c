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
#include "platform/dispatch.h"

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

// What a hand leaves of the live cards: -1 for those that it does not hold.
struct Beside {
  Beside(const FourCards& cards, std::size_t live) {
    for (std::size_t card = 0; card < live; ++card) mask[card] = -1;
    for (const std::uint8_t card : cards) mask[card] = 0;
  }
  bool Leaves(std::size_t card) const { return mask[card] != 0; }

  std::array<std::int32_t, kBlocks * kBlock> mask{};
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

struct AllWeights {
  std::size_t live;  // cards beside the board
  std::array<Weights, 3> of{};
};
// For each player, of the products of the other two.
using Sums = std::array<std::int64_t, 3>;

POKERMATH_KERNEL void AddLanes(const Reals& lanes, std::int64_t& sum) {
  double all = 0;
  for (std::size_t lane = 0; lane < kBlock; ++lane) all += lanes[lane];
  sum += static_cast<std::int64_t>(all);
}

// Products over sets of two cards.
POKERMATH_KERNEL void MultiplyPairs(const std::array<PairsBeside, 3>& of, Sums& sums) {
  for (std::size_t high = 1; high < kCards; ++high) {
    Reals row[3] = {};
    for (std::size_t block = 0; block < PaddedSize(high) / kBlock; ++block) {
      Reals pairs[3];
      for (std::size_t i = 0; i < 3; ++i) {
        pairs[i] = __builtin_convertvector(At(&of[i].pairs[kRows.pairs[high]], block), Reals);
      }
      for (std::size_t i = 0; i < 3; ++i) row[i] += pairs[(i + 1) % 3] * pairs[(i + 2) % 3];
    }
    for (std::size_t i = 0; i < 3; ++i) AddLanes(row[i], sums[i]);
  }
}

// The same over sets of three: for all players, or for one alone.
template <bool all>
POKERMATH_KERNEL void MultiplyTriples(const AllWeights& weights, std::size_t player,
                                      const FourCards& hand, const Beside& beside, Sums& sums) {
  constexpr std::size_t kRanges = all ? 3 : 2;
  const std::int32_t* triples[kRanges];
  const std::int32_t* with[kRanges][4];
  for (std::size_t i = 0; i < kRanges; ++i) {
    const Weights& of = weights.of[(player + 1 + i) % 3];
    triples[i] = of.triples.data();
    for (std::size_t k = 0; k < 4; ++k) {
      with[i][k] = &of.triples_with_card[hand[k] * kRows.triple_places];
    }
  }
  Reals products[kRanges] = {};
  for (std::size_t high = 2; high < kCards; ++high) {
    if (!beside.Leaves(high)) continue;
    for (std::size_t middle = 1; middle < high; ++middle) {
      if (!beside.Leaves(middle)) continue;
      const std::size_t row = kRows.triples[high][middle];
      for (std::size_t block = 0; block < PaddedSize(middle) / kBlock; ++block) {
        const Block& mask = At(beside.mask.data(), block);
        Reals of[kRanges];
        for (std::size_t i = 0; i < kRanges; ++i) {
          Block rest = At(triples[i] + row, block) - At(with[i][0] + row, block) -
                       At(with[i][1] + row, block) - At(with[i][2] + row, block) -
                       At(with[i][3] + row, block);
          rest &= mask;
          of[i] = __builtin_convertvector(rest, Reals);
        }
        products[0] += of[0] * of[1];
        if constexpr (all) {
          products[1] += of[1] * of[2];
          products[2] += of[2] * of[0];
        }
      }
    }
  }
  for (std::size_t i = 0; i < (all ? 3 : 1); ++i) AddLanes(products[i], sums[(player + i) % 3]);
}

// For each player, or for one alone, pairs of hands of the others that share no card, but for what
// equal hands add.
template <bool all>
POKERMATH_KERNEL void CountPairs(const AllWeights& weights, std::size_t player,
                                 const FourCards& hand, Sums& counts) {
  const Beside beside(hand, weights.live);
  std::array<PairsBeside, 3> pairs_of;
  std::array<std::int64_t, 3> whole{};
  Sums cards{}, pairs{}, triples{};
  for (std::size_t i = 0; i < 3; ++i) FindPairs(weights.of[i], hand, beside, pairs_of[i]);
  for (std::size_t card = 0; card < kCards; ++card) {
    std::int64_t one[3];
    for (std::size_t i = 0; i < 3; ++i) {
      one[i] = pairs_of[i].cards[card] / 3;
      whole[i] += one[i];
    }
    for (std::size_t i = 0; i < 3; ++i) cards[i] += one[(i + 1) % 3] * one[(i + 2) % 3];
  }
  MultiplyPairs(pairs_of, pairs);
  MultiplyTriples<all>(weights, player, hand, beside, triples);
  for (std::size_t i = 0; i < 3; ++i) {
    const std::int64_t both = whole[(i + 1) % 3] / 4 * (whole[(i + 2) % 3] / 4);
    counts[i] = both - cards[i] + pairs[i] - triples[i];
  }
}

POKERMATH_KERNEL void CountFor(const AllWeights& weights, const std::array<bool, 3>& players,
                               const FourCards& hand, Sums& counts) {
  const auto only = std::ranges::count(players, true) == 1;
  const auto first = static_cast<std::size_t>(std::ranges::find(players, true) - players.begin());
  if (only) {
    CountPairs<false>(weights, first, hand, counts);
  } else {
    CountPairs<true>(weights, 0, hand, counts);
  }
}

}  // namespace

// Hands that are in so far.
class OmahaThreeSweep::Inserted {
 public:
  Inserted(Isa isa, std::size_t live) : isa_(isa), weights_{live} {}

  // A hand, one time or, to take it out, minus one time.
  void Add(const Holding& holding, std::int32_t times = 1) {
    for (std::size_t i = 0; i < 3; ++i) {
      if (holding.weights[i] == 0) continue;
      weights_.of[i].Add(holding.cards, times * holding.weights[i]);
      hands_[i] += times;
    }
    for (std::size_t i = 0; i < 3; ++i) {
      const std::int64_t product = ProductOf(holding, i);
      if (product > 0) products_[i].Add(holding.cards, times * product);
    }
  }
  bool HasHands(std::size_t player) const { return hands_[player] > 0; }

  // For each of some players, pairs of hands of the others that share no card with his hand or with
  // each other.
  //
  // @param is_in  whether the hand was added
  Sums PairsFor(const Holding& holding, const std::array<bool, 3>& players, bool is_in) const {
    std::array<bool, 3> with_pairs{};
    for (std::size_t i = 0; i < 3; ++i) {
      with_pairs[i] = players[i] && HasHands((i + 1) % 3) && HasHands((i + 2) % 3);
    }
    Sums counts{};
    if (std::ranges::count(with_pairs, true) == 0) return counts;
    Dispatch(isa_,
             [&](auto) POKERMATH_INLINE { CountFor(weights_, with_pairs, holding.cards, counts); });
    for (std::size_t i = 0; i < 3; ++i) {
      counts[i] += products_[i].Beside(holding.cards, is_in ? ProductOf(holding, i) : 0);
      if (!with_pairs[i]) counts[i] = 0;
    }
    return counts;
  }

 private:
  static std::int64_t ProductOf(const Holding& holding, std::size_t player) {
    return std::int64_t{holding.weights[(player + 1) % 3]} * holding.weights[(player + 2) % 3];
  }

  Isa isa_;
  AllWeights weights_;
  std::array<Products, 3> products_;  // of the two others of a player
  std::array<std::int64_t, 3> hands_{};
};

OmahaThreeSweep::OmahaThreeSweep(Isa isa, const Ranges& ranges, CardSet board)
    : isa_(isa), live_(static_cast<std::size_t>(52 - board.size())) {
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
  Inserted below(isa_, live_), on_level(isa_, live_);
  std::vector<std::array<ThreeTally, 3>> tallies(last - first);
  const auto asked_of = [&](const Holding& holding) {
    std::array<bool, 3> players;
    for (std::size_t i = 0; i < 3; ++i) players[i] = asked.players[i] && holding.weights[i] > 0;
    return players;
  };
  // Calls use(hand, players, tallies) for the hands from .. to that are counted.
  const auto for_each = [&](std::size_t from, std::size_t to, const auto& use) {
    for (std::size_t i = std::max(from, first); i < std::min(to, last); ++i) {
      use(holdings_[i], asked_of(holdings_[i]), tallies[i - first]);
    }
  };
  for (std::size_t begin = 0; begin < holdings_.size();) {
    std::size_t end = begin;
    while (end < holdings_.size() && holdings_[end].value == holdings_[begin].value) ++end;
    for_each(begin, end, [&](const Holding& holding, const auto& players, auto& tally) {
      const Sums wins = below.PairsFor(holding, players, false);
      for (std::size_t i = 0; i < 3; ++i) tally[i].wins = wins[i];
    });
    const bool is_counted = begin < last && end > first;
    for (std::size_t i = begin; i < end; ++i) {
      below.Add(holdings_[i]);
      if (is_counted) on_level.Add(holdings_[i]);
    }
    for_each(begin, end, [&](const Holding& holding, auto players, auto& tally) {
      for (std::size_t i = 0; i < 3; ++i) {
        players[i] =
            players[i] && (on_level.HasHands((i + 1) % 3) || on_level.HasHands((i + 2) % 3));
      }
      const Sums not_above = below.PairsFor(holding, players, true);
      const Sums ties = on_level.PairsFor(holding, players, true);
      for (std::size_t i = 0; i < 3; ++i) {
        if (!players[i]) continue;
        tally[i].shares3 = ties[i];
        tally[i].shares2 = not_above[i] - tally[i].wins - ties[i];
      }
    });
    for (std::size_t i = begin; is_counted && i < end; ++i) on_level.Add(holdings_[i], -1);
    begin = end;
  }
  for_each(first, last, [&](const Holding& holding, const auto& players, auto& tally) {
    std::array<bool, 3> with_cases;
    for (std::size_t i = 0; i < 3; ++i) with_cases[i] = players[i] && asked.cases[i];
    const Sums cases = below.PairsFor(holding, with_cases, true);
    for (std::size_t i = 0; i < 3; ++i) {
      tally[i].cases = cases[i];
      if (players[i]) visit(i, holding.hands[i], tally[i]);
    }
  });
}

}  // namespace pokermath
