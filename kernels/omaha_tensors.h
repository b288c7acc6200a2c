// Two ranges of Omaha hands of four or five cards, laid out for being swept board by board.
//
// A class is the ranks of a hand. Its hands are a tensor of suits, 4 x 4 x 4 x 4 for four cards:
// the cards by falling ranks, those of equal rank by rising suits, so that every hand stands at one
// place. Sixteen places with the same suits of all but the last two cards are a block; blocks
// without hands are not kept. Sets of fewer cards have tensors of the same kind.

#ifndef POKERMATH_KERNELS_OMAHA_TENSORS_H_
#define POKERMATH_KERNELS_OMAHA_TENSORS_H_

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

#include "eval/rank_sets.h"
#include "pokermath/hand_range.h"

namespace pokermath {

template <std::size_t hand_size>
inline constexpr std::size_t kHandClasses = MultisetsOf(hand_size);
inline constexpr std::size_t kBlockLanes = 16;
inline constexpr std::size_t kSuitedPairs = 78;  // of the cards of a suit

/// Places in the tensors of all sets of some cards, which stand by falling ranks and rising suits.
inline constexpr std::size_t kSinglePlaces = 13 * 4;
inline constexpr std::size_t kPairPlaces = MultisetsOf(2) * 16;
inline constexpr std::size_t kTriplePlaces = MultisetsOf(3) * 64;
inline constexpr std::size_t kQuadPlaces = MultisetsOf(4) * 256;
inline std::size_t SinglePlace(int card) {
  return static_cast<std::size_t>(card % 13 * 4 + card / 13);
}

/// A place among the sets of one card less than a hand has.
template <std::size_t hand_size>
using PartPlace = std::conditional_t<hand_size == 4, std::uint16_t, std::uint32_t>;
/// A bit for every block of a class, by the suits of all cards but two, the first one counting
/// most.
template <std::size_t hand_size>
using BlockBits = std::conditional_t<hand_size == 4, std::uint16_t, std::uint64_t>;

/// A class of hands, and where the tensors of its parts begin.
template <std::size_t hand_size>
struct HandClass {
  std::array<std::uint8_t, hand_size> ranks;                               ///< falling
  std::array<PartPlace<hand_size>, std::size_t{1} << hand_size> of_cards;  ///< by bits for them
  std::array<std::uint8_t, Choose(hand_size, 2)> rank_pairs;  ///< numbers of its pairs of ranks

  /// Of the cards at some places.
  template <typename... Places>
  std::size_t TensorOf(Places... places) const {
    return of_cards[((1u << places) | ...)];
  }
};
/// By the numbers of multisets.
template <std::size_t hand_size>
std::span<const HandClass<hand_size>, kHandClasses<hand_size>> HandClasses();

/// Where two cards of a suit stand, alone and together with any third.
struct SuitedPairPlaces {
  std::array<std::uint16_t, 2> singles;
  std::uint16_t both;
  std::array<std::uint16_t, 52> pair1, pair2, triple;  ///< with the higher, the lower, both
};
/// @param pair  number of its ranks, high * (high - 1) / 2 + low
const SuitedPairPlaces& PlacesOf(std::size_t suit, std::size_t pair);

/// And together with any other two, by the place of these.
struct PlacesWithPairs {
  std::array<std::uint16_t, kPairPlaces> triple1, triple2;  ///< with the higher, the lower
  std::array<std::uint32_t, kPairPlaces> quad;              ///< with both
};
const PlacesWithPairs& PlacesWithPairsOf(std::size_t suit, std::size_t pair);

/// A hand with two or more cards of a suit, seen from the two highest of them.
template <std::size_t hand_size>
struct SuitedHand {
  std::uint32_t place;                       ///< block * 16 + lane
  PartPlace<hand_size> with_high, with_low;  ///< of the others with the higher one, the lower one
  std::uint16_t others;                      ///< of the others alone
  std::uint16_t weight;
  std::uint16_t same;  ///< what the same hand weighs in the other range
  std::uint16_t hand_class;
  RankSet suited;                                 ///< ranks of all its cards of the suit
  std::array<std::uint8_t, hand_size - 2> cards;  ///< the others
  /// Places of their pairs, where that is not all of them.
  std::array<std::uint16_t, hand_size == 4 ? 0 : Choose(hand_size - 2, 2)> pairs;
};

/// A range in blocks.
template <std::size_t hand_size>
class OmahaTensor {
 public:
  struct Blocks {
    std::uint32_t first = 0;
    BlockBits<hand_size> held = 0;  ///< those that there are

    bool Has(std::size_t bit) const { return (held >> bit & 1) != 0; }
    std::size_t Of(std::size_t bit) const {
      const auto before =
          static_cast<BlockBits<hand_size>>(held & ((BlockBits<hand_size>{1} << bit) - 1));
      return first + static_cast<std::size_t>(std::popcount(before));
    }
  };

  /// @param hands  each once, with weights from 1 up to 10,000
  explicit OmahaTensor(std::span<const WeightedHand> hands);

  std::size_t size() const { return places_.size(); }
  std::uint64_t weight() const { return weight_; }
  std::size_t blocks() const { return weights_.size() / kBlockLanes - 1; }
  /// How many classes have hands.
  std::size_t classes() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(classes_, [](const Blocks& blocks) { return blocks.held != 0; }));
  }
  const Blocks& BlocksOf(std::size_t hand_class) const { return classes_[hand_class]; }
  /// Sixteen for each block, 0 where there is no hand; and a block of zeros at the end.
  std::span<const std::uint32_t> weights() const { return weights_; }
  /// For each block the one of the other range with the same cards, or that of zeros.
  std::span<const std::uint32_t> twins() const { return twins_; }
  /// Where each hand stands.
  std::span<const std::uint32_t> places() const { return places_; }

  /// Hands by their two highest cards of a suit.
  std::span<const SuitedHand<hand_size>> Suited(std::size_t suit, std::size_t pair) const {
    const std::size_t group = suit * kSuitedPairs + pair;
    return std::span(suited_).subspan(groups_[group], groups_[group + 1] - groups_[group]);
  }
  std::span<const SuitedHand<hand_size>> suited() const { return suited_; }

  /// Sets twins, and the suited hands of some suits. `hands` are those that it was made with.
  void Relate(std::span<const WeightedHand> hands, unsigned flush_suits, const OmahaTensor& other);

 private:
  std::vector<Blocks> classes_ = std::vector<Blocks>(kHandClasses<hand_size>);
  std::vector<std::uint32_t> weights_;
  std::vector<std::uint32_t> twins_;
  std::vector<std::uint32_t> places_;
  std::uint64_t weight_ = 0;
  std::vector<SuitedHand<hand_size>> suited_;
  std::array<std::size_t, 4 * kSuitedPairs + 1> groups_{};
};

/// Two ranges, ready to be swept. Reentrant.
template <std::size_t hand_size>
class OmahaTensors {
 public:
  /// @param flush_suits  a bit for each suit of which a board may have three cards
  OmahaTensors(std::span<const WeightedHand> hands1, std::span<const WeightedHand> hands2,
               unsigned flush_suits = 0xF);

  unsigned flush_suits() const { return flush_suits_; }
  const OmahaTensor<hand_size>& operator[](std::size_t side) const { return sides_[side]; }
  /// The classes that either range has.
  std::span<const std::uint16_t> classes() const { return classes_; }

 private:
  unsigned flush_suits_;
  std::array<OmahaTensor<hand_size>, 2> sides_;
  std::vector<std::uint16_t> classes_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_TENSORS_H_
