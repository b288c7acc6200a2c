/// @file
/// Omaha ranges: sets of hands of four to six cards, from text and from a percentage; and what
/// players call a hand.
///
/// Nothing has to be loaded: the order of hands is part of the library, counted by
/// `pokermath tables build omaha-order omaha5-order`. Free functions may be called by any number of
/// threads. When memory runs out, std::bad_alloc is thrown.

#ifndef POKERMATH_OMAHA_RANGES_H_
#define POKERMATH_OMAHA_RANGES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/export.h"
#include "pokermath/game.h"
#include "pokermath/result.h"
#include "pokermath/text.h"

namespace pokermath {

class OmahaBits;

/// Whether it is known which hands of so many cards are stronger, so that percentages mean
/// something: of four and of five cards.
constexpr bool HasOmahaOrder(int cards) { return cards == 4 || cards == 5; }

/// A set of Omaha hands of so many cards (one of kOmahaHandSizes), each hand once, whatever the
/// order of its cards.
///
/// One bit for each of the 270,725, 2,598,960 or 20,358,520 hands: 34 KB, 325 KB or 2.5 MB, copied
/// in microseconds. The order of the hands is that of their largest card codes, then of the next
/// ones. Card codes are 0..51 and the cards of a hand different; neither is checked. Const members
/// may run in several threads.
template <int cards>
class POKERMATH_EXPORT OmahaSpec {
  static_assert(IsOmahaHandSize(cards));

 public:
  static constexpr int kHandSize = cards;  ///< cards of a hand
  /// How many hands there are.
  static constexpr int kAllHands = [] {
    int hands = 1;
    for (int i = 0; i < cards; ++i) hands = hands * (52 - i) / (i + 1);
    return hands;
  }();
  /// Card codes, the smallest first.
  using Hand = std::array<int, static_cast<std::size_t>(cards)>;

  /// No hands.
  OmahaSpec();

  /// The same hands.
  bool operator==(const OmahaSpec&) const = default;

  /// Number of hands.
  int Count() const;
  /// Their share of all hands in percent, 0..100.
  double Percent() const;
  /// Whether there is none.
  bool Empty() const;

  /// Whether a hand is in it; its cards in any order.
  bool Contains(std::span<const int, cards> hand) const;
  /// Adds a hand, if it is not there.
  void Insert(std::span<const int, cards> hand);
  /// Takes a hand away, if it is there.
  void Erase(std::span<const int, cards> hand);

  /// Makes this the range of all hands.
  void MakeRandom();
  /// Adds the hands of another range.
  void Unite(const OmahaSpec& other);
  /// Keeps only the hands that another range has.
  void Intersect(const OmahaSpec& other);
  /// Takes away the hands that another range has.
  void Subtract(const OmahaSpec& other);
  /// Adds to `out` what holds none of the dead card codes. `out` is not cleared first.
  void Exclude(const std::vector<int>& dead, OmahaSpec& out) const;

  /// Adds hands by their exact equity against a random hand: those within the strongest `to`
  /// percent of all hands that are not within the strongest `from`.
  ///
  /// Hands that differ in the names of their suits come together: within p percent are as many
  /// such classes, from the strongest on, as are no wider than p together; at least the strongest
  /// one unless p is 0. Of equal classes the one with the higher cards comes first.
  /// @param from,to  0 <= from <= to <= 100
  void AddPercent(double from, double to) requires(HasOmahaOrder(cards));

  /// All hands in order.
  std::vector<Hand> Hands() const;
  /// All hands as sets of card codes, which is what PokerLogic's range functions take; some 500
  /// bytes a hand.
  std::set<std::set<int>> Combinations() const;

  /// Range text that ParseOmahaRange reads back to the same range; short where a few patterns and
  /// percentages say it, which takes some 10 to 300 ms, 0.1 to 2 s for five cards and 0.1 to 10 s
  /// for six. A set without any order takes some seconds, and text of ten bytes a hand.
  CString MakeString() const;

 private:
  friend class OmahaBits;

  std::vector<std::uint64_t> bits_;
};

/// @cond
#define POKERMATH_EXTERN_SPEC(cards) extern template class OmahaSpec<cards>;
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_EXTERN_SPEC)
#undef POKERMATH_EXTERN_SPEC
/// @endcond

/// How strong a hand is before the flop: the share of all hands of as many cards, in percent, that
/// come no later than it in the order of AddPercent; small is strong. An error for six cards, whose
/// order is not known, and for what is no number of hole cards.
POKERMATH_EXPORT Result<double> OmahaPercentile(std::span<const int> hand);

/// What players call a hand of one of kOmahaHandSizes: pairs, connectedness, suits, like
/// "aces, double-suited" or "rundown, single-suited". docs/ranges.md has all the words.
POKERMATH_EXPORT std::string OmahaHandName(std::span<const int> hand);

/// What ParseOmahaRange read: a range or an error.
template <int cards>
struct OmahaRangeResult {
  OmahaSpec<cards> range;  ///< empty if there is an error
  /// Empty when the text was read; otherwise one line with position, bad piece and expectation.
  std::string error;
  std::size_t position = 0;  ///< of the error, in bytes
};

/// Reads range text: a list, separated by commas, semicolons or blanks, of hands (AsKsQhJh),
/// patterns (AAxx, KQJTx, [T-A][T-A]xx), percentages (10%, 5%-20%) and the word random, each with
/// suit shapes (AAxx:ds) and exclusions (AAxx!AAAx) behind it. docs/ranges.md has the grammar. An
/// empty text is an empty range. Patterns take up to 0.2 ms, with five cards 3 ms, with six 30 ms;
/// a text that would take many seconds is an error, and so is a percentage where HasOmahaOrder says
/// no.
template <int cards>
POKERMATH_EXPORT OmahaRangeResult<cards> ParseOmahaRange(std::string_view text);

/// @cond
#define POKERMATH_EXTERN_PARSE(cards) \
  extern template OmahaRangeResult<cards> ParseOmahaRange<cards>(std::string_view);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_EXTERN_PARSE)
#undef POKERMATH_EXTERN_PARSE
/// @endcond

}  // namespace pokermath

/// Ranges of Omaha.
using CSpecOmaha = pokermath::OmahaSpec<4>;
/// Ranges of Omaha with five cards.
using CSpecOmahaFiveCards = pokermath::OmahaSpec<5>;

#endif  // POKERMATH_OMAHA_RANGES_H_
