// Sixteen numbers, one for each pair of suits that the two cards of a rank class may have: the suit
// of its higher card * 4 + that of the lower one.
//
// Registers hold one to four suits of the higher card; kernels are templates over that. Arithmetic
// is modulo 2^32.

#ifndef POKERMATH_KERNELS_SUIT_LANES_H_
#define POKERMATH_KERNELS_SUIT_LANES_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kernels/registers.h"

namespace pokermath {

/// In memory, on a cache line.
struct alignas(64) SuitLanes {
  std::uint32_t at[16];
};

/// A number for each suit.
using Four = std::uint32_t __attribute__((vector_size(16)));

/// That many suits of the higher card in a register.
template <int kHighs>
struct LaneRegister;
template <>
struct LaneRegister<1> {
  using Type = Four;
};
template <>
struct LaneRegister<2> {
  using Type = std::uint32_t __attribute__((vector_size(32)));
};
template <>
struct LaneRegister<4> {
  using Type = std::uint32_t __attribute__((vector_size(64)));
};

template <int kHighs>
struct Lanes {
  using Register = typename LaneRegister<kHighs>::Type;
  static constexpr int kParts = 4 / kHighs;
  Register parts[kParts];

  POKERMATH_KERNEL static Lanes Of(const SuitLanes& from) {
    Lanes lanes;
    for (int i = 0; i < kParts; ++i) {
      std::memcpy(&lanes.parts[i], from.at + i * 4 * kHighs, sizeof(Register));
    }
    return lanes;
  }
  POKERMATH_KERNEL static Lanes All(std::uint32_t number) {
    Lanes lanes;
    for (Register& part : lanes.parts) part = Register{} + number;
    return lanes;
  }
  POKERMATH_KERNEL void Store(SuitLanes& to) const {
    for (int i = 0; i < kParts; ++i) {
      std::memcpy(to.at + i * 4 * kHighs, &parts[i], sizeof(Register));
    }
  }

#define POKERMATH_LANES_OPERATOR(op)                             \
  POKERMATH_KERNEL Lanes operator op(const Lanes& other) const { \
    Lanes result;                                                \
    for (int i = 0; i < kParts; ++i) {                           \
      result.parts[i] = parts[i] op other.parts[i];              \
    }                                                            \
    return result;                                               \
  }
  POKERMATH_LANES_OPERATOR(+)
  POKERMATH_LANES_OPERATOR(-)
  POKERMATH_LANES_OPERATOR(*)
  POKERMATH_LANES_OPERATOR(&)
  POKERMATH_LANES_OPERATOR(|)
#undef POKERMATH_LANES_OPERATOR

  POKERMATH_KERNEL Lanes Half() const {
    Lanes result;
    for (int i = 0; i < kParts; ++i) result.parts[i] = parts[i] >> 1;
    return result;
  }
  POKERMATH_KERNEL void AddTo(SuitLanes& sum) const { (Of(sum) + *this).Store(sum); }
};

/// What lanes add up to by suit, as often as a register holds it.
template <int kHighs>
struct LaneSums {
  using Register = typename LaneRegister<kHighs>::Type;
  Register high;   ///< by the suit of the higher card
  Register low;    ///< of the lower one
  Register total;  ///< in every place

  POKERMATH_KERNEL static LaneSums Of(const Lanes<kHighs>& lanes) {
    LaneSums sums;
    if constexpr (kHighs == 4) {
      Register rows = lanes.parts[0];
      AddInFours(rows);
      sums.high =
          __builtin_shufflevector(rows, rows, 0, 4, 8, 12, 0, 4, 8, 12, 0, 4, 8, 12, 0, 4, 8, 12);
      const Register& all = lanes.parts[0];
      const Register halves = all + __builtin_shufflevector(all, all, 8, 9, 10, 11, 12, 13, 14, 15,
                                                            0, 1, 2, 3, 4, 5, 6, 7);
      sums.low = halves + __builtin_shufflevector(halves, halves, 4, 5, 6, 7, 0, 1, 2, 3, 12, 13,
                                                  14, 15, 8, 9, 10, 11);
    } else if constexpr (kHighs == 2) {
      Register rows0 = lanes.parts[0];
      Register rows1 = lanes.parts[1];
      AddInFours(rows0);
      AddInFours(rows1);
      sums.high = __builtin_shufflevector(rows0, rows1, 0, 4, 8, 12, 0, 4, 8, 12);
      const Register halves = lanes.parts[0] + lanes.parts[1];
      sums.low = halves + __builtin_shufflevector(halves, halves, 4, 5, 6, 7, 0, 1, 2, 3);
    } else {
      const auto& row = lanes.parts;
      const Four a = __builtin_shufflevector(row[0], row[1], 0, 4, 2, 6) +
                     __builtin_shufflevector(row[0], row[1], 1, 5, 3, 7);
      const Four b = __builtin_shufflevector(row[2], row[3], 0, 4, 2, 6) +
                     __builtin_shufflevector(row[2], row[3], 1, 5, 3, 7);
      sums.high =
          __builtin_shufflevector(a, b, 0, 1, 4, 5) + __builtin_shufflevector(a, b, 2, 3, 6, 7);
      sums.low = row[0] + row[1] + row[2] + row[3];
    }
    sums.total = sums.low;
    AddInFours(sums.total);
    return sums;
  }

  /// In memory: four places each, and four that are left as they are.
  POKERMATH_KERNEL void Store(SuitLanes& to) const {
    std::memcpy(to.at, &high, sizeof(Four));
    std::memcpy(to.at + 4, &low, sizeof(Four));
    std::memcpy(to.at + 8, &total, sizeof(Four));
  }
  POKERMATH_KERNEL static LaneSums Load(const SuitLanes& from) {
    const Lanes<kHighs> all = Lanes<kHighs>::Of(from);
    LaneSums sums;
    if constexpr (kHighs == 4) {
      const Register& line = all.parts[0];
      sums.high =
          __builtin_shufflevector(line, line, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3);
      sums.low =
          __builtin_shufflevector(line, line, 4, 5, 6, 7, 4, 5, 6, 7, 4, 5, 6, 7, 4, 5, 6, 7);
      sums.total = __builtin_shufflevector(line, line, 8, 9, 10, 11, 8, 9, 10, 11, 8, 9, 10, 11, 8,
                                           9, 10, 11);
    } else if constexpr (kHighs == 2) {
      const Register& first = all.parts[0];
      const Register& second = all.parts[1];
      sums.high = __builtin_shufflevector(first, first, 0, 1, 2, 3, 0, 1, 2, 3);
      sums.low = __builtin_shufflevector(first, first, 4, 5, 6, 7, 4, 5, 6, 7);
      sums.total = __builtin_shufflevector(second, second, 0, 1, 2, 3, 0, 1, 2, 3);
    } else {
      sums.high = all.parts[0];
      sums.low = all.parts[1];
      sums.total = all.parts[2];
    }
    return sums;
  }

 private:
  // Each place becomes the sum of its four.
  POKERMATH_KERNEL static void AddInFours(Register& of) {
    if constexpr (kHighs == 4) {
      of += __builtin_shufflevector(of, of, 1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14);
      of += __builtin_shufflevector(of, of, 2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13);
    } else if constexpr (kHighs == 2) {
      of += __builtin_shufflevector(of, of, 1, 0, 3, 2, 5, 4, 7, 6);
      of += __builtin_shufflevector(of, of, 2, 3, 0, 1, 6, 7, 4, 5);
    } else {
      of += __builtin_shufflevector(of, of, 1, 0, 3, 2);
      of += __builtin_shufflevector(of, of, 2, 3, 0, 1);
    }
  }
};

/// Up to four terms, each with a number for each suit; four terms or all the same one in a register
/// of sixteen numbers.
template <int kHighs, int kTerms>
struct TermLine {
  using Register = typename LaneRegister<kHighs>::Type;
  static constexpr int kParts = (kTerms + kHighs - 1) / kHighs;
  Register parts[kParts];

  /// A factor for each term.
  POKERMATH_KERNEL static TermLine OfTerms(const std::uint32_t (&factors)[4]) {
    TermLine line{};
    for (int term = 0; term < kTerms; ++term) {
      Register& part = line.parts[term / kHighs];
      if constexpr (kHighs == 1 || kTerms == 1) {
        part = Register{} + factors[term];
      } else {
        for (int i = 0; i < 4; ++i) part[term % kHighs * 4 + i] = factors[term];
      }
    }
    return line;
  }
  POKERMATH_KERNEL TermLine operator-(const TermLine& other) const {
    TermLine result;
    for (int i = 0; i < kParts; ++i) result.parts[i] = parts[i] - other.parts[i];
    return result;
  }
  /// Adds sums by suit, times a factor for each term.
  POKERMATH_KERNEL void Add(const Register& sums, const TermLine& factors) {
    for (int i = 0; i < kParts; ++i) {
      parts[i] += kTerms == 1 ? sums : sums * factors.parts[i];
    }
  }
  /// Both become the sum of the two.
  POKERMATH_KERNEL void AddAndCopyTo(TermLine& other) {
    for (int i = 0; i < kParts; ++i) other.parts[i] = parts[i] += other.parts[i];
  }

  /// A term's numbers by suit in the lanes of all higher cards of that suit.
  template <int kTerm>
  POKERMATH_KERNEL Lanes<kHighs> ByHigh() const {
    constexpr int kAt = kTerm % kHighs * 4;
    const Register& of = parts[kTerm / kHighs];
    Lanes<kHighs> lanes;
    if constexpr (kHighs == 4) {
      lanes.parts[0] = __builtin_shufflevector(of, of, kAt, kAt, kAt, kAt, kAt + 1, kAt + 1,
                                               kAt + 1, kAt + 1, kAt + 2, kAt + 2, kAt + 2, kAt + 2,
                                               kAt + 3, kAt + 3, kAt + 3, kAt + 3);
    } else if constexpr (kHighs == 2) {
      lanes.parts[0] =
          __builtin_shufflevector(of, of, kAt, kAt, kAt, kAt, kAt + 1, kAt + 1, kAt + 1, kAt + 1);
      lanes.parts[1] = __builtin_shufflevector(of, of, kAt + 2, kAt + 2, kAt + 2, kAt + 2, kAt + 3,
                                               kAt + 3, kAt + 3, kAt + 3);
    } else {
      lanes.parts[0] = __builtin_shufflevector(of, of, 0, 0, 0, 0);
      lanes.parts[1] = __builtin_shufflevector(of, of, 1, 1, 1, 1);
      lanes.parts[2] = __builtin_shufflevector(of, of, 2, 2, 2, 2);
      lanes.parts[3] = __builtin_shufflevector(of, of, 3, 3, 3, 3);
    }
    return lanes;
  }
  /// The same for the lower cards.
  template <int kTerm>
  POKERMATH_KERNEL Lanes<kHighs> ByLow() const {
    constexpr int kAt = kTerm % kHighs * 4;
    Register of = parts[kTerm / kHighs];
    if constexpr (kHighs == 4 && kTerms > 1) {
      of = __builtin_shufflevector(of, of, kAt, kAt + 1, kAt + 2, kAt + 3, kAt, kAt + 1, kAt + 2,
                                   kAt + 3, kAt, kAt + 1, kAt + 2, kAt + 3, kAt, kAt + 1, kAt + 2,
                                   kAt + 3);
    } else if constexpr (kHighs == 2 && kTerms > 1) {
      of = __builtin_shufflevector(of, of, kAt, kAt + 1, kAt + 2, kAt + 3, kAt, kAt + 1, kAt + 2,
                                   kAt + 3);
    }
    Lanes<kHighs> lanes;
    for (Register& part : lanes.parts) part = of;
    return lanes;
  }
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_SUIT_LANES_H_
