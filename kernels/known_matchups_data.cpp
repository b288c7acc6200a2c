// The files of kernels/data as a part of the program. Records are read eight bytes at a time: two
// bytes behind the last one have to be there.

#include "kernels/known_matchups.h"
#include "platform/embedded_file.h"

POKERMATH_EMBED_FILE(pokermath_holdem_matchups, POKERMATH_KERNELS_DATA "/holdem.matchups", 2);
POKERMATH_EMBED_FILE(pokermath_short_deck_matchups, POKERMATH_KERNELS_DATA "/shortdeck.matchups",
                     2);
POKERMATH_EMBED_FILE(pokermath_short_deck_straights_matchups,
                     POKERMATH_KERNELS_DATA "/shortdeck-straights.matchups", 2);

namespace pokermath {

std::span<const std::uint8_t> BuiltInMatchups(Deck deck) {
  switch (deck) {
    case Deck::kShort:
      return POKERMATH_EMBEDDED(pokermath_short_deck_matchups);
    case Deck::kShortStraights:
      return POKERMATH_EMBEDDED(pokermath_short_deck_straights_matchups);
    default:
      return POKERMATH_EMBEDDED(pokermath_holdem_matchups);
  }
}

}  // namespace pokermath
