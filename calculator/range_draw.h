// Hands drawn from ranges that are listed.

#ifndef POKERMATH_CALCULATOR_RANGE_DRAW_H_
#define POKERMATH_CALCULATOR_RANGE_DRAW_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "calculator/dealt.h"
#include "calculator/question.h"
#include "kernels/random_numbers.h"

namespace pokermath {

/// Places drawn by their weights, by the alias method (Alastair J. Walker, 1977, "An efficient
/// method for generating discrete random variables with general distributions"), in whole numbers.
class Bag {
 public:
  explicit Bag(std::span<const std::uint64_t> weights);

  std::size_t size() const { return size_; }
  /// Draws up to DealtBlock::kMost places.
  void Draw(RandomNumbers& random, std::span<std::uint32_t> places) const;

 private:
  // Numbers below its limit are its own, the others that of another place.
  struct Column {
    std::uint64_t limit;
    std::uint32_t other;
  };

  std::size_t size_;
  std::vector<Column> columns_;  // empty where all weights are alike
  std::uint64_t all_ = 0;        // sum of the weights
  // A number below that sum may have more than 32 bits.
  int low_bits_ = 0;
  PairLimits limits_, low_limits_;
};

/// Deals hands to all whose hands are listed, players and those who folded.
///
/// Everyone draws a hand by its weight; if two of them share a card, the whole deal is drawn again,
/// by all of them: to draw only for the one who clashed would favour hands that clash more often.
/// Narrow ranges are joined two by two into lists of the pairs of hands that share no card, so that
/// fewer deals are in vain.
class RangeDraw {
 public:
  explicit RangeDraw(const CheckedQuestion& question);

  /// Ranges, two that are joined counting as one: these always fit.
  std::size_t groups() const { return groups_.size(); }
  /// Takes every second one of at least two groups out. The narrowest ones, which clash most, end
  /// on different sides.
  RangeDraw TakeHalf();
  /// Players for whom it draws.
  std::vector<std::size_t> Players() const;

  /// Fills the first `wanted` places of a block, fewer if that takes more attempts than there are.
  ///
  /// @param attempts  in: how many there may be; out: how many are left
  /// @param held      out: the cards of all of them
  /// @return how many places were filled
  std::size_t Deal(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                   DealtBlock& block, std::span<CardSet> held) const;

 private:
  struct Member {
    std::vector<DealtCards> hands;
    std::size_t player;
    bool plays;
  };
  // A range, or two of them together.
  struct Group {
    std::vector<CardSet> cards;
    Bag bag;
    std::vector<Member> members;
    std::vector<std::array<std::uint16_t, 2>> pairs;  // places in the two ranges; none of one

    std::uint32_t PlaceOf(std::size_t member, std::uint32_t drawn) const {
      return pairs.empty() ? drawn : pairs[drawn][member];
    }
  };
  struct Seat;
  struct Attempts;

  RangeDraw() = default;
  void Add(const Seat& seat);
  bool Join(const Seat& seat1, const Seat& seat2);
  void Attempt(RandomNumbers& random, Attempts& made) const;
  void Keep(const Attempts& made, std::size_t first, DealtBlock& block) const;

  std::vector<Group> groups_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_RANGE_DRAW_H_
