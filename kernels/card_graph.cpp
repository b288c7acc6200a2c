#include "kernels/card_graph.h"

#include <algorithm>
#include <iterator>

#include "cards/omaha_sizes.h"

namespace pokermath {

// By number of cards: ways to choose so many of the cards `among` that are all joined, those behind
// the first card taken from `first`. One card of a vertex and two of its twins leave the same cards
// to choose from, so all numbers are counted at once.
template <int most>
[[gnu::always_inline]] inline LiveCards::Cliques<most> LiveCards::CountCliques(
    const CardGraph& graph, std::uint64_t first, std::uint64_t among) const {
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

// With and without an instruction that counts bits.
template <int size>
std::int64_t LiveCards::CliquesBaseline(const CardGraph& graph, std::uint64_t first) const {
  return CountCliques<size>(graph, first, (std::uint64_t{1} << cards_) - 1)[size];
}
template <int size>
POKERMATH_TARGET_AVX2 std::int64_t LiveCards::CliquesAvx2(const CardGraph& graph,
                                                          std::uint64_t first) const {
  return CountCliques<size>(graph, first, (std::uint64_t{1} << cards_) - 1)[size];
}

std::int64_t LiveCards::CountHands(Isa isa, std::size_t hand_size, const CardGraph& graph) const {
  // A clique may start with twins only that are joined with any behind or with each other.
  std::uint64_t first = 0;
  for (std::size_t i = 0; i < size_; ++i) {
    if (graph.joined[i] != 0 || graph.among_themselves[i]) first |= bits_[i];
  }
  const bool fast = isa != Isa::kBaseline;
  if (hand_size == 2) return fast ? CliquesAvx2<2>(graph, first) : CliquesBaseline<2>(graph, first);
  return ForOmahaSize(static_cast<int>(hand_size), [&](auto size) {
    return fast ? CliquesAvx2<size>(graph, first) : CliquesBaseline<size>(graph, first);
  });
}

}  // namespace pokermath
