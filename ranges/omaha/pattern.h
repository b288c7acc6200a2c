// Patterns of Omaha hands: one atom for each card, and all hands whose cards can be dealt out to
// the atoms.

#ifndef POKERMATH_RANGES_OMAHA_PATTERN_H_
#define POKERMATH_RANGES_OMAHA_PATTERN_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

#include "eval/rank_sets.h"
#include "ranges/omaha/numbers.h"

namespace pokermath {

inline constexpr int kAnySuit = -1;

/// The cards that may stand at one place of a pattern.
struct OmahaAtom {
  RankSet ranks = kAllRanks;
  int suit = kAnySuit;

  bool operator==(const OmahaAtom&) const = default;

  /// A bit for each card code.
  std::uint64_t Cards() const {
    constexpr std::uint64_t kEverySuit = 1 + (1ULL << 13) + (1ULL << 26) + (1ULL << 39);
    return suit == kAnySuit ? ranks * kEverySuit : std::uint64_t{ranks} << 13 * suit;
  }
  /// "A", "As", "x", "xs", "[A-T]".
  std::string Text() const;
};

template <int cards>
using OmahaPattern = std::array<OmahaAtom, static_cast<std::size_t>(cards)>;

template <int cards>
std::array<std::uint64_t, static_cast<std::size_t>(cards)> CardsOf(
    const OmahaPattern<cards>& pattern) {
  std::array<std::uint64_t, static_cast<std::size_t>(cards)> masks;
  for (std::size_t i = 0; i < masks.size(); ++i) masks[i] = pattern[i].Cards();
  return masks;
}

/// Finds all hands of a pattern, row by row.
///
/// Which atoms the cards so far have taken can often be chosen in several ways, so the state is a
/// set of sets of atoms: a bit for each subset of the atoms. When one card is left, the atoms that
/// can be left over say which cards it may be, and these are a row. The same walk finds rank
/// multisets (`repeats`): their elements are 13 ranks, which may come more than once.
template <int cards, bool repeats, typename Visit>
class PatternWalk {
 public:
  using Masks = std::array<std::uint64_t, static_cast<std::size_t>(cards)>;

  /// @param masks  the elements of each atom
  /// @param visit  takes the number of a row's first element and the row, and returns whether to
  ///               go on
  PatternWalk(const Masks& masks, Visit& visit) : visit_(visit) {
    for (std::size_t atom = 0; atom < masks.size(); ++atom) {
      every_ |= masks[atom];
      for (std::uint64_t rest = masks[atom]; rest != 0; rest &= rest - 1) {
        fitting_[static_cast<std::size_t>(std::countr_zero(rest))] |= 1U << atom;
      }
      const std::size_t alone = std::size_t{1} << atom;
      for (std::size_t others = 0; others < alone; ++others) {
        left_over_[alone + others] = left_over_[others] | masks[atom];
      }
    }
  }

  /// Whether `visit` let it go on to the end.
  bool Run() { return Walk<cards - 1>(1, kElements, 0); }

 private:
  static constexpr int kElements = repeats ? 13 : 52;
  static constexpr unsigned kAllAtoms = (1U << cards) - 1;

  static std::uint64_t Below(int end) { return (std::uint64_t{1} << end) - 1; }

  static int PlaceOf(std::size_t place, std::size_t element) {
    return repeats ? kMultisetPlaces[place][element] : kOmahaPlaces[place][element];
  }

  // Adds one of the atoms to each of the sets that do not have it.
  static std::uint32_t Take(std::uint32_t state, unsigned atoms) {
    constexpr std::uint32_t kWithout[] = {0x55555555, 0x33333333, 0x0F0F0F0F, 0x00FF00FF,
                                          0x0000FFFF};
    std::uint32_t next = 0;
    for (; atoms != 0; atoms &= atoms - 1) {
      const int atom = std::countr_zero(atoms);
      next |= (state & kWithout[atom]) << (1U << atom);
    }
    return next;
  }

  // The elements of atoms that may be the last.
  std::uint64_t Last(std::uint32_t state) const {
    std::size_t last = 0;
    for (std::size_t atom = 0; atom < cards; ++atom) {
      last |= static_cast<std::size_t>(state >> (kAllAtoms ^ (1U << atom)) & 1) << atom;
    }
    return left_over_[last];
  }

  // Chooses the element of a place, the highest place first; `end` is the first that is too large.
  template <std::size_t place>
  bool Walk(std::uint32_t state, int end, int number) {
    for (std::uint64_t rest = every_ & Below(end); rest != 0; rest &= rest - 1) {
      const int element = std::countr_zero(rest);
      const std::uint32_t next = Take(state, fitting_[static_cast<std::size_t>(element)]);
      if (next == 0) continue;
      const int next_end = repeats ? element + 1 : element;
      const int next_number = number + PlaceOf(place, static_cast<std::size_t>(element));
      if constexpr (place == 1) {
        const std::uint64_t row = Last(next) & Below(next_end);
        if (row != 0 && !visit_(next_number, row)) return false;
      } else {
        if (!Walk<place - 1>(next, next_end, next_number)) return false;
      }
    }
    return true;
  }

  Visit& visit_;
  std::uint64_t every_ = 0;
  std::array<unsigned, kElements> fitting_{};
  std::array<std::uint64_t, kAllAtoms + 1> left_over_{};
};

/// Visits the rows of the hands (or, with `repeats`, of the rank multisets) that fit.
template <int cards, bool repeats, typename Visit>
bool WalkPattern(const std::array<std::uint64_t, static_cast<std::size_t>(cards)>& masks,
                 Visit visit) {
  return PatternWalk<cards, repeats, Visit>(masks, visit).Run();
}

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_PATTERN_H_
