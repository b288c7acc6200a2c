// The boards are not dealt. Leave the suits aside and a board is a multiset of nine ranks, an
// opponent two ranks: 57,000 pairs of these, each with the ways to draw it. Then flushes are put
// right suit by suit: a board with three cards of a suit or more is a set of ranks in that suit and
// a multiset of ranks in the others, and wherever somebody has a flush, what was counted is taken
// off and what is true added. A flush beats all that ranks make, as five of seven cards leave no
// room for four of a kind.

#include "kernels/weak_hand.h"

#include <array>
#include <bit>

#include "eval/rank_sets.h"
#include "eval/short_deck.h"
#include "kernels/decks.h"

namespace pokermath {
namespace {

constexpr RankSet kDeckRanks = kAllRanks & ~AbsentRanks(Deck::kShort);
constexpr std::size_t kBoard = 5;

// So many cards of each rank of the deck.
RankCounts CardsOfEachRank(int count) {
  RankCounts counts{};
  for (std::size_t rank = kLowestShortDeckCard; rank < counts.size(); ++rank) {
    counts[rank] = static_cast<std::int8_t>(count);
  }
  return counts;
}

RankCounts Without(RankCounts counts, std::span<const int> ranks) {
  for (const int rank : ranks) --counts[static_cast<std::size_t>(rank)];
  return counts;
}

std::uint32_t KeyOf(std::span<const int> ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += kShortDeckKeys[rank];
  return key;
}

std::uint32_t KeyOf(RankSet set) {
  std::uint32_t key = 0;
  for (unsigned rest = set; rest != 0; rest &= rest - 1) {
    key += kShortDeckKeys[std::countr_zero(rest)];
  }
  return key;
}

class WeakHand {
 public:
  explicit WeakHand(std::span<const int, 2> hand) {
    for (const int card : hand) {
      if (card % 13 >= kLowestShortDeckCard) own_.at(own_count_++) = card % 13;
    }
  }

  Tally Count() {
    CountRanks();
    if (own_count_ == 0) {
      CorrectSuit(false, 4);
    } else {
      CorrectSuit(true, 1);
      CorrectSuit(false, 3);
    }
    return tally_;
  }

 private:
  // Ranks of the hand's cards that count, one or none.
  std::span<const int> Own() const { return std::span(own_).first(own_count_); }

  int ValueOfRanks(std::uint32_t board) const {
    const std::uint32_t key = board + KeyOf(Own());
    return own_count_ == 0 ? kShortDeckTables.ValueOfRanks<5>(key)
                           : kShortDeckTables.ValueOfRanks<6>(key);
  }

  void Add(int value, int other, std::int64_t ways) {
    if (value > other) tally_.wins += ways;
    if (value == other) tally_.ties += ways;
  }

  // Everything as if there were no flushes.
  void CountRanks() {
    const RankCounts deck = Without(CardsOfEachRank(4), Own());
    std::array<int, kBoard> board;
    ForEachMultiset(deck, board, [&](std::int64_t boards) {
      const std::uint32_t key = KeyOf(board);
      const int value = ValueOfRanks(key);
      std::array<int, 2> opponent;
      ForEachMultiset(Without(deck, board), opponent, [&](std::int64_t opponents) {
        tally_.cases += boards * opponents;
        Add(value, kShortDeckTables.ValueOfRanks<7>(key + KeyOf(opponent)), boards * opponents);
      });
    });
  }

  // What flushes change in a suit, the one of the hand's card or another, `times` times.
  void CorrectSuit(bool own_suit, int times) {
    const RankCounts others =
        Without(CardsOfEachRank(3), own_suit ? std::span<const int>() : Own());
    RankSet own = 0;
    if (own_suit) own = static_cast<RankSet>(1 << own_[0]);
    for (int suited = 3; suited <= static_cast<int>(kBoard); ++suited) {
      ForEachSubset(kDeckRanks & ~own, suited, [&](RankSet set) {
        std::array<int, 2> rest_ranks;
        const auto rest = std::span(rest_ranks).first(kBoard - static_cast<std::size_t>(suited));
        ForEachMultiset(others, rest, [&](std::int64_t boards) {
          CorrectBoard(own, set, KeyOf(set) + KeyOf(rest), Without(others, rest), boards * times);
        });
      });
    }
  }

  // A board of a set of ranks in one suit and others: those who may have a flush there.
  void CorrectBoard(RankSet own, RankSet set, std::uint32_t key, const RankCounts& others,
                    std::int64_t boards) {
    const int plain = ValueOfRanks(key);
    const int flush = kShortDeckTables.FlushOf(0, set | own);
    const int value = flush > 0 ? flush : plain;
    for (int suited = 0; suited <= 2; ++suited) {
      if (flush == 0 && std::popcount(set) + suited < 5) continue;
      ForEachSubset(kDeckRanks & ~(set | own), suited, [&](RankSet held) {
        std::array<int, 2> rest_ranks;
        const auto rest = std::span(rest_ranks).first(static_cast<std::size_t>(2 - suited));
        ForEachMultiset(others, rest, [&](std::int64_t opponents) {
          const int other_plain = kShortDeckTables.ValueOfRanks<7>(key + KeyOf(held) + KeyOf(rest));
          const int other_flush = kShortDeckTables.FlushOf(0, set | held);
          Add(plain, other_plain, -boards * opponents);
          Add(value, other_flush > 0 ? other_flush : other_plain, boards * opponents);
        });
      });
    }
  }

  std::array<int, 2> own_{};
  std::size_t own_count_ = 0;
  Tally tally_;
};

}  // namespace

Tally CountWeakHand(std::span<const int, 2> hand) { return WeakHand(hand).Count(); }

}  // namespace pokermath
