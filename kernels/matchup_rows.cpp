#include "kernels/matchup_rows.h"

#include <memory>

namespace pokermath {

MatchupRow::MatchupRow(Deck deck, std::size_t number) {
  const KnownMatchups& known = KnownMatchups::Of(deck);
  const std::array<std::size_t, kShapes> classes = ClassesOfShapes(deck);
  const auto& patterns_against = kSuitPatterns[ShapeOf(number)];
  for (std::size_t shape = 0; shape < kShapes; ++shape) {
    starts_[shape + 1] = starts_[shape] + classes[shape] * patterns_against[shape].count;
  }
  matchups_ = std::make_unique<Matchup[]>(starts_[kShapes]);
  Matchup* matchup = matchups_.get();
  for (std::size_t shape = 0; shape < kShapes; ++shape) {
    const SuitPatterns& patterns = patterns_against[shape];
    for (std::size_t i = 0; i < classes[shape]; ++i) {
      const std::size_t other = kShapesOfClasses[shape].first + i;
      for (std::size_t pattern = 0; pattern < patterns.count; ++pattern, ++matchup) {
        const auto [of1, of2] = patterns.first[pattern];
        const ClassedHand hand1{static_cast<std::uint8_t>(number), of1};
        const ClassedHand hand2{static_cast<std::uint8_t>(other), of2};
        if (!known.Has(hand1, hand2)) continue;
        const Counts counts = known.Count(hand1, hand2);
        *matchup = {static_cast<double>(counts.wins), static_cast<double>(counts.ties)};
        whole_.wins[other] += patterns.times[pattern] * matchup->wins;
        whole_.ties[other] += patterns.times[pattern] * matchup->ties;
      }
    }
  }
}

const MatchupRows& MatchupRows::Of(Deck deck) {
  switch (deck) {
    case Deck::kShort: {
      static const MatchupRows rows(Deck::kShort);
      return rows;
    }
    case Deck::kShortStraights: {
      static const MatchupRows rows(Deck::kShortStraights);
      return rows;
    }
    default: {
      static const MatchupRows rows(Deck::kFull);
      return rows;
    }
  }
}

MatchupRows::~MatchupRows() {
  for (const auto& row : rows_) delete row.load();
}

// Threads that come at the same time unpack it each, and the first one's stays.
const MatchupRow& MatchupRows::Unpack(std::size_t number) const {
  auto fresh = std::make_unique<const MatchupRow>(deck_, number);
  const MatchupRow* row = nullptr;
  if (rows_[number].compare_exchange_strong(row, fresh.get(), std::memory_order_acq_rel)) {
    row = fresh.release();
  }
  return *row;
}

}  // namespace pokermath
