// What the classes of Omaha hands make with a board, and which of their hands it leaves.

#ifndef POKERMATH_KERNELS_OMAHA_BOARD_H_
#define POKERMATH_KERNELS_OMAHA_BOARD_H_

#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "kernels/omaha_tensors.h"

namespace pokermath {

/// In place of a suit.
inline constexpr unsigned kNoSuit = 4;

template <std::size_t hand_size>
struct ClassOnBoard {
  const HandClass<hand_size>* hand_class;
  std::uint16_t number;
  std::uint16_t value;  ///< without a flush
  std::uint16_t low;    ///< 0 for none
  /// Blocks and lanes that the board leaves.
  BlockBits<hand_size> live_blocks;
  std::uint16_t live_lanes;
  /// Those of them that have the value, not a better flush. Lanes depend on which of the first
  /// cards are of the flush suit: the last one of them is worth 1, the one before it 2, and so on.
  BlockBits<hand_size> blocks;
  std::array<std::uint16_t, std::size_t{1} << (hand_size - 2)> lanes;
};

/// The pairs of cards of a suit that make a straight flush with three of the board, rising.
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

/// A board of three to five cards.
template <std::size_t hand_size>
class OmahaBoard {
 public:
  /// @param with_lows     whether lows are asked for
  /// @param with_flushes  whether there are flushes
  void Set(CardSet board, std::span<const std::uint16_t> classes, bool with_lows,
           bool with_flushes);

  CardSet cards() const { return cards_; }
  /// Of which there are three cards and more, where there are flushes.
  unsigned flush_suit() const { return flush_suit_; }
  const StraightFlushes& straight_flushes() const { return straight_flushes_; }
  /// Rising by their values.
  std::span<const ClassOnBoard<hand_size>> classes() const { return classes_; }
  /// How many of these have less than a full house.
  std::size_t below_full() const { return below_full_; }
  bool IsFull(std::size_t hand_class) const { return of_class_[hand_class].full; }
  /// Low of a class; 0 for none, and where they are not asked for.
  int LowOf(std::size_t hand_class) const { return of_class_[hand_class].low; }
  /// Whether some pair of cards makes a low.
  bool has_lows() const { return has_lows_; }

 private:
  using RankPairs = std::array<std::uint16_t, MultisetsOf(2)>;
  struct OfClass {
    std::uint16_t value;
    std::uint8_t low;
    bool full;
  };

  void SetValues(std::span<const std::uint16_t> classes, bool with_lows);
  void Sort(std::span<const std::uint16_t> classes);
  void SetLanes(ClassOnBoard<hand_size>& of) const;

  CardSet cards_;
  unsigned flush_suit_ = kNoSuit;
  StraightFlushes straight_flushes_;
  bool has_lows_ = false;
  std::array<std::uint8_t, 13> free_suits_{};  // by rank
  std::array<OfClass, kHandClasses<hand_size>> of_class_{};
  std::vector<ClassOnBoard<hand_size>> classes_;
  std::size_t below_full_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_BOARD_H_
