// The short deck whose straights beat three of a kind keeps the values of the other one but for
// these two kinds, which change places. The best five of seven are then not always the same ones:
// of cards that hold both, it is the straight.

#include "eval/worth.h"

#include <algorithm>
#include <array>

#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "eval/short_deck.h"
#include "platform/require.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

// Of the scale 1..1404.
constexpr int kFirstStraight = 877;
constexpr int kFirstThree = 883;
constexpr int kFirstFullHouse = 1135;
constexpr int kStraights = kFirstThree - kFirstStraight;
constexpr int kThrees = kFirstFullHouse - kFirstThree;

// The best straight of short-deck ranks, 0 for A-6-7-8-9; -1 for none.
int BestStraight(std::span<const int> cards) {
  unsigned ranks = 0;
  for (const int card : cards) ranks |= 1u << (card % 13 - kLowestShortDeckCard);
  for (int low = 4; low >= 0; --low) {
    if ((ranks >> low & 0x1F) == 0x1F) return low + 1;
  }
  constexpr unsigned kAceToNine = 0x10F;
  return (ranks & kAceToNine) == kAceToNine ? 0 : -1;
}

int StraightOverThree(std::span<const int> cards, int value) {
  if (value < kFirstStraight || value >= kFirstFullHouse) return value;
  const int straight = BestStraight(cards);
  return straight >= 0 ? kFirstStraight + kThrees + straight : value - kStraights;
}

int HighOfAny(const GameRules& rules, std::span<const int> hand, std::span<const int> board) {
  std::array<int, 7> cards;
  std::ranges::copy(board, std::ranges::copy(hand, cards.begin()).out);
  const int count = static_cast<int>(hand.size() + board.size());
  if (!rules.IsShortDeck()) return EvaluateCards(cards.data(), count);
  const int value = EvaluateShortDeck(cards.data(), count);
  if (!rules.straight_over_trips) return value;
  return StraightOverThree(std::span(cards).first(static_cast<std::size_t>(count)), value);
}

}  // namespace

Worth WorthOf(const GameRules& rules, std::span<const int> hand, std::span<const int> board) {
  POKERMATH_REQUIRE(hand.size() == static_cast<std::size_t>(rules.hand_size));
  POKERMATH_REQUIRE(board.size() >= 3 && board.size() <= 5);
  if (!rules.IsOmaha()) return {.high = HighOfAny(rules, hand, board)};
  return {.high = BestOmahaValue(hand, board),
          .low = rules.high_low ? BestOmahaLow(hand, board) : 0};
}

int CategoryOf(const GameRules& rules, int high) {
  if (!rules.IsShortDeck()) return Get_rankFsm5(high);
  // The place of a category is its number, whichever of the two comes first.
  if (!rules.straight_over_trips) return Get_rank36(high);
  if (high < kFirstStraight || high >= kFirstFullHouse) return Get_rank36(high);
  return high < kFirstStraight + kThrees ? 4 : 5;
}

}  // namespace pokermath
