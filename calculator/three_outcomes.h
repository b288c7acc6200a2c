// What three players take, by kernels that count each hand's cases by who shares them.

#ifndef POKERMATH_CALCULATOR_THREE_OUTCOMES_H_
#define POKERMATH_CALCULATOR_THREE_OUTCOMES_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "calculator/sums.h"
#include "kernels/three_ranges.h"

namespace pokermath {

inline constexpr std::size_t kThree = 3;

/// The first player who has the same range as a player: what is so for one is so for the other.
inline std::size_t FirstLike(const CheckedQuestion& question, std::size_t player) {
  const auto range_of = [&](std::size_t i) { return question.players()[i].range; };
  std::size_t first = 0;
  while (range_of(first) != range_of(player)) ++first;
  return first;
}

/// Of a hand or of all hands together.
struct ThreeOutcomes {
  Int128 cases = 0, wins = 0, shares2 = 0, shares3 = 0;

  ThreeOutcomes() = default;
  /// @param weight  of the hand
  /// @param boards  that each of its cases leaves, where they were not counted for each board
  ThreeOutcomes(const ThreeTally& tally, std::int64_t weight, std::int64_t boards = 1)
      : cases(Int128{weight * boards} * tally.cases),
        wins(Int128{weight} * tally.wins),
        shares2(Int128{weight} * tally.shares2),
        shares3(Int128{weight} * tally.shares3) {}

  void Add(const ThreeOutcomes& other) {
    cases += other.cases;
    wins += other.wins;
    shares2 += other.shares2;
    shares3 += other.shares3;
  }
  void MultiplyBy(std::int64_t weight) {
    cases *= weight;
    wins *= weight;
    shares2 *= weight;
    shares3 *= weight;
  }
  void DivideBy(std::int64_t count) {
    cases /= count;
    wins /= count;
    shares2 /= count;
    shares3 /= count;
  }
  void AddTo(OutcomePlace place, std::span<Int128> sums) const {
    sums[place.wins()] += wins;
    sums[place.ties()] += shares2 + shares3;
    sums[place.points()] += kPot * wins + kPot / 2 * shares2 + kPot / 3 * shares3;
  }
};

/// Adds a player's outcomes: of all hands together, and behind these of each if that is asked for.
inline void AddOutcomes(const SumsLayout& layout, std::size_t player,
                        std::span<const ThreeOutcomes> outcomes, std::span<Int128> sums) {
  const ThreeOutcomes& all = outcomes[0];
  all.AddTo(layout.Total(player), sums);
  sums[layout.Shared(player, 0)] += all.wins;
  sums[layout.Shared(player, 1)] += all.shares2;
  sums[layout.Shared(player, 2)] += all.shares3;
  if (player == 0) sums[SumsLayout::kCases] += all.cases;
  for (std::size_t i = 1; i < outcomes.size(); ++i) {
    const std::size_t cell = layout.HandCases(player, i - 1);
    sums[cell] += outcomes[i].cases;
    outcomes[i].AddTo(SumsLayout::OutcomeOf(cell), sums);
  }
}

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_THREE_OUTCOMES_H_
