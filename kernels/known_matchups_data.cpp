// The files of kernels/data as a part of the program, taken in by the assembler. Records are read
// eight bytes at a time: two bytes behind the last one are there.

#include "kernels/known_matchups.h"

asm(R"(
  .pushsection .rodata
pokermath_holdem_matchups:
  .incbin ")" POKERMATH_KERNELS_DATA R"(/holdem.matchups"
pokermath_holdem_matchups_end:
  .zero 2
pokermath_short_deck_matchups:
  .incbin ")" POKERMATH_KERNELS_DATA R"(/shortdeck.matchups"
pokermath_short_deck_matchups_end:
  .zero 2
pokermath_short_deck_straights_matchups:
  .incbin ")" POKERMATH_KERNELS_DATA R"(/shortdeck-straights.matchups"
pokermath_short_deck_straights_matchups_end:
  .zero 2
  .popsection
)");

// Hidden, or the compiler would look for them in other libraries.
#define POKERMATH_DATA extern "C" [[gnu::visibility("hidden")]] const std::uint8_t
POKERMATH_DATA pokermath_holdem_matchups[];
POKERMATH_DATA pokermath_holdem_matchups_end[];
POKERMATH_DATA pokermath_short_deck_matchups[];
POKERMATH_DATA pokermath_short_deck_matchups_end[];
POKERMATH_DATA pokermath_short_deck_straights_matchups[];
POKERMATH_DATA pokermath_short_deck_straights_matchups_end[];
#undef POKERMATH_DATA

namespace pokermath {

std::span<const std::uint8_t> BuiltInMatchups(Deck deck) {
  switch (deck) {
    case Deck::kShort:
      return {pokermath_short_deck_matchups, pokermath_short_deck_matchups_end};
    case Deck::kShortStraights:
      return {pokermath_short_deck_straights_matchups, pokermath_short_deck_straights_matchups_end};
    default:
      return {pokermath_holdem_matchups, pokermath_holdem_matchups_end};
  }
}

}  // namespace pokermath
