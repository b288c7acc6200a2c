// An Omaha hand against others of the same ranks, held against the count of every board.

#include "kernels/omaha_before_flop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "kernels/omaha_matchup.h"

namespace pokermath {
namespace {

std::vector<int> ListOf(CardSet cards) { return {cards.begin(), cards.end()}; }

// Hands with ranks of some cards and other suits, as many as are free.
std::vector<CardSet> Alike(std::span<const int> cards, CardSet taken, std::mt19937& random) {
  std::vector<CardSet> hands;
  for (int tries = 0; tries < 6; ++tries) {
    CardSet hand;
    for (const int card : cards) {
      const int other = tries == 0 ? card : card % 13 + 13 * static_cast<int>(random() % 4);
      if (!taken.Contains(other)) hand.Add(other);
    }
    if (hand.size() == static_cast<int>(cards.size())) hands.push_back(hand);
  }
  return hands;
}

TEST(OmahaBeforeFlop, EqualsEveryBoardWithAllInstructions) {
  std::mt19937 random(1);
  for (int question = 0; question < 36; ++question) {
    SCOPED_TRACE(question);
    const std::size_t size = 4 + static_cast<std::size_t>(question % 3);
    const bool high_low = question / 3 % 2 == 1;
    std::vector<int> deck(52);
    std::iota(deck.begin(), deck.end(), 0);
    std::ranges::shuffle(deck, random);
    // Of one suit mostly, or of few ranks.
    const int kind = question / 6 % 3;
    if (kind > 0) {
      std::stable_partition(deck.begin(), deck.begin() + 26, [&](int card) {
        return kind == 1 ? card / 13 == 2 : card % 13 < 3 || card % 13 == 12;
      });
    }
    const CardSet hero = CardSet(std::span(deck).first(size));
    const CardSet dead =
        CardSet(std::span(deck).subspan(2 * size, static_cast<std::size_t>(question % 5)));
    const std::vector<CardSet> hands =
        Alike(std::span(deck).subspan(size, size), hero | dead, random);
    const std::vector<OmahaDuel> duels =
        OmahaBeforeFlop(Isa::kBaseline, hero, dead, high_low).Count(hands);
    for (Isa isa = BestIsa(); isa > Isa::kBaseline;
         isa = static_cast<Isa>(static_cast<int>(isa) - 1)) {
      EXPECT_EQ(OmahaBeforeFlop(isa, hero, dead, high_low).Count(hands), duels) << IsaName(isa);
    }
    for (std::size_t i = 0; i < hands.size(); ++i) {
      std::vector<int> cards = ListOf(hero);
      cards.insert(cards.end(), hands[i].begin(), hands[i].end());
      const int hand_size = static_cast<int>(size);
      const HighLowTally tally = duels[i].Tally();
      if (high_low) {
        EXPECT_EQ(tally, CountHighLowMatchup(BestIsa(), cards, hand_size, ListOf(dead), {}));
      } else {
        const SharedTally high = CountOmahaMatchup(BestIsa(), cards, hand_size, ListOf(dead), {});
        EXPECT_EQ(tally.boards, high.boards);
        EXPECT_EQ(tally.whole, high.shared);
        EXPECT_EQ(tally.losses, high.boards - high.shared[0] - high.shared[1]);
      }
    }
  }
}

}  // namespace
}  // namespace pokermath
