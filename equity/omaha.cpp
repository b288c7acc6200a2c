// Omaha equity of given hands: PokerLogic's members.

#include <array>
#include <span>
#include <vector>

#include "equity/kernels/omaha_matchup.h"
#include "equity/stopwatch.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

std::span<const int> CardsOf(const int* cards, int count) {
  return {cards, static_cast<std::size_t>(count)};
}

double HandVsHand(const int* hand1, int hand_size, const int* hand2, std::span<const int> board,
                  int& count, int& time) {
  const Stopwatch stopwatch;
  std::vector<int> cards(hand1, hand1 + hand_size);
  cards.insert(cards.end(), hand2, hand2 + hand_size);
  const OmahaTally tally = CountOmahaMatchup(BestIsa(), cards, hand_size, {}, board);
  count = static_cast<int>(tally.boards);
  time = stopwatch.Milliseconds();
  const double wins =
      static_cast<double>(tally.shared[0]) + 0.5 * static_cast<double>(tally.shared[1]);
  return wins / static_cast<double>(tally.boards) * 100;
}

double Hands(const int* hands, int hand_size, int players, int dead, std::span<const int> board,
             int& count, int& time) {
  const Stopwatch stopwatch;
  const std::span<const int> cards = CardsOf(hands, players * hand_size);
  const OmahaTally tally = CountOmahaMatchup(BestIsa(), cards, hand_size,
                                             CardsOf(hands + players * hand_size, dead), board);
  count = static_cast<int>(tally.boards);
  time = stopwatch.Milliseconds();
  // A tie with one other hand counts in full, as hosts know it.
  auto score = static_cast<double>(tally.shared[0]);
  for (std::size_t k = 1; k < tally.shared.size(); ++k) {
    score += static_cast<double>(tally.shared[k]) / static_cast<double>(k);
  }
  return score / static_cast<double>(tally.boards) * 100;
}

}  // namespace
}  // namespace pokermath

double PokerLogic::RiverEquityHandVsHandOnPreFlopCommon(int* hand1, int handSize, int* hand2,
                                                        int& count, int& time) const {
  return pokermath::HandVsHand(hand1, handSize, hand2, {}, count, time);
}

double PokerLogic::RiverEquityHandVsHandOnFlopCommon(int* hand1, int handSize, int* hand2,
                                                     int* board, int boardCount, int& count,
                                                     int& time) const {
  count = 0;
  time = 0;
  if (boardCount != 3) return 0.0;
  return pokermath::HandVsHand(hand1, handSize, hand2, {board, 3}, count, time);
}

double PokerLogic::RiverEquityHandVsHandOnTurnCommon(int* hand1, int handSize, int* hand2,
                                                     int* board, int, int& count, int& time) const {
  return pokermath::HandVsHand(hand1, handSize, hand2, {board, 4}, count, time);
}

double PokerLogic::RiverEquityHandsOnPreFlopCommon(int* hands, int handSize, int players,
                                                   int deadCount, int& count, int& time) const {
  return pokermath::Hands(hands, handSize, players, deadCount, {}, count, time);
}

double PokerLogic::RiverEquityHandsOnFlopCommon(int* hands, int handSize, int players,
                                                int deadCount, int* board, int& count,
                                                int& time) const {
  return pokermath::Hands(hands, handSize, players, deadCount, {board, 3}, count, time);
}

double PokerLogic::RiverEquityHandsOnTurnCommon(int* hands, int handSize, int players,
                                                int deadCount, int* board, int& count,
                                                int& time) const {
  return pokermath::Hands(hands, handSize, players, deadCount, {board, 4}, count, time);
}
