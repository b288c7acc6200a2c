// Classes of hands: pairs, and two ranks suited or offsuit, in the 13 x 13 matrix.

#ifndef POKERMATH_RANGES_HAND_CLASSES_H_
#define POKERMATH_RANGES_HAND_CLASSES_H_

#include <array>
#include <string_view>

#include "pokermath/ranges.h"

namespace pokermath {

inline constexpr int kHandClasses = 169;
inline constexpr int kLowestShortDeckRank = 4;  // the six

/// Matrix cell of two cards.
int CellOf(int code1, int code2);

/// How many holdings the class of a matrix cell has.
constexpr int HoldingsIn(int cell) {
  return cell / 13 == cell % 13 ? 6 : cell / 13 < cell % 13 ? 4 : 12;
}

/// Adds the whole class of a matrix cell to a range.
void AddCell(int cell, Spec& range);

/// Adds classes named in a list with blanks, like "AA AKs KQo"; the names must be right.
void AddClasses(std::string_view names, Spec& range);

/// Range text; every offsuit class is followed by `offsuit` ("" or "o").
CString RangeText(const Spec& range, bool short_deck, const CString& offsuit);

/// The same of classes with weights, 0 for those that are not in it: "TT+:0.5,AKs".
CString RangeText(const std::array<int, kHandClasses>& weights, const CString& offsuit);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_HAND_CLASSES_H_
