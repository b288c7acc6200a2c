// Hands against each other before the flop without dealing a board.
//
// Leave the suits aside and a board is a multiset of ranks, for which the values of all hands stand
// in a row each (rank_boards.h): the largest value at a place, and who has it, say who shares the
// pot. The weight of a place is the number of ways to draw its board, less those with so many cards
// of a suit that somebody flushes.
//
// These boards are counted suit by suit; a board has at most one suit with three cards or more.
// Take it apart into its cards of that suit (a set of ranks) and the rest (a multiset). The hands
// that flush are decided by the set alone, as five cards of a suit leave no room for a full house;
// among them they share all rests but those on which somebody else has a full house or quads that
// beat them. Sets lie side by side in a vector register.
//
// Who shares is counted by inclusion and exclusion: the weight of the places where certain hands,
// at least, have the largest value. Of more than a few hands places are looked at singly.

#include "kernels/several_hands.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "kernels/matchup_tables.h"
#include "kernels/rank_boards.h"
#include "kernels/registers.h"
#include "platform/require.h"

namespace pokermath {
namespace {

constexpr int kSpill = 32;  // lanes that the last register of a row may write behind it

struct Hand {
  std::array<RankSet, 4> held{};  // by suit
  const std::int16_t* values = nullptr;
  const std::array<Values, 3>* suit_values = nullptr;

  int Held(std::size_t suit) const { return __builtin_popcount(held[suit]); }
};

// All that a count needs, whichever deck and street.
struct Showdown {
  int board = 0;
  const RankBoards* rank_boards = nullptr;
  std::span<const SuitBoards> suit_boards;
  std::array<RankSet, 4> live{};  // by suit, the cards that can come
  std::vector<Hand> hands{};
  bool by_ranks =
      true;  // count all boards by their ranks, and then what suits change; or only that
  std::size_t suits = 4;  // the first ones, whose flushes are counted

  int Live(std::size_t suit, int rank) const { return live[suit] >> rank & 1; }
  int Left(int rank) const { return Live(0, rank) + Live(1, rank) + Live(2, rank) + Live(3, rank); }
  // Cards of a suit on the board with which somebody can flush.
  int FewestSuited(std::size_t suit) const {
    int most = 0;
    for (const Hand& hand : hands) most = std::max(most, hand.Held(suit));
    return 5 - most;
  }
};

// --- who has the largest value ---

// Rows of values, and the hands that each is for.
struct Rivals {
  std::array<const std::int16_t*, kMostHands> rows{};
  std::array<unsigned, kMostHands> hands{};
  int count = 0;

  void Add(const std::int16_t* row, unsigned hand) {
    const auto used = std::span(rows).first(static_cast<std::size_t>(count));
    const auto place = static_cast<std::size_t>(std::ranges::find(used, row) - used.begin());
    if (place == used.size()) rows[static_cast<std::size_t>(count++)] = row;
    hands[place] |= hand;
  }
  // The hands of some rows, a bit for each.
  unsigned HandsOf(unsigned set) const {
    unsigned all = 0;
    for (; set != 0; set &= set - 1) all |= hands[static_cast<std::size_t>(__builtin_ctz(set))];
    return all;
  }
};

constexpr int kFew = 4;  // rows of which all sets are summed up side by side

template <typename Register>
POKERMATH_KERNEL int SumLanes(const Register& lanes) {
  int sum = 0;
  for (int i = 0; i < kLanes<Register>; ++i) sum += lanes[i];
  return sum;
}

// Calls use with 0 .. count - 1. A loop would not be unrolled in functions as large as these, and
// arrays of registers have to be.
template <int count, typename Use>
POKERMATH_KERNEL void Unroll(const Use& use) {
  [&]<int... i>(std::integer_sequence<int, i...>) POKERMATH_INLINE { (use(i), ...); }
  (std::make_integer_sequence<int, count>());
}

// What stands at one place in all rows, and the largest of it.
template <typename Register, int rows>
struct Place {
  Register values[rows];
  Register best;

  POKERMATH_KERNEL Place(const Rivals& rivals, std::ptrdiff_t place) {
    Unroll<rows>([&](int row) POKERMATH_INLINE {
      Load(values[row], rivals.rows[static_cast<std::size_t>(row)] + place);
      best = row == 0 ? values[0] : values[row] > best ? values[row] : best;
    });
  }
};

// The weights of places by who has the largest value, of few rows: [set of rows], places where
// they have it, and others may, too.
template <typename Register, int rows>
struct FewSums {
  static constexpr int kSets = 1 << rows;
  Register least[kSets]{};

  POKERMATH_KERNEL void Add(const Place<Register, rows>& place, const Register& weights) {
    Register of_set[kSets];
    of_set[0] = weights;
    Unroll<kSets - 1>([&](int i) POKERMATH_INLINE {
      const int set = i + 1;
      const int row = 31 - __builtin_clz(static_cast<unsigned>(set));
      of_set[set] = of_set[set ^ 1 << row] & (place.values[row] == place.best);
      least[set] += of_set[set];
    });
  }

  POKERMATH_KERNEL void Add(const FewSums& other) {
    Unroll<kSets>([&](int set) POKERMATH_INLINE { least[set] += other.least[set]; });
  }

  // All weights.
  POKERMATH_KERNEL void Total(Register& total) const {
    total = Register{};
    Unroll<kSets>([&](int set) POKERMATH_INLINE {
      total += __builtin_popcount(static_cast<unsigned>(set)) % 2 == 1 ? least[set] : -least[set];
    });
  }

  // They have to fit 16 bits.
  POKERMATH_KERNEL void AddTo(const Rivals& rivals, std::span<std::int64_t> times) const {
    int alone[kSets];
    Unroll<kSets>([&](int set) POKERMATH_INLINE { alone[set] = SumLanes(least[set]); });
    for (int row = 1; row < kSets; row *= 2) {
      for (int set = 1; set < kSets; ++set) {
        if ((set & row) == 0) alone[set] -= alone[set | row];
      }
    }
    for (int set = 1; set < kSets; ++set) {
      times[rivals.HandsOf(static_cast<unsigned>(set))] += alone[set];
    }
  }
};

// The same of many rows, place by place: the rows that have the largest value.
class ManySums {
 public:
  POKERMATH_KERNEL explicit ManySums(int rows) : sets_(1u << rows) {
    for (auto& bank : banks_) std::fill_n(bank, sets_, 0);
  }

  // Numbers that change by turns need not wait for each other.
  POKERMATH_KERNEL void Add(int turn, unsigned set, std::int16_t weight) {
    banks_[turn % 2][set] += weight;
  }

  POKERMATH_KERNEL void AddTo(const Rivals& rivals, std::span<std::int64_t> times) const {
    for (unsigned set = 1; set < sets_; ++set) {
      const int sum = banks_[0][set] + banks_[1][set];
      if (sum != 0) times[rivals.HandsOf(set)] += sum;
    }
  }

 private:
  unsigned sets_;
  int banks_[2][1 << kMostHands];
};

template <typename Register, int rows>
POKERMATH_KERNEL void LoadWinners(const Place<Register, rows>& place, Register& winners) {
  winners = Register{};
  Unroll<rows>([&](int row) POKERMATH_INLINE {
    winners |= (place.values[row] == place.best) & static_cast<std::int16_t>(1 << row);
  });
}

template <typename Register, int rows>
POKERMATH_KERNEL void JudgeFew(const Rivals& rivals, const std::int16_t* weights, int size,
                               std::span<std::int64_t> times) {
  constexpr int kBlock = 31 * kLanes<Register>;
  static_assert(31 * 4 * 4 * 4 * 4 * 4 < 1 << 15);  // the largest weight is that of five ranks
  for (int start = 0; start < size; start += kBlock) {
    const int end = std::min(start + kBlock, size);
    FewSums<Register, rows> sums;
    for (int i = start; i < end; i += kLanes<Register>) {
      Register weight;
      Load(weight, weights + i);
      sums.Add(Place<Register, rows>(rivals, i), weight);
    }
    sums.AddTo(rivals, times);
  }
}

template <typename Register, int rows>
POKERMATH_KERNEL void JudgeMany(const Rivals& rivals, const std::int16_t* weights, int size,
                                std::span<std::int64_t> times) {
  ManySums sums(rows);
  for (int start = 0; start < size; start += kLanes<Register>) {
    Register lanes;
    LoadWinners(Place<Register, rows>(rivals, start), lanes);
    std::uint16_t winners[kLanes<Register>];
    std::memcpy(winners, &lanes, sizeof lanes);
    for (int i = 0; i < kLanes<Register>; ++i) sums.Add(i, winners[i], weights[start + i]);
  }
  sums.AddTo(rivals, times);
}

// Adds the weights of places to those who share the largest value there.
template <typename Register, int rows = 1>
POKERMATH_KERNEL void Judge(const Rivals& rivals, const std::int16_t* weights, int size,
                            std::span<std::int64_t> times) {
  if (rivals.count > rows) {
    if constexpr (rows < kMostHands) Judge<Register, rows + 1>(rivals, weights, size, times);
  } else if constexpr (rows <= kFew) {
    JudgeFew<Register, rows>(rivals, weights, size, times);
  } else {
    JudgeMany<Register, rows>(rivals, weights, size, times);
  }
}

// --- ways to draw rank boards ---

// Ways to draw every tail by how many cards of a suit it has; or from all cards that are left, as
// if none were of the suit.
struct TailWays {
  template <int size>
  using Row = std::array<std::int16_t, size + kSpill>;
  alignas(64) std::array<Row<286>, 4> three;
  alignas(64) std::array<Row<78>, 3> two;
  alignas(64) std::array<Row<13>, 2> one, pair;
  alignas(64) std::array<Row<1>, 1> none;

  const std::int16_t* Of(Tail tail, int suited) const {
    return of_[static_cast<std::size_t>(tail)][static_cast<std::size_t>(suited)];
  }

 private:
  using Pointers = std::array<const std::int16_t*, 4>;
  template <typename Rows>
  static Pointers To(const Rows& rows) {
    Pointers pointers{};
    std::ranges::transform(rows, pointers.begin(), [](const auto& row) { return row.data(); });
    return pointers;
  }

  std::array<Pointers, kTails> of_ = {To(none), To(one), To(two), To(three), To(pair)};  // [tail]
};

// Cards of each rank: of a suit, 0 or 1, and of the others.
struct RankWays {
  std::array<std::int16_t, 13> suited{}, others{};
};

// Ways to draw so many cards of a rank, none of them of a suit or one.
struct HeadWays {
  int none = 1, one = 0;
};

// Adds a rank to tails of fewer ranks, all below it. What lies behind a row may be anything.
template <typename Modular, std::size_t rows, typename From, typename To>
POKERMATH_KERNEL void Extend(const std::array<From, rows>& from, int count, std::int16_t suited,
                             std::int16_t others, std::array<To, rows + 1>& to, int first) {
  for (int place = 0; place < count; place += kLanes<Modular>) {
    Modular last{};
    for (std::size_t row = 0; row <= rows; ++row) {
      Modular ways{};
      if (row < rows) Load(ways, from[row].data() + place);
      const Modular sum =
          ways * static_cast<std::uint16_t>(others) + last * static_cast<std::uint16_t>(suited);
      std::memcpy(to[row].data() + first + place, &sum, sizeof sum);
      last = ways;
    }
  }
}

template <typename Modular>
POKERMATH_KERNEL void WeighTails(const RankWays& ways, int lowest_rank, TailWays& tails) {
  for (auto& row : tails.one) row.fill(0);
  for (auto& row : tails.pair) row.fill(0);
  tails.none[0].fill(1);
  for (int rank = lowest_rank; rank < 13; ++rank) {
    const auto index = static_cast<std::size_t>(rank);
    const auto place = static_cast<std::size_t>(rank - lowest_rank);
    const std::int16_t suited = ways.suited[index], others = ways.others[index];
    tails.one[0][place] = others;
    tails.one[1][place] = suited;
    tails.pair[0][place] = static_cast<std::int16_t>(Choose(others, 2));
    tails.pair[1][place] = static_cast<std::int16_t>(suited * others);
  }
  for (int place = 1; place < 13 - lowest_rank; ++place) {
    const std::int16_t suited = tails.one[1][static_cast<std::size_t>(place)];
    const std::int16_t others = tails.one[0][static_cast<std::size_t>(place)];
    Extend<Modular>(tails.one, place, suited, others, tails.two, Choose(place, 2));
  }
  for (int place = 2; place < 13 - lowest_rank; ++place) {
    const std::int16_t suited = tails.one[1][static_cast<std::size_t>(place)];
    const std::int16_t others = tails.one[0][static_cast<std::size_t>(place)];
    Extend<Modular>(tails.two, Choose(place, 2), suited, others, tails.three, Choose(place, 3));
  }
}

// The weights of rank boards, as a sum of rows of ways.
template <typename Width>
class Weigher {
  using Modular = typename Width::Modular;

 public:
  POKERMATH_KERNEL explicit Weigher(const Showdown& showdown, int lowest_rank)
      : boards_(*showdown.rank_boards) {
    RankWays all;
    for (int rank = lowest_rank; rank < 13; ++rank) {
      all.others[static_cast<std::size_t>(rank)] = static_cast<std::int16_t>(showdown.Left(rank));
    }
    if (showdown.by_ranks) Prepare(all, 0, lowest_rank);
    for (std::size_t suit = 0; suit < showdown.suits; ++suit) {
      const int fewest = showdown.FewestSuited(suit);
      if (fewest > showdown.board) continue;
      RankWays ways = all;
      for (std::size_t rank = 0; rank < 13; ++rank) {
        ways.suited[rank] = showdown.live[suit] >> rank & 1;
        ways.others[rank] -= ways.suited[rank];
      }
      Prepare(ways, fewest, lowest_rank);
    }
  }

  POKERMATH_KERNEL void Weigh(std::int16_t* weights) {
    for (const BoardBlock& block : boards_.blocks) WeighBlock(block, weights + block.first);
    const BoardBlock& last = boards_.blocks.back();
    std::fill(weights + last.first + last.size, weights + boards_.size, std::int16_t{0});
  }

 private:
  // Boards that have at least so many cards of a suit, which are taken off; all boards if it is 0.
  struct Suited {
    int fewest;
    std::array<std::array<HeadWays, 13>, 5> heads;  // [cards][rank]
    TailWays tails;
  };
  struct Term {
    const std::int16_t* row;
    std::uint16_t factor;
  };

  POKERMATH_KERNEL void Prepare(const RankWays& ways, int fewest, int lowest_rank) {
    Suited& suited = suited_[count_++];
    suited.fewest = fewest;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      // Pascal's rule the other way round: ways to choose 0 to 4 of the other cards.
      std::array<int, 5> chosen = {1, 0, 0, 0, 0};
      for (int card = 0; card < ways.others[rank]; ++card) {
        for (std::size_t i = 4; i > 0; --i) chosen[i] += chosen[i - 1];
      }
      suited.heads[0][rank] = {};
      for (std::size_t i = 1; i < 5; ++i) {
        suited.heads[i][rank] = {chosen[i], ways.suited[rank] * chosen[i - 1]};
      }
    }
    WeighTails<Modular>(ways, lowest_rank, suited.tails);
  }

  POKERMATH_KERNEL static HeadWays HeadOf(const Suited& suited, const BoardBlock& block,
                                          std::size_t place) {
    return suited.heads[static_cast<std::size_t>(block.times[place])]
                       [static_cast<std::size_t>(block.head[place])];
  }

  POKERMATH_KERNEL void WeighBlock(const BoardBlock& block, std::int16_t* weights) {
    Term terms[1 + 4 * 3];
    int count = 0;
    for (int i = 0; i < count_; ++i) {
      const Suited& suited = suited_[i];
      const int most = suited.fewest == 0 ? 0 : RanksIn(block.tail);
      int of_tail = std::max(suited.fewest - block.head_ranks, 0);
      if (of_tail > most) continue;
      const HeadWays first = HeadOf(suited, block, 0), second = HeadOf(suited, block, 1);
      const int two = first.one * second.one;
      const int one = two + first.one * second.none + first.none * second.one;
      const int ways[3] = {one + first.none * second.none, one, two};
      for (; of_tail <= most; ++of_tail) {
        const int of_head = ways[std::max(suited.fewest - of_tail, 0)];
        terms[count++] = {suited.tails.Of(block.tail, of_tail),
                          static_cast<std::uint16_t>(suited.fewest == 0 ? of_head : -of_head)};
      }
    }
    const std::int16_t* tails = boards_.tails[static_cast<std::size_t>(block.tail)].data();
    for (int place = 0; place < block.size; place += kLanes<Modular>) {
      Modular sum{};
      for (int i = 0; i < count; ++i) {
        Modular row;
        Load(row, terms[i].row + place);
        sum += row * terms[i].factor;
      }
      Modular ranks;
      Load(ranks, tails + place);
      sum &= reinterpret_cast<Modular>((ranks & block.head_set) == 0);
      // What stands behind the block is written later.
      std::memcpy(weights + place, &sum, sizeof sum);
    }
  }

  const RankBoards& boards_;
  Suited suited_[5];
  int count_ = 0;
};

// --- boards on which somebody flushes ---

// Boards with so many cards of a suit.
struct FlushBoards {
  const SuitBoards& boards;
  RankSet gone;      // ranks of the suit that cannot come
  Rivals flushes{};  // [set]: of the hands that flush
  Rivals others{};   // [group][rest][set in group]: of the hands that do not
  std::array<std::int16_t, kRankClasses> rest_weights{};
};

FlushBoards FlushBoardsOf(const Showdown& showdown, std::size_t suit, const SuitBoards& boards) {
  FlushBoards flush{.boards = boards, .gone = static_cast<RankSet>(~showdown.live[suit])};
  for (std::size_t i = 0; i < showdown.hands.size(); ++i) {
    const Hand& hand = showdown.hands[i];
    if (boards.suited + hand.Held(suit) >= 5) {
      flush.flushes.Add(
          &boards.flushes[static_cast<std::size_t>(HoldingOf(hand.held[suit]) * boards.sets)],
          1u << i);
    } else {
      flush.others.Add((*hand.suit_values)[static_cast<std::size_t>(boards.suited - 3)].data(),
                       1u << i);
    }
  }
  std::array<int, 13> others{};
  for (int rank = 0; rank < 13; ++rank) {
    others[static_cast<std::size_t>(rank)] = showdown.Left(rank) - showdown.Live(suit, rank);
  }
  WeighRests(boards, others, flush.rest_weights.data());
  return flush;
}

// A number for each set of suited cards.
using SetRow = std::array<std::int16_t, 1312>;
static_assert(Choose(13, 5) <= 1312 && 1312 % kGroup == 0);

inline int FirstRest(const SuitBoards& boards, int set) {
  return set / kGroup * kGroup * static_cast<int>(boards.rests.size()) + set % kGroup;
}

// Adds the rests with which hands that do not flush beat the best flush of each set; writes how
// many these are.
template <typename Register, int rows>
POKERMATH_KERNEL void BeatFew(const FlushBoards& flush, const SetRow& best_flushes, SetRow& beaten,
                              std::span<std::int64_t> times) {
  // A set of three ranks has rests of weight 741 or less together, and 36 of these sets share a
  // lane of the narrowest register; larger sets weigh much less.
  static_assert(Choose(39, 2) * 36 < 1 << 15 && Choose(13, 3) <= 36 * kLanes<Register>);
  FewSums<Register, rows> sums;
  for (int set = 0; set < flush.boards.sets; set += kLanes<Register>) {
    Register best_flush;
    Load(best_flush, best_flushes.data() + set);
    FewSums<Register, rows> of_sets;
    int first = FirstRest(flush.boards, set);
    for (std::size_t rest = 0; rest < flush.boards.rests.size(); ++rest, first += kGroup) {
      const Place<Register, rows> place(flush.others, first);
      of_sets.Add(place, (place.best > best_flush) & flush.rest_weights[rest]);
    }
    sums.Add(of_sets);
    Register all;
    of_sets.Total(all);
    std::memcpy(beaten.data() + set, &all, sizeof all);
  }
  sums.AddTo(flush.others, times);
}

template <typename Register, int rows>
POKERMATH_KERNEL void BeatMany(const FlushBoards& flush, const SetRow& best_flushes, SetRow& beaten,
                               std::span<std::int64_t> times) {
  ManySums sums(rows);
  beaten.fill(0);
  for (int set = 0; set < flush.boards.sets; set += kLanes<Register>) {
    Register best_flush;
    Load(best_flush, best_flushes.data() + set);
    int first = FirstRest(flush.boards, set);
    for (std::size_t rest = 0; rest < flush.boards.rests.size(); ++rest, first += kGroup) {
      const Place<Register, rows> place(flush.others, first);
      Register lanes;
      LoadWinners(place, lanes);
      lanes &= (best_flush - place.best) >> 15;  // g++ 12 fails on best > best_flush for AVX-512
      // Few sets are beaten: look at all at once, and then at four.
      constexpr int kFours = kLanes<Register> / 4;
      std::uint64_t fours[kFours], any = 0;
      std::memcpy(fours, &lanes, sizeof lanes);
      Unroll<kFours>([&](int i) POKERMATH_INLINE { any |= fours[i]; });
      for (int i = 0; any != 0 && i < kFours; ++i) {
        std::int16_t* of_set = beaten.data() + set + 4 * i;
        for (std::uint64_t four = fours[i]; four != 0; four >>= 16, ++of_set) {
          const unsigned winners = four & 0xFFFF;
          if (winners == 0) continue;
          sums.Add(i, winners, flush.rest_weights[rest]);
          *of_set = static_cast<std::int16_t>(*of_set + flush.rest_weights[rest]);
        }
      }
    }
  }
  sums.AddTo(flush.others, times);
}

template <typename Register, int rows = 1>
POKERMATH_KERNEL void Beat(const FlushBoards& flush, const SetRow& best_flushes, SetRow& beaten,
                           std::span<std::int64_t> times) {
  if (flush.others.count > rows) {
    if constexpr (rows + 1 < kMostHands) {
      Beat<Register, rows + 1>(flush, best_flushes, beaten, times);
    }
  } else if (flush.others.count == 0) {
    beaten.fill(0);
  } else if constexpr (rows < kFew) {
    BeatFew<Register, rows>(flush, best_flushes, beaten, times);
  } else {
    BeatMany<Register, rows>(flush, best_flushes, beaten, times);
  }
}

// All bits where the cards of a set can come.
template <typename Register>
POKERMATH_KERNEL void LoadLive(const FlushBoards& flush, int set, Register& live) {
  Load(live, flush.boards.set_ranks.data() + set);
  live = (live & static_cast<std::int16_t>(flush.gone | kNoSet)) == 0;
}

template <typename Register>
POKERMATH_KERNEL void CountFlushes(const FlushBoards& flush, std::span<std::int64_t> times) {
  const SuitBoards& boards = flush.boards;
  alignas(64) SetRow best_flushes, weights;
  for (int set = 0; set < boards.sets; set += kLanes<Register>) {
    Register best, live;
    Load(best, flush.flushes.rows[0] + set);
    for (int row = 1; row < flush.flushes.count; ++row) {
      Register value;
      Load(value, flush.flushes.rows[static_cast<std::size_t>(row)] + set);
      best = value > best ? value : best;
    }
    LoadLive(flush, set, live);
    // Nobody beats the largest number, on sets that cannot come.
    best |= ~live & std::int16_t{0x7FFF};
    std::memcpy(best_flushes.data() + set, &best, sizeof best);
  }
  Beat<Register>(flush, best_flushes, weights, times);
  std::int16_t all = 0;
  for (const std::int16_t rest : flush.rest_weights) all = static_cast<std::int16_t>(all + rest);
  for (int set = 0; set < boards.sets; set += kLanes<Register>) {
    Register weight, live;
    Load(weight, weights.data() + set);
    LoadLive(flush, set, live);
    weight = live & (all - weight);
    std::memcpy(weights.data() + set, &weight, sizeof weight);
  }
  Judge<Register>(flush.flushes, weights.data(), boards.sets, times);
}

// --- all of it ---

template <typename Width>
POKERMATH_KERNEL void Count(const Showdown& showdown, int lowest_rank,
                            std::span<std::int64_t> times) {
  using Register = typename Width::Register;
  alignas(64) std::array<std::int16_t, RankBoards::kMost + kGroup + kSpill> weights;
  Weigher<Width>(showdown, lowest_rank).Weigh(weights.data());
  Rivals rivals;
  for (std::size_t i = 0; i < showdown.hands.size(); ++i) {
    rivals.Add(showdown.hands[i].values, 1u << i);
  }
  Judge<Register>(rivals, weights.data(), showdown.rank_boards->size, times);
  for (std::size_t suit = 0; suit < showdown.suits; ++suit) {
    for (const SuitBoards& boards : showdown.suit_boards) {
      if (boards.suited < showdown.FewestSuited(suit)) continue;
      CountFlushes<Register>(FlushBoardsOf(showdown, suit, boards), times);
    }
  }
}

// Compiled once for all decks and boards.
void Count(Isa isa, const Showdown& showdown, int lowest_rank, std::span<std::int64_t> times) {
  Dispatch(isa, [&](auto level)
                    POKERMATH_INLINE { Count<RegistersOf<level>>(showdown, lowest_rank, times); });
}

RankSet RanksOfSuit(CardSet cards, std::size_t suit) {
  return static_cast<RankSet>(cards.bits() >> 13 * suit & kAllRanks);
}

template <Deck deck, int kBoard>
Hand HandOf(int rank_class) {
  return {.values = RankBoardTables<deck, kBoard>::Get().Of(rank_class).data(),
          .suit_values = &MatchupTables<deck, kBoard>::Get().Of(rank_class).by_suit_boards};
}

template <Deck deck, int kBoard>
Showdown NewShowdown() {
  return {.board = kBoard,
          .rank_boards = &RankBoardTables<deck, kBoard>::Get().boards(),
          .suit_boards = MatchupTables<deck, kBoard>::Get().suit_boards()};
}

template <Deck deck, int kBoard>
void Count(Isa isa, std::span<const CardSet> hands, CardSet dead, std::span<std::int64_t> times) {
  Showdown showdown = NewShowdown<deck, kBoard>();
  for (const CardSet cards : hands) {
    showdown.hands.push_back(
        HandOf<deck, kBoard>(RankClassOf(*cards.begin() % 13, *++cards.begin() % 13)));
    for (std::size_t suit = 0; suit < 4; ++suit) {
      showdown.hands.back().held[suit] = RanksOfSuit(cards, suit);
    }
    dead |= cards;
  }
  for (std::size_t suit = 0; suit < 4; ++suit) {
    showdown.live[suit] =
        static_cast<RankSet>(kAllRanks & ~AbsentRanks(deck) & ~RanksOfSuit(dead, suit));
  }
  Count(isa, showdown, LowestRank(deck), times);
}

template <Deck deck>
void Count(Isa isa, std::span<const CardSet> hands, CardSet dead, Street street,
           std::span<std::int64_t> times) {
  switch (street) {
    case Street::kFlop:
      return Count<deck, 3>(isa, hands, dead, times);
    case Street::kTurn:
      return Count<deck, 4>(isa, hands, dead, times);
    default:
      return Count<deck, 5>(isa, hands, dead, times);
  }
}

// Hands that have some cards of the first suit, and the rest of the others. Which of these does not
// matter, only how many of them have a card of a rank left.
Showdown ShowdownOf(std::span<const RankedHand> hands) {
  Showdown showdown = NewShowdown<Deck::kFull, 5>();
  showdown.live.fill(kAllRanks);
  const auto take = [&](RankSet card) {
    for (const std::size_t suit : std::array<std::size_t, 4>{1, 2, 3, 0}) {
      if ((showdown.live[suit] & card) == 0) continue;
      showdown.live[suit] = static_cast<RankSet>(showdown.live[suit] & ~card);
      return;
    }
  };
  for (const RankedHand& ranked : hands) {
    Hand hand = HandOf<Deck::kFull, 5>(ranked.rank_class);
    hand.held[0] = ranked.held;
    showdown.hands.push_back(hand);
    showdown.live[0] = static_cast<RankSet>(showdown.live[0] & ~ranked.held);
    const auto [low, high] = RanksOf(ranked.rank_class);
    if ((ranked.held >> low & 1) == 0) take(static_cast<RankSet>(1u << low));
    // Of a pair the lower card is the one that the suit has.
    if (low == high || (ranked.held >> high & 1) == 0) take(static_cast<RankSet>(1u << high));
  }
  return showdown;
}

}  // namespace

void CountByRanks(Isa isa, std::span<const RankedHand> hands, std::span<std::int64_t> times) {
  Showdown showdown = ShowdownOf(hands);
  showdown.suits = 0;
  Count(isa, showdown, 0, times);
}

void CountSuit(Isa isa, std::span<const RankedHand> hands, std::span<std::int64_t> times) {
  Showdown showdown = ShowdownOf(hands);
  showdown.by_ranks = false;
  showdown.suits = 1;
  Count(isa, showdown, 0, times);
}

void CountSeveralHands(Isa isa, Deck deck, std::span<const CardSet> hands, CardSet dead,
                       Street street, std::span<std::int64_t> times) {
  POKERMATH_REQUIRE(2 <= hands.size() && hands.size() <= kMostHands);
  POKERMATH_REQUIRE(times.size() == std::size_t{1} << hands.size());
  if (deck == Deck::kShort) return Count<Deck::kShort>(isa, hands, dead, street, times);
  Count<Deck::kFull>(isa, hands, dead, street, times);
}

}  // namespace pokermath
