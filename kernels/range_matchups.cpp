// What the ranks of two classes decide is counted once, and what a suit changes once for each way
// in which it can see the hands of both; a pair of hands is then a sum of up to five numbers.

#include "kernels/range_matchups.h"

#include <algorithm>

namespace pokermath {
namespace {

std::size_t ClassOf(const WeightedPair& hand) {
  return static_cast<std::size_t>(RankClassOf(hand.card1 % 13, hand.card2 % 13));
}

std::int64_t Pack(const Counts& counts) { return counts.wins + (std::int64_t{counts.ties} << 32); }

Counts Unpack(std::int64_t packed) {
  const auto wins = static_cast<std::int32_t>(packed);
  return {wins, static_cast<int>((packed - wins) >> 32)};
}

}  // namespace

RangeMatchups::Side::Side(std::span<const WeightedPair> pairs) : hands(pairs.size()) {
  std::array<std::uint16_t, kRankClasses> ends{};
  for (const WeightedPair& pair : pairs) ++ends[ClassOf(pair)];
  std::size_t end = 0;
  for (std::size_t number = 0; number < kRankClasses; ++number) {
    const std::size_t size = ends[number];
    if (size == 0) continue;
    classes.push_back({static_cast<int>(number), std::span(hands).subspan(end, size), {}});
    ends[number] = static_cast<std::uint16_t>(end);  // now where they start
    end += size;
  }
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const auto& [card1, card2, weight] = pairs[i];
    Hand& hand = hands[ends[ClassOf(pairs[i])]++];
    hand = {pairs[i].cards(), weight, static_cast<std::uint16_t>(i), {}};
    // No suit sees a card, but for those of the two.
    for (const int card : {card1, card2}) {
      const auto suit = static_cast<std::size_t>(card / 13);
      hand.views[suit] =
          static_cast<std::uint8_t>(ViewNumber(card1, card2, static_cast<int>(suit)) % 4);
    }
  }
  for (Class& of_ranks : classes) {
    for (const Hand& hand : of_ranks.hands) {
      for (std::size_t suit = 0; suit < 4; ++suit) {
        std::uint8_t& seen = of_ranks.seen[suit];
        seen = static_cast<std::uint8_t>(seen | 1u << hand.views[suit]);
      }
    }
  }
}

RangeMatchups::RangeMatchups(const ShowdownCounts& counts, const TwoRanges& ranges)
    : counts_(counts), side1_(ranges.hands1), side2_(ranges.hands2) {}

void RangeMatchups::Correct(const Class& class1, const Class& class2,
                            Corrections& corrections) const {
  const auto view = [](const Class& of_ranks, std::size_t bits) -> const SuitView& {
    return kViews[static_cast<std::size_t>(of_ranks.number) * 4 + bits];
  };
  // Where suits are alike, what one has been corrected by holds for all.
  std::array<std::uint16_t, 4> known{};
  corrections.size = 0;
  for (std::size_t suit = 0; suit < 4; ++suit) {
    const int needed = counts_.CardsToFlush(static_cast<int>(suit));
    if (needed > 2) continue;
    const auto like = static_cast<std::size_t>(counts_.LikeSuit(static_cast<int>(suit)));
    bool changes = false;
    for (std::size_t bits1 = 0; bits1 < 4; ++bits1) {
      if ((class1.seen[suit] >> bits1 & 1) == 0) continue;
      const SuitView& view1 = view(class1, bits1);
      for (std::size_t bits2 = 0; bits2 < 4; ++bits2) {
        if ((class2.seen[suit] >> bits2 & 1) == 0) continue;
        const SuitView& view2 = view(class2, bits2);
        Packed& correction = corrections.of[suit][bits1][bits2];
        const std::size_t place = bits1 * 4 + bits2;
        if (std::max(view1.held_count, view2.held_count) < needed) {
          correction = 0;
        } else if ((known[like] >> place & 1) != 0) {
          correction = corrections.of[like][bits1][bits2];
        } else {
          correction = Pack(counts_.CorrectSuit(static_cast<int>(suit), view1, view2));
          corrections.of[like][bits1][bits2] = correction;
          known[like] = static_cast<std::uint16_t>(known[like] | 1u << place);
        }
        changes = changes || correction != 0;
      }
    }
    if (changes) corrections.suits[corrections.size++] = suit;
  }
}

template <std::size_t suits>
void RangeMatchups::Add(const Class& class1, const Class& class2, Packed ranks,
                        const Corrections& corrections, const TwoTallies& tallies) const {
  const std::int64_t boards = counts_.Boards();
  for (const Hand& hand1 : class1.hands) {
    std::array<const Packed*, 4> rows{};
    for (std::size_t i = 0; i < suits; ++i) {
      const std::size_t suit = corrections.suits[i];
      rows[i] = corrections.of[suit][hand1.views[suit]].data();
    }
    Tally sum;
    for (const Hand& hand2 : class2.hands) {
      if (hand1.cards.Meets(hand2.cards)) continue;
      Packed packed = ranks;
      for (std::size_t i = 0; i < suits; ++i) packed += rows[i][hand2.views[corrections.suits[i]]];
      const auto [wins, ties] = Unpack(packed);
      sum += {hand2.weight * std::int64_t{wins}, hand2.weight * std::int64_t{ties}, hand2.weight};
      if (tallies.of2.empty()) continue;
      const std::int64_t losses = boards - wins - ties;
      tallies.of2[hand2.place] +=
          {hand1.weight * losses, hand1.weight * std::int64_t{ties}, hand1.weight * boards};
    }
    tallies.of1[hand1.place] += {sum.wins, sum.ties, sum.cases * boards};
  }
}

void RangeMatchups::Count(std::size_t step, const TwoTallies& tallies) const {
  const Class& class1 = side1_.classes[step];
  Corrections corrections;
  for (const Class& class2 : side2_.classes) {
    const Packed ranks = Pack(counts_.CountRanks(class1.number, class2.number));
    Correct(class1, class2, corrections);
    switch (corrections.size) {
      case 0:
        Add<0>(class1, class2, ranks, corrections, tallies);
        break;
      case 1:
        Add<1>(class1, class2, ranks, corrections, tallies);
        break;
      case 2:
        Add<2>(class1, class2, ranks, corrections, tallies);
        break;
      case 3:
        Add<3>(class1, class2, ranks, corrections, tallies);
        break;
      default:
        Add<4>(class1, class2, ranks, corrections, tallies);
    }
  }
}

}  // namespace pokermath
