// The hands of both ranges are taken from weak to strong, level by level. What a hand beats is the
// weight of the other range's hands so far that share no card with it, by inclusion and exclusion:
//
//   all - those with one of its cards + with two - with three + the same hand
//
// For every set of up to three cards the weight of the hands that hold it is kept, in tensors of
// suits like those of the hands, so that these sums are made for a block of sixteen hands at once.
// They are asked for before a level's hands are put in, and once more behind it. The same hand is
// on the same level, so its term counts only then.
//
// Without a flush a level is some whole classes. Where the board has three cards of a suit, hands
// with two of it leave the blocks by masks, as those do that share a card with the board, but for
// classes that have a full house or better. The flushes are hands in groups by their two highest
// cards of the suit, which decide: rising groups are rising levels, and two hands of a group share
// cards. So are the hands with the same straight flush, which come last.
//
// Sums are 32 bits wide, modulo 2^32: what they add up to is never more than a range weighs.

#include "kernels/omaha_sweep.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "eval/omaha_best.h"
#include "kernels/registers.h"
#include "platform/require.h"

namespace pokermath {
namespace {

static_assert(std::uint64_t{270725} * kWholeWeight < std::uint64_t{1} << 32,
              "every hand with the largest weight fits into 32 bits");

using Weight = std::uint32_t;
constexpr int kNoSuit = 4;
constexpr int kBestFlush = 7140;  // full houses begin above it, straights end below all flushes
constexpr std::size_t kValues = 7463;
constexpr std::size_t kMeasures = 2;  // below, not above

struct alignas(64) Lanes {
  std::array<Weight, kBlockLanes> of;
};

// For every set of up to three cards, what the hands so far that hold it weigh.
struct Inserted {
  alignas(64) std::array<Weight, kTriplePlaces> triples;
  alignas(64) std::array<Weight, kPairPlaces> pairs;
  alignas(64) std::array<Weight, kSinglePlaces> singles;
  Weight all;
};

// --- blocks of sixteen: rows are the suits of the third card, columns those of the last ---

using Four = Weight __attribute__((vector_size(16)));
using Eight = Weight __attribute__((vector_size(32)));

template <typename Register>
struct Block {
  static constexpr std::size_t kParts = sizeof(Lanes) / sizeof(Register);
  static constexpr std::size_t kSize = kBlockLanes / kParts;
  Register part[kParts];
};

// Register by register: the compiler copies larger objects in smaller parts.
template <typename Vector>
POKERMATH_KERNEL void Read(Vector& to, const void* from) {
  std::memcpy(&to, from, sizeof to);
}
template <typename Register>
POKERMATH_KERNEL void Read(Block<Register>& to, const Weight* from) {
  for (std::size_t i = 0; i < to.kParts; ++i) {
    std::memcpy(&to.part[i], from + i * to.kSize, sizeof to.part[i]);
  }
}

// Four numbers as a block of equal rows, or of equal columns.
POKERMATH_KERNEL void SetRows(Block<Four>& block, const Four& four) {
  block.part[0] = __builtin_shufflevector(four, four, 0, 0, 0, 0);
  block.part[1] = __builtin_shufflevector(four, four, 1, 1, 1, 1);
  block.part[2] = __builtin_shufflevector(four, four, 2, 2, 2, 2);
  block.part[3] = __builtin_shufflevector(four, four, 3, 3, 3, 3);
}
POKERMATH_KERNEL void SetRows(Block<Eight>& block, const Four& four) {
  block.part[0] = __builtin_shufflevector(four, four, 0, 0, 0, 0, 1, 1, 1, 1);
  block.part[1] = __builtin_shufflevector(four, four, 2, 2, 2, 2, 3, 3, 3, 3);
}
POKERMATH_KERNEL void SetColumns(Block<Four>& block, const Four& four) {
  for (Four& part : block.part) part = four;
}
POKERMATH_KERNEL void SetColumns(Block<Eight>& block, const Four& four) {
  for (Eight& part : block.part) {
    part = __builtin_shufflevector(four, four, 0, 1, 2, 3, 0, 1, 2, 3);
  }
}
template <typename Register>
POKERMATH_KERNEL void Add(Block<Register>& block, const Block<Register>& other) {
  for (std::size_t i = 0; i < block.kParts; ++i) block.part[i] += other.part[i];
}
// Adds a block, or four numbers, to sums in memory.
template <typename Vector>
POKERMATH_KERNEL void AddTo(Weight* sums, const Vector& more) {
  Vector sum;
  std::memcpy(&sum, sums, sizeof sum);
  sum += more;
  std::memcpy(sums, &sum, sizeof sum);
}
template <typename Register>
POKERMATH_KERNEL void AddTo(Weight* sums, const Block<Register>& more) {
  for (std::size_t i = 0; i < more.kParts; ++i) AddTo(sums + i * more.kSize, more.part[i]);
}

template <typename Register>
POKERMATH_KERNEL void AddAll(Block<Register>& block, Weight number) {
  for (Register& part : block.part) part += number;
}
template <typename Register>
POKERMATH_KERNEL void Subtract(Block<Register>& block, const Block<Register>& other) {
  for (std::size_t i = 0; i < block.kParts; ++i) block.part[i] -= other.part[i];
}
template <typename Register>
POKERMATH_KERNEL void AddRows(Block<Register>& block, const Weight* four) {
  Four numbers;
  Read(numbers, four);
  Block<Register> rows;
  SetRows(rows, numbers);
  Add(block, rows);
}
template <typename Register>
POKERMATH_KERNEL void AddColumns(Block<Register>& block, const Weight* four) {
  Four numbers;
  Read(numbers, four);
  Block<Register> columns;
  SetColumns(columns, numbers);
  Add(block, columns);
}
template <typename Register>
POKERMATH_KERNEL void TakeRowsAndColumns(Block<Register>& block, const Weight* rows,
                                         const Weight* columns) {
  Four numbers;
  Block<Register> taken, more;
  Read(numbers, rows);
  SetRows(taken, numbers);
  Read(numbers, columns);
  SetColumns(more, numbers);
  Add(taken, more);
  Subtract(block, taken);
}
template <typename Register>
POKERMATH_KERNEL void Take(Block<Register>& block, const Weight* sixteen) {
  Block<Register> taken;
  Read(taken, sixteen);
  Subtract(block, taken);
}

alignas(64) constexpr std::array<Weight, kBlockLanes> kLaneBits = [] {
  std::array<Weight, kBlockLanes> bits{};
  for (std::size_t i = 0; i < kBlockLanes; ++i) bits[i] = Weight{1} << i;
  return bits;
}();

// All ones in the lanes of a mask.
template <typename Register>
POKERMATH_KERNEL void SetMask(Block<Register>& block, Weight lanes) {
  Read(block, kLaneBits.data());
  for (Register& part : block.part) {
    part = reinterpret_cast<Register>((part & lanes) != 0);
  }
}
template <typename Register>
POKERMATH_KERNEL void Mask(Block<Register>& block, const Block<Register>& mask) {
  for (std::size_t i = 0; i < block.kParts; ++i) block.part[i] &= mask.part[i];
}

struct FourRows {
  Four row[4];
};
POKERMATH_KERNEL void Split(FourRows& rows, const Block<Four>& block) {
  for (std::size_t i = 0; i < 4; ++i) rows.row[i] = block.part[i];
}
POKERMATH_KERNEL void Split(FourRows& rows, const Block<Eight>& block) {
  for (std::size_t i = 0; i < 2; ++i) {
    const Eight& part = block.part[i];
    rows.row[2 * i] = __builtin_shufflevector(part, part, 0, 1, 2, 3);
    rows.row[2 * i + 1] = __builtin_shufflevector(part, part, 4, 5, 6, 7);
  }
}
// What each of four rows adds up to.
POKERMATH_KERNEL void SumRows(Four& sums, const FourRows& rows) {
  const auto& [a, b, c, d] = rows.row;
  const Four ab =
      __builtin_shufflevector(a, b, 0, 4, 1, 5) + __builtin_shufflevector(a, b, 2, 6, 3, 7);
  const Four cd =
      __builtin_shufflevector(c, d, 0, 4, 1, 5) + __builtin_shufflevector(c, d, 2, 6, 3, 7);
  sums = __builtin_shufflevector(ab, cd, 0, 1, 4, 5) + __builtin_shufflevector(ab, cd, 2, 3, 6, 7);
}
POKERMATH_KERNEL void SumColumns(Four& sums, const FourRows& rows) {
  sums = (rows.row[0] + rows.row[1]) + (rows.row[2] + rows.row[3]);
}

// --- a class on a board ---

// Bits for pairs of suits, first * 4 + second: of the first card, and of the second.
constexpr unsigned RowsOf(unsigned suits) {
  return ((suits & 1) | (suits & 2) << 3 | (suits & 4) << 6 | (suits & 8) << 9) * 15;
}
constexpr unsigned ColumnsOf(unsigned suits) { return suits * 0x1111; }

struct ClassOnBoard {
  const QuadClass* quad;
  std::uint16_t number;
  std::uint16_t value;
  // Blocks and lanes that take part. Lanes depend on which of the first two cards are of the flush
  // suit: the first one is worth 2, the second one 1.
  std::uint16_t blocks;
  std::array<std::uint16_t, 4> lanes;
};

// The lanes that take part, as masks: the first four for blocks whose first card is not of the
// flush suit, by the suit of the second. Without a flush there is one for all.
template <typename Register>
struct LaneMasks {
  Block<Register> of[8];
  unsigned flush_suit;

  POKERMATH_KERNEL const Block<Register>& For(unsigned first, unsigned second) const {
    return of[flush_suit == kNoSuit ? 0 : (first == flush_suit ? 4 : 0) + second];
  }
};
template <typename Register>
POKERMATH_KERNEL void SetMasks(LaneMasks<Register>& masks, const ClassOnBoard& of,
                               unsigned flush_suit) {
  masks.flush_suit = flush_suit;
  SetMask(masks.of[0], of.lanes[0]);
  if (flush_suit == kNoSuit) return;
  SetMask(masks.of[4], of.lanes[2]);
  for (unsigned second = 1; second < 4; ++second) {
    masks.of[second] = masks.of[0];
    masks.of[4 + second] = masks.of[4];
  }
  SetMask(masks.of[flush_suit], of.lanes[1]);
  SetMask(masks.of[4 + flush_suit], of.lanes[3]);
}

// Calls visit(first, second, sums) for the given blocks of a class: what the inserted hands weigh
// that share no card with each hand, without the term of the same hand.
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachBlock(const QuadClass& quad, const Inserted& in, unsigned blocks,
                                   const Visit& visit) {
  const Weight* const pairs = in.pairs.data();
  const Weight* const triples = in.triples.data();
  const Weight* const singles = in.singles.data();
  Block<Register> of_both;
  Read(of_both, pairs + quad.pair23);
  AddAll(of_both, in.all);
  TakeRowsAndColumns(of_both, singles + quad.single[2], singles + quad.single[3]);
  Block<Register> of_second[4];
  const unsigned columns = blocks | blocks >> 4 | blocks >> 8 | blocks >> 12;
  for (std::size_t suit = 0; suit < 4; ++suit) {
    if ((columns >> suit & 1) == 0) continue;
    Block<Register> sums = of_both;
    AddAll(sums, -singles[quad.single[1] + suit]);
    AddRows(sums, pairs + quad.pair12 + suit * 4);
    AddColumns(sums, pairs + quad.pair13 + suit * 4);
    Take(sums, triples + quad.triple123 + suit * 16);
    of_second[suit] = sums;
  }
  const Weight* pair01 = pairs + quad.pair01;
  const Weight* triple012 = triples + quad.triple012;
  const Weight* triple013 = triples + quad.triple013;
  for (unsigned first = 0; first < 4; ++first) {
    if (unsigned row = blocks >> first * 4 & 15; row != 0) {
      Block<Register> of_first;
      Read(of_first, triples + quad.triple023 + first * 16);
      AddAll(of_first, singles[quad.single[0] + first]);
      Block<Register> added{};
      AddRows(added, pairs + quad.pair02 + first * 4);
      AddColumns(added, pairs + quad.pair03 + first * 4);
      Subtract(added, of_first);
      do {
        const auto second = static_cast<unsigned>(__builtin_ctz(row));
        Block<Register> sums = added;
        Add(sums, of_second[second]);
        AddAll(sums, pair01[second]);
        TakeRowsAndColumns(sums, triple012 + second * 4, triple013 + second * 4);
        visit(first, second, sums);
      } while ((row &= row - 1) != 0);
    }
    pair01 += 4;
    triple012 += 16;
    triple013 += 16;
  }
}

// Puts in blocks of a class, which weights(first, second, block) reads.
template <typename Register, typename Weights>
POKERMATH_KERNEL void InsertBlocks(const QuadClass& quad, Inserted& in, unsigned blocks,
                                   const Weights& weights) {
  Weight* const pairs = in.pairs.data();
  Weight* const triples = in.triples.data();
  Weight* const singles = in.singles.data();
  Weight* triple012 = triples + quad.triple012;
  Weight* triple013 = triples + quad.triple013;
  Weight* const triple123 = triples + quad.triple123;
  Weight* const pair12 = pairs + quad.pair12;
  Weight* const pair13 = pairs + quad.pair13;
  Block<Register> of_all{};
  FourRows of_pair01{};
  Four all_rows{}, all_columns{};
  for (unsigned first = 0; first < 4; ++first) {
    if (unsigned row = blocks >> first * 4 & 15; row != 0) {
      Block<Register> of_first{};
      FourRows by_second{};
      Four first_rows{};
      do {
        const auto second = static_cast<unsigned>(__builtin_ctz(row));
        Block<Register> block;
        weights(first, second, block);
        Add(of_first, block);
        AddTo(triple123 + second * 16, block);
        FourRows of_rows;
        Split(of_rows, block);
        Four sums;
        SumRows(sums, of_rows);
        AddTo(triple012 + second * 4, sums);
        AddTo(pair12 + second * 4, sums);
        first_rows += sums;
        SumColumns(sums, of_rows);
        AddTo(triple013 + second * 4, sums);
        AddTo(pair13 + second * 4, sums);
        by_second.row[second] = sums;
      } while ((row &= row - 1) != 0);
      AddTo(triples + quad.triple023 + first * 16, of_first);
      Add(of_all, of_first);
      AddTo(pairs + quad.pair02 + first * 4, first_rows);
      all_rows += first_rows;
      Four first_columns;
      SumColumns(first_columns, by_second);
      AddTo(pairs + quad.pair03 + first * 4, first_columns);
      all_columns += first_columns;
      SumRows(of_pair01.row[first], by_second);
      AddTo(pairs + quad.pair01 + first * 4, of_pair01.row[first]);
    }
    triple012 += 16;
    triple013 += 16;
  }
  AddTo(pairs + quad.pair23, of_all);
  Four sums;
  SumRows(sums, of_pair01);
  AddTo(singles + quad.single[0], sums);
  in.all += sums[0] + sums[1] + sums[2] + sums[3];
  SumColumns(sums, of_pair01);
  AddTo(singles + quad.single[1], sums);
  AddTo(singles + quad.single[2], all_rows);
  AddTo(singles + quad.single[3], all_columns);
}

// --- a level ---

// Sums of every hand, in blocks; as wide as a board makes them.
using Counts = std::vector<Lanes>;

struct Sweeping {
  const OmahaTensors& ranges;
  std::array<Inserted*, 2> inserted;
  std::array<Lanes*, 2> below, not_above;
  unsigned flush_suit;
};

using Level = std::span<const ClassOnBoard>;

// Calls visit(class, blocks, masks) for the classes of a level of which a range has blocks.
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachClass(const OmahaTensor& range, Level level, unsigned flush_suit,
                                   const Visit& visit) {
  for (const ClassOnBoard& of : level) {
    const unsigned live = range.BlocksOf(of.number).held & of.blocks;
    if (live == 0) continue;
    LaneMasks<Register> masks;
    SetMasks(masks, of, flush_suit);
    visit(of, live, masks);
  }
}

// What the hands of a side beat, and with no ties to come do not lose to.
template <typename Register>
POKERMATH_KERNEL void AddBelow(const Sweeping& sweeping, std::size_t side, Level level, bool ties) {
  const OmahaTensor& range = sweeping.ranges[side];
  Lanes* const all_below = sweeping.below[side];
  Lanes* const all_not_above = sweeping.not_above[side];
  ForEachClass<Register>(
      range, level, sweeping.flush_suit,
      [&](const ClassOnBoard& of, unsigned live, const LaneMasks<Register>& masks) {
        const OmahaTensor::Blocks blocks = range.BlocksOf(of.number);
        ForEachBlock<Register>(*of.quad, *sweeping.inserted[1 - side], live,
                               [&](unsigned first, unsigned second, Block<Register>& sums) {
                                 Mask(sums, masks.For(first, second));
                                 const std::size_t place = blocks.Of(first * 4 + second);
                                 AddTo(all_below[place].of.data(), sums);
                                 if (!ties) AddTo(all_not_above[place].of.data(), sums);
                               });
      });
}

template <typename Register>
POKERMATH_KERNEL void AddNotAbove(const Sweeping& sweeping, std::size_t side, Level level) {
  const OmahaTensor& range = sweeping.ranges[side];
  const std::uint32_t* const weights = sweeping.ranges[1 - side].weights().data();
  const std::uint32_t* const twins = range.twins().data();
  Lanes* const all_not_above = sweeping.not_above[side];
  ForEachClass<Register>(
      range, level, sweeping.flush_suit,
      [&](const ClassOnBoard& of, unsigned live, const LaneMasks<Register>& masks) {
        const OmahaTensor::Blocks blocks = range.BlocksOf(of.number);
        ForEachBlock<Register>(*of.quad, *sweeping.inserted[1 - side], live,
                               [&](unsigned first, unsigned second, Block<Register>& sums) {
                                 const std::size_t place = blocks.Of(first * 4 + second);
                                 Block<Register> same;
                                 Read(same, weights + twins[place] * kBlockLanes);
                                 Add(sums, same);
                                 Mask(sums, masks.For(first, second));
                                 AddTo(all_not_above[place].of.data(), sums);
                               });
      });
}

template <typename Register>
POKERMATH_KERNEL void Insert(const Sweeping& sweeping, std::size_t side, Level level) {
  const OmahaTensor& range = sweeping.ranges[side];
  const std::uint32_t* const all_weights = range.weights().data();
  ForEachClass<Register>(
      range, level, sweeping.flush_suit,
      [&](const ClassOnBoard& of, unsigned live, const LaneMasks<Register>& masks) {
        const OmahaTensor::Blocks blocks = range.BlocksOf(of.number);
        InsertBlocks<Register>(*of.quad, *sweeping.inserted[side], live,
                               [&](unsigned first, unsigned second, Block<Register>& weights) {
                                 Read(weights,
                                      all_weights + blocks.Of(first * 4 + second) * kBlockLanes);
                                 Mask(weights, masks.For(first, second));
                               });
      });
}

template <typename Register>
POKERMATH_KERNEL void SweepLevel(const Sweeping& sweeping, Level level) {
  const auto meets = [&](std::size_t side) {
    return std::ranges::any_of(level, [&](const ClassOnBoard& of) {
      return (sweeping.ranges[side].BlocksOf(of.number).held & of.blocks) != 0;
    });
  };
  const bool ties = meets(0) && meets(1);
  for (const std::size_t side : {0u, 1u}) AddBelow<Register>(sweeping, side, level, ties);
  for (const std::size_t side : {0u, 1u}) Insert<Register>(sweeping, side, level);
  if (!ties) return;
  for (const std::size_t side : {0u, 1u}) AddNotAbove<Register>(sweeping, side, level);
}

using SweepLevelFunction = void (*)(const Sweeping& sweeping, Level level);

void SweepLevelBaseline(const Sweeping& sweeping, Level level) {
  SweepLevel<Four>(sweeping, level);
}
POKERMATH_TARGET_AVX2 void SweepLevelAvx2(const Sweeping& sweeping, Level level) {
  SweepLevel<Eight>(sweeping, level);
}

// --- straight flushes ---

// The pairs of cards of a suit that make a straight flush with three of the board, rising.
class StraightFlushes {
 public:
  void Set(unsigned board) {
    count_ = 0;
    for (int low = -1; low <= 8; ++low) {
      const unsigned five = low < 0 ? 0x100Fu : 0x1Fu << low;
      const unsigned missing = five & ~board;
      if (std::popcount(missing) == 2) missing_[count_++] = static_cast<RankSet>(missing);
    }
  }
  std::span<const RankSet> missing() const { return std::span(missing_).first(count_); }
  /// The number of the best one that some ranks of the suit make, or -1.
  int BestOf(RankSet ranks) const {
    for (std::size_t i = count_; i-- > 0;) {
      if ((missing_[i] & ~ranks) == 0) return static_cast<int>(i);
    }
    return -1;
  }

 private:
  std::array<RankSet, 10> missing_{};
  std::size_t count_ = 0;
};

// What is inserted without two cards of a suit, for every third one.
struct WithoutPair {
  Weight all;
  std::array<Weight, 52> singles;
};

}  // namespace

struct OmahaSweep::State {
  State(Isa isa, const OmahaTensors& of_ranges);

  void Count(CardSet board);
  void CountAll();
  std::vector<OmahaCounts> CountsOf(std::size_t side);

 private:
  struct SuitedOfSide {
    const SuitedHand* hand;
    std::size_t side;
    int straight_flush;
  };

  void MakeRoom();
  void Spread(std::size_t side);
  void SetBoard(CardSet board);
  void SetClasses(CardSet board);
  void Clear();
  void SweepClasses(std::span<const ClassOnBoard> classes);
  void SweepFlushes();
  void SweepGroup(std::size_t side, std::size_t pair, const std::array<WithoutPair, 2>& without);
  void InsertGroup(std::size_t side, std::size_t pair);
  void SweepStraightFlushes();
  bool IsOnBoard(int card) const { return board_.Contains(card); }

  const OmahaTensors& ranges_;
  SweepLevelFunction sweep_level_;
  std::unique_ptr<std::array<Inserted, 2>> inserted_ = std::make_unique<std::array<Inserted, 2>>();

  CardSet board_;
  unsigned flush_suit_ = kNoSuit;
  StraightFlushes straight_flushes_;
  std::vector<ClassOnBoard> classes_;  // by rising values
  std::vector<bool> full_;             // by class: a full house or better
  std::array<WithoutPair, 2> added_{};
  std::vector<SuitedOfSide> with_straight_flush_;

  // By side, of those boards that are not in wide_.
  std::array<std::array<Counts, kMeasures>, 2> narrow_;
  std::array<std::vector<Weight>, 2> of_suited_;  // for both measures
  std::array<std::array<std::vector<std::uint64_t>, kMeasures>, 2> wide_;
  std::uint64_t boards_of_room_ = 1;  // boards that 32 bits have room for
  std::uint64_t boards_ = 0;
};

OmahaSweep::State::State(Isa isa, const OmahaTensors& of_ranges)
    : ranges_(of_ranges),
      sweep_level_(isa == Isa::kBaseline ? SweepLevelBaseline : SweepLevelAvx2),
      full_(kQuadClasses) {
  std::uint64_t most = 1;
  for (const std::size_t side : {0u, 1u}) {
    most = std::max(most, ranges_[side].weight());
    for (Counts& counts : narrow_[side]) counts.resize(ranges_[side].blocks());
    of_suited_[side].resize(ranges_[side].suited().size());
  }
  POKERMATH_REQUIRE(most <= ~Weight{0});
  boards_of_room_ = ~Weight{0} / most;
}

// Adds what flushes have won to the sums of their hands.
void OmahaSweep::State::Spread(std::size_t side) {
  const std::span<const SuitedHand> suited = ranges_[side].suited();
  for (std::size_t i = 0; i < suited.size(); ++i) {
    for (Counts& counts : narrow_[side]) {
      counts[suited[i].place / kBlockLanes].of[suited[i].place % kBlockLanes] +=
          of_suited_[side][i];
    }
  }
  std::ranges::fill(of_suited_[side], Weight{0});
}

// Moves sums to 64 bits before they do not fit into 32.
void OmahaSweep::State::MakeRoom() {
  if (boards_++ < boards_of_room_) return;
  boards_ = 1;
  for (const std::size_t side : {0u, 1u}) {
    Spread(side);
    for (std::size_t measure = 0; measure < kMeasures; ++measure) {
      Counts& narrow = narrow_[side][measure];
      std::vector<std::uint64_t>& wide = wide_[side][measure];
      wide.resize(narrow.size() * kBlockLanes);
      for (std::size_t i = 0; i < narrow.size(); ++i) {
        for (std::size_t lane = 0; lane < kBlockLanes; ++lane) {
          wide[i * kBlockLanes + lane] += narrow[i].of[lane];
        }
      }
      std::ranges::fill(narrow, Lanes{});
    }
  }
}

std::vector<OmahaCounts> OmahaSweep::State::CountsOf(std::size_t side) {
  Spread(side);
  const auto count = [&](std::size_t measure, std::uint32_t place) {
    const std::vector<std::uint64_t>& wide = wide_[side][measure];
    return (wide.empty() ? 0 : wide[place]) +
           narrow_[side][measure][place / kBlockLanes].of[place % kBlockLanes];
  };
  std::vector<OmahaCounts> counts;
  counts.reserve(ranges_[side].size());
  for (const std::uint32_t place : ranges_[side].places()) {
    counts.push_back({count(0, place), count(1, place)});
  }
  return counts;
}

void OmahaSweep::State::Clear() {
  // Without the constructor, which would do it on the stack.
  std::memset(static_cast<void*>(inserted_.get()), 0, sizeof *inserted_);
}

void OmahaSweep::State::SetBoard(CardSet board) {
  board_ = board;
  flush_suit_ = kNoSuit;
  for (unsigned suit = 0; suit < 4; ++suit) {
    const auto ranks = static_cast<unsigned>(board.bits() >> 13 * suit & kAllRanks);
    if (std::popcount(ranks) < 3) continue;
    flush_suit_ = suit;
    straight_flushes_.Set(ranks);
  }
}

// The values of all classes, sorted by counting.
void OmahaSweep::State::SetClasses(CardSet board) {
  const std::vector<int> cards(board.begin(), board.end());
  const OmahaPairValues values(cards);
  std::array<std::uint16_t, MultisetsOf(2)> of_ranks;
  for (std::size_t high = 0, i = 0; high < 13; ++high) {
    for (std::size_t low = 0; low <= high; ++low, ++i) {
      // Of two suits, so there is no flush.
      of_ranks[i] =
          static_cast<std::uint16_t>(values.Of(static_cast<int>(high), 13 + static_cast<int>(low)));
    }
  }
  std::array<std::uint8_t, 13> free;  // suits, by rank
  for (std::size_t rank = 0; rank < 13; ++rank) {
    unsigned suits = 0;
    for (unsigned suit = 0; suit < 4; ++suit) {
      suits |= (board.Contains(static_cast<int>(13 * suit + rank)) ? 0u : 1u) << suit;
    }
    free[rank] = static_cast<std::uint8_t>(suits);
  }
  const std::span<const std::uint16_t> numbers = ranges_.classes();
  std::array<std::uint16_t, kQuadClasses> of_class;
  std::array<std::uint64_t, kValues / 64 + 1> occurs{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::array<std::uint8_t, 6>& pairs = QuadClasses()[numbers[i]].rank_pairs;
    std::uint16_t value = of_ranks[pairs[0]];
    for (std::size_t j = 1; j < 6; ++j) value = std::max(value, of_ranks[pairs[j]]);
    of_class[i] = value;
    occurs[value / 64] |= std::uint64_t{1} << value % 64;
  }
  std::array<std::uint16_t, kValues / 64 + 1> values_before;
  std::size_t levels = 0;
  for (std::size_t i = 0; i < occurs.size(); ++i) {
    values_before[i] = static_cast<std::uint16_t>(levels);
    levels += static_cast<std::size_t>(std::popcount(occurs[i]));
  }
  const auto level_of = [&](std::uint16_t value) {
    const std::uint64_t below = (std::uint64_t{1} << value % 64) - 1;
    return values_before[value / 64] +
           static_cast<std::size_t>(std::popcount(occurs[value / 64] & below));
  };
  std::array<std::uint16_t, MultisetsOf(2) + 1> next{};
  for (std::size_t i = 0; i < numbers.size(); ++i) ++next[level_of(of_class[i]) + 1];
  for (std::size_t i = 0; i < levels; ++i)
    next[i + 1] = static_cast<std::uint16_t>(next[i + 1] + next[i]);
  classes_.resize(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const QuadClass& quad = QuadClasses()[numbers[i]];
    const bool full = of_class[i] > kBestFlush;
    full_[numbers[i]] = full;
    ClassOnBoard& of = classes_[next[level_of(of_class[i])]++];
    of.quad = &quad;
    of.number = numbers[i];
    of.value = of_class[i];
    of.blocks =
        static_cast<std::uint16_t>(RowsOf(free[quad.ranks[0]]) & ColumnsOf(free[quad.ranks[1]]));
    const unsigned lanes = RowsOf(free[quad.ranks[2]]) & ColumnsOf(free[quad.ranks[3]]);
    of.lanes.fill(static_cast<std::uint16_t>(lanes));
    if (flush_suit_ == kNoSuit) continue;
    const unsigned suit = 1u << flush_suit_;
    const unsigned row = RowsOf(suit), column = ColumnsOf(suit);
    const auto take = [&](std::initializer_list<std::size_t> of_first, unsigned taken) {
      for (const std::size_t i_of : of_first)
        of.lanes[i_of] = static_cast<std::uint16_t>(of.lanes[i_of] & ~taken);
    };
    if (!full) {
      take({0}, row & column);
      take({1, 2}, row | column);
      take({3}, 0xFFFF);
      continue;
    }
    for (const RankSet missing : straight_flushes_.missing()) {
      const auto is = [missing](std::uint8_t rank) { return (missing >> rank & 1) != 0; };
      const auto pair = [&](std::size_t a, std::size_t b) {
        return quad.ranks[a] != quad.ranks[b] && is(quad.ranks[a]) && is(quad.ranks[b]);
      };
      if (pair(0, 1)) take({3}, 0xFFFF);
      if (pair(0, 2)) take({2, 3}, row);
      if (pair(0, 3)) take({2, 3}, column);
      if (pair(1, 2)) take({1, 3}, row);
      if (pair(1, 3)) take({1, 3}, column);
      if (pair(2, 3)) take({0, 1, 2, 3}, row & column);
    }
  }
}

void OmahaSweep::State::SweepClasses(std::span<const ClassOnBoard> classes) {
  Sweeping sweeping = {ranges_, {&(*inserted_)[0], &(*inserted_)[1]}, {}, {}, flush_suit_};
  for (const std::size_t side : {0u, 1u}) {
    sweeping.below[side] = narrow_[side][0].data();
    sweeping.not_above[side] = narrow_[side][1].data();
  }
  while (!classes.empty()) {
    const auto end = std::ranges::find_if(
        classes, [&](const ClassOnBoard& of) { return of.value != classes[0].value; });
    const auto size = static_cast<std::size_t>(end - classes.begin());
    sweep_level_(sweeping, classes.first(size));
    classes = classes.subspan(size);
  }
}

void OmahaSweep::State::SweepGroup(std::size_t side, std::size_t pair,
                                   const std::array<WithoutPair, 2>& without) {
  const OmahaTensor& range = ranges_[side];
  const WithoutPair& other = without[1 - side];
  const Inserted& of_other = (*inserted_)[1 - side];
  Inserted& own = (*inserted_)[side];
  WithoutPair& added = added_[side];
  const std::span<const SuitedHand> group = range.Suited(flush_suit_, pair);
  Weight* const sums = of_suited_[side].data();
  const bool may_be_straight = !straight_flushes_.missing().empty();
  for (const SuitedHand& hand : group) {
    if (IsOnBoard(hand.card1) || IsOnBoard(hand.card2)) continue;
    if (may_be_straight) {
      const int straight_flush = straight_flushes_.BestOf(hand.suited);
      if (straight_flush >= 0) {
        with_straight_flush_.push_back({&hand, side, straight_flush});
        continue;
      }
    }
    if (full_[hand.quad_class]) continue;
    Weight below = other.all - other.singles[hand.card1] - other.singles[hand.card2] +
                   of_other.pairs[hand.pair] - of_other.triples[hand.triple1] -
                   of_other.triples[hand.triple2];
    // The first range has this group's hands put in already: of those without a card of this
    // one there are none, but the term of the same hand is missing.
    if (side == 1) below += hand.same;
    sums[&hand - range.suited().data()] += below;
    own.pairs[hand.pair] += hand.weight;
    own.triples[hand.triple1] += hand.weight;
    own.triples[hand.triple2] += hand.weight;
    added.all += hand.weight;
    added.singles[hand.card1] += hand.weight;
    added.singles[hand.card2] += hand.weight;
  }
}

// The sets of the hands of a group that hold one or both of its two cards, but for those with both
// of the others.
void OmahaSweep::State::InsertGroup(std::size_t side, std::size_t pair) {
  WithoutPair& added = added_[side];
  if (added.all == 0) return;
  Inserted& in = (*inserted_)[side];
  const SuitedPairPlaces& places = PlacesOf(flush_suit_, pair);
  for (std::size_t card = 0; card < 52; ++card) {
    const Weight weight = added.singles[card];
    if (weight == 0) continue;
    in.singles[SinglePlace(static_cast<int>(card))] += weight;
    in.pairs[places.pair1[card]] += weight;
    in.pairs[places.pair2[card]] += weight;
    in.triples[places.triple[card]] += weight;
    added.singles[card] = 0;
  }
  in.all += added.all;
  for (const std::uint16_t single : places.singles) in.singles[single] += added.all;
  in.pairs[places.both] += added.all;
  added.all = 0;
}

namespace {

Weight AllWithout(const Inserted& in, const SuitedPairPlaces& places) {
  return in.all - in.singles[places.singles[0]] - in.singles[places.singles[1]] +
         in.pairs[places.both];
}
Weight SingleWithout(const Inserted& in, const SuitedPairPlaces& places, std::size_t card) {
  return in.singles[SinglePlace(static_cast<int>(card))] - in.pairs[places.pair1[card]] -
         in.pairs[places.pair2[card]] + in.triples[places.triple[card]];
}

}  // namespace

void OmahaSweep::State::SweepFlushes() {
  with_straight_flush_.clear();
  std::array<WithoutPair, 2> without;
  for (std::size_t high = 1, pair = 0; high < 13; ++high) {
    for (std::size_t low = 0; low < high; ++low, ++pair) {
      const bool blocked = IsOnBoard(static_cast<int>(flush_suit_ * 13 + high)) ||
                           IsOnBoard(static_cast<int>(flush_suit_ * 13 + low));
      if (blocked || (ranges_[0].Suited(flush_suit_, pair).empty() &&
                      ranges_[1].Suited(flush_suit_, pair).empty())) {
        continue;
      }
      const SuitedPairPlaces& places = PlacesOf(flush_suit_, pair);
      for (const std::size_t side : {0u, 1u}) {
        const Inserted& in = (*inserted_)[side];
        without[side].all = AllWithout(in, places);
        for (std::size_t card = 0; card < 52; ++card) {
          without[side].singles[card] = SingleWithout(in, places, card);
        }
      }
      for (const std::size_t side : {0u, 1u}) SweepGroup(side, pair, without);
      for (const std::size_t side : {0u, 1u}) InsertGroup(side, pair);
    }
  }
}

// Every hand as a group of its own. Those with the same straight flush share cards.
void OmahaSweep::State::SweepStraightFlushes() {
  std::ranges::stable_sort(with_straight_flush_, {}, [](const SuitedOfSide& of) {
    return std::pair(of.straight_flush, of.side);
  });
  for (const SuitedOfSide& of : with_straight_flush_) {
    const SuitedHand& hand = *of.hand;
    const int high = std::bit_width(hand.suited) - 1;
    const int low = std::bit_width(hand.suited ^ 1u << high) - 1;
    const auto pair = static_cast<std::size_t>(high * (high - 1) / 2 + low);
    const SuitedPairPlaces& places = PlacesOf(flush_suit_, pair);
    const Inserted& of_other = (*inserted_)[1 - of.side];
    Weight below = AllWithout(of_other, places) - SingleWithout(of_other, places, hand.card1) -
                   SingleWithout(of_other, places, hand.card2) + of_other.pairs[hand.pair] -
                   of_other.triples[hand.triple1] - of_other.triples[hand.triple2];
    if (of.side == 1) below += hand.same;
    of_suited_[of.side][static_cast<std::size_t>(&hand - ranges_[of.side].suited().data())] +=
        below;
    Inserted& own = (*inserted_)[of.side];
    own.pairs[hand.pair] += hand.weight;
    own.triples[hand.triple1] += hand.weight;
    own.triples[hand.triple2] += hand.weight;
    added_[of.side].all = hand.weight;
    added_[of.side].singles[hand.card1] = added_[of.side].singles[hand.card2] = hand.weight;
    InsertGroup(of.side, pair);
  }
}

void OmahaSweep::State::Count(CardSet board) {
  MakeRoom();
  SetBoard(board);
  SetClasses(board);
  Clear();
  std::span<const ClassOnBoard> classes = classes_;
  if (flush_suit_ == kNoSuit) return SweepClasses(classes);
  const auto full =
      std::ranges::find_if(classes, [](const ClassOnBoard& of) { return of.value > kBestFlush; });
  const auto below = static_cast<std::size_t>(full - classes.begin());
  SweepClasses(classes.first(below));
  SweepFlushes();
  SweepClasses(classes.subspan(below));
  SweepStraightFlushes();
}

void OmahaSweep::State::CountAll() {
  MakeRoom();
  SetBoard({});
  classes_.clear();
  for (const std::uint16_t number : ranges_.classes()) {
    constexpr std::uint16_t kAll = 0xFFFF;
    classes_.push_back({&QuadClasses()[number], number, 0, kAll, {kAll, kAll, kAll, kAll}});
  }
  Clear();
  SweepClasses(classes_);
}

OmahaSweep::OmahaSweep(Isa isa, const OmahaTensors& ranges)
    : state_(std::make_unique<State>(isa, ranges)) {}
OmahaSweep::~OmahaSweep() = default;
void OmahaSweep::Count(CardSet board) { state_->Count(board); }
void OmahaSweep::CountAll() { state_->CountAll(); }
std::vector<OmahaCounts> OmahaSweep::CountsOf(std::size_t side) { return state_->CountsOf(side); }

}  // namespace pokermath
