// The file of kernels/data as a part of the program, taken in by the assembler.

#include "kernels/known_matchups.h"

asm(R"(
  .pushsection .rodata
pokermath_known_matchups:
  .incbin ")" POKERMATH_KERNELS_DATA R"(/holdem.matchups"
pokermath_known_matchups_end:
  .popsection
)");

// Hidden, or the compiler would look for them in other libraries.
extern "C" [[gnu::visibility("hidden")]] const std::uint8_t pokermath_known_matchups[];
extern "C" [[gnu::visibility("hidden")]] const std::uint8_t pokermath_known_matchups_end[];

namespace pokermath {

std::span<const std::uint8_t> BuiltInMatchups() {
  return {pokermath_known_matchups, pokermath_known_matchups_end};
}

}  // namespace pokermath
