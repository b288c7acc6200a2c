// The decks that the counting kernels know: their ranks, and what ranks and flushes are worth.

#ifndef POKERMATH_KERNELS_DECKS_H_
#define POKERMATH_KERNELS_DECKS_H_

#include <array>
#include <cstdint>
#include <span>

#include "eval/compact_keys.h"
#include "eval/short_deck.h"
#include "eval/worth.h"
#include "kernels/hole_cards.h"
#include "pokermath/evaluators.h"

namespace pokermath {

enum class Deck {
  kFull,
  kShort,
  kShortStraights,  ///< a straight beats three of a kind; only what says so knows it
};

constexpr int LowestRank(Deck deck) { return deck == Deck::kFull ? 0 : kLowestShortDeckCard; }
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
  static std::uint32_t KeyOf(int rank) { return kShortDeckKeys[rank]; }
  template <int count>
  static std::int16_t OfRanks(std::uint32_t key) {
    return static_cast<std::int16_t>(kShortDeckTables.ValueOfRanks<count>(key));
  }
  static std::int16_t OfFlush(unsigned ranks) {
    return static_cast<std::int16_t>(kShortDeckTables.FlushOf(0, ranks));
  }
};

/// Slow: for tables that are made once. Flushes are those of kShort.
template <>
struct DeckValues<Deck::kShortStraights> : DeckValues<Deck::kShort> {
  /// Counts of the ranks, three bits each.
  static std::uint32_t KeyOf(int rank) { return 1u << 3 * (rank - kLowestShortDeckCard); }
  template <int count>
  static std::int16_t OfRanks(std::uint32_t key) {
    // Cards that stand for their ranks: dealt round the suits in rising order, no suit gets more
    // than two of seven.
    std::array<int, count> cards{};
    int size = 0;
    for (int rank = kLowestShortDeckCard; rank < 13; ++rank) {
      for (std::uint32_t of_rank = key / KeyOf(rank) & 7; of_rank > 0; --of_rank, ++size) {
        cards[static_cast<std::size_t>(size)] = rank + 13 * (size % 4);
      }
    }
    if (size != count) return 0;  // where there is no set of ranks
    const std::span<const int> dealt(cards);
    return static_cast<std::int16_t>(
        WorthOf(RulesOf(Game::kShortDeckStraights), dealt.first(2), dealt.subspan(2)).high);
  }
};

/// Whether they are two different cards of the deck.
inline bool IsHandOf(Deck deck, std::span<const int, 2> hand) {
  const auto is_in_deck = [deck](int card) {
    return static_cast<unsigned>(card) < 52 && (AbsentCards(deck) >> card & 1) == 0;
  };
  return hand[0] != hand[1] && is_in_deck(hand[0]) && is_in_deck(hand[1]);
}

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_DECKS_H_
