// Omaha equity by random deals, and against ranges: PokerLogic's members.

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "contracts/omaha_dealing.h"
#include "contracts/stopwatch.h"
#include "eval/omaha_best.h"
#include "kernels/hole_cards.h"
#include "kernels/trials.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

double ShareOf(int value, int other) { return value > other ? 1.0 : value == other ? 0.5 : 0.0; }

// The first four cards of a hand of a range.
std::array<int, 4> FirstFour(const std::set<int>& hand) {
  std::array<int, 4> cards{};
  std::copy_n(hand.begin(), std::min<std::size_t>(hand.size(), 4), cards.begin());
  return cards;
}

// Hands of a range that share none of some cards.
std::vector<std::array<int, 4>> LiveHands(const PokerLogic::OmahaRange& range,
                                          std::uint64_t taken) {
  std::vector<std::array<int, 4>> live;
  for (const std::set<int>& hand : range) {
    if (hand.size() < 4) continue;
    const std::array<int, 4> cards = FirstFour(hand);
    if ((Bits(cards) & taken) == 0) live.push_back(cards);
  }
  return live;
}

}  // namespace
}  // namespace pokermath

double PokerLogic::FlopEquityHandVsRangeOnFlop(int* hand, int* flop, const OmahaRange& range,
                                               int& count) const {
  using namespace pokermath;
  const std::span<const int> board = CardsOf(flop, 3);
  const int value = BestOmahaValue(CardsOf(hand, 4), board);
  const OmahaPairValues pairs(board);
  count = 0;
  double wins = 0;
  for (const auto& cards : LiveHands(range, Bits(CardsOf(hand, 4)) | Bits(board))) {
    wins += pokermath::ShareOf(value, pairs.Best(cards));
    ++count;
  }
  return wins / count * 100;
}

double PokerLogic::FlopEquityHandVsRangeOnPreFlop(int* hand, const OmahaRange& range,
                                                  int& count) const {
  using namespace pokermath;
  const std::uint64_t used = Bits(CardsOf(hand, 4));
  double sum = 0;
  int flops = 0;
  int flop[3];
  for (flop[0] = 0; flop[0] < 50; ++flop[0])
    for (flop[1] = flop[0] + 1; flop[1] < 51; ++flop[1])
      for (flop[2] = flop[1] + 1; flop[2] < 52; ++flop[2]) {
        if ((Bits(CardsOf(flop, 3)) & used) != 0) continue;
        int cases;
        sum += FlopEquityHandVsRangeOnFlop(hand, flop, range, cases);
        ++flops;
      }
  count = 0;
  return sum / flops * 100;
}

double PokerLogic::getProbabilityOfWinOmaha(int* hand, int* board, int boardCount,
                                            int players) const {
  using namespace pokermath;
  if (boardCount < 0 || boardCount > 5 || players < 2 || players > 10 || trialCount < 1) return 0.0;
  EasyRandom generator(0, 51);
  generator.SetTimerSeed();
  OmahaTrials<4> trials(std::span<const int, 4>(hand, 4), CardsOf(board, boardCount), players);
  const auto draw = [&generator] { return generator.DrawRandomNumber(); };
  double sum = 0;
  for (int trial = 0; trial < trialCount; ++trial) {
    const int sharers = trials.Deal(draw);
    if (sharers > 0) sum += 1.0 / sharers;
  }
  return sum / trialCount;
}

double PokerLogic::EquityHandVsRandomCommon(int* hand, int handSize, int* board, int boardCount,
                                            int targetCount, int& trials, int& time) {
  using namespace pokermath;
  const std::span<const int> hole = CardsOf(hand, handSize);
  return SampleVsRandom(random, hole, CardsOf(board, boardCount), targetCount, trials, time,
                        [&](std::span<const int> other, std::span<const int> cards) {
                          return pokermath::ShareOf(BestOmahaValue(hole, cards),
                                                    BestOmahaValue(other, cards));
                        });
}

double PokerLogic::RiverEquityHandVsRandomOnFlopLight(int* hand, int* flop, int& trials,
                                                      int& time) {
  using namespace pokermath;
  const Stopwatch stopwatch;
  random.SetInterval(0, 51);
  random.SetTimerSeed();
  const std::uint64_t known = Bits(CardsOf(hand, 4)) | Bits(CardsOf(flop, 3));
  return SampleInTime(trials, time, stopwatch, [&] {
    Dealing dealing(random, known);
    const std::array<int, 4> other = {dealing.Draw(), dealing.Draw(), dealing.Draw(),
                                      dealing.Draw()};
    const std::array<int, 5> board = {flop[0], flop[1], flop[2], dealing.Draw(), dealing.Draw()};
    return pokermath::ShareOf(BestOmahaValue(CardsOf(hand, 4), board),
                              BestOmahaValue(other, board));
  });
}

double PokerLogic::RiverEquityHandVsRangeOnFlopLight(int* hand, int* flop, const OmahaRange& range,
                                                     int& trials, int& time) {
  using namespace pokermath;
  const Stopwatch stopwatch;
  const std::uint64_t known = Bits(CardsOf(hand, 4)) | Bits(CardsOf(flop, 3));
  const std::vector<std::array<int, 4>> live = LiveHands(range, known);
  EasyRandom generator(0, static_cast<int>(live.size()) - 1);
  generator.SetTimerSeed();
  random.SetInterval(0, 51);
  random.SetTimerSeed();
  if (live.empty()) trials = 0;
  return SampleInTime(trials, time, stopwatch, [&] {
    const auto& other = live[static_cast<std::size_t>(generator.DrawRandomNumber())];
    Dealing dealing(random, known | Bits(other));
    const std::array<int, 5> board = {flop[0], flop[1], flop[2], dealing.Draw(), dealing.Draw()};
    return pokermath::ShareOf(BestOmahaValue(CardsOf(hand, 4), board),
                              BestOmahaValue(other, board));
  });
}
