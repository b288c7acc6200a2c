// Terms of Omaha range text, which are all that is read and written: a pattern or a band of
// percentages, with suit shapes. AAxx:ds, 5%-20%, random.

#ifndef POKERMATH_RANGES_OMAHA_TERM_H_
#define POKERMATH_RANGES_OMAHA_TERM_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ranges/omaha/hands.h"
#include "ranges/omaha/shapes.h"
#include "ranges/text_pieces.h"

namespace pokermath {

inline constexpr int kAnySuit = -1;

/// The cards that may stand at one place of a pattern.
struct PatternPlace {
  RankSet ranks = kAllRanks;
  int suit = kAnySuit;

  bool operator==(const PatternPlace&) const = default;

  /// A bit for each card code.
  std::uint64_t Cards() const {
    constexpr std::uint64_t kEverySuit = 1 + (1ULL << 13) + (1ULL << 26) + (1ULL << 39);
    return suit == kAnySuit ? ranks * kEverySuit : std::uint64_t{ranks} << 13 * suit;
  }
  /// "A", "As", "x", "xs", "[A-T]".
  std::string Text() const;
};

template <int cards>
struct OmahaTerm {
  std::array<PatternPlace, static_cast<std::size_t>(cards)> pattern{};
  std::optional<PercentBand> band;  // in place of a pattern
  Splits splits = kAllSplits<cards>;

  bool operator==(const OmahaTerm&) const = default;

  OmahaSpec<cards> Hands() const;
  /// High ranks first; text for the splits there must be.
  std::string Text() const;
};

/// Sets of splits that text can say, with the shortest text for each, like ":ds:3"; those of most
/// splits first, the shorter text before the longer one.
struct NamedSplits {
  Splits splits;
  std::string text;
};
template <int cards>
const std::vector<NamedSplits>& AllNamedSplits();

/// How much may still be done, in rows of hands.
class Budget {
 public:
  explicit Budget(std::int64_t rows) : left_(rows) {}
  bool Left() const { return left_ > 0; }
  void Spend(std::int64_t rows) { left_ -= rows; }

 private:
  std::int64_t left_;
};

/// Finds all hands of some splits that fit a pattern, row by row.
///
/// Which places the cards so far have taken can often be chosen in several ways, so the state is a
/// set of sets of places: a bit for each subset of the places. When one card is left, the places
/// that can be left over say which cards it may be, and these are a row.
template <int cards, typename Visit>
class PatternWalk {
 public:
  using Masks = std::array<std::uint64_t, static_cast<std::size_t>(cards)>;

  /// @param masks  the cards of each place
  /// @param visit  takes the number of a row's first hand and the row, and returns whether to go on
  PatternWalk(const Masks& masks, Splits splits, Visit& visit) : splits_(splits), visit_(visit) {
    for (std::size_t place = 0; place < masks.size(); ++place) {
      every_ |= masks[place];
      for (std::uint64_t rest = masks[place]; rest != 0; rest &= rest - 1) {
        fitting_[static_cast<std::size_t>(std::countr_zero(rest))] |= 1U << place;
      }
      const std::size_t alone = std::size_t{1} << place;
      for (std::size_t others = 0; others < alone; ++others) {
        left_over_[alone + others] = left_over_[others] | masks[place];
      }
    }
  }

  /// Whether `visit` let it go on to the end.
  bool Run() { return Walk<cards - 1>(1, 52, 0, 0); }
  /// How many rows it looked at.
  std::int64_t Rows() const { return rows_; }

 private:
  static constexpr unsigned kAllPlaces = (1U << cards) - 1;

  static std::uint64_t Below(int end) { return (std::uint64_t{1} << end) - 1; }

  // Adds one of the places to each of the sets that do not have it.
  static std::uint64_t Take(std::uint64_t state, unsigned places) {
    constexpr std::uint64_t kWithout[] = {0x5555555555555555, 0x3333333333333333,
                                          0x0F0F0F0F0F0F0F0F, 0x00FF00FF00FF00FF,
                                          0x0000FFFF0000FFFF, 0x00000000FFFFFFFF};
    static_assert(cards <= std::size(kWithout));
    std::uint64_t next = 0;
    for (; places != 0; places &= places - 1) {
      const int place = std::countr_zero(places);
      next |= (state & kWithout[place]) << (1U << place);
    }
    return next;
  }

  // The cards of places that may be the last.
  std::uint64_t Last(std::uint64_t state) const {
    std::size_t last = 0;
    for (std::size_t place = 0; place < cards; ++place) {
      last |= static_cast<std::size_t>(state >> (kAllPlaces ^ (1U << place)) & 1) << place;
    }
    return left_over_[last];
  }

  // The last cards with which the suits fall as they shall.
  std::uint64_t OfSplits(SuitCounts suits) const {
    if (splits_ == kAllSplits<cards>) return ~std::uint64_t{0};
    std::uint64_t fitting = 0;
    for (int suit = 0; suit < 4; ++suit) {
      const int split = kSplitOfCounts<cards>[suits + OneOfSuit(suit)];
      if ((splits_ >> split & 1) != 0) fitting |= std::uint64_t{kAllRanks} << 13 * suit;
    }
    return fitting;
  }

  // Chooses the card that comes so far from the lowest; `end` is the first that is too large.
  template <std::size_t from_lowest>
  bool Walk(std::uint64_t state, int end, int number, SuitCounts suits) {
    for (std::uint64_t rest = every_ & Below(end); rest != 0; rest &= rest - 1) {
      const int card = std::countr_zero(rest);
      const std::uint64_t next = Take(state, fitting_[static_cast<std::size_t>(card)]);
      if (next == 0) continue;
      const int next_number = number + kHandPlaces[from_lowest][static_cast<std::size_t>(card)];
      const SuitCounts next_suits = suits + OneOfSuit(card / 13);
      if constexpr (from_lowest == 1) {
        ++rows_;
        const std::uint64_t row = Last(next) & Below(card) & OfSplits(next_suits);
        if (row != 0 && !visit_(next_number, row)) return false;
      } else {
        if (!Walk<from_lowest - 1>(next, card, next_number, next_suits)) return false;
      }
    }
    return true;
  }

  Splits splits_;
  Visit& visit_;
  std::int64_t rows_ = 0;
  std::uint64_t every_ = 0;
  std::array<unsigned, 52> fitting_{};
  std::array<std::uint64_t, kAllPlaces + 1> left_over_{};
};

/// Visits the rows of a pattern's hands.
template <int cards, typename Visit>
bool WalkPattern(const OmahaTerm<cards>& term, Budget& budget, Visit visit) {
  constexpr int kRowsOfBeginning = 30;  // that cost as much
  std::array<std::uint64_t, static_cast<std::size_t>(cards)> masks;
  for (std::size_t i = 0; i < masks.size(); ++i) masks[i] = term.pattern[i].Cards();
  PatternWalk<cards, Visit> walk(masks, term.splits, visit);
  const bool ended = walk.Run();
  budget.Spend(kRowsOfBeginning + walk.Rows());
  return ended;
}

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_TERM_H_
