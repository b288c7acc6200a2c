/// @file
/// What a player may hold: hands of a game, each with a weight.

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

/// A hand of a range and how often it lies in it.
struct WeightedHand {
  CardSet cards;                       ///< as many as the game deals
  std::int32_t weight = kWholeWeight;  ///< in ten-thousandths, 1..10000

  /// The same cards and weight.
  bool operator==(const WeightedHand&) const = default;
};

/// A range of a game's hands. A hand of weight w lies in it w times, so only the proportions of
/// weights matter: a player holds it w / (sum of w) of the time, if nothing blocks it.
///
/// A value that is cheap to copy: copies share their hands. Const members may run in any number of
/// threads. 16 bytes a hand; when memory runs out, std::bad_alloc is thrown.
class POKERMATH_EXPORT HandRange {
 public:
  /// No hands.
  explicit HandRange(Game game);
  /// The hands in any order. Of the same hand given twice the last weight holds.
  ///
  /// Neither weights nor cards are checked here; Plan and Calculate do it before anything is
  /// counted.
  HandRange(Game game, std::vector<WeightedHand> hands);
  /// The holdings of a range, whichever way they are stored; those that the game's deck has not,
  /// and two equal cards, are left out. For games of two cards; not checked here.
  HandRange(Game game, const Spec& range);
  /// The hands of an Omaha range. For games of as many cards; not checked here.
  template <int cards>
  HandRange(Game game, const OmahaSpec<cards>& range);

  /// Shares the hands. There is no move: what is moved from would have no hands to ask for.
  HandRange(const HandRange&) = default;
  /// Likewise.
  HandRange& operator=(const HandRange&) = default;

  /// Every hand of the game's deck, all of whole weight ("random"). Not listed until hands() is
  /// called.
  static HandRange Every(Game game);
  /// One hand of whole weight; not checked here.
  static HandRange Of(Game game, CardSet hand);

  /// The game whose hands these are.
  Game game() const;
  /// Whether these are all hands of some cards, with whole weights: every hand of the deck, or what
  /// Without left of it.
  bool IsEvery() const;
  /// The cards whose hands these are; with IsEvery only.
  CardSet EveryOf() const;

  /// Number of hands.
  std::size_t size() const;
  /// Whether it has no hands.
  bool empty() const { return size() == 0; }
  /// The hands, rising by the bits of their cards: by the highest card code, then the next one.
  /// They live as long as a range that has them. With IsEvery the first call lists them: 40 MB for
  /// all hands of five cards, 310 MB of six.
  std::span<const WeightedHand> hands() const&;
  /// Of a temporary they would be gone.
  std::span<const WeightedHand> hands() const&& = delete;
  /// Where a hand stands in hands(), size() where it is not. Lists the hands as hands() does.
  std::size_t Find(CardSet hand) const;
  /// Weight of a hand in ten-thousandths, 0 where it is not. Lists the hands likewise.
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

/// @cond
#define POKERMATH_EXTERN_RANGE(cards) \
  extern template HandRange::HandRange(Game game, const OmahaSpec<cards>& range);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_EXTERN_RANGE)
#undef POKERMATH_EXTERN_RANGE
/// @endcond

/// What ReadRange read.
struct RangeReading {
  HandRange range;  ///< the hands and their weights
  /// A line each for what reads well but may not be what was meant: a hand whose weight a later
  /// piece replaced, a band that begins a percent above the one before it.
  std::vector<std::string> warnings;
};

/// Reads range text of a game, with weights: docs/ranges.md has the grammar. An empty text is an
/// empty range; the error (ErrorCode::kText) has the position, the bad piece and what was expected.
/// Any number of threads.
POKERMATH_EXPORT Result<RangeReading> ReadRange(Game game, std::string_view text);

/// Text that ReadRange reads back to the same range, weights as the shortest decimals: "TT+:0.5".
/// What is no hand of the game, or has no weight, is left out. Omaha hands without any order take
/// some seconds.
POKERMATH_EXPORT std::string RangeText(const HandRange& range);

}  // namespace pokermath

#endif  // POKERMATH_HAND_RANGE_H_
