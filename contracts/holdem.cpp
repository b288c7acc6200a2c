// Hold'em equity: hand against hand and hand against unknown hands.

#include <algorithm>

#include "contracts/cached_matchup.h"
#include "kernels/known_matchups.h"
#include "kernels/matchups.h"
#include "kernels/range_count.h"
#include "kernels/trials.h"
#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"

namespace pokermath {

Tally HoldemHandVsHand(std::span<const int, 2> hand1, std::span<const int, 2> hand2,
                       std::span<const int> board, Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  if (board.empty()) return CountBeforeFlop(Deck::kFull, hand1.data(), hand2.data(), street);
  const Combination opponent(hand2[0], hand2[1]);
  return CountAgainst(Deck::kFull, hand1, {&opponent, 1}, board, street);
}

namespace {

// Answers from a table, from the symmetry of twins, or by counting.
void CachedMatchup(const EquityTable& table, int* hand1, int* hand2, Street street, double& wins,
                   double& boards) {
  AnswerMatchup(table, hand1, hand2, BoardsOf(street), wins, boards,
                [&] { return CountBeforeFlop(Deck::kFull, hand1, hand2, street); });
}

}  // namespace
}  // namespace pokermath

double PokerLogic::getProbabilityOfWin(int* hand, int* board, int boardCount, int players) {
  if (boardCount < 0 || boardCount > 5 || players < 2 || players > 10) return 0.0;
  if (HR.empty() || trialCount < 1) return 0.0;
  random.SetInterval(0, 51);
  pokermath::HoldemTrials trials(std::span<const int, 2>(hand, 2),
                                 {board, static_cast<std::size_t>(boardCount)}, players);
  const auto draw = [this] { return random.DrawRandomNumber(); };
  double sum = 0.0;
  for (int i = 0; i < trialCount; ++i) {
    const int sharers = trials.Deal(draw);
    if (sharers > 0) sum += 1.0 / sharers;
  }
  return sum / trialCount;
}

void PokerLogic::getProbabilityOfWinWithNoBoard(int* hand1, int* hand2, double& wins,
                                                double& boards) const {
  using namespace pokermath;
  Answer(CountBeforeFlop(Deck::kFull, hand1, hand2, Street::kRiver), wins, boards);
}

void PokerLogic::getProbabilityOfWinWithNoBoardToTurn(int* hand1, int* hand2, double& wins,
                                                      double& boards) const {
  using namespace pokermath;
  Answer(CountBeforeFlop(Deck::kFull, hand1, hand2, Street::kTurn), wins, boards);
}

int PokerLogic::GetWinHandVsHand(int* hand1, int* hand2, double& wins, double& boards) const {
  pokermath::CachedMatchup(equityTable, hand1, hand2, pokermath::Street::kRiver, wins, boards);
  return 1;
}

int PokerLogic::GetWinHandVsHandToTurn(int* hand1, int* hand2, double& wins, double& boards) const {
  pokermath::CachedMatchup(equityTurnTable, hand1, hand2, pokermath::Street::kTurn, wins, boards);
  return 1;
}
