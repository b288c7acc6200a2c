// Low hands of Omaha Hi/Lo: PokerLogic's and CDeck's members.

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "cards/card_list.h"
#include "eval/omaha_low.h"
#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr int kBadBoard = -5;

// Different ranks of eight and below.
int LowRanks(std::span<const int> cards) {
  unsigned ranks = 0;
  for (const int card : cards) ranks |= LowBit(card % 13);
  return __builtin_popcount(ranks);
}

// Holdings of two unseen cards that have a better low.
int CountBetterLows(std::span<const int> hand, std::span<const int> board, int low) {
  std::array<int, 5> ranks;
  std::ranges::transform(board, ranks.begin(), [](int card) { return card % 13; });
  const OmahaPairLows lows(std::span<const int>(ranks).first(board.size()));
  const std::uint64_t known = Bits(hand) | Bits(board);
  int better = 0;
  for (int first = 0; first < 51; ++first) {
    if ((known & Bit(first)) != 0) continue;
    for (int second = first + 1; second < 52; ++second) {
      if ((known & Bit(second)) == 0 && lows.Of(first, second) > low) ++better;
    }
  }
  return better;
}

}  // namespace
}  // namespace pokermath

int PokerLogic::SetLowValueCombinationOmahaCommon(int* hand, int handSize, int* board,
                                                  int boardCount) const {
  using namespace pokermath;
  if (handSize < 2 || boardCount < 3 || boardCount > 5) return 0;
  return LowValueOf(BestOmahaLow(CardsOf(hand, handSize), CardsOf(board, boardCount)));
}

int PokerLogic::SetLowValueCombinationOmaha(int* hand, int* board) const {
  return SetLowValueCombinationOmahaCommon(hand, 4, board, 5);
}

void CDeck::SetLowValueCombinationOmaha(PokerLogic& logic) {
  extra = 0;
  if (cards.size() < 7 || !std::ranges::all_of(cards, &CCard::IsValid)) return;
  std::vector<int> codes;
  for (const CCard& card : cards) codes.push_back(card.GetInt());
  extra = logic.SetLowValueCombinationOmahaCommon(codes.data(), 4, codes.data() + 4,
                                                  static_cast<int>(codes.size()) - 4);
}

int PokerLogic::IsMyHandNutsOmahaLow(int* hand, int handSize, int* board, int boardCount) const {
  using namespace pokermath;
  if (boardCount < 3 || boardCount > 5) return kBadBoard;
  const int low =
      handSize < 2 ? 0 : BestOmahaLow(CardsOf(hand, handSize), CardsOf(board, boardCount));
  if (low == 0) return 1;
  return CountBetterLows(CardsOf(hand, handSize), CardsOf(board, boardCount), low);
}

int PokerLogic::getOutsOmahaLow(int* hand, int handSize, int* board, int boardCount, int& outs,
                                int& nutOuts) const {
  using namespace pokermath;
  if (boardCount < 3 || boardCount > 4) return kBadBoard;
  outs = nutOuts = 0;
  const std::span<const int> hole = CardsOf(hand, handSize);
  const int now = BestOmahaLow(hole, CardsOf(board, boardCount));
  const std::uint64_t known = Bits(hole) | Bits(CardsOf(board, boardCount));
  std::array<int, 5> next{};
  std::copy_n(board, boardCount, next.begin());
  const std::span<const int> then = CardsOf(next.data(), boardCount + 1);
  for (int card = 0; card < 52; ++card) {
    if ((known & Bit(card)) != 0) continue;
    next[static_cast<std::size_t>(boardCount)] = card;
    const int low = BestOmahaLow(hole, then);
    if (low == 0) continue;
    if (now == 0) ++outs;
    if (CountBetterLows(hole, then, low) == 0) ++nutOuts;
  }
  return 1;
}

int PokerLogic::CountLowCards(int* hand, int handSize, int* board, int boardCount,
                              int& lowValueOrOuts, int& nutOuts, double& probability) const {
  using namespace pokermath;
  const int on_board = LowRanks(CardsOf(board, boardCount));
  const bool no_low_possible = (on_board == 0 && boardCount >= 3) ||
                               (on_board < 2 && boardCount >= 4) ||
                               (on_board <= 2 && boardCount == 5);
  if (no_low_possible) return 0;
  if (handSize < 2 || LowRanks(CardsOf(hand, handSize)) < 2) return 1;
  lowValueOrOuts = SetLowValueCombinationOmahaCommon(hand, handSize, board, boardCount);
  if (lowValueOrOuts != 0) return 2;
  if (on_board >= 3) return 100;
  getOutsOmahaLow(hand, handSize, board, boardCount, lowValueOrOuts, nutOuts);
  probability = static_cast<double>(lowValueOrOuts) / (52 - handSize - boardCount);
  return 3;
}
