// What the ranks of two classes decide is counted once, and what a suit changes once for each way
// in which it can see the hands of both; a pair of hands is then a sum of five numbers.

#include "kernels/range_matchups.h"

#include <algorithm>

namespace pokermath {

RangeMatchups::RangeMatchups(const ShowdownCounts& counts, const TwoRanges& ranges)
    : counts_(counts), classes1_(ClassesOf(ranges.hands1)), classes2_(ClassesOf(ranges.hands2)) {}

std::vector<RangeMatchups::Class> RangeMatchups::ClassesOf(std::span<const WeightedPair> hands) {
  std::vector<Class> classes(kRankClasses);
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const auto& [card1, card2, weight] = hands[i];
    Hand hand{hands[i].cards(), weight, i, {}};
    for (std::size_t suit = 0; suit < 4; ++suit) {
      hand.views[suit] =
          static_cast<std::uint8_t>(ViewNumber(card1, card2, static_cast<int>(suit)) % 4);
    }
    const int number = RankClassOf(card1 % 13, card2 % 13);
    Class& of_ranks = classes[static_cast<std::size_t>(number)];
    of_ranks.number = number;
    of_ranks.hands.push_back(hand);
  }
  std::erase_if(classes, [](const Class& of_ranks) { return of_ranks.hands.empty(); });
  return classes;
}

void RangeMatchups::Correct(const Class& class1, const Class& class2,
                            Corrections& corrections) const {
  const auto seen_by = [](const Class& of_ranks, std::size_t suit) {
    unsigned seen = 0;
    for (const Hand& hand : of_ranks.hands) seen |= 1u << hand.views[suit];
    return seen;
  };
  const auto view = [](const Class& of_ranks, std::size_t bits) -> const SuitView& {
    return kViews[static_cast<std::size_t>(of_ranks.number) * 4 + bits];
  };
  // Where suits are alike, what one has been corrected by holds for all.
  std::array<std::array<std::array<bool, 4>, 4>, 4> known{};
  for (std::size_t suit = 0; suit < 4; ++suit) {
    const int needed = counts_.CardsToFlush(static_cast<int>(suit));
    const auto like = static_cast<std::size_t>(counts_.LikeSuit(static_cast<int>(suit)));
    const unsigned seen1 = seen_by(class1, suit);
    const unsigned seen2 = seen_by(class2, suit);
    for (std::size_t bits1 = 0; bits1 < 4; ++bits1) {
      for (std::size_t bits2 = 0; bits2 < 4; ++bits2) {
        if ((seen1 >> bits1 & 1) == 0 || (seen2 >> bits2 & 1) == 0) continue;
        const SuitView& view1 = view(class1, bits1);
        const SuitView& view2 = view(class2, bits2);
        Counts& correction = corrections[suit][bits1][bits2];
        if (std::max(view1.held_count, view2.held_count) < needed) {
          correction = {};
        } else if (known[like][bits1][bits2]) {
          correction = corrections[like][bits1][bits2];
        } else {
          correction = counts_.CorrectSuit(static_cast<int>(suit), view1, view2);
          corrections[like][bits1][bits2] = correction;
          known[like][bits1][bits2] = true;
        }
      }
    }
  }
}

void RangeMatchups::Count(std::size_t step, const TwoTallies& tallies) const {
  const std::int64_t boards = counts_.Boards();
  const Class& class1 = classes1_[step];
  Corrections corrections;
  for (const Class& class2 : classes2_) {
    const Counts ranks = counts_.CountRanks(class1.number, class2.number);
    Correct(class1, class2, corrections);
    for (const Hand& hand1 : class1.hands) {
      for (const Hand& hand2 : class2.hands) {
        if (hand1.cards.Meets(hand2.cards)) continue;
        Counts counts = ranks;
        for (std::size_t suit = 0; suit < 4; ++suit) {
          const Counts& correction = corrections[suit][hand1.views[suit]][hand2.views[suit]];
          counts.wins += correction.wins;
          counts.ties += correction.ties;
        }
        const std::int64_t losses = boards - counts.wins - counts.ties;
        Tally& of1 = tallies.of1[hand1.place];
        Tally& of2 = tallies.of2[hand2.place];
        of1 += {hand2.weight * std::int64_t{counts.wins}, hand2.weight * std::int64_t{counts.ties},
                hand2.weight * boards};
        of2 += {hand1.weight * losses, hand1.weight * std::int64_t{counts.ties},
                hand1.weight * boards};
      }
    }
  }
}

}  // namespace pokermath
