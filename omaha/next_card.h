// What a hand is when the next board card comes.

#ifndef POKERMATH_OMAHA_NEXT_CARD_H_
#define POKERMATH_OMAHA_NEXT_CARD_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "cards/card_list.h"
#include "eval/omaha_best.h"
#include "omaha/nuts.h"

namespace pokermath {

/// Puts every unseen card on a board of three or four, in the order of the codes.
///
/// @param visit  called with the card, the ascending value of the hand then, and a function that
///               tells whether that is the nuts; it is dear
template <typename Visit>
void ForEachNextCard(std::span<const int> hole, std::span<const int> board, const Visit& visit) {
  const std::uint64_t known = Bits(hole) | Bits(board);
  std::array<int, 5> next{};
  std::ranges::copy(board, next.begin());
  for (int card = 0; card < 52; ++card) {
    if ((known & Bit(card)) != 0) continue;
    next[board.size()] = card;
    const OmahaPairValues values(std::span<const int>(next).first(board.size() + 1));
    const int value = values.Best(hole);
    visit(card, value, [&] { return IsNuts(values, value, known | Bit(card)); });
  }
}

}  // namespace pokermath

#endif  // POKERMATH_OMAHA_NEXT_CARD_H_
