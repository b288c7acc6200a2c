#include "kernels/board_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

#include "eval/worth.h"

namespace pokermath {
namespace {

// What an order says of a hand; 0 where the hand is not in it.
int ValueIn(const BoardOrder& order, int card1, int card2) {
  RankSet held = 0;
  for (const int card : {card1, card2}) {
    if (card / 13 == order.suit) held = static_cast<RankSet>(held | 1 << card % 13);
  }
  for (std::size_t i = 0; order.suit >= 0 && i < order.flushes->size; ++i) {
    if (order.flushes->held[i] == held) return order.flushes->values[i];
  }
  for (std::size_t i = 0; i < order.ranks->size; ++i) {
    if (order.ranks->classes[i] == RankClassOf(card1 % 13, card2 % 13)) {
      return order.ranks->values[i];
    }
  }
  return 0;
}

TEST(BoardOrder, HasEveryHandAtItsValue) {
  std::mt19937 random(1);
  for (const Game game : {Game::kHoldem, Game::kShortDeck, Game::kShortDeckStraights}) {
    const GameRules& rules = RulesOf(game);
    const CardSet deck_set = rules.Deck();
    std::vector<int> deck(deck_set.begin(), deck_set.end());
    for (std::size_t i = 0; i < 240; ++i) {
      std::shuffle(deck.begin(), deck.end(), random);
      // Every second board of cards that are mostly of one suit.
      if (i % 2 == 0) {
        std::stable_sort(deck.begin(), deck.begin() + 18,
                         [](int a, int b) { return a / 13 < b / 13; });
      }
      const std::size_t size = 3 + i % 3;
      const std::vector<int> board(deck.begin(), deck.begin() + static_cast<std::ptrdiff_t>(size));
      const BoardOrder order = OrderOf(rules, CardSet(board));
      EXPECT_TRUE(std::is_sorted(order.ranks->values.begin(),
                                 order.ranks->values.begin() + order.ranks->size));
      for (std::size_t a = size; a < deck.size(); ++a) {
        for (std::size_t b = size; b < a; ++b) {
          const int hand[2] = {deck[a], deck[b]};
          ASSERT_EQ(ValueIn(order, hand[0], hand[1]), WorthOf(rules, hand, board).high)
              << rules.name << " " << i << " " << hand[0] << " " << hand[1];
        }
      }
    }
  }
}

}  // namespace
}  // namespace pokermath
