// Outs of an Omaha hand: every unseen card is put on the board and what the hand is then is looked
// at. Values of all pairs of hole cards are worked out once for each board; the hand and the test
// for the nuts both read them.

#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <utility>

#include "cards/card_list.h"
#include "eval/omaha_best.h"
#include "eval/scales.h"
#include "omaha/next_card.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr int kBadBoard = -5;
constexpr int kNutOut = 100;  // added to a count for an out that makes the nuts

enum Category {
  kTwoPair = 3,
  kStraight = 5,
  kFlush = 6,
  kFullHouse = 7,
  kQuads = 8,
  kStraightFlush = 9
};

int ValueOn(std::span<const int> hole, std::span<const int> board) {
  return OmahaPairValues(board).Best(hole);
}

// What an out adds to a count.
template <typename Nuts>
int OutAndNuts(const Nuts& is_nuts) {
  return is_nuts() ? 1 + kNutOut : 1;
}

// Outs by categories: those to a higher one.
int CountOuts(std::span<const int> hole, std::span<const int> board, int (*category_of)(int),
              std::span<int> outs, std::span<int> nut_outs) {
  if (board.size() < 3 || board.size() > 4) return kBadBoard;
  std::ranges::fill(outs, 0);
  std::ranges::fill(nut_outs, 0);
  const int now = category_of(ValueOn(hole, board));
  ForEachNextCard(hole, board, [&](int, int value, const auto& is_nuts) {
    const auto category = static_cast<std::size_t>(category_of(value));
    if (static_cast<int>(category) <= now) return;
    ++outs[category];
    if (is_nuts()) ++nut_outs[category];
  });
  return 1;
}

int CategoryOfValue(int value) { return CategoryOf(value); }

using RankPair = std::pair<int, int>;

RankPair HighLow(int card1, int card2) {
  return {std::max(card1 % 13, card2 % 13), std::min(card1 % 13, card2 % 13)};
}

// An ace that plays low comes behind.
RankPair StraightPair(int card1, int card2) {
  constexpr int kAce = 12;
  constexpr int kNine = 7;
  const RankPair pair = HighLow(card1, card2);
  if (pair.first == kAce && pair.second < kNine) return {pair.second, pair.first};
  return pair;
}

// Two pairs that both hole cards make with different board cards: the ranks of the hole cards.
bool MakesTwoPair(std::span<const int> hole, std::span<const int> board, RankPair& ranks) {
  const OmahaChoice choice = FindBestOmaha(hole, board);
  if (CategoryOf(choice.value) != kTwoPair) return false;
  ranks = HighLow(hole[static_cast<std::size_t>(choice.hole[0])],
                  hole[static_cast<std::size_t>(choice.hole[1])]);
  return true;
}

}  // namespace
}  // namespace pokermath

int PokerLogic::isFlushDraw(int* hole, int* board, int n) const {
  if (n < 3) return 0;
  int counts[4] = {};
  for (int i = 0; i < 2; ++i) ++counts[hole[i] / 13];
  for (int i = 0; i < n; ++i) ++counts[board[i] / 13];
  for (int suit = 0; suit < 4; ++suit) {
    if (counts[suit] < 4) continue;
    int highest = 0;
    for (int i = 0; i < 2; ++i) {
      if (hole[i] / 13 == suit) highest = std::max(highest, hole[i] % 13);
    }
    return highest;
  }
  return -1;
}

int PokerLogic::GetFlushDrawOutsOmaha(CHandOmahaType& hand, int& flushOuts,
                                      int& straightFlushOuts) const {
  using namespace pokermath;
  flushOuts = straightFlushOuts = 0;
  if (hand.boardCount < 3 || hand.boardCount > 4) return kBadBoard;
  int suits[4];
  int draws = 0;
  if (hand.isFlushDrawOmaha(suits, draws) == 0) return 0;
  ForEachNextCard(hand.holeCards, CardsOf(hand.boardCards, hand.boardCount),
                  [&](int, int value, const auto& is_nuts) {
                    const int category = CategoryOf(value);
                    if (category == kFlush) flushOuts += OutAndNuts(is_nuts);
                    if (category == kStraightFlush) straightFlushOuts += OutAndNuts(is_nuts);
                  });
  return draws;
}

int PokerLogic::GetStraightDrawOutsOmaha(int* hole, int* board, int n, int& straightOuts) const {
  using namespace pokermath;
  straightOuts = 0;
  if (n < 3 || n > 4) return kBadBoard;
  if (CategoryOf(ValueOn(CardsOf(hole, 4), CardsOf(board, n))) == kStraight) return kStraight;
  ForEachNextCard(CardsOf(hole, 4), CardsOf(board, n), [&](int, int value, const auto& is_nuts) {
    if (CategoryOf(value) == kStraight) straightOuts += OutAndNuts(is_nuts);
  });
  return 1;
}

int PokerLogic::GetFullHouseOutsOmaha(int* hole, int* board, int n, int& fullHouseOuts,
                                      int& quadsOuts) const {
  using namespace pokermath;
  fullHouseOuts = quadsOuts = 0;
  if (n < 3 || n > 4) return kBadBoard;
  const int now = CategoryOf(ValueOn(CardsOf(hole, 4), CardsOf(board, n)));
  if (now < kTwoPair || now > kFlush) return kFullHouse;
  ForEachNextCard(CardsOf(hole, 4), CardsOf(board, n), [&](int, int value, const auto& is_nuts) {
    const int category = CategoryOf(value);
    if (category == kFullHouse) fullHouseOuts += OutAndNuts(is_nuts);
    if (category == kQuads) quadsOuts += OutAndNuts(is_nuts);
  });
  return 1;
}

int PokerLogic::getOutsOmahaCommon(int* hole, int nHole, int* board, int n, int* outs,
                                   int* nutOuts) const {
  using namespace pokermath;
  return CountOuts(CardsOf(hole, nHole), CardsOf(board, n), CategoryOfValue, {outs, 10},
                   {nutOuts, 10});
}

int getOutsOmahaFsm5Common(int* hole, int nHole, int* board, int n, int* outs, int* nutOuts) {
  using namespace pokermath;
  return CountOuts(CardsOf(hole, nHole), CardsOf(board, n), Get_rankFsm5, {outs, 11},
                   {nutOuts, 11});
}

int getOutsOmahaFsm5CommonTwoPairs(int* hole, int nHole, int* board, int n, int& outs) {
  using namespace pokermath;
  outs = 0;
  if (n < 3 || n > 4) return kBadBoard;
  const std::span<const int> hand = CardsOf(hole, nHole);
  unsigned ranks = 0;
  for (const int card : CardsOf(board, n)) ranks |= 1u << card % 13;
  if (__builtin_popcount(ranks) < n) return 0;
  if (CategoryOf(ValueOn(hand, CardsOf(board, n))) > kTwoPair) return 0;
  RankPair now, then;
  const bool has_two_pair = MakesTwoPair(hand, CardsOf(board, n), now);
  std::array<int, 5> next{};
  std::copy_n(board, n, next.begin());
  const std::uint64_t known = Bits(hand) | Bits(CardsOf(board, n));
  for (int card = 0; card < 52; ++card) {
    if ((known & Bit(card)) != 0 || (ranks >> card % 13 & 1) != 0) continue;
    next[static_cast<std::size_t>(n)] = card;
    // Board cards are of different ranks, so hole cards of different ranks both have their pair.
    if (!MakesTwoPair(hand, CardsOf(next.data(), n + 1), then)) continue;
    if (then.first != then.second && !(has_two_pair && then == now)) ++outs;
  }
  return outs;
}

int TestStraight(int* hole, int nHole, int* board, int n, int* counts,
                 std::set<std::pair<int, int>>& straightRanks,
                 std::set<std::pair<int, int>>& heldRanks) {
  using namespace pokermath;
  straightRanks.clear();
  heldRanks.clear();
  counts[0] = counts[1] = 0;
  if (n < 3 || n > 5) return 0;
  const OmahaPairValues values(CardsOf(board, n));
  const std::uint64_t on_board = Bits(CardsOf(board, n));
  const std::uint64_t held = Bits(CardsOf(hole, nHole));
  for (int first = 0; first < 51; ++first) {
    for (int second = first + 1; second < 52; ++second) {
      const std::uint64_t pair = Bit(first) | Bit(second);
      if ((pair & on_board) != 0 || CategoryOf(values.Of(first, second)) != kStraight) continue;
      ++counts[0];
      straightRanks.insert(StraightPair(first, second));
      if ((pair & held) == 0) ++counts[1];
    }
  }
  if (counts[1] == 0) return counts[0];
  for (const RankPair& ranks : straightRanks) {
    for (const int card : CardsOf(hole, nHole)) {
      if (card % 13 == ranks.first || card % 13 == ranks.second) heldRanks.insert(ranks);
    }
  }
  return counts[0];
}
