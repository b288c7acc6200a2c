/// @file
/// Omaha evaluators: hands of four, five or six cards, exactly two of which play with exactly three
/// board cards; and lows.
///
/// High values are on the ascending scale 1..7462 of EvaluateCards, larger is better. Lows are
/// hands of five different ranks of eight and below, the ace low: 1 (8-7-6-5-4) .. 56 (5-4-3-2-A),
/// larger is better, 0 for none. Cards are card codes, all different, not checked. Everything may
/// run in any number of threads; the first high value in a process takes a millisecond more, for a
/// table of 1.2 MB. No compiler flag of the host matters: what is not a table look-up is in the
/// library, which chooses the instructions that the machine has.

#ifndef POKERMATH_OMAHA_EVALUATORS_H_
#define POKERMATH_OMAHA_EVALUATORS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "pokermath/export.h"

namespace pokermath {

/// The best value of a hand on a board of five.
///
/// @param hand   `holes` cards, 4, 5 or 6
/// @param board  five cards
/// Exists for bytes, which are the fastest, and ints. About 9, 11 and 12 ns with AVX-512 (VBMI),
/// 10, 14 and 18 ns without.
template <int holes, typename Card>
POKERMATH_EXPORT int EvaluateOmaha(const Card* hand, const Card* board);

/// The same for many hands with a board each.
///
/// @param holes   cards of a hand, 4, 5 or 6; all values are 0 for another number
/// @param hands   `holes` bytes a hand, one hand behind the other
/// @param boards  five bytes a board, likewise
/// @param count   how many hands
/// @param values  out: one value a hand
/// About 5 to 7 ns a hand with AVX-512 (VBMI), 7 to 13 ns without.
POKERMATH_EXPORT void EvaluateOmahaBatch(int holes, const std::uint8_t* hands,
                                         const std::uint8_t* boards, std::size_t count,
                                         std::uint16_t* values);

/// A board on which many hands are evaluated. Takes some 5 µs to make, and 7 KB.
class POKERMATH_EXPORT OmahaBoardValues {
 public:
  /// @param board  three to five cards; fewer give 0 for all hands, more are undefined
  explicit OmahaBoardValues(std::span<const int> board);

  /// The best value of `holes` cards, 2 or more.
  template <int holes, typename Card>
  int Evaluate(const Card* hand) const {
    static_assert(holes >= 2);
    std::size_t cards[holes];
    for (std::size_t i = 0; i < holes; ++i) cards[i] = static_cast<std::size_t>(hand[i]);
    int best = 0;
    for (std::size_t i = 1; i < holes; ++i) {
      const std::uint16_t* row = &pairs_[cards[i] * kRow];
      for (std::size_t j = 0; j < i; ++j) best = std::max<int>(best, row[cards[j]]);
    }
    return best;
  }

  /// Values of many hands.
  ///
  /// @param holes   cards of a hand, 4, 5 or 6; all values are 0 for another number
  /// @param hands   `holes` bytes a hand, one hand behind the other
  /// @param count   how many hands
  /// @param values  out: one value a hand
  /// Hands of four take 2.5 ns, and less than 0.3 ns with AVX-512 (VBMI).
  void EvaluateBatch(int holes, const std::uint8_t* hands, std::size_t count,
                     std::uint16_t* values) const;

 private:
  friend class OmahaBoardKernels;
  static constexpr std::size_t kRow = 64;
  static constexpr std::size_t kMostValues = 192;

  /// By card * 64 + card.
  std::array<std::uint16_t, 52 * kRow> pairs_{};
  // The same for vectors: places among all values of pairs, rising, by the number of a pair of
  // ranks, without a flush and with one.
  alignas(64) std::array<std::uint16_t, kMostValues> values_{};
  alignas(64) std::array<std::uint8_t, 128> plain_{};
  alignas(64) std::array<std::uint8_t, 128> suited_{};
  std::size_t value_count_ = 0;
  int suit_ = -1;  // of which there are three board cards
};

/// Constant tables of lows, which are inlined into hosts.
struct LowTables {
  std::uint8_t ranks[52];             ///< the bit of a card's rank, the ace's lowest; 0 above eight
  std::uint8_t pair_ranks[52 * 256];  ///< of two cards, by card + 256 * card
  std::uint8_t values[256];           ///< the best low of a set of ranks
  std::uint8_t omaha[256][256];       ///< the best low by the ranks of the board and of the hand

  /// The ranks of some cards.
  template <int count, typename Card>
  unsigned RanksOf(const Card* cards) const {
    unsigned all = 0;
    if constexpr (sizeof(Card) == 1) {
      if constexpr (count % 2 != 0) all = ranks[static_cast<int>(cards[count - 1])];
      for (int i = 0; i + 1 < count; i += 2) {
        std::uint16_t two;
        __builtin_memcpy(&two, cards + i, sizeof two);
        all |= pair_ranks[two];
      }
    } else {
      for (int i = 0; i < count; ++i) all |= ranks[static_cast<int>(cards[i])];
    }
    return all;
  }
};
/// The tables behind EvaluateLow and EvaluateOmahaLow, part of the library.
POKERMATH_EXPORT extern const LowTables kLowTables;

/// The best low of five to seven cards, any of which play. About 1 ns.
template <int count, typename Card>
inline int EvaluateLow(const Card* cards) {
  static_assert(count >= 5 && count <= 7);
  return kLowTables.values[kLowTables.RanksOf<count>(cards)];
}

/// The best low of a hand of `holes` cards, 2 or more, on a board of five. About 2 ns.
template <int holes, typename Card>
inline int EvaluateOmahaLow(const Card* hand, const Card* board) {
  static_assert(holes >= 2);
  return kLowTables.omaha[kLowTables.RanksOf<5>(board)][kLowTables.RanksOf<holes>(hand)];
}

/// Lows of many hands of five to seven cards.
///
/// @param count   cards of a hand, 5, 6 or 7; all values are 0 for another number
/// @param cards   `count` bytes a hand, one hand behind the other
/// @param hands   how many hands
/// @param values  out: one value a hand
POKERMATH_EXPORT void EvaluateLowBatch(int count, const std::uint8_t* cards, std::size_t hands,
                                       std::uint8_t* values);
/// Lows of many Omaha hands with a board each; shapes as of EvaluateOmahaBatch.
POKERMATH_EXPORT void EvaluateOmahaLowBatch(int holes, const std::uint8_t* hands,
                                            const std::uint8_t* boards, std::size_t count,
                                            std::uint8_t* values);

/// The ranks of such a value as digits: 54321 for five to ace; 0 for none.
POKERMATH_EXPORT int LowDigits(int low);

}  // namespace pokermath

#endif  // POKERMATH_OMAHA_EVALUATORS_H_
