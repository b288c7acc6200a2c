// Hold'em equity against a range, on every street: PokerLogic's members.

#include <omp.h>

#include <array>
#include <map>
#include <span>
#include <vector>

#include "equity/kernels/board_judge.h"
#include "equity/kernels/every_hand.h"
#include "equity/kernels/matchup.h"
#include "equity/kernels/range_count.h"
#include "equity/matchups.h"
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

std::span<const Combination> HoldingsOf(const Spec& spec) {
  return {spec.combinations().begin(), spec.combinations().end()};
}

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
  return Share(tally);
}

double CountShare(const int* hand, std::span<const int> board, Street street, const Spec& spec) {
  return Share(CountAgainst(HandOf(hand), HoldingsOf(spec), board, street));
}

// Opponents of a hand on an empty board: those whose matchup an equity table knows are summed up,
// the others are gathered to be counted.
class CachedOpponents {
 public:
  CachedOpponents(const int* hand, const Spec& spec,
                  const std::map<PokerLogic::MatchupKey, int>& table, Street street)
      : groups_(EmptyBoardCounts(BestIsa(), Deck::kFull, street), HandOf(hand)) {
    const int key = HandKey(hand[0], hand[1]);
    for (const Combination& cards : spec.combinations()) {
      const auto& [first, second] = cards;
      if (first == hand[0] || first == hand[1] || second == hand[0] || second == hand[1]) continue;
      const auto entry = table.empty() ? table.end() : table.find({key, HandKey(first, second)});
      if (entry == table.end()) {
        groups_.Add(cards);
      } else {
        known_.ties += entry->second;  // half wins
        known_.cases += BoardsOf(street);
      }
    }
    for (int rank_class = 0; rank_class < kRankClasses; ++rank_class) {
      if (groups_.Has(rank_class)) classes_.push_back(rank_class);
    }
  }

  const Tally& known() const { return known_; }
  /// How many counts there are to be made, and one of them.
  int Size() const { return static_cast<int>(classes_.size()); }
  Tally Count(int index) const { return groups_.Count(classes_[static_cast<std::size_t>(index)]); }

 private:
  OpponentGroups groups_;
  Tally known_;
  std::vector<int> classes_;
};

}  // namespace

Tally HoldemHandVsRange(std::span<const int, 2> hand, const Spec& range, std::span<const int> board,
                        Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  return CountAgainst(hand, HoldingsOf(range), board, street);
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
  const pokermath::CachedOpponents opponents(hand, spec, equityTable, pokermath::Street::kRiver);
  const int count = opponents.Size();
  std::vector<pokermath::Tally> tallies(static_cast<std::size_t>(count));
  omp_set_dynamic(1);
  // Every index writes its own slot only, so the result does not depend on the workers.
#pragma omp parallel for schedule(static)
  for (int i = 0; i < count; ++i) tallies[static_cast<std::size_t>(i)] = opponents.Count(i);
  pokermath::Tally all = opponents.known();
  for (const pokermath::Tally& tally : tallies) all += tally;
  return pokermath::Share(all);
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
  const pokermath::CachedOpponents opponents(hand, spec, equityTurnTable, pokermath::Street::kTurn);
  pokermath::Tally all = opponents.known();
  for (int i = 0; i < opponents.Size(); ++i) all += opponents.Count(i);
  return pokermath::Share(all);
}

double PokerLogic::getProbabilityOfWinBySpectrWithFlopToTurn(int* hand, int* board,
                                                             const Spec& spec) const {
  return pokermath::CountShare(hand, {board, 3}, pokermath::Street::kTurn, spec);
}
