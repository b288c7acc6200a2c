#include "kernels/matchup_rows.h"

namespace pokermath {
namespace {

// Calls visit with the number and the shape of every class of a deck, shape by shape.
template <typename Visit>
void ForEachClass(Deck deck, const Visit& visit) {
  const std::array<std::size_t, kShapes> classes = ClassesOfShapes(deck);
  for (const Shape shape : {kPair, kSuited, kOffsuit}) {
    for (std::size_t i = 0; i < classes[shape]; ++i)
      visit(kShapesOfClasses[shape].first + i, shape);
  }
}

}  // namespace

void MatchupRows::SetWhole(std::size_t number, AgainstClasses& against) const {
  const KnownMatchups& known = KnownMatchups::Of(deck_);
  against = {};
  ForEachClass(deck_, [&](std::size_t other, Shape shape) {
    const SuitPatterns& patterns = kSuitPatterns[ShapeOf(number)][shape];
    Counts sum{};
    known.ForEachPattern(number, other, [&](std::size_t pattern, const Counts& counts) {
      sum.wins += patterns.times[pattern] * counts.wins;
      sum.ties += patterns.times[pattern] * counts.ties;
    });
    against.wins[other] = sum.wins;
    against.ties[other] = sum.ties;
  });
}

void MatchupRow::Set(Deck deck, std::size_t number) {
  const KnownMatchups& known = KnownMatchups::Of(deck);
  const std::array<std::size_t, kShapes> classes = ClassesOfShapes(deck);
  const auto& patterns = kSuitPatterns[ShapeOf(number)];
  std::size_t size = 0;
  for (std::size_t shape = 0; shape < kShapes; ++shape) {
    starts_[shape] = size;
    size += classes[shape] * patterns[shape].count;
  }
  matchups_ = std::make_unique<Matchup[]>(size);
  Matchup* matchups = matchups_.get();
  ForEachClass(deck, [&](std::size_t other, Shape shape) {
    known.ForEachPattern(number, other, [&](std::size_t pattern, const Counts& counts) {
      matchups[pattern] = {static_cast<double>(counts.wins), static_cast<double>(counts.ties)};
    });
    matchups += patterns[shape].count;
  });
}

const MatchupRows& MatchupRows::Of(Deck deck) {
  static const std::array<MatchupRows, 3> rows = {
      MatchupRows(Deck::kFull), MatchupRows(Deck::kShort), MatchupRows(Deck::kShortStraights)};
  return rows[static_cast<std::size_t>(deck)];
}

}  // namespace pokermath
