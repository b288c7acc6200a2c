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
  /// Nothing is alike.
  SuitSymmetry() : renamings_{SuitRenaming({0, 1, 2, 3})} {}
  explicit SuitSymmetry(const CheckedQuestion& question);

  /// That of nothing among them.
  std::span<const SuitRenaming> renamings() const { return renamings_; }
  /// One of the sets that are alike, the same for all of them.
  CardSet FirstOf(CardSet cards) const;
  /// How many sets are alike if this one is FirstOf them; 0 if it is not.
  int TimesOf(CardSet cards) const {
    std::size_t same = 0;
    for (const SuitRenaming& renaming : renamings_) {
      const CardSet other = renaming.Of(cards);
      if (other < cards) return 0;
      same += other == cards ? 1 : 0;
    }
    return static_cast<int>(renamings_.size() / same);
  }
  /// All of them, each once, rising.
  std::vector<CardSet> AlikeTo(CardSet cards) const;

 private:
  std::vector<SuitRenaming> renamings_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_SUIT_SYMMETRY_H_
