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
              "every hand with the largest weight fits into 32 bits");

struct alignas(64) Lanes {
  std::array<Weight, kBlockLanes> of;
};

/// For every set of up to three cards, what the hands so far that hold it weigh.
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

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_BLOCKS_H_
