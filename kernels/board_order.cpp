// Values come from cards that stand for their ranks: in rising order, dealt round the four suits,
// equal ranks never meet in a suit and no suit gets more than two of seven cards.

#include "kernels/board_order.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "eval/worth.h"
#include "platform/require.h"

namespace pokermath {
namespace {

// Entries that are made when they are first asked for, by any thread.
template <typename Entry>
class KeptEntries {
 public:
  explicit KeptEntries(std::size_t size) : made_(size), entries_(new Entry[size]) {}

  template <typename Make>
  const Entry& Get(std::size_t number, const Make& make) {
    std::call_once(made_[number], [&] { make(entries_[number]); });
    return entries_[number];
  }

 private:
  std::vector<std::once_flag> made_;
  std::unique_ptr<Entry[]> entries_;  // memory that nobody writes costs nothing
};

// Of a game.
struct Orders {
  std::array<KeptEntries<RankOrder>, 3> ranks{
      KeptEntries<RankOrder>(static_cast<std::size_t>(MultisetsOf(3))),
      KeptEntries<RankOrder>(static_cast<std::size_t>(MultisetsOf(4))),
      KeptEntries<RankOrder>(static_cast<std::size_t>(MultisetsOf(5)))};
  KeptEntries<FlushOrder> flushes{kAllRanks + 1};
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

std::int16_t ValueOf(const GameRules& rules, std::span<const int> cards) {
  return static_cast<std::int16_t>(WorthOf(rules, cards.first(2), cards.subspan(2)).high);
}

// Whether a class is in the deck beside the board; and its value without a flush.
bool ValueOfClass(const GameRules& rules, int rank_class, std::span<const int> board_ranks,
                  std::int16_t& value) {
  const std::array<int, 2>& held = RanksOf(rank_class);  // rising
  if (held[0] < rules.lowest_rank) return false;
  std::array<int, 7> cards;
  std::ranges::merge(held, board_ranks, cards.begin());
  const std::span<int> dealt(cards.data(), 2 + board_ranks.size());
  for (std::size_t i = 0; i + 4 < dealt.size(); ++i) {
    if (dealt[i] == dealt[i + 4]) return false;
  }
  for (std::size_t i = 0; i < dealt.size(); ++i) dealt[i] += 13 * static_cast<int>(i % 4);
  value = ValueOf(rules, dealt);
  return true;
}

// Both members of an order by value.
template <typename Order, typename Things, typename Thing>
void Sort(std::vector<std::pair<std::int16_t, Thing>>& pairs, Order& order, Things& things) {
  std::ranges::sort(pairs);
  order.size = static_cast<std::uint8_t>(pairs.size());
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    order.values[i] = pairs[i].first;
    things[i] = pairs[i].second;
  }
}

void Make(const GameRules& rules, std::span<const int> board_ranks, RankOrder& order) {
  std::vector<std::pair<std::int16_t, std::uint8_t>> pairs;
  pairs.reserve(kRankClasses);
  for (int rank_class = 0; rank_class < kRankClasses; ++rank_class) {
    std::int16_t value = 0;
    if (!ValueOfClass(rules, rank_class, board_ranks, value)) continue;
    pairs.emplace_back(value, static_cast<std::uint8_t>(rank_class));
  }
  Sort(pairs, order, order.classes);
}

void Make(const GameRules& rules, RankSet suited, FlushOrder& order) {
  const unsigned deck = kAllRanks & ~((1u << rules.lowest_rank) - 1);
  std::vector<std::pair<std::int16_t, RankSet>> pairs;
  pairs.reserve(FlushOrder::kMost);
  for (int count = 5 - __builtin_popcount(suited); count <= 2; ++count) {
    ForEachSubset(static_cast<RankSet>(deck & ~suited), count, [&](RankSet held) {
      std::array<int, 7> cards;
      std::size_t size = 0;
      for (unsigned rest = suited | held; rest != 0; rest &= rest - 1) {
        cards[size++] = __builtin_ctz(rest);
      }
      pairs.emplace_back(ValueOf(rules, std::span(cards).first(size)), held);
    });
  }
  Sort(pairs, order, order.held);
}

}  // namespace

const RankOrder& RankOrderOf(const GameRules& rules, std::span<const int> ranks) {
  POKERMATH_REQUIRE(ranks.size() >= 3 && ranks.size() <= 5);
  return OrdersOf(rules).ranks[ranks.size() - 3].Get(
      static_cast<std::size_t>(MultisetNumber(ranks)),
      [&](RankOrder& order) { Make(rules, ranks, order); });
}

const FlushOrder& FlushOrderOf(const GameRules& rules, RankSet suited) {
  return OrdersOf(rules).flushes.Get(suited,
                                     [&](FlushOrder& order) { Make(rules, suited, order); });
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
