// What every pair of hole ranks makes with a board of five, without suits.
//
// A row of 91 values for each multiset of five ranks that a board can have: a flush aside, a hand
// is worth the largest of what its pairs of cards find there. 1.2 MB, worked out at the first use
// in less than a millisecond.
//
// A board's row is found by the sum of its cards' words, which also counts its suits: three bits a
// suit below the key of the ranks. Counts start so that the highest of the three is set from three
// board cards on and from two hole cards on.

#ifndef POKERMATH_EVAL_OMAHA_ROWS_H_
#define POKERMATH_EVAL_OMAHA_ROWS_H_

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "eval/compact_keys.h"
#include "eval/omaha_keys.h"
#include "eval/omaha_pairs.h"
#include "pokermath/large_table.h"

namespace pokermath {

class OmahaRows {
 public:
  /// Three cache lines; what is behind the pairs is 0.
  static constexpr std::size_t kRow = 96;

  static const OmahaRows& Get() {
    const OmahaRows* rows = IfMade();
    return rows != nullptr ? *rows : Make();
  }
  /// nullptr before the first use.
  static const OmahaRows* IfMade() { return made_.load(std::memory_order_acquire); }

  /// [pair of ranks] ascending values for a board, by the sum of its cards' words.
  const std::uint16_t* OfWords(std::uint32_t words) const { return OfKey(words >> kKeyShift); }
  /// By the sum of kOmahaKeys.
  const std::uint16_t* OfKey(std::uint32_t key) const { return &values_[OmahaPlaceOf(key) * kRow]; }
  /// By the sum of the rank keys of the compact evaluator.
  const std::uint16_t* OfCompactKey(std::uint64_t key) const {
    return &values_[by_compact_key_[PlaceOfFive(key)] * kRow];
  }
  /// All rows, by places.
  const std::uint16_t* data() const { return values_.data(); }

  /// The sum of the words of a board of five.
  template <typename Card>
  std::uint32_t SumBoard(const Card* board) const {
    return kBoardStart + Two(board) + Two(board + 2) + One(board[4]);
  }
  /// A bit for each suit that has two hole cards and more, and three of a board's.
  template <int holes, typename Card>
  std::uint32_t FlushBits(const Card* hand, std::uint32_t board_words) const {
    static_assert(holes >= 4 && holes <= 6);
    std::uint32_t words = kHandStart + Two(hand) + Two(hand + 2);
    if constexpr (holes == 5) words += One(hand[4]);
    // Six cards of a suit are too many for its bits, so four of them are looked at alone.
    if constexpr (holes == 6) words |= words + Two(hand + 4);
    return words & board_words & kFlushBits;
  }
  /// The suit of the lowest such bit.
  static int SuitOf(std::uint32_t flush_bits) { return __builtin_ctz(flush_bits) / 3; }

 private:
  static constexpr int kKeyShift = 32 - kOmahaKeyBits;
  static constexpr std::uint32_t kBoardStart = 01111;
  static constexpr std::uint32_t kHandStart = 02222;
  static constexpr std::uint32_t kFlushBits = 04444;

  OmahaRows();
  static const OmahaRows& Make();

  template <typename Card>
  std::uint32_t One(Card card) const {
    return card_words_[static_cast<std::size_t>(card)];
  }
  template <typename Card>
  std::uint32_t Two(const Card* cards) const {
    if constexpr (sizeof(Card) == 1) {
      std::uint16_t two;
      std::memcpy(&two, cards, sizeof two);
      return pair_words_[two];
    } else {
      return One(cards[0]) + One(cards[1]);
    }
  }

  static std::atomic<const OmahaRows*> made_;

  std::array<std::uint32_t, 64> card_words_{};
  std::array<std::uint32_t, 52 * 256> pair_words_{};  // by card + 256 * card
  LargeTable<std::uint16_t> values_;
  LargeTable<std::uint16_t> by_compact_key_;
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_ROWS_H_
