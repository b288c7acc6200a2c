// Names of ranks.

#ifndef POKERMATH_CARDS_RANK_NAMES_H_
#define POKERMATH_CARDS_RANK_NAMES_H_

#include <string_view>

namespace pokermath {

/// "Ace", "2" .. "10", "Jack", "Queen", "King" for the face values 1..13, "spades" for 0, "?" for
/// any other.
std::wstring_view FaceName(int face_value);

}  // namespace pokermath

#endif  // POKERMATH_CARDS_RANK_NAMES_H_
