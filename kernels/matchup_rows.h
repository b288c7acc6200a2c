// The known matchups of a class as numbers that multiply with weights.

#ifndef POKERMATH_KERNELS_MATCHUP_ROWS_H_
#define POKERMATH_KERNELS_MATCHUP_ROWS_H_

#include <array>
#include <memory>

#include "kernels/decks.h"
#include "kernels/known_matchups.h"
#include "kernels/matchup_classes.h"
#include "platform/made_once.h"

namespace pokermath {

/// A hand of a class against all hands of every class.
struct AgainstClasses {
  static constexpr std::size_t kSize = 176;  ///< whole registers; 0 where there is no class
  std::array<double, kSize> wins, ties;
};

/// A class against all classes of its deck.
class MatchupRow {
 public:
  struct Matchup {
    double wins, ties;
  };

  /// Unpacks the row of a class.
  void Set(Deck deck, std::size_t number);

  /// Against all classes of a shape: for each one as many as there are suit patterns, 0 where cards
  /// are shared.
  const Matchup* Against(Shape shape) const { return &matchups_[starts_[shape]]; }

 private:
  std::array<std::size_t, kShapes> starts_;
  std::unique_ptr<Matchup[]> matchups_;
};

/// The known matchups of a deck, for those who weigh many of them: of each class a few microseconds
/// when they are first asked for.
class MatchupRows {
 public:
  static const MatchupRows& Of(Deck deck);

  const AgainstClasses& Whole(std::size_t number) const {
    return whole_.Get(number, [&](AgainstClasses& against) { SetWhole(number, against); });
  }
  const MatchupRow& Row(std::size_t number) const {
    return rows_.Get(number, [&](MatchupRow& row) { row.Set(deck_, number); });
  }

 private:
  explicit MatchupRows(Deck deck) : deck_(deck) {}
  void SetWhole(std::size_t number, AgainstClasses& against) const;

  Deck deck_;
  MadeOnce<AgainstClasses> whole_{kPreflopClasses};
  MadeOnce<MatchupRow> rows_{kPreflopClasses};
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_MATCHUP_ROWS_H_
