// The decks that the counting kernels know: their ranks, and what ranks and flushes are worth.

#ifndef POKERMATH_KERNELS_DECKS_H_
#define POKERMATH_KERNELS_DECKS_H_

#include <cstdint>

#include "eval/compact_keys.h"
#include "eval/short_deck.h"
#include "kernels/hole_cards.h"
#include "pokermath/evaluators.h"

namespace pokermath {

enum class Deck { kFull, kShort };

constexpr int LowestRank(Deck deck) { return deck == Deck::kShort ? kLowestShortDeckCard : 0; }
constexpr int CardsOf(Deck deck) { return 4 * (13 - LowestRank(deck)); }
/// The ranks that are not in a deck.
constexpr RankSet AbsentRanks(Deck deck) {
  return static_cast<RankSet>((1u << LowestRank(deck)) - 1);
}

/// The cards that are not in a deck, as bits.
constexpr std::uint64_t AbsentCards(Deck deck) {
  return std::uint64_t{AbsentRanks(deck)} *
         (1 | std::uint64_t{1} << 13 | std::uint64_t{1} << 26 | std::uint64_t{1} << 39);
}

/// Values of five to seven cards by the sum of their rank keys, and of flushes; larger is better.
template <Deck deck>
struct DeckValues {
  static std::uint32_t KeyOf(int rank) { return kRankKeys[rank]; }
  template <int count>
  static std::int16_t OfRanks(std::uint32_t key) {
    return static_cast<std::int16_t>(ValueOfRanks<count>(key));
  }
  /// 0 below five ranks.
  static std::int16_t OfFlush(unsigned ranks) {
    return static_cast<std::int16_t>(kCompactTables.flush_values[ranks]);
  }
};

template <>
struct DeckValues<Deck::kShort> {
  static std::uint32_t KeyOf(int rank) { return ShortDeckValues::KeyOf(rank); }
  template <int count>
  static std::int16_t OfRanks(std::uint32_t key) {
    return static_cast<std::int16_t>(ShortDeckValues::Get().OfRanks(count, key));
  }
  static std::int16_t OfFlush(unsigned ranks) {
    return static_cast<std::int16_t>(ShortDeckValues::Get().OfFlush(ranks));
  }
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_DECKS_H_
