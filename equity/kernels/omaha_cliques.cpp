// What an Omaha hand is worth is what its best pair of hole cards is worth. So a hand wins against
// those whose pairs are all worth less: the cards that are left make a graph, joined where a pair
// is worth less, and the hands that lose are its cliques of four (or five) cards. The hands that do
// not win are those of the graph joined where a pair is not worth more.

#include "equity/kernels/omaha_cliques.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "equity/kernels/hole_cards.h"
#include "eval/omaha_best.h"
#include "platform/isa.h"

namespace pokermath {
namespace {

// For each card, those after it that it is joined with, by their places in a list.
using Graph = std::array<std::uint64_t, 52>;

// Cliques of `cards` cards among some.
template <int cards>
[[gnu::always_inline]] inline std::int64_t CountCliques(const Graph& graph, std::uint64_t among) {
  if constexpr (cards == 1) {
    return __builtin_popcountll(among);
  } else {
    std::int64_t count = 0;
    for (std::uint64_t rest = among; rest != 0; rest &= rest - 1) {
      const std::uint64_t joined = among & graph[static_cast<std::size_t>(__builtin_ctzll(rest))];
      count += CountCliques<cards - 1>(graph, joined);
    }
    return count;
  }
}

// With and without an instruction that counts bits.
std::int64_t CountHandsBaseline(const Graph& graph, std::size_t hand_size, std::uint64_t among) {
  return hand_size == 5 ? CountCliques<5>(graph, among) : CountCliques<4>(graph, among);
}
POKERMATH_TARGET_AVX2 std::int64_t CountHandsAvx2(const Graph& graph, std::size_t hand_size,
                                                  std::uint64_t among) {
  return hand_size == 5 ? CountCliques<5>(graph, among) : CountCliques<4>(graph, among);
}

}  // namespace

Tally CountOmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                           int dead) {
  const auto count = isa == Isa::kBaseline ? CountHandsBaseline : CountHandsAvx2;
  const std::uint64_t taken = Bits(hand) | Bits(board) | (dead >= 0 ? Bit(dead) : 0);
  std::vector<int> live;
  for (int card = 0; card < 52; ++card) {
    if ((taken & Bit(card)) == 0) live.push_back(card);
  }
  const OmahaPairValues values(board);
  int hero = 0;
  for (std::size_t i = 0; i < hand.size(); ++i) {
    for (std::size_t j = i + 1; j < hand.size(); ++j) {
      hero = std::max(hero, values.Of(hand[i], hand[j]));
    }
  }
  Graph less{};
  Graph not_more{};
  for (std::size_t i = 0; i < live.size(); ++i) {
    for (std::size_t j = i + 1; j < live.size(); ++j) {
      const int value = values.Of(live[i], live[j]);
      less[i] |= std::uint64_t{value < hero} << j;
      not_more[i] |= std::uint64_t{value <= hero} << j;
    }
  }
  const std::uint64_t all = (std::uint64_t{1} << live.size()) - 1;
  Tally tally;
  tally.cases = Choose(static_cast<int>(live.size()), static_cast<int>(hand.size()));
  tally.wins = count(less, hand.size(), all);
  const bool same = less == not_more;
  tally.ties = (same ? tally.wins : count(not_more, hand.size(), all)) - tally.wins;
  return tally;
}

}  // namespace pokermath
