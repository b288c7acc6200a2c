// What is made without a flush follows from the sum of the rank keys of board and hole cards.

#include "kernels/board_order.h"

#include <algorithm>

#include "kernels/decks.h"
#include "platform/made_once.h"
#include "platform/require.h"

namespace pokermath {
namespace {

// Of a game.
struct Orders {
  std::array<MadeOnce<RankOrder>, 3> ranks{
      MadeOnce<RankOrder>(static_cast<std::size_t>(MultisetsOf(3))),
      MadeOnce<RankOrder>(static_cast<std::size_t>(MultisetsOf(4))),
      MadeOnce<RankOrder>(static_cast<std::size_t>(MultisetsOf(5)))};
  MadeOnce<FlushOrder> flushes{std::size_t{kAllRanks} + 1};
};

Orders& OrdersOf(const GameRules& rules) {
  POKERMATH_REQUIRE(rules.hand_size == 2);
  if (!rules.IsShortDeck()) {
    static Orders orders;
    return orders;
  }
  if (!rules.straight_over_trips) {
    static Orders orders;
    return orders;
  }
  static Orders orders;
  return orders;
}

// What an order is sorted by, and what stands in it: one number, which sorts fast.
template <typename Thing>
struct Placed {
  static_assert(sizeof(Thing) <= 2);
  std::uint32_t bits;

  Placed() = default;
  Placed(std::int16_t value, Thing thing)
      : bits(static_cast<std::uint32_t>(value) << 16 | static_cast<std::uint32_t>(thing)) {}
  std::int16_t value() const { return static_cast<std::int16_t>(bits >> 16); }
  Thing thing() const { return static_cast<Thing>(bits & 0xFFFF); }
};

// Puts the first ones of a list into an order, by their values.
template <typename Order, typename Thing, std::size_t most>
void Sort(std::array<Placed<Thing>, most>& all, std::size_t size, Order& order,
          std::array<Thing, most>& things) {
  const std::span<Placed<Thing>> placed(all.data(), size);
  std::ranges::sort(placed, {}, &Placed<Thing>::bits);
  order.size = static_cast<std::uint8_t>(size);
  for (std::size_t i = 0; i < size; ++i) {
    order.values[i] = placed[i].value();
    things[i] = placed[i].thing();
  }
}

template <Deck deck, int kCards>
void Make(std::span<const int> board_ranks, RankOrder& order) {
  std::array<int, 13> left;
  left.fill(4);
  std::uint32_t key = 0;
  for (const int rank : board_ranks) {
    --left[static_cast<std::size_t>(rank)];
    key += DeckValues<deck>::KeyOf(rank);
  }
  std::array<Placed<std::uint8_t>, kRankClasses> placed;
  std::size_t size = 0;
  for (int high = LowestRank(deck); high < 13; ++high) {
    for (int low = LowestRank(deck); low <= high; ++low) {
      if (left[static_cast<std::size_t>(low)] < (low == high ? 2 : 1) ||
          left[static_cast<std::size_t>(high)] == 0) {
        continue;
      }
      const std::uint32_t keys = key + DeckValues<deck>::KeyOf(low) + DeckValues<deck>::KeyOf(high);
      placed[size++] = {DeckValues<deck>::template OfRanks<kCards>(keys),
                        static_cast<std::uint8_t>(RankClassOf(low, high))};
    }
  }
  Sort(placed, size, order, order.classes);
}

template <Deck deck>
void Make(std::span<const int> board_ranks, RankOrder& order) {
  if (board_ranks.size() == 3) return Make<deck, 5>(board_ranks, order);
  if (board_ranks.size() == 4) return Make<deck, 6>(board_ranks, order);
  Make<deck, 7>(board_ranks, order);
}

template <Deck deck>
void Make(RankSet suited, FlushOrder& order) {
  std::array<Placed<RankSet>, FlushOrder::kMost> placed;
  std::size_t size = 0;
  for (int count = 5 - __builtin_popcount(suited); count <= 2; ++count) {
    ForEachSubset(static_cast<RankSet>(kAllRanks & ~AbsentRanks(deck) & ~suited), count,
                  [&](RankSet held) {
                    placed[size++] = {DeckValues<deck>::OfFlush(suited | held), held};
                  });
  }
  Sort(placed, size, order, order.held);
}

// The order of a game's deck; of flushes both orders of the short deck have the same.
template <typename Order, typename Known>
void MakeFor(const GameRules& rules, Known known, Order& order) {
  if (!rules.IsShortDeck()) return Make<Deck::kFull>(known, order);
  if (!rules.straight_over_trips) return Make<Deck::kShort>(known, order);
  Make<Deck::kShortStraights>(known, order);
}

}  // namespace

const RankOrder& RankOrderOf(const GameRules& rules, std::span<const int> ranks) {
  POKERMATH_REQUIRE(ranks.size() >= 3 && ranks.size() <= 5);
  return OrdersOf(rules).ranks[ranks.size() - 3].Get(
      static_cast<std::size_t>(MultisetNumber(ranks)),
      [&](RankOrder& order) { MakeFor(rules, ranks, order); });
}

const FlushOrder& FlushOrderOf(const GameRules& rules, RankSet suited) {
  return OrdersOf(rules).flushes.Get(suited,
                                     [&](FlushOrder& order) { MakeFor(rules, suited, order); });
}

BoardOrder OrderOf(const GameRules& rules, CardSet board) {
  POKERMATH_REQUIRE(board.size() <= 5);
  std::array<int, 5> ranks;
  std::size_t size = 0;
  for (int rank = 0; rank < 13; ++rank) {
    for (int card = rank; card < 52; card += 13) {
      if (board.Contains(card)) ranks[size++] = rank;
    }
  }
  BoardOrder order{.ranks = &RankOrderOf(rules, std::span(ranks).first(size))};
  for (int suit = 0; suit < 4; ++suit) {
    const auto suited = static_cast<RankSet>(board.bits() >> 13 * suit & kAllRanks);
    if (__builtin_popcount(suited) < 3) continue;
    order.suit = suit;
    order.flushes = &FlushOrderOf(rules, suited);
  }
  return order;
}

}  // namespace pokermath
