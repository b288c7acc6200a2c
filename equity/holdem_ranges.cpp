// Hold'em equity against a range, on every street: PokerLogic's members.

#include <omp.h>

#include <array>
#include <span>
#include <utility>

#include "equity/kernels/matchup.h"
#include "equity/kernels/range_count.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Wins with ties as one half over all cases; not a number when the range is wholly blocked.
double Share(const Tally& tally) {
  return (static_cast<double>(tally.wins) + 0.5 * static_cast<double>(tally.ties)) /
         static_cast<double>(tally.cases);
}

std::span<const int, 2> HandOf(const int* hand) { return std::span<const int, 2>(hand, 2); }

// Holdings that share no card with the hand, in the order of the range.
std::vector<Combination> LiveHoldings(const int* hand, const Spec& spec) {
  std::vector<Combination> live;
  for (const Combination& cards : spec.combinations()) {
    const bool dead = cards.first == hand[0] || cards.first == hand[1] || cards.second == hand[0] ||
                      cards.second == hand[1];
    if (!dead) live.push_back(cards);
  }
  return live;
}

// Random boards: each trial completes the known cards to `cards` board cards and judges the whole
// range on it. Known cards beyond that number are dead but not on the board.
double Sample(const int* hand, std::span<const int> known, int cards, const Spec& spec, int trials,
              EasyRandom& random) {
  const RangeOpponents opponents(HandOf(hand), spec.combinations());
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
    opponents.Judge(judged, dead, tally);
  }
  return Share(tally);
}

double CountShare(const int* hand, std::span<const int> board, int cards, const Spec& spec) {
  return Share(RangeOpponents(HandOf(hand), spec.combinations()).Count(board, cards));
}

}  // namespace

Tally HoldemHandVsRange(std::span<const int, 2> hand, const Spec& range, std::span<const int> board,
                        Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  if (!board.empty() || street == Street::kFlop) {
    return RangeOpponents(hand, range.combinations()).Count(board, static_cast<int>(street));
  }
  Tally all;
  for (const auto& [first, second] : LiveHoldings(hand.data(), range)) {
    const int opponent[2] = {first, second};
    const Tally tally = CountMatchup(BestIsa(), hand.data(), opponent, street);
    all.wins += tally.wins;
    all.ties += tally.ties;
    all.cases += tally.cases;
  }
  return all;
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
  std::vector<pokermath::Combination> live = pokermath::LiveHoldings(hand, spec);
  const int count = static_cast<int>(live.size());
  std::vector<double> wins(live.size());
  std::vector<double> boards(live.size());
  omp_set_dynamic(1);
  // Every index writes its own slots only, so the result does not depend on the workers.
#pragma omp parallel for schedule(static)
  for (int i = 0; i < count; ++i) {
    const auto slot = static_cast<std::size_t>(i);
    int opponent[2] = {live[slot].first, live[slot].second};
    GetWinHandVsHand(hand, opponent, wins[slot], boards[slot]);
  }
  double all_wins = 0;
  double all_boards = 0;
  for (std::size_t i = 0; i < live.size(); ++i) {
    all_wins += wins[i];
    all_boards += boards[i];
  }
  return all_wins / all_boards;
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlop(int* hand, int* board,
                                                       const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 3}, 5, spec);
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopAndTurn(int* hand, int* board,
                                                              const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 4}, 5, spec);
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
  return pokermath::CountShare(hand, {}, 3, spec);
}

double PokerLogic::getProbabilityOfWinBySpectrWithNoBoardToTurn(int* hand, const Spec& spec) const {
  double all_wins = 0;
  double all_boards = 0;
  for (const auto& [first, second] : pokermath::LiveHoldings(hand, spec)) {
    int opponent[2] = {first, second};
    double wins = 0;
    double boards = 0;
    GetWinHandVsHandToTurn(hand, opponent, wins, boards);
    all_wins += wins;
    all_boards += boards;
  }
  return all_wins / all_boards;
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopToTurn(int* hand, int* board,
                                                             const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 3}, 4, spec);
}
