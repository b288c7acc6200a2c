// The known matchups of a class as numbers that multiply with weights.

#ifndef POKERMATH_KERNELS_MATCHUP_ROWS_H_
#define POKERMATH_KERNELS_MATCHUP_ROWS_H_

#include <array>
#include <atomic>
#include <memory>

#include "kernels/decks.h"
#include "kernels/known_matchups.h"
#include "kernels/matchup_classes.h"

namespace pokermath {

/// A class against all classes of its deck.
class MatchupRow {
 public:
  struct Matchup {
    double wins, ties;
  };

  /// A hand of the class against all hands of every class.
  struct AgainstClasses {
    static constexpr std::size_t kSize = 176;  ///< whole registers; 0 where there is no class
    std::array<double, kSize> wins{}, ties{};
  };

  MatchupRow(Deck deck, std::size_t number);

  /// Against all classes of a shape: for each one as many as there are suit patterns, 0 where cards
  /// are shared.
  const Matchup* Against(Shape shape) const { return &matchups_[starts_[shape]]; }
  const AgainstClasses& whole() const { return whole_; }

 private:
  std::array<std::size_t, kShapes + 1> starts_{};
  std::unique_ptr<Matchup[]> matchups_;
  AgainstClasses whole_;
};

/// The rows of a deck, each unpacked when it is first asked for, by any thread: some ten
/// microseconds.
class MatchupRows {
 public:
  static const MatchupRows& Of(Deck deck);
  ~MatchupRows();

  const MatchupRow& Row(std::size_t number) const {
    const MatchupRow* row = rows_[number].load(std::memory_order_acquire);
    return row != nullptr ? *row : Unpack(number);
  }

 private:
  explicit MatchupRows(Deck deck) : deck_(deck) {}
  const MatchupRow& Unpack(std::size_t number) const;

  Deck deck_;
  mutable std::array<std::atomic<const MatchupRow*>, kPreflopClasses> rows_{};
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_MATCHUP_ROWS_H_
