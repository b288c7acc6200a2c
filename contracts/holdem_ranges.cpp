// Hold'em equity against a range, on every street: PokerLogic's members.

#include <array>
#include <span>
#include <vector>

#include "contracts/cached_opponents.h"
#include "contracts/shares.h"
#include "kernels/board_judge.h"
#include "kernels/every_hand.h"
#include "kernels/range_count.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Random boards: each trial completes the known cards to `cards` board cards and judges the whole
// range on it. Known cards beyond that number are dead but not on the board.
double Sample(const int* hand, std::span<const int> known, int cards, const Spec& spec, int trials,
              EasyRandom& random) {
  const BoardJudge judge(HandOf(hand), HoldingsOf(spec));
  random.SetInterval(0, 51);
  std::uint64_t taken = std::uint64_t{1} << hand[0] | std::uint64_t{1} << hand[1];
  std::uint64_t dead = 0;
  std::array<int, 5> board{};
  for (std::size_t i = 0; i < known.size(); ++i) {
    board[i] = known[i];
    taken |= std::uint64_t{1} << known[i];
    dead |= std::uint64_t{1} << known[i];
  }
  const std::span<const int> judged(board.data(), static_cast<std::size_t>(cards));
  // Where nothing is drawn every trial is the same, and so is the share of any number of them.
  const bool fixed = static_cast<int>(known.size()) >= cards;
  Tally tally;
  for (int trial = 0; trial < (fixed && trials > 0 ? 1 : trials); ++trial) {
    std::uint64_t used = taken;
    for (std::size_t i = known.size(); i < judged.size(); ++i) {
      do {
        board[i] = random.DrawRandomNumber();
      } while ((used >> board[i] & 1) != 0);
      used |= std::uint64_t{1} << board[i];
    }
    judge.Judge(judged, dead, tally);
  }
  return ShareOf(tally);
}

double CountShare(const int* hand, std::span<const int> board, Street street, const Spec& spec) {
  return ShareOf(CountAgainst(Deck::kFull, HandOf(hand), HoldingsOf(spec), board, street));
}

}  // namespace

Tally HoldemHandVsRange(std::span<const int, 2> hand, const Spec& range, std::span<const int> board,
                        Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  return CountAgainst(Deck::kFull, hand, HoldingsOf(range), board, street);
}

std::vector<HandTally> HoldemEveryHandVsRange(const Spec& range, std::span<const int> board,
                                              Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  return CountEveryHand(HoldingsOf(range), board, street);
}

}  // namespace pokermath

double PokerLogic::getProbabilityOfWinBySpectr(int* hand, int* board, int boardCount,
                                               const Spec& spec) {
  switch (boardCount) {
    case 0:
      return getProbabilityOfWinBySpectrWithNoBoard(hand, spec);
    case 3:
      return getProbabilityOfWinBySpectrWithFlop(hand, board, spec);
    case 4:
      return getProbabilityOfWinBySpectrWithFlopAndTurn(hand, board, spec);
    case 1:
    case 2:
    case 5:
      return pokermath::Sample(hand, {board, static_cast<std::size_t>(boardCount)}, 5, spec,
                               trialCount, random);
    default:
      return 0.0;
  }
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoard(int* hand, const Spec& spec) const {
  using namespace pokermath;
  return ShareOf(CountWithTable(Deck::kFull, HandOf(hand), HoldingsOf(spec), equityTable));
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlop(int* hand, int* board,
                                                       const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 3}, pokermath::Street::kRiver, spec);
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopAndTurn(int* hand, int* board,
                                                              const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 4}, pokermath::Street::kRiver, spec);
}

double PokerLogic::getProbOfWinBySpectrToFlopOrTurn(int* hand, int* board, int boardCount,
                                                    const Spec& spec, int street) {
  if (boardCount < 0 || boardCount > 5 || street < 3 || street > 4) return 0.0;
  if (boardCount == 0) {
    return street == 3 ? getProbabilityOfWinBySpectrWithNoBoardToFlop(hand, spec)
                       : getProbabilityOfWinBySpectrWithNoBoardToTurn(hand, spec);
  }
  if (boardCount == 3 && street == 4) {
    return getProbabilityOfWinBySpectrWithFlopToTurn(hand, board, spec);
  }
  return pokermath::Sample(hand, {board, static_cast<std::size_t>(boardCount)}, street, spec,
                           trialCount, random);
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoardToFlop(int* hand, const Spec& spec) const {
  return pokermath::CountShare(hand, {}, pokermath::Street::kFlop, spec);
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoardToTurn(int* hand, const Spec& spec) const {
  using namespace pokermath;
  return ShareOf(CountWithTurnTable(HandOf(hand), HoldingsOf(spec), equityTurnTable));
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopToTurn(int* hand, int* board,
                                                             const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 3}, pokermath::Street::kTurn, spec);
}
