// Arithmetic on blocks of sixteen hands: what is inserted so far that shares no card with each, and
// inserting them.
//
// By inclusion and exclusion over the cards a, b, c, d of a hand, what shares none of them is
//
//   all - (a + b + c + d) + (ab + ac + ad + bc + bd + cd) - (abc + abd + acd + bcd) + abcd
//
// where a set of cards stands for the weight of the inserted hands that hold it. A block has fixed
// suits of a and b. The terms without b are the same for all blocks with one suit of a, those
// without a for all with one suit of b. The last term, the same hand, is left to the caller.
//
// With a card h before these four it is the same sum twice: what shares none of the four, less what
// shares none of them but holds h. Sets of cards that hold h stand together for each suit of h.
//
// Sums are 32 bits wide, modulo 2^32: what they add up to is never more than a range weighs.

#ifndef POKERMATH_KERNELS_OMAHA_BLOCKS_H_
#define POKERMATH_KERNELS_OMAHA_BLOCKS_H_

#include <array>
#include <cstdint>
#include <cstring>

#include "kernels/omaha_board.h"
#include "kernels/omaha_tensors.h"
#include "kernels/registers.h"

namespace pokermath {

/// Modulo 2^32.
using Weight = std::uint32_t;
static_assert(std::uint64_t{270725} * kWholeWeight < std::uint64_t{1} << 32,
              "every hand of four cards with the largest weight fits into 32 bits");

struct alignas(64) Lanes {
  std::array<Weight, kBlockLanes> of;
};

/// For every set of fewer cards than a hand has, what the hands so far that hold it weigh.
template <std::size_t hand_size>
struct Inserted {
  alignas(64) std::array<Weight, kTriplePlaces> triples;
  alignas(64) std::array<Weight, kPairPlaces> pairs;
  alignas(64) std::array<Weight, kSinglePlaces> singles;
  Weight all;
};
template <>
struct Inserted<5> : Inserted<4> {
  alignas(64) std::array<Weight, kQuadPlaces> quads;
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
    part = reinterpret_cast<Register>((part & lanes) == part);
  }
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

POKERMATH_KERNEL Weight SumOf(const Four& four) {
  Four sums = four + __builtin_shufflevector(four, four, 2, 3, 0, 1);
  sums += __builtin_shufflevector(sums, sums, 1, 0, 3, 2);
  return sums[0];
}

// --- a class on a board ---

// The suits of the cards of a block.
struct BlockSuits {
  std::size_t head;  // of the first one of five, 0 for four
  std::size_t rest;  // of the two before the lanes, first * 4 + second

  std::size_t bit() const { return head * 16 + rest; }
};

// The lanes of a class that take part.
template <typename Register, std::size_t hand_size, bool with_flushes>
class LaneMasks {
 public:
  POKERMATH_KERNEL LaneMasks(const ClassOnBoard<hand_size>& of, unsigned flush_suit)
      : of_(of), flush_suit_(flush_suit) {
    SetMask(mask_, of.lanes[0]);
  }
  // Clears the others in a block.
  POKERMATH_KERNEL void Mask(const BlockSuits& at, Block<Register>& lanes) {
    if constexpr (with_flushes) {
      std::size_t of_suit =
          (at.rest / 4 == flush_suit_ ? 2u : 0u) + (at.rest % 4 == flush_suit_ ? 1u : 0u);
      if constexpr (hand_size > 4) of_suit += at.head == flush_suit_ ? 4 : 0;
      SetMask(mask_, of_.lanes[of_suit]);
    }
    for (std::size_t i = 0; i < lanes.kParts; ++i) lanes.part[i] &= mask_.part[i];
  }

 private:
  const ClassOnBoard<hand_size>& of_;
  unsigned flush_suit_;
  Block<Register> mask_;
};

// Where the sums stand for the sets of four cards of a class. Each is a tensor of suits.
template <typename Number>
struct SumsOfFour {
  Number* all;
  Number *single0, *single1, *single2, *single3;
  Number *pair01, *pair02, *pair03, *pair12, *pair13, *pair23;
  Number *triple012, *triple013, *triple023, *triple123;
};
// `In` is constant or not, and so are the sums.
template <typename In>
using NumberOf = std::conditional_t<std::is_const_v<In>, const Weight, Weight>;

// Of the cards of a hand of four, or of the last four of five.
template <typename In, std::size_t hand_size>
POKERMATH_KERNEL SumsOfFour<NumberOf<In>> SumsOfLastFour(In& in, const HandClass<hand_size>& of) {
  constexpr std::size_t k0 = hand_size - 4, k1 = k0 + 1, k2 = k0 + 2, k3 = k0 + 3;
  NumberOf<In>*const singles = in.singles.data(), *const pairs = in.pairs.data(),
                     *const triples = in.triples.data();
  return {&in.all,
          singles + of.TensorOf(k0),
          singles + of.TensorOf(k1),
          singles + of.TensorOf(k2),
          singles + of.TensorOf(k3),
          pairs + of.TensorOf(k0, k1),
          pairs + of.TensorOf(k0, k2),
          pairs + of.TensorOf(k0, k3),
          pairs + of.TensorOf(k1, k2),
          pairs + of.TensorOf(k1, k3),
          pairs + of.TensorOf(k2, k3),
          triples + of.TensorOf(k0, k1, k2),
          triples + of.TensorOf(k0, k1, k3),
          triples + of.TensorOf(k0, k2, k3),
          triples + of.TensorOf(k1, k2, k3)};
}
// The same of what holds the first one of five, with a suit.
template <typename In>
POKERMATH_KERNEL SumsOfFour<NumberOf<In>> SumsWithHead(In& in, const HandClass<5>& of,
                                                       unsigned head) {
  NumberOf<In>*const pairs = in.pairs.data() + head * 4,
                     *const triples = in.triples.data() + head * 16,
                     *const quads = in.quads.data() + head * 64;
  return {in.singles.data() + of.TensorOf(0) + head,
          pairs + of.TensorOf(0, 1),
          pairs + of.TensorOf(0, 2),
          pairs + of.TensorOf(0, 3),
          pairs + of.TensorOf(0, 4),
          triples + of.TensorOf(0, 1, 2),
          triples + of.TensorOf(0, 1, 3),
          triples + of.TensorOf(0, 1, 4),
          triples + of.TensorOf(0, 2, 3),
          triples + of.TensorOf(0, 2, 4),
          triples + of.TensorOf(0, 3, 4),
          quads + of.TensorOf(0, 1, 2, 3),
          quads + of.TensorOf(0, 1, 2, 4),
          quads + of.TensorOf(0, 1, 3, 4),
          quads + of.TensorOf(0, 2, 3, 4)};
}

// Calls visit(block, sums) for some blocks of four cards: what the inserted hands weigh that share
// no card with each hand, without the term of all four. Of five cards a class has few of them, so
// terms are worked out where they are needed.
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachOfFewBlocks(const SumsOfFour<const Weight>& in, unsigned blocks,
                                         const Visit& visit) {
  Block<Register> of_both;
  Read(of_both, in.pair23);
  AddAll(of_both, *in.all);
  TakeRowsAndColumns(of_both, in.single2, in.single3);
  Block<Register> of_second[4];
  const unsigned columns = blocks | blocks >> 4 | blocks >> 8 | blocks >> 12;
  for (std::size_t suit = 0; suit < 4; ++suit) {
    if ((columns >> suit & 1) == 0) continue;
    Block<Register> sums = of_both;
    AddAll(sums, -in.single1[suit]);
    AddRows(sums, in.pair12 + suit * 4);
    AddColumns(sums, in.pair13 + suit * 4);
    Take(sums, in.triple123 + suit * 16);
    of_second[suit] = sums;
  }
  const Weight* pair01 = in.pair01;
  const Weight* triple012 = in.triple012;
  const Weight* triple013 = in.triple013;
  for (unsigned first = 0; first < 4; ++first) {
    if (unsigned row = blocks >> first * 4 & 15; row != 0) {
      Block<Register> of_first;
      Read(of_first, in.triple023 + first * 16);
      AddAll(of_first, in.single0[first]);
      Block<Register> added{};
      AddRows(added, in.pair02 + first * 4);
      AddColumns(added, in.pair03 + first * 4);
      Subtract(added, of_first);
      do {
        const auto second = static_cast<unsigned>(__builtin_ctz(row));
        Block<Register> sums = added;
        Add(sums, of_second[second]);
        AddAll(sums, pair01[second]);
        TakeRowsAndColumns(sums, triple012 + second * 4, triple013 + second * 4);
        visit(std::size_t{first * 4 + second}, sums);
      } while ((row &= row - 1) != 0);
    }
    pair01 += 4;
    triple012 += 16;
    triple013 += 16;
  }
}

// The same of many blocks, one at least. All terms of the first and the second card are worked out,
// as which of them are asked for is hard to foresee.
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachOfManyBlocks(const SumsOfFour<const Weight>& in, unsigned blocks,
                                          const Visit& visit) {
  Block<Register> of_both;
  Read(of_both, in.pair23);
  AddAll(of_both, *in.all);
  TakeRowsAndColumns(of_both, in.single2, in.single3);
  Block<Register> of_first[4], of_second[4];
  for (std::size_t suit = 0; suit < 4; ++suit) {
    const auto set = [&](Block<Register>& sums, const Weight* row, const Weight* column,
                         Weight single, const Weight* triple) POKERMATH_INLINE {
      Four numbers;
      Block<Register> columns;
      Read(numbers, row);
      numbers -= single;
      SetRows(sums, numbers);
      Read(numbers, column);
      SetColumns(columns, numbers);
      Add(sums, columns);
      Take(sums, triple);
    };
    set(of_first[suit], in.pair02 + suit * 4, in.pair03 + suit * 4, in.single0[suit],
        in.triple023 + suit * 16);
    set(of_second[suit], in.pair12 + suit * 4, in.pair13 + suit * 4, in.single1[suit],
        in.triple123 + suit * 16);
    Add(of_second[suit], of_both);
  }
  do {
    const auto block = static_cast<std::size_t>(__builtin_ctz(blocks));
    Four of_row, column;
    Read(of_row, in.triple012 + block * 4);
    Read(column, in.triple013 + block * 4);
    of_row = in.pair01[block] - of_row;
    Block<Register> sums, columns;
    SetRows(sums, of_row);
    SetColumns(columns, column);
    Add(sums, of_first[block / 4]);
    Subtract(sums, columns);
    Add(sums, of_second[block % 4]);
    visit(block, sums);
  } while ((blocks &= blocks - 1) != 0);
}

// Calls visit(suits, sums) for the given blocks of a class: what the inserted hands weigh that
// share no card with each hand, without the term of the same hand.
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachBlock(const HandClass<4>& of, const Inserted<4>& in, unsigned blocks,
                                   const Visit& visit) {
  ForEachOfManyBlocks<Register>(SumsOfLastFour(in, of), blocks,
                                [&](std::size_t block, Block<Register>& sums) POKERMATH_INLINE {
                                  visit(BlockSuits{0, block}, sums);
                                });
}
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachBlock(const HandClass<5>& of, const Inserted<5>& in,
                                   std::uint64_t blocks, const Visit& visit) {
  Block<Register> without_four[16];
  const Weight* const quads = in.quads.data() + of.TensorOf(1, 2, 3, 4);
  const std::uint64_t of_four = blocks | blocks >> 16 | blocks >> 32 | blocks >> 48;
  ForEachOfFewBlocks<Register>(SumsOfLastFour(in, of), static_cast<unsigned>(of_four & 0xFFFF),
                               [&](std::size_t block, Block<Register>& sums) POKERMATH_INLINE {
                                 Block<Register> more;
                                 Read(more, quads + block * kBlockLanes);
                                 Add(sums, more);
                                 without_four[block] = sums;
                               });
  for (unsigned head = 0; head < 4; ++head) {
    const auto with_head = static_cast<unsigned>(blocks >> head * 16 & 0xFFFF);
    if (with_head == 0) continue;
    ForEachOfFewBlocks<Register>(SumsWithHead(in, of, head), with_head,
                                 [&](std::size_t block, Block<Register>& taken) POKERMATH_INLINE {
                                   Block<Register> sums = without_four[block];
                                   Subtract(sums, taken);
                                   visit(BlockSuits{head, block}, sums);
                                 });
  }
}

// Puts in blocks of four cards, which weights(block, lanes) reads, but for the sets of all four.
template <typename Register, typename Weights>
POKERMATH_KERNEL void InsertFewBlocks(const SumsOfFour<Weight>& in, unsigned blocks,
                                      const Weights& weights) {
  Weight* triple012 = in.triple012;
  Weight* triple013 = in.triple013;
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
        weights(std::size_t{first * 4 + second}, block);
        Add(of_first, block);
        AddTo(in.triple123 + second * 16, block);
        FourRows of_rows;
        Split(of_rows, block);
        Four sums;
        SumRows(sums, of_rows);
        AddTo(triple012 + second * 4, sums);
        AddTo(in.pair12 + second * 4, sums);
        first_rows += sums;
        SumColumns(sums, of_rows);
        AddTo(triple013 + second * 4, sums);
        AddTo(in.pair13 + second * 4, sums);
        by_second.row[second] = sums;
      } while ((row &= row - 1) != 0);
      AddTo(in.triple023 + first * 16, of_first);
      Add(of_all, of_first);
      AddTo(in.pair02 + first * 4, first_rows);
      all_rows += first_rows;
      Four first_columns;
      SumColumns(first_columns, by_second);
      AddTo(in.pair03 + first * 4, first_columns);
      all_columns += first_columns;
      SumRows(of_pair01.row[first], by_second);
      AddTo(in.pair01 + first * 4, of_pair01.row[first]);
    }
    triple012 += 16;
    triple013 += 16;
  }
  AddTo(in.pair23, of_all);
  Four sums;
  SumRows(sums, of_pair01);
  AddTo(in.single0, sums);
  *in.all += sums[0] + sums[1] + sums[2] + sums[3];
  SumColumns(sums, of_pair01);
  AddTo(in.single1, sums);
  AddTo(in.single2, all_rows);
  AddTo(in.single3, all_columns);
}

// The same for many, one at least.
template <typename Register, typename Weights>
POKERMATH_KERNEL void InsertManyBlocks(const SumsOfFour<Weight>& in, unsigned blocks,
                                       const Weights& weights) {
  Block<Register> of_all{};
  do {
    const auto block = static_cast<std::size_t>(__builtin_ctz(blocks));
    const std::size_t first = block / 4, second = block % 4;
    const std::size_t row = first * 4, column = second * 4, place = block * 4;
    Block<Register> lanes;
    weights(block, lanes);
    Add(of_all, lanes);
    AddTo(in.triple023 + row * 4, lanes);
    AddTo(in.triple123 + column * 4, lanes);
    FourRows of_rows;
    Split(of_rows, lanes);
    Four rows, columns;
    SumRows(rows, of_rows);
    SumColumns(columns, of_rows);
    AddTo(in.triple012 + place, rows);
    AddTo(in.triple013 + place, columns);
    AddTo(in.pair02 + row, rows);
    AddTo(in.pair03 + row, columns);
    AddTo(in.pair12 + column, rows);
    AddTo(in.pair13 + column, columns);
    const Weight sum = SumOf(columns);
    in.pair01[block] += sum;
    in.single0[first] += sum;
    in.single1[second] += sum;
  } while ((blocks &= blocks - 1) != 0);
  AddTo(in.pair23, of_all);
  FourRows of_rows;
  Split(of_rows, of_all);
  Four sums;
  SumRows(sums, of_rows);
  AddTo(in.single2, sums);
  SumColumns(sums, of_rows);
  AddTo(in.single3, sums);
  *in.all += SumOf(sums);
}

// Puts in blocks of a class, which weights(suits, lanes) reads.
template <typename Register, typename Weights>
POKERMATH_KERNEL void InsertBlocks(const HandClass<4>& of, Inserted<4>& in, unsigned blocks,
                                   const Weights& weights) {
  InsertManyBlocks<Register>(SumsOfLastFour(in, of), blocks,
                             [&](std::size_t block, Block<Register>& lanes) POKERMATH_INLINE {
                               weights(BlockSuits{0, block}, lanes);
                             });
}
template <typename Register, typename Weights>
POKERMATH_KERNEL void InsertBlocks(const HandClass<5>& of, Inserted<5>& in, std::uint64_t blocks,
                                   const Weights& weights) {
  Block<Register> of_last_four[16] = {};
  for (unsigned head = 0; head < 4; ++head) {
    const auto with_head = static_cast<unsigned>(blocks >> head * 16 & 0xFFFF);
    if (with_head == 0) continue;
    InsertFewBlocks<Register>(SumsWithHead(in, of, head), with_head,
                              [&](std::size_t block, Block<Register>& lanes) POKERMATH_INLINE {
                                weights(BlockSuits{head, block}, lanes);
                                Add(of_last_four[block], lanes);
                              });
  }
  Weight* const quads = in.quads.data() + of.TensorOf(1, 2, 3, 4);
  const std::uint64_t of_four = blocks | blocks >> 16 | blocks >> 32 | blocks >> 48;
  InsertFewBlocks<Register>(SumsOfLastFour(in, of), static_cast<unsigned>(of_four & 0xFFFF),
                            [&](std::size_t block, Block<Register>& lanes) POKERMATH_INLINE {
                              lanes = of_last_four[block];
                              AddTo(quads + block * kBlockLanes, lanes);
                            });
}

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_BLOCKS_H_
