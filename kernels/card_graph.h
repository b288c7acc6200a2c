// Hands whose pairs of cards are all in order: cliques of a graph of cards.

#ifndef POKERMATH_KERNELS_CARD_GRAPH_H_
#define POKERMATH_KERNELS_CARD_GRAPH_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "eval/rank_sets.h"
#include "platform/isa.h"
#include "pokermath/game.h"

namespace pokermath {

/// Cards that are joined with the same cards are twins: one vertex. There is one for every suited
/// card and one for every rank of the others.
inline constexpr std::size_t kMostTwins = 26;

/// A number for every two vertices, the first one not behind the second.
using PairTable = std::array<std::array<std::int16_t, kMostTwins>, kMostTwins>;

/// Which cards are joined.
struct CardGraph {
  std::array<std::uint64_t, kMostTwins> joined{};   ///< bits of the twins behind
  std::array<bool, kMostTwins> among_themselves{};  ///< whether twins are joined

  bool operator==(const CardGraph&) const = default;
  /// What is joined in both.
  CardGraph operator&(const CardGraph& other) const {
    CardGraph both;
    for (std::size_t i = 0; i < kMostTwins; ++i) {
      both.joined[i] = joined[i] & other.joined[i];
      both.among_themselves[i] = among_themselves[i] && other.among_themselves[i];
    }
    return both;
  }
};

/// The cards that an opponent may hold.
class LiveCards {
 public:
  /// Adds twins, one of which is `card`.
  void Add(int card, int count) {
    if (count == 0) return;
    cards_of_[size_] = card;
    counts_[size_] = count;
    bits_[size_] = ((std::uint64_t{1} << count) - 1) << cards_;
    for (int i = 0; i < count; ++i) {
      twins_of_bit_[static_cast<std::size_t>(cards_++)] = static_cast<std::uint8_t>(size_);
    }
    ++size_;
  }
  /// How many cards there are.
  int cards() const { return cards_; }

  /// What every pair is worth by `values.Of(card1, card2)`, twins with each other too.
  template <typename Values>
  PairTable PairsOf(const Values& values) const {
    PairTable table;
    for (std::size_t i = 0; i < size_; ++i) {
      for (std::size_t j = i; j < size_; ++j) {
        table[i][j] = static_cast<std::int16_t>(values.Of(cards_of_[i], cards_of_[j]));
      }
    }
    return table;
  }

  /// Cards whose pair is worth no more than a limit are joined.
  CardGraph NoMoreThan(const PairTable& pairs, int limit) const {
    CardGraph graph;
    for (std::size_t i = 0; i < size_; ++i) {
      graph.among_themselves[i] = counts_[i] > 1 && pairs[i][i] <= limit;
      std::uint64_t joined = 0;
      for (std::size_t j = i + 1; j < size_; ++j) joined |= pairs[i][j] <= limit ? bits_[j] : 0;
      graph.joined[i] = joined;
    }
    return graph;
  }

  /// Hands of two cards, or of one of kOmahaHandSizes, that are all joined.
  std::int64_t CountHands(Isa isa, std::size_t hand_size, const CardGraph& graph) const;

 private:
  // By number of cards; no number is larger than that of all hands.
  template <int most>
  using Cliques = std::array<int, static_cast<std::size_t>(most) + 1>;
  static_assert(Choose(52, std::ranges::max(kOmahaHandSizes)) < INT32_MAX);

  template <int most>
  Cliques<most> CountCliques(const CardGraph& graph, std::uint64_t first,
                             std::uint64_t among) const;

  std::size_t size_ = 0;
  int cards_ = 0;
  std::array<int, kMostTwins> cards_of_, counts_;
  std::array<std::uint64_t, kMostTwins> bits_;
  std::array<std::uint8_t, 64> twins_of_bit_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_CARD_GRAPH_H_
