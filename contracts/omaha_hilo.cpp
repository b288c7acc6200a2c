// Omaha Hi/Lo equity: PokerLogic's members.

#include <array>
#include <span>

#include "contracts/omaha_dealing.h"
#include "contracts/stopwatch.h"
#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "kernels/hole_cards.h"
#include "kernels/omaha_cliques.h"
#include "kernels/omaha_matchup.h"
#include "kernels/trials.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// The share of the pot against one opponent: by what happens to the lows, and by the high hands.
//                                             won   tied  lost
constexpr double kShares[5][3] = {/* better */ {1.0, 0.75, 0.5},
                                  /* equal  */ {0.75, 0.5, 0.25},
                                  /* worse  */ {0.5, 0.25, 0.0},
                                  /* alone  */ {1.0, 0.75, 0.5},
                                  /* none   */ {1.0, 0.5, 0.0}};

// Lows are 0 for none, larger for the better one.
double HeadsUpShare(int high, int low, int other_high, int other_low) {
  const int lows = other_low > 0 ? (low > other_low    ? 0
                                    : low == other_low ? 1
                                                       : 2)
                   : low > 0     ? 3
                                 : 4;
  return kShares[lows][high > other_high ? 0 : high == other_high ? 1 : 2];
}

double Percent(const HighLowTally& tally, int& count) {
  count = static_cast<int>(tally.boards);
  return tally.Pots(1, 0.5, 0.5) / static_cast<double>(tally.boards) * 100;
}

double HandsHighLow(const int* hands, int hand_size, int players, int dead,
                    std::span<const int> board, int& count, int& time) {
  const Stopwatch stopwatch;
  const HighLowTally tally =
      CountHighLowMatchup(BestIsa(), CardsOf(hands, players * hand_size), hand_size,
                          CardsOf(hands + players * hand_size, dead), board);
  time = stopwatch.Milliseconds();
  return Percent(tally, count);
}

}  // namespace
}  // namespace pokermath

double PokerLogic::getProbabilityOfWinOmahaHL(int* hand, int* board, int boardCount,
                                              int players) const {
  using namespace pokermath;
  if (boardCount < 0 || boardCount > 5 || players < 2 || players > 10 || trialCount < 1) return 0.0;
  EasyRandom generator(0, 51);
  generator.SetTimerSeed();
  HighLowTrials<4> trials(std::span<const int, 4>(hand, 4), CardsOf(board, boardCount), players);
  double sum = 0;
  for (int trial = 0; trial < trialCount; ++trial) {
    sum += trials.Deal([&generator] { return generator.DrawRandomNumber(); }).Share();
  }
  return sum / trialCount;
}

double PokerLogic::EquityHandVsRandomHL(int* hand, int handSize, int* board, int boardCount,
                                        int targetCount, int& trials, int& time) {
  using namespace pokermath;
  const std::span<const int> hole = CardsOf(hand, handSize);
  return SampleVsRandom(random, hole, CardsOf(board, boardCount), targetCount, trials, time,
                        [&](std::span<const int> other, std::span<const int> cards) {
                          return HeadsUpShare(
                              BestOmahaValue(hole, cards), BestOmahaLow(hole, cards),
                              BestOmahaValue(other, cards), BestOmahaLow(other, cards));
                        });
}

double PokerLogic::RiverEquityHandVsRandomOnRiverHL(int* hand, int* board, int& count) const {
  using namespace pokermath;
  return Percent(
      CountHighLowAgainstAll(BestIsa(), CardsOf(hand, 4), CardsOf(board, 5), Street::kRiver),
      count);
}

double PokerLogic::RiverEquityHandsOnPreFlopCommonHL(int* hands, int handSize, int players,
                                                     int deadCount, int& count, int& time) const {
  return pokermath::HandsHighLow(hands, handSize, players, deadCount, {}, count, time);
}

double PokerLogic::RiverEquityHandsOnFlopCommonHL(int* hands, int handSize, int players,
                                                  int deadCount, int* board, int& count,
                                                  int& time) const {
  return pokermath::HandsHighLow(hands, handSize, players, deadCount, {board, 3}, count, time);
}

double PokerLogic::RiverEquityHandsOnTurnCommonHL(int* hands, int handSize, int players,
                                                  int deadCount, int* board, int& count,
                                                  int& time) const {
  return pokermath::HandsHighLow(hands, handSize, players, deadCount, {board, 4}, count, time);
}
