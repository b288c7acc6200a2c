// Omaha equity of given hands: PokerLogic's members.

#include <array>
#include <span>
#include <vector>

#include "contracts/shares.h"
#include "contracts/stopwatch.h"
#include "contracts/team.h"
#include "kernels/hole_cards.h"
#include "kernels/omaha_before_flop.h"
#include "kernels/omaha_cliques.h"
#include "kernels/omaha_matchup.h"
#include "kernels/omaha_range.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

double HandVsHand(const int* hand1, int hand_size, const int* hand2, std::span<const int> board,
                  int& count, int& time) {
  const Stopwatch stopwatch;
  std::vector<int> cards(hand1, hand1 + hand_size);
  cards.insert(cards.end(), hand2, hand2 + hand_size);
  const SharedTally tally = CountOmahaMatchup(BestIsa(), cards, hand_size, {}, board);
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
  const SharedTally tally = CountOmahaMatchup(BestIsa(), cards, hand_size,
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

// Percent for a count, and its cases.
double Percent(const Tally& tally, int& count) {
  count = static_cast<int>(tally.cases);
  return ShareOf(tally) * 100;
}

double AgainstAll(const int* hand, std::span<const int> board, Street street, int& count) {
  return Percent(CountOmahaAgainstAll(BestIsa(), CardsOf(hand, 4), board, street), count);
}

// One river after a board of four; nothing for a card that is known.
Tally CountRiver(const int* hand, const int* board, int river) {
  std::array<int, 5> complete = {board[0], board[1], board[2], board[3], river};
  const std::uint64_t known = Bits(CardsOf(hand, 4)) | Bits(CardsOf(board, 4));
  if ((known & Bit(river)) != 0) return {};
  return CountOmahaAgainstAll(BestIsa(), CardsOf(hand, 4), complete, Street::kRiver);
}

// Hands and boards that can be compared, and those against which all can be.
bool CanCompare(std::span<const int> cards, int hand_size, std::span<const int> board) {
  const auto size = static_cast<std::size_t>(hand_size);
  return IsOmahaHandSize(hand_size) && !cards.empty() && cards.size() % size == 0 &&
         board.size() <= 5 && board.size() != 1 && board.size() != 2;
}
bool CanFaceAll(std::span<const int> hand, std::span<const int> board, Street street) {
  return IsOmahaHandSize(static_cast<int>(hand.size())) &&
         board.size() <= static_cast<std::size_t>(street);
}

}  // namespace

SharedTally OmahaHands(std::span<const int> cards, int hand_size, std::span<const int> board,
                       std::span<const int> dead) {
  if (!CanCompare(cards, hand_size, board)) return {};
  return CountOmahaMatchup(BestIsa(), cards, hand_size, dead, board);
}

Tally OmahaHandVsRandom(std::span<const int> hand, std::span<const int> board, Street street,
                        std::span<const int> dead,
                        const std::function<bool(std::int64_t, std::int64_t)>& go_on) {
  if (!CanFaceAll(hand, board, street)) return {};
  return CountOmahaAgainstAll(BestIsa(), hand, board, street, dead, go_on);
}

// Where no board card is known, hands of the same ranks are counted together.
template <int cards>
static Tally CountBeforeFlop(std::span<const int> hand, const OmahaSpec<cards>& range,
                             std::span<const int> dead,
                             const std::function<bool(std::int64_t, std::int64_t)>& go_on) {
  const CardSet hero(hand), gone(dead);
  std::vector<CardSet> hands;
  for (const auto& other : range.Hands()) {
    const CardSet held(other);
    if (!held.Meets(hero | gone)) hands.push_back(held);
  }
  const OmahaBeforeFlop contest(BestIsa(), hero, gone, false);
  Tally tally;
  std::int64_t done = 0;
  const auto all = static_cast<std::int64_t>(hands.size());
  for (const std::vector<std::size_t>& places : AlikeByRanks(hands)) {
    if (go_on && !go_on(done, all)) return {};
    std::vector<CardSet> alike;
    for (const std::size_t place : places) alike.push_back(hands[place]);
    for (const OmahaDuel& duel : contest.Count(alike)) {
      tally.wins += duel.wins[0];
      tally.ties += duel.ties[0];
      tally.cases += duel.boards[0];
    }
    done += static_cast<std::int64_t>(alike.size());
  }
  return tally;
}

template <int cards>
Tally OmahaHandVsRange(std::span<const int> hand, const OmahaSpec<cards>& range,
                       std::span<const int> board, Street street, std::span<const int> dead,
                       const std::function<bool(std::int64_t, std::int64_t)>& go_on) {
  if (hand.size() != static_cast<std::size_t>(cards) || !CanFaceAll(hand, board, street)) return {};
  if (board.empty() && street == Street::kRiver) {
    return CountBeforeFlop<cards>(hand, range, dead, go_on);
  }
  return OmahaRangeContest<cards>(hand, range.Hands(), board, street, dead).Count(BestIsa(), go_on);
}

#define POKERMATH_HAND_VS_RANGE(cards)                                                       \
  template Tally OmahaHandVsRange<cards>(std::span<const int>, const OmahaSpec<cards>&,      \
                                         std::span<const int>, Street, std::span<const int>, \
                                         const std::function<bool(std::int64_t, std::int64_t)>&);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_HAND_VS_RANGE)

HighLowTally OmahaHighLowHands(std::span<const int> cards, int hand_size,
                               std::span<const int> board, std::span<const int> dead) {
  if (!CanCompare(cards, hand_size, board)) return {};
  return CountHighLowMatchup(BestIsa(), cards, hand_size, dead, board);
}

HighLowTally OmahaHighLowVsRandom(std::span<const int> hand, std::span<const int> board,
                                  Street street, std::span<const int> dead,
                                  const std::function<bool(std::int64_t, std::int64_t)>& go_on) {
  if (!CanFaceAll(hand, board, street)) return {};
  return CountHighLowAgainstAll(BestIsa(), hand, board, street, dead, go_on);
}

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

double PokerLogic::RiverEquityHandVsRandomOnRiver(int* hand, int* board, int& count) const {
  return pokermath::AgainstAll(hand, {board, 5}, pokermath::Street::kRiver, count);
}

double PokerLogic::RiverEquityHandVsRandomOnTurn(int* hand, int* board, int& count) const {
  return pokermath::AgainstAll(hand, {board, 4}, pokermath::Street::kRiver, count);
}

double FlopEquityHandVsRandomOnFlopFsm5(int* hand, int* flop, int& count) {
  return pokermath::AgainstAll(hand, {flop, 3}, pokermath::Street::kFlop, count);
}

double TurnEquityHandVsRandomOnTurnFsm5(int* hand, int* board, int& count) {
  return pokermath::AgainstAll(hand, {board, 4}, pokermath::Street::kTurn, count);
}

double RiverEquityHandVsRandomOnTurnFsm5(int* hand, int* board, int& count) {
  const pokermath::Tally tally = pokermath::SumOfTeam(
      52, [&](int river) { return pokermath::CountRiver(hand, board, river); });
  return pokermath::Percent(tally, count);
}

double RiverEquityHandVsRandomOnRiver_ofsm7(int* hand, int* board, int& count) {
  return pokermath::AgainstAll(hand, {board, 5}, pokermath::Street::kRiver, count);
}
