#include "kernels/card_graph.h"

#include <algorithm>
#include <iterator>

#include "cards/omaha_sizes.h"
#include "platform/dispatch.h"

namespace pokermath {

// By number of cards: ways to choose so many of the cards `among` that are all joined, those behind
// the first card taken from `first`. One card of a vertex and two of its twins leave the same cards
// to choose from, so all numbers are counted at once.
template <int most>
POKERMATH_KERNEL LiveCards::Cliques<most> LiveCards::CountCliques(const CardGraph& graph,
                                                                  std::uint64_t first,
                                                                  std::uint64_t among) const {
  constexpr int kChoose[5][5] = {{}, {0, 1}, {0, 2, 1}, {0, 3, 3, 1}, {0, 4, 6, 4, 1}};
  Cliques<most> cliques{1, __builtin_popcountll(among)};
  if constexpr (most > 1) {
    for (std::uint64_t rest = among & first; rest != 0;) {
      const std::size_t i = twins_of_bit_[static_cast<std::size_t>(__builtin_ctzll(rest))];
      rest &= ~bits_[i];
      const Cliques<most - 1> behind =
          CountCliques<most - 1>(graph, first, among & graph.joined[i]);
      for (std::size_t size = 2; size < cliques.size(); ++size) {
        cliques[size] += counts_[i] * behind[size - 1];
      }
      if (!graph.among_themselves[i]) continue;
      const auto& choose = kChoose[counts_[i]];
      for (std::size_t taken = 2; taken < std::min(cliques.size(), std::size(choose)); ++taken) {
        for (std::size_t size = taken; size < cliques.size(); ++size) {
          cliques[size] += choose[taken] * behind[size - taken];
        }
      }
    }
  }
  return cliques;
}

std::int64_t LiveCards::CountHands(Isa isa, std::size_t hand_size, const CardGraph& graph) const {
  // A clique may start with twins only that are joined with any behind or with each other.
  std::uint64_t first = 0;
  for (std::size_t i = 0; i < size_; ++i) {
    if (graph.joined[i] != 0 || graph.among_themselves[i]) first |= bits_[i];
  }
  // With and without an instruction that counts bits.
  const auto count = [&](auto size) {
    return Dispatch<Isa::kAvx2>(isa, [&](auto) POKERMATH_INLINE -> std::int64_t {
      return CountCliques<size>(graph, first, (std::uint64_t{1} << cards_) - 1)[size];
    });
  };
  if (hand_size == 2) return count(std::integral_constant<int, 2>());
  return ForOmahaSize(static_cast<int>(hand_size), count);
}

}  // namespace pokermath
