#include "kernels/card_graph.h"

#include "cards/omaha_sizes.h"

namespace pokermath {

// Ways to choose so many of the cards `among` that all are joined, the first one of `first`.
template <int size>
[[gnu::always_inline]] inline std::int64_t LiveCards::Cliques(const CardGraph& graph,
                                                              std::uint64_t first,
                                                              std::uint64_t among) const {
  if constexpr (size == 0) {
    return 1;
  } else if constexpr (size == 1) {
    return __builtin_popcountll(among);
  } else {
    constexpr int kChoose[5][5] = {{}, {}, {0, 0, 1}, {0, 0, 3, 1}, {0, 0, 6, 4, 1}};
    std::int64_t cliques = 0;
    for (std::uint64_t rest = among & first; rest != 0;) {
      const std::size_t i = twins_of_bit_[static_cast<std::size_t>(__builtin_ctzll(rest))];
      rest &= ~bits_[i];
      const std::uint64_t joined = among & graph.joined[i];
      cliques += counts_[i] * Cliques<size - 1>(graph, first, joined);
      if (!graph.among_themselves[i]) continue;
      const auto& choose = kChoose[counts_[i]];
      cliques += choose[2] * Cliques<size - 2>(graph, first, joined);
      if constexpr (size >= 3) cliques += choose[3] * Cliques<size - 3>(graph, first, joined);
      if constexpr (size >= 4) cliques += choose[4] * Cliques<size - 4>(graph, first, joined);
    }
    return cliques;
  }
}

// With and without an instruction that counts bits.
template <int size>
std::int64_t LiveCards::CliquesBaseline(const CardGraph& graph, std::uint64_t first) const {
  return Cliques<size>(graph, first, (std::uint64_t{1} << cards_) - 1);
}
template <int size>
POKERMATH_TARGET_AVX2 std::int64_t LiveCards::CliquesAvx2(const CardGraph& graph,
                                                          std::uint64_t first) const {
  return Cliques<size>(graph, first, (std::uint64_t{1} << cards_) - 1);
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
