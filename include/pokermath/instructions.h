/// @file
/// Which of the processor's instructions the kernels use.
///
/// Kernels are compiled for several levels of instructions and run at the best one that the machine
/// has, or at the one that the environment variable POKERMATH_ISA names when it is first asked for:
/// "baseline", "avx2" or "avx512". A name that is unknown, or of a level that the machine lacks, is
/// as good as none there. Every level gives the same answers.

#ifndef POKERMATH_INSTRUCTIONS_H_
#define POKERMATH_INSTRUCTIONS_H_

#include <span>
#include <string_view>

#include "pokermath/export.h"

namespace pokermath {

/// The levels that this machine has, the best one last: "baseline" alone or more. They live as long
/// as the program.
POKERMATH_EXPORT std::span<const std::string_view> InstructionLevels();

/// The level in use: one of InstructionLevels. Any thread may ask.
POKERMATH_EXPORT std::string_view InstructionLevel();

/// Uses a level from now on. Any thread may call it, but for one that runs meanwhile it is open
/// which of the two it gets.
///
/// @return false, and all is as it was, if the name is unknown or the machine lacks the level
[[nodiscard]] POKERMATH_EXPORT bool UseInstructionLevel(std::string_view name);

}  // namespace pokermath

#endif  // POKERMATH_INSTRUCTIONS_H_
