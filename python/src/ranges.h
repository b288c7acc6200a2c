// Ranges as Python holds them.

#ifndef POKERMATH_PYTHON_RANGES_H_
#define POKERMATH_PYTHON_RANGES_H_

#include <string>

#include "pages/player_words.h"
#include "pokermath/hand_range.h"
#include "python/src/convert.h"

namespace pokermath {

/// A range, and the text that it was read from; that is empty where it came from no text.
struct NamedRange {
  HandRange range;
  std::string name;

  /// The text that it was read from, or one that reads back to it.
  std::string Name() const { return name.empty() ? RangeText(range) : name; }
};

/// A player as an argument, not yet read: a text, or a range.
struct PlayerArgument {
  std::string text;
  std::optional<NamedRange> range;

  /// Throws TypeError for what is no player.
  explicit PlayerArgument(py::handle value);
  /// Whether it is one hand, as text.
  bool IsHand(Game game) const;
  PlayerReading Read(Game game) const;
};

/// Whether its ranges may be so large that reading and writing them takes long.
inline bool HasLargeRanges(Game game) { return RulesOf(game).hand_size > 2; }

}  // namespace pokermath

#endif  // POKERMATH_PYTHON_RANGES_H_
