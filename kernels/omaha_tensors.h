// Two ranges of four-card Omaha hands, laid out for being swept board by board.
//
// A class is four ranks. Its hands are a tensor of suits, 4 x 4 x 4 x 4: the cards by falling
// ranks, those of equal rank by rising suits, so that every hand stands at one place. Sixteen
// places with the same suits of the first two cards are a block; blocks without hands are not kept.
// Sets of fewer cards have tensors of the same kind.

#ifndef POKERMATH_KERNELS_OMAHA_TENSORS_H_
#define POKERMATH_KERNELS_OMAHA_TENSORS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "eval/rank_sets.h"
#include "pokermath/hand_range.h"

namespace pokermath {

inline constexpr std::size_t kQuadClasses = MultisetsOf(4);
inline constexpr std::size_t kBlockLanes = 16;
inline constexpr std::size_t kSuitedPairs = 78;  // of the cards of a suit

/// Where a set of cards stands among those of its size, by falling ranks and rising suits.
std::size_t PairPlace(int card1, int card2);
std::size_t TriplePlace(int card1, int card2, int card3);
inline constexpr std::size_t kSinglePlaces = 13 * 4;
inline constexpr std::size_t kPairPlaces = MultisetsOf(2) * 16;
inline constexpr std::size_t kTriplePlaces = MultisetsOf(3) * 64;
inline std::size_t SinglePlace(int card) {
  return static_cast<std::size_t>(card % 13 * 4 + card / 13);
}

/// A class of hands, and where the tensors of its parts begin.
struct QuadClass {
  std::array<std::uint8_t, 4> ranks;    ///< falling
  std::array<std::uint16_t, 4> single;  ///< of each card
  std::uint16_t pair01, pair02, pair03, pair12, pair13, pair23;
  std::uint16_t triple012, triple013, triple023, triple123;
  std::array<std::uint8_t, 6> rank_pairs;  ///< numbers of its pairs of ranks
};
/// By the numbers of multisets.
std::span<const QuadClass, kQuadClasses> QuadClasses();

/// Where two cards of a suit stand, alone and together with any third.
struct SuitedPairPlaces {
  std::array<std::uint16_t, 2> singles;
  std::uint16_t both;
  std::array<std::uint16_t, 52> pair1, pair2, triple;  ///< with the higher, the lower, both
};
/// @param pair  number of its ranks, high * (high - 1) / 2 + low
const SuitedPairPlaces& PlacesOf(std::size_t suit, std::size_t pair);

/// A hand with two or more cards of a suit, seen from the two highest of them.
struct SuitedHand {
  std::uint32_t place;             ///< block * 16 + lane
  std::uint16_t triple1, triple2;  ///< of the other two with the higher one, with the lower one
  std::uint16_t pair;              ///< of the other two
  std::uint16_t weight;
  std::uint16_t same;  ///< what the same hand weighs in the other range
  std::uint16_t quad_class;
  RankSet suited;             ///< ranks of all its cards of the suit
  std::uint8_t card1, card2;  ///< the other two
};

/// A range in blocks.
class OmahaTensor {
 public:
  struct Blocks {
    std::uint32_t first = 0;
    std::uint16_t held =
        0;  ///< a bit for every block that there is, suit of card 0 * 4 + of card 1

    bool Has(unsigned bit) const { return (held >> bit & 1) != 0; }
    std::size_t Of(unsigned bit) const {
      return first + static_cast<std::size_t>(__builtin_popcount(held & ((1u << bit) - 1)));
    }
  };

  /// @param hands  of four cards, each once, with weights from 1 up to 10,000
  explicit OmahaTensor(std::span<const WeightedHand> hands);

  std::size_t size() const { return places_.size(); }
  std::uint64_t weight() const { return weight_; }
  std::size_t blocks() const { return weights_.size() / kBlockLanes - 1; }
  const Blocks& BlocksOf(std::size_t quad_class) const { return classes_[quad_class]; }
  /// Sixteen for each block, 0 where there is no hand; and a block of zeros at the end.
  std::span<const std::uint32_t> weights() const { return weights_; }
  /// For each block the one of the other range with the same cards, or that of zeros.
  std::span<const std::uint32_t> twins() const { return twins_; }
  /// Where each hand stands.
  std::span<const std::uint32_t> places() const { return places_; }

  /// Hands by their two highest cards of a suit.
  std::span<const SuitedHand> Suited(std::size_t suit, std::size_t pair) const {
    const std::size_t group = suit * kSuitedPairs + pair;
    return std::span(suited_).subspan(groups_[group], groups_[group + 1] - groups_[group]);
  }
  std::span<const SuitedHand> suited() const { return suited_; }

  /// Sets twins and suited hands. `hands` are those that it was made with.
  void Relate(std::span<const WeightedHand> hands, const OmahaTensor& other);

 private:
  std::array<Blocks, kQuadClasses> classes_;
  std::vector<std::uint32_t> weights_;
  std::vector<std::uint32_t> twins_;
  std::vector<std::uint32_t> places_;
  std::uint64_t weight_ = 0;
  std::vector<SuitedHand> suited_;
  std::array<std::size_t, 4 * kSuitedPairs + 1> groups_{};
};

/// Two ranges, ready to be swept. Reentrant.
class OmahaTensors {
 public:
  OmahaTensors(std::span<const WeightedHand> hands1, std::span<const WeightedHand> hands2);

  const OmahaTensor& operator[](std::size_t side) const { return sides_[side]; }
  /// The classes that either range has.
  std::span<const std::uint16_t> classes() const { return classes_; }

 private:
  std::array<OmahaTensor, 2> sides_;
  std::vector<std::uint16_t> classes_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_TENSORS_H_
