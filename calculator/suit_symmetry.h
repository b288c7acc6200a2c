// Renamings of suits under which a question stays as it is, so that boards which they make of each
// other have the same outcome.

#ifndef POKERMATH_CALCULATOR_SUIT_SYMMETRY_H_
#define POKERMATH_CALCULATOR_SUIT_SYMMETRY_H_

#include <array>
#include <span>
#include <vector>

#include "calculator/question.h"

namespace pokermath {

class SuitRenaming {
 public:
  /// @param to  the new suit of each suit, all different
  explicit constexpr SuitRenaming(const std::array<int, 4>& to) : to_(to) {}

  constexpr CardSet Of(CardSet cards) const {
    std::uint64_t bits = 0;
    for (std::size_t suit = 0; suit < 4; ++suit) {
      bits |= (cards.bits() >> 13 * suit & 0x1FFF) << 13 * to_[suit];
    }
    return CardSet::OfBits(bits);
  }

 private:
  std::array<int, 4> to_;
};

/// The renamings that change neither the board nor the dead cards nor any range and its weights.
/// They are a group: cards are alike if some of them make one of the other. What a player's hand is
/// worth on all boards is so for the hands alike, too.
class SuitSymmetry {
 public:
  explicit SuitSymmetry(const CheckedQuestion& question);

  /// That of nothing among them.
  std::span<const SuitRenaming> renamings() const { return renamings_; }
  /// One of the sets that are alike, the same for all of them.
  CardSet FirstOf(CardSet cards) const;
  /// All of them, each once, rising.
  std::vector<CardSet> AlikeTo(CardSet cards) const;

 private:
  std::vector<SuitRenaming> renamings_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_SUIT_SYMMETRY_H_
