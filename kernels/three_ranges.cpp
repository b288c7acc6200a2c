// The hands of all three ranges in the order of their values, level by level from below. A hand
// that holds the cards y and z beats every pair of hands of the other two ranges below its level
// that share no card with it or with each other. With
//
//   X, Y        the weights of those ranges that are below
//   X[c]        the part of it that holds a card, X[c][d] that which holds two, and X[c][c] = X[c]
//   left X[c]   X[c] - X[y][c] - X[z][c], the part that holds c, but neither y nor z
//   same        the sum of products of both weights over hands that are in both ranges
//
// these pairs weigh
//
//   left X * left Y                            pairs that share no card with the hand
//   - sum over c of left X[c] * left Y[c]      less those that share one, or twice if two, cards
//   + same - same[y] - same[z]                 as equal hands do
//   + 3 X[y][z] Y[y][z]                        the hand itself, which was taken off too often
//
// The same formula counts pairs that are not above the level, and pairs on it, whose sums are the
// difference of the two: wins, ties with both, and what is left is ties with one.
//
// The sum over c is where the time goes, so rows of X lie in vector registers. All numbers are
// whole and small enough for floating point to be exact: in 24 bits if weights are, in 53 bits
// always.

#include "kernels/three_ranges.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "kernels/board_order.h"
#include "kernels/decks.h"
#include "kernels/registers.h"

namespace pokermath {
namespace {

constexpr std::size_t kPlayers = 3;
constexpr std::size_t kCards = 52;
constexpr std::size_t kBlock = 16;  // rows have a multiple of so many lanes
constexpr std::int64_t kMostWeight = 10000;
constexpr std::int64_t kMostHands = 1326;
constexpr std::int64_t kMostOfCard = 51 * kMostWeight;
constexpr std::int64_t kMostPairs = kMostHands * kMostWeight * kMostHands * kMostWeight;
constexpr std::int64_t kFloats = 1 << 24;  // whole numbers that a float holds
static_assert(kMostHands * kMostWeight < kFloats);
static_assert(kCards * kMostOfCard * kMostOfCard < std::int64_t{1} << 53);
static_assert(kMostPairs < (std::int64_t{1} << 52) / ThreeRangesSweep::kMostTimes);
static_assert(INT64_MAX / kMostPairs > ThreeRangesSweep::kMostBoards);

// A number for each player; the last one is nobody's. Aligned for every instruction set: by itself
// the compiler does so only where it has such registers.
using OfPlayers = double __attribute__((vector_size(32), aligned(32)));
using WholeOfPlayers = std::uint64_t __attribute__((vector_size(32), aligned(32)));

// For each player the product of the numbers of the other two.
POKERMATH_KERNEL void MultiplyOthers(const OfPlayers& numbers, OfPlayers& products) {
  products = __builtin_shufflevector(numbers, numbers, 1, 2, 0, 3) *
             __builtin_shufflevector(numbers, numbers, 2, 0, 1, 3);
}

// Whole numbers from 0 to 2^52: what their bits are beyond those of 2^52.
POKERMATH_KERNEL void AddWhole(const OfPlayers& numbers, WholeOfPlayers& sums) {
  constexpr double kShift = 0x1p52;
  const OfPlayers shifted = numbers + kShift;
  sums += reinterpret_cast<WholeOfPlayers>(shifted) - std::bit_cast<std::uint64_t>(kShift);
}

template <typename Number, std::size_t bytes>
struct Lanes {
  typedef Number Register __attribute__((vector_size(bytes)));
  static constexpr std::size_t kCount = bytes / sizeof(Number);
  static_assert(kBlock % kCount == 0);

  POKERMATH_KERNEL static void Load(const Number* from, Register& to) {
    std::memcpy(&to, from, sizeof to);
  }
  POKERMATH_KERNEL static void Store(const Register& from, Number* to) {
    std::memcpy(to, &from, sizeof from);
  }
  // The sums of all lanes of three registers.
  POKERMATH_KERNEL static void Sum(const Register& a, const Register& b, const Register& c,
                                   OfPlayers& sums) {
    if constexpr (kCount > 4) {
      using Half = Lanes<Number, bytes / 2>;
      typename Half::Register half_a, half_b, half_c;
      AddHalves(a, half_a);
      AddHalves(b, half_b);
      AddHalves(c, half_c);
      Half::Sum(half_a, half_b, half_c, sums);
    } else {
      const Register ab =
          __builtin_shufflevector(a, b, 0, 4, 1, 5) + __builtin_shufflevector(a, b, 2, 6, 3, 7);
      const Register cc =
          __builtin_shufflevector(c, c, 0, 4, 1, 5) + __builtin_shufflevector(c, c, 2, 6, 3, 7);
      const Register abc =
          __builtin_shufflevector(ab, cc, 0, 1, 4, 5) + __builtin_shufflevector(ab, cc, 2, 3, 6, 7);
      sums = __builtin_convertvector(abc, OfPlayers);
    }
  }

 private:
  template <typename Half>
  POKERMATH_KERNEL static void AddHalves(const Register& whole, Half& half) {
    Half high;
    std::memcpy(&half, &whole, sizeof half);
    std::memcpy(&high, reinterpret_cast<const char*>(&whole) + sizeof half, sizeof high);
    half += high;
  }
};

// A hand that is in one or several of the ranges.
struct Holding {
  CardSet cards;
  std::size_t rank_class = 0;
  std::array<std::size_t, 2> hand{};
  OfPlayers weights{};   // 0 where it is not in a range
  OfPlayers same{};      // their products, as of MultiplyOthers
  std::size_t hero = 0;  // the only player who may hold it; kPlayers if several may
};

// A hand on a board: how good it is, and the places of its cards.
struct Standing {
  std::uint16_t value;
  std::uint16_t holding;
  std::uint8_t place1, place2;
};

struct Tallies {
  WholeOfPlayers wins{}, shares2{}, shares3{}, cases{};
};

// Of a row, in registers of any width.
template <typename Number>
struct alignas(64) Block {
  Number lanes[kBlock];
};

// The hands that were put in.
template <typename Number>
class Below {
 public:
  // @param ranges  different ones; the last one is that of all players behind
  explicit Below(std::size_t ranges) : ranges_(ranges) {}

  // Nothing is in.
  void Clear(std::size_t places) {
    places_ = places;
    blocks_ = (places + kBlock - 1) / kBlock;
    rows_.assign((places + 1) * ranges_ * blocks_, {});
    all = same = OfPlayers{};
    std::fill_n(all_of_card, places, OfPlayers{});
    std::fill_n(same_of_card, places, OfPlayers{});
  }

  std::size_t ranges() const { return ranges_; }
  // Blocks of a row, and their lanes.
  std::size_t blocks() const { return blocks_; }
  std::size_t lanes() const { return blocks_ * kBlock; }
  // X[card][c] by c, the ranges one behind the other; and X[c].
  const Number* OfCard(std::size_t card) const { return rows_[RowsOf(card)].lanes; }
  const Number* All() const { return OfCard(places_); }

  POKERMATH_KERNEL void Put(const Holding& holding, const Standing& standing) {
    const std::size_t card1 = standing.place1, card2 = standing.place2;
    for (const std::size_t card : {card1, card2, places_}) {
      Number* row = rows_[RowsOf(card)].lanes;
      for (std::size_t i = 0; i < ranges_; ++i, row += lanes()) {
        const auto weight = static_cast<Number>(holding.weights[i]);
        row[card1] += weight;
        row[card2] += weight;
      }
    }
    all += holding.weights;
    all_of_card[card1] += holding.weights;
    all_of_card[card2] += holding.weights;
    same += holding.same;
    same_of_card[card1] += holding.same;
    same_of_card[card2] += holding.same;
  }

  OfPlayers all{}, same{};
  OfPlayers all_of_card[kCards]{}, same_of_card[kCards]{};

 private:
  std::size_t RowsOf(std::size_t card) const { return card * ranges_ * blocks_; }

  std::size_t ranges_;
  std::size_t places_ = 0;  // of cards
  std::size_t blocks_ = 0;  // of a row
  std::vector<Block<Number>> rows_;
};

// What is left below a hand of a level, of all ranges and of the products for each hero, without
// what the hand itself adds; and in how many ways the hero beats both.
struct Left {
  OfPlayers weights, same, wins;
};

template <typename Number>
struct SweepData {
  std::span<const Holding> holdings;
  std::span<Tallies> tallies;
  Below<Number> below;
  double times = 1;  // that the board counts
  std::vector<Standing> order{};
  std::vector<Block<Number>> kept{};  // for the hands of a level, rows of X[c] left below
  std::vector<Left> left{};

  Number* KeptOf(std::size_t hand) { return kept[hand * kPlayers * below.blocks()].lanes; }
};

template <typename Number, std::size_t bytes>
class LevelSweep {
 public:
  // All levels from below.
  POKERMATH_KERNEL static void RunLevels(SweepData<Number>& data) {
    const std::span<const Standing> order(data.order);
    for (std::size_t first = 0; first < order.size();) {
      std::size_t last = first + 1;
      while (last < order.size() && order[last].value == order[first].value) ++last;
      Level(data, order.subspan(first, last - first));
      first = last;
    }
  }

  // What is in leaves so many pairs to each hand.
  POKERMATH_KERNEL static void RunCases(SweepData<Number>& data) {
    for (const Standing& standing : data.order) {
      const Holding& holding = HoldingOf(data, standing);
      OfPlayers dots, pairs;
      DotsBelow(data, holding, standing, data.KeptOf(0), dots);
      Left left;
      SetLeft(data.below, standing, left);
      Pairs(left.weights + holding.weights, dots, left.same + 3 * holding.same, pairs);
      AddWhole(pairs, data.tallies[standing.holding].cases);
    }
  }

 private:
  using Of = Lanes<Number, bytes>;
  using Register = typename Of::Register;

  POKERMATH_KERNEL static const Holding& HoldingOf(const SweepData<Number>& data,
                                                   const Standing& standing) {
    return data.holdings[standing.holding];
  }

  POKERMATH_KERNEL static void SetLeft(const Below<Number>& below, const Standing& standing,
                                       Left& left) {
    const std::size_t card1 = standing.place1, card2 = standing.place2;
    left.weights = below.all - below.all_of_card[card1] - below.all_of_card[card2];
    left.same = below.same - below.same_of_card[card1] - below.same_of_card[card2];
  }

  POKERMATH_KERNEL static void Pairs(const OfPlayers& weights, const OfPlayers& dots,
                                     const OfPlayers& same, OfPlayers& pairs) {
    MultiplyOthers(weights, pairs);
    pairs += same - dots;
  }

  POKERMATH_KERNEL static void Level(SweepData<Number>& data, std::span<const Standing> level) {
    for (std::size_t i = 0; i < level.size(); ++i) {
      const Holding& holding = HoldingOf(data, level[i]);
      Left& left = data.left[i];
      OfPlayers dots;
      DotsBelow(data, holding, level[i], data.KeptOf(i), dots);
      SetLeft(data.below, level[i], left);
      Pairs(left.weights, dots, left.same, left.wins);
      AddWhole(data.times * left.wins, data.tallies[level[i].holding].wins);
    }
    for (const Standing& standing : level) data.below.Put(HoldingOf(data, standing), standing);
    if (level.size() == 1) return;  // nobody to share with
    for (std::size_t i = 0; i < level.size(); ++i) {
      const Holding& holding = HoldingOf(data, level[i]);
      OfPlayers dots, level_dots;
      DotsOf(data, holding, level[i], data.KeptOf(i), dots, level_dots);
      const Left& below = data.left[i];
      Left left;
      SetLeft(data.below, level[i], left);
      left.weights += holding.weights;
      left.same += 3 * holding.same;
      OfPlayers not_above, shares3;
      Pairs(left.weights, dots, left.same, not_above);
      Pairs(left.weights - below.weights, level_dots, left.same - below.same, shares3);
      Tallies& tallies = data.tallies[level[i].holding];
      AddWhole(data.times * shares3, tallies.shares3);
      AddWhole(data.times * (not_above - below.wins - shares3), tallies.shares2);
    }
  }

  // For each hero the sum over c of left X[c] * left Y[c] below, whose rows are kept.
  POKERMATH_KERNEL static void DotsBelow(const SweepData<Number>& data, const Holding& holding,
                                         const Standing& standing, Number* kept, OfPlayers& dots) {
    if (holding.hero < kPlayers) {
      DotsBelow<kOneHero>(data, holding.hero, standing, kept, dots);
    } else if (data.below.ranges() == 1) {
      DotsBelow<kAlike>(data, 0, standing, kept, dots);
    } else if (data.below.ranges() == 2) {
      DotsBelow<kTwoAlike>(data, 0, standing, kept, dots);
    } else {
      DotsBelow<kDifferent>(data, 0, standing, kept, dots);
    }
  }
  // The same for what is not above; and for the level, which is what was not kept.
  POKERMATH_KERNEL static void DotsOf(const SweepData<Number>& data, const Holding& holding,
                                      const Standing& standing, const Number* kept, OfPlayers& dots,
                                      OfPlayers& level_dots) {
    if (holding.hero < kPlayers) {
      DotsOf<kOneHero>(data, holding.hero, standing, kept, dots, level_dots);
    } else if (data.below.ranges() == 1) {
      DotsOf<kAlike>(data, 0, standing, kept, dots, level_dots);
    } else if (data.below.ranges() == 2) {
      DotsOf<kTwoAlike>(data, 0, standing, kept, dots, level_dots);
    } else {
      DotsOf<kDifferent>(data, 0, standing, kept, dots, level_dots);
    }
  }

  // For whom products are added up: for one player; for all, whose ranges are alike; but for the
  // first one's; or all different.
  enum Heroes { kOneHero, kAlike, kTwoAlike, kDifferent };

  // The rows of ranges for a hand: of the one hero's opponents, or of all different ranges.
  template <Heroes heroes>
  struct Rows {
    static constexpr std::size_t kCount = heroes == kAlike ? 1 : heroes == kDifferent ? 3 : 2;

    POKERMATH_KERNEL Rows(const Below<Number>& below, std::size_t hero, const Standing& standing) {
      for (std::size_t i = 0; i < kCount; ++i) {
        const std::size_t range =
            heroes == kOneHero ? std::min((hero + 1 + i) % kPlayers, below.ranges() - 1) : i;
        all[i] = below.All() + range * below.lanes();
        card1[i] = below.OfCard(standing.place1) + range * below.lanes();
        card2[i] = below.OfCard(standing.place2) + range * below.lanes();
      }
    }
    // What is left of them but for the hand; nothing of those that are not.
    POKERMATH_KERNEL void Left(std::size_t lane, Register& a, Register& b, Register& c) const {
      LeftOf<0>(lane, a);
      LeftOf<1>(lane, b);
      LeftOf<2>(lane, c);
    }
    template <std::size_t range>
    POKERMATH_KERNEL void LeftOf(std::size_t lane, Register& left) const {
      if constexpr (range < kCount) {
        Register row1, row2;
        Of::Load(all[range] + lane, left);
        Of::Load(card1[range] + lane, row1);
        Of::Load(card2[range] + lane, row2);
        left = left - row1 - row2;
      }
    }

    const Number *all[kCount], *card1[kCount], *card2[kCount];
  };

  template <Heroes heroes>
  struct Products {
    POKERMATH_KERNEL void Add(const Register& a, const Register& b, const Register& c) {
      if constexpr (heroes == kOneHero) {
        first += a * b;
      } else if constexpr (heroes == kAlike) {
        first += a * a;
      } else if constexpr (heroes == kTwoAlike) {
        first += b * b;
        second += a * b;
      } else {
        first += b * c;
        second += c * a;
        third += a * b;
      }
    }
    // Those for one hero count for all: what the others get is never read.
    POKERMATH_KERNEL void Set(OfPlayers& dots) const {
      if constexpr (heroes == kDifferent) {
        Of::Sum(first, second, third, dots);
      } else if constexpr (heroes == kTwoAlike) {
        Of::Sum(first, second, second, dots);
      } else {
        Of::Sum(first, first, first, dots);
      }
    }

    Register first{}, second{}, third{};
  };

  template <Heroes heroes>
  POKERMATH_KERNEL static void DotsBelow(const SweepData<Number>& data, std::size_t hero,
                                         const Standing& standing, Number* kept, OfPlayers& dots) {
    using RowsOf = Rows<heroes>;
    const RowsOf rows(data.below, hero, standing);
    const std::size_t lanes = data.below.lanes();
    Products<heroes> products;
    for (std::size_t lane = 0; lane < lanes; lane += Of::kCount) {
      Register a{}, b{}, c{};
      rows.Left(lane, a, b, c);
      Of::Store(a, kept + lane);
      if constexpr (RowsOf::kCount > 1) Of::Store(b, kept + lanes + lane);
      if constexpr (RowsOf::kCount > 2) Of::Store(c, kept + 2 * lanes + lane);
      products.Add(a, b, c);
    }
    products.Set(dots);
  }

  template <Heroes heroes>
  POKERMATH_KERNEL static void DotsOf(const SweepData<Number>& data, std::size_t hero,
                                      const Standing& standing, const Number* kept, OfPlayers& dots,
                                      OfPlayers& level_dots) {
    using RowsOf = Rows<heroes>;
    const RowsOf rows(data.below, hero, standing);
    const std::size_t lanes = data.below.lanes();
    Products<heroes> products, of_level;
    for (std::size_t lane = 0; lane < lanes; lane += Of::kCount) {
      Register a{}, b{}, c{}, below_a{}, below_b{}, below_c{};
      rows.Left(lane, a, b, c);
      Of::Load(kept + lane, below_a);
      if constexpr (RowsOf::kCount > 1) Of::Load(kept + lanes + lane, below_b);
      if constexpr (RowsOf::kCount > 2) Of::Load(kept + 2 * lanes + lane, below_c);
      products.Add(a, b, c);
      of_level.Add(a - below_a, b - below_b, c - below_c);
    }
    products.Set(dots);
    of_level.Set(level_dots);
  }
};

template <bool cases, typename Number>
void RunSweep(Isa isa, SweepData<Number>& data) {
  Dispatch(isa, [&](auto level) POKERMATH_INLINE {
    constexpr std::size_t kBytes = level == Isa::kAvx512 ? 64
                                   : level == Isa::kAvx2 ? 32
                                                         : 4 * sizeof(Number);
    if constexpr (cases) {
      LevelSweep<Number, kBytes>::RunCases(data);
    } else {
      LevelSweep<Number, kBytes>::RunLevels(data);
    }
  });
}

// Puts hands in the order of their values: counts them by the place of their value among those that
// occur.
class ValueOrder {
 public:
  void Sort(std::span<const Standing> standings, std::vector<Standing>& sorted) {
    std::array<std::uint64_t, kValues / 64 + 1> occur{};
    for (const Standing& standing : standings) {
      occur[standing.value / 64] |= std::uint64_t{1} << standing.value % 64;
    }
    std::size_t levels = 0;
    for (std::size_t word = 0; word < occur.size(); ++word) {
      for (std::uint64_t bits = occur[word]; bits != 0; bits &= bits - 1) {
        level_of_[word * 64 + static_cast<std::size_t>(std::countr_zero(bits))] =
            static_cast<std::uint16_t>(levels++);
      }
    }
    ends_.assign(levels + 1, 0);
    for (const Standing& standing : standings) ++ends_[level_of_[standing.value] + 1u];
    most_ = *std::ranges::max_element(ends_);
    for (std::size_t i = 1; i < levels; ++i) ends_[i] += ends_[i - 1];
    sorted.resize(standings.size());
    for (const Standing& standing : standings) {
      sorted[ends_[level_of_[standing.value]]++] = standing;
    }
  }
  // Hands of the level that has most of them.
  std::size_t most() const { return most_; }

 private:
  static constexpr std::size_t kValues = 7463;
  std::array<std::uint16_t, kValues> level_of_;
  std::vector<std::uint32_t> ends_;  // of the levels in what is sorted
  std::size_t most_ = 0;
};

// Puts players with the same range behind the one with another.
std::array<std::size_t, kPlayers> SeatsOf(const ThreeRanges& ranges, std::size_t& different) {
  const auto alike = [&](std::size_t a, std::size_t b) {
    return ranges[a].data() == ranges[b].data() || std::ranges::equal(ranges[a], ranges[b]);
  };
  different = 2;
  if (alike(1, 2)) {
    if (alike(0, 1)) different = 1;
    return {0, 1, 2};
  }
  if (alike(0, 2)) return {1, 0, 2};
  if (alike(0, 1)) return {1, 2, 0};
  different = 3;
  return {0, 1, 2};
}

// The hands of all ranges.
class HoldingList {
 public:
  // Adds the range of a seat and, being the last one, of all behind; says where its hands stand.
  std::vector<std::uint16_t> Add(std::span<const WeightedPair> hands, std::size_t seat, bool last) {
    const std::size_t end = last ? kPlayers : seat + 1;
    std::vector<std::uint16_t> places;
    places.reserve(hands.size());
    holdings_.reserve(holdings_.size() + hands.size());
    for (const WeightedPair& pair : hands) {
      const std::array<std::size_t, 2> cards = {static_cast<std::size_t>(pair.card1),
                                                static_cast<std::size_t>(pair.card2)};
      std::uint16_t& place = place_of_[cards[0] * kCards + cards[1]];
      if (place == 0) {
        holdings_.push_back({});
        place = static_cast<std::uint16_t>(holdings_.size());
        Holding& holding = holdings_.back();
        holding.cards = pair.cards();
        holding.rank_class =
            static_cast<std::size_t>(RankClassOf(pair.card1 % 13, pair.card2 % 13));
        holding.hand = cards;
        holding.hero = end == seat + 1 ? seat : kPlayers;
      } else {
        holdings_[place - 1u].hero = kPlayers;
      }
      for (std::size_t i = seat; i < end; ++i) holdings_[place - 1u].weights[i] = pair.weight;
      places.push_back(static_cast<std::uint16_t>(place - 1u));
    }
    return places;
  }

  std::vector<Holding> Take() {
    for (Holding& holding : holdings_) MultiplyOthers(holding.weights, holding.same);
    return std::move(holdings_);
  }

 private:
  std::vector<Holding> holdings_;
  std::array<std::uint16_t, kCards * kCards> place_of_{};  // 1 and up
};

// Whether floats hold all sums.
bool AreSmall(std::span<const Holding> holdings) {
  OfPlayers of_card[kCards]{};
  for (const Holding& holding : holdings) {
    for (const std::size_t card : holding.hand) of_card[card] += holding.weights;
  }
  OfPlayers dots{};
  for (const OfPlayers& weights : of_card) {
    OfPlayers products;
    MultiplyOthers(weights, products);
    dots += products;
  }
  return std::max({dots[0], dots[1], dots[2]}) < static_cast<double>(kFloats);
}

}  // namespace

// What does not depend on the width of numbers.
class ThreeRangesSweep::Sweep {
 public:
  Sweep(const GameRules& rules, std::vector<Holding> holdings)
      : rules_(rules), holdings_(std::move(holdings)), tallies_(holdings_.size()) {
    for (const Holding& holding : holdings_) used_ |= holding.cards;
  }
  virtual ~Sweep() = default;

  virtual void Count(CardSet board, int times) = 0;
  virtual void CountCases() = 0;

  const Tallies& tallies(std::size_t holding) const { return tallies_[holding]; }

 protected:
  // Sets the places of the cards that hands hold but a board does not, and says how many these are.
  std::size_t SetPlaces(CardSet board) {
    std::uint8_t places = 0;
    for (const int card : used_ - board) places_[static_cast<std::size_t>(card)] = places++;
    return places;
  }

  // The hands that a board leaves.
  template <typename ValueOf>
  void Stand(CardSet board, const ValueOf& value_of) {
    standings_.clear();
    for (std::size_t i = 0; i < holdings_.size(); ++i) {
      const Holding& holding = holdings_[i];
      if (holding.cards.Meets(board)) continue;
      standings_.push_back({.value = static_cast<std::uint16_t>(value_of(holding)),
                            .holding = static_cast<std::uint16_t>(i),
                            .place1 = places_[holding.hand[0]],
                            .place2 = places_[holding.hand[1]]});
    }
  }

  template <Deck deck>
  void StandByValue(CardSet board) {
    const BoardOrder order = OrderOf(rules_, board);
    std::array<int, kRankClasses> values;  // without flushes, of the classes that are left
    for (std::size_t i = 0; i < order.ranks->size; ++i) {
      values[order.ranks->classes[i]] = order.ranks->values[i];
    }
    if (order.suit < 0) {
      Stand(board, [&](const Holding& holding) { return values[holding.rank_class]; });
      return;
    }
    Stand(board, [&](const Holding& holding) {
      const auto suited =
          static_cast<unsigned>((board | holding.cards).bits() >> 13 * order.suit & kAllRanks);
      const int flush = DeckValues<deck>::OfFlush(suited);
      return flush > 0 ? flush : values[holding.rank_class];
    });
  }

  void StandByValue(CardSet board, std::vector<Standing>& sorted) {
    if (rules_.IsShortDeck()) {
      StandByValue<Deck::kShort>(board);
    } else {
      StandByValue<Deck::kFull>(board);
    }
    by_value_.Sort(standings_, sorted);
  }

  const GameRules& rules_;
  std::vector<Holding> holdings_;
  CardSet used_;
  std::array<std::uint8_t, kCards> places_{};
  std::vector<Standing> standings_;
  ValueOrder by_value_;
  std::vector<Tallies> tallies_;
};

template <typename Number>
class ThreeRangesSweep::NumberSweep final : public Sweep {
 public:
  NumberSweep(Isa isa, const GameRules& rules, std::vector<Holding> holdings, std::size_t ranges)
      : Sweep(rules, std::move(holdings)),
        isa_(isa),
        data_{.holdings = holdings_, .tallies = tallies_, .below = Below<Number>(ranges)} {}

  void Count(CardSet board, int times) override {
    data_.times = times;
    data_.below.Clear(SetPlaces(board));
    StandByValue(board, data_.order);
    Reserve(by_value_.most());
    RunSweep<false>(isa_, data_);
  }

  void CountCases() override {
    // A board that shares a card with no hand has left all of them in.
    if (data_.order.size() < holdings_.size()) {
      data_.below.Clear(SetPlaces({}));
      Stand({}, [](const Holding&) { return 0; });
      data_.order = standings_;
      for (const Standing& standing : data_.order) {
        data_.below.Put(holdings_[standing.holding], standing);
      }
      Reserve(1);
    }
    RunSweep<true>(isa_, data_);
  }

 private:
  // Room for the largest level.
  void Reserve(std::size_t hands) {
    data_.left.resize(std::max(hands, data_.left.size()));
    data_.kept.resize(std::max(hands * kPlayers * data_.below.blocks(), data_.kept.size()));
  }

  Isa isa_;
  SweepData<Number> data_;
};

ThreeRangesSweep::ThreeRangesSweep(Isa isa, const GameRules& rules, const ThreeRanges& ranges) {
  std::size_t different;
  seats_ = SeatsOf(ranges, different);
  HoldingList list;
  for (std::size_t player = 0; player < kPlayers; ++player) {
    const std::size_t seat = seats_[player];
    if (seat < different) places_[seat] = list.Add(ranges[player], seat, seat + 1 == different);
  }
  for (std::size_t i = different; i < kPlayers; ++i) places_[i] = places_[different - 1];
  std::vector<Holding> holdings = list.Take();
  // Sums of 24 bits take half of the time.
  if (AreSmall(holdings)) {
    sweep_ = std::make_unique<NumberSweep<float>>(isa, rules, std::move(holdings), different);
  } else {
    sweep_ = std::make_unique<NumberSweep<double>>(isa, rules, std::move(holdings), different);
  }
}

ThreeRangesSweep::~ThreeRangesSweep() = default;

void ThreeRangesSweep::Count(CardSet board, int times) { sweep_->Count(board, times); }
void ThreeRangesSweep::CountCases() { sweep_->CountCases(); }

ThreeTally ThreeRangesSweep::Of(std::size_t player, std::size_t hand) const {
  const std::size_t seat = seats_[player];
  const Tallies& tallies = sweep_->tallies(places_[seat][hand]);
  const auto whole = [&](const WholeOfPlayers& sums) {
    return static_cast<std::int64_t>(sums[seat]);
  };
  return {whole(tallies.wins), whole(tallies.shares2), whole(tallies.shares3),
          whole(tallies.cases)};
}

}  // namespace pokermath
