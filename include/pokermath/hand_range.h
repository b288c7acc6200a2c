// What a player may hold: hands of a game, each with a weight.

#ifndef POKERMATH_HAND_RANGE_H_
#define POKERMATH_HAND_RANGE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/card_set.h"
#include "pokermath/export.h"
#include "pokermath/game.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/ranges.h"
#include "pokermath/result.h"

namespace pokermath {

/// The weight 1, in ten-thousandths. Weights are whole numbers from 1 up to this.
inline constexpr int kWholeWeight = 10000;

struct WeightedHand {
  CardSet cards;
  std::int32_t weight = kWholeWeight;

  bool operator==(const WeightedHand&) const = default;
};

/// A range of a game's hands. A hand of weight w lies in it w times, so only the proportions of
/// weights matter: a player holds it w / (sum of w) of the time, if nothing blocks it.
///
/// A value that is cheap to copy: copies share their hands. Const members may run in any number of
/// threads.
class POKERMATH_EXPORT HandRange {
 public:
  /// No hands.
  explicit HandRange(Game game);
  /// The hands in any order. Of the same hand given twice the last weight holds.
  ///
  /// Neither weights nor cards are checked here; Check does it before anything is counted.
  HandRange(Game game, std::vector<WeightedHand> hands);
  /// The holdings of a range, whichever way they are stored; those that the game's deck has not,
  /// and two equal cards, are left out. For games of two cards.
  HandRange(Game game, const Spec& range);
  /// For games of as many cards.
  template <int cards>
  HandRange(Game game, const OmahaSpec<cards>& range);

  // A moved-from range would have no hands at all to ask for, so that a move is a copy.
  HandRange(const HandRange&) = default;
  HandRange& operator=(const HandRange&) = default;

  /// Every hand of the game's deck, all of whole weight ("random"). Not listed until hands() is
  /// called.
  static HandRange Every(Game game);
  /// One hand of whole weight.
  static HandRange Of(Game game, CardSet hand);

  Game game() const;
  /// Whether these are all hands of some cards, with whole weights: every hand of the deck, or what
  /// Without left of it.
  bool IsEvery() const;
  /// The cards whose hands these are; with IsEvery only.
  CardSet EveryOf() const;

  /// Number of hands.
  std::size_t size() const;
  bool empty() const { return size() == 0; }
  /// Rising by the bits of their cards: by the highest card code, then the next one.
  std::span<const WeightedHand> hands() const&;
  std::span<const WeightedHand> hands() const&& = delete;  // they would be gone
  /// Where a hand stands in hands(), size() where it is not.
  std::size_t Find(CardSet hand) const;
  /// Weight of a hand in ten-thousandths, 0 where it is not.
  int WeightOf(CardSet hand) const;

  /// The hands that hold none of these cards, their weights as they were.
  HandRange Without(CardSet dead) const;

  /// The same game, hands and weights.
  bool operator==(const HandRange& other) const;

 private:
  struct Hands;
  explicit HandRange(std::shared_ptr<const Hands> hands) : hands_(std::move(hands)) {}

  std::shared_ptr<const Hands> hands_;
};

#define POKERMATH_EXTERN_RANGE(cards) \
  extern template HandRange::HandRange(Game game, const OmahaSpec<cards>& range);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_EXTERN_RANGE)
#undef POKERMATH_EXTERN_RANGE

/// What ReadRange read.
struct RangeReading {
  HandRange range;
  /// A line each for what reads well but may not be what was meant: a hand whose weight a later
  /// piece replaced, a band that begins a percent above the one before it.
  std::vector<std::string> warnings;
};

/// Reads range text of a game, with weights: docs/ranges.md has the grammar. An empty text is an
/// empty range; the error has the position, the bad piece and what was expected.
POKERMATH_EXPORT Result<RangeReading> ReadRange(Game game, std::string_view text);

/// Text that ReadRange reads back to the same range, weights as the shortest decimals: "TT+:0.5".
/// What is no hand of the game, or has no weight, is left out. Omaha hands without any order take
/// some seconds.
POKERMATH_EXPORT std::string RangeText(const HandRange& range);

}  // namespace pokermath

#endif  // POKERMATH_HAND_RANGE_H_
