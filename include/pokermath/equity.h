/// @file
/// Free equity functions: exact counts, without any table to load.
///
/// Cards are card codes 0..51, all different, and not checked. Functions of the global namespace
/// give a share of the pot, 0..1, or a percentage, 0..100, as is said of each; those of the
/// namespace pokermath give counts (Tally, SharedTally, HighLowTally). The calculator
/// (calculator.h) answers the same questions and more, checks them, and takes weights and several
/// ranges.

#ifndef POKERMATH_EQUITY_H_
#define POKERMATH_EQUITY_H_

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "pokermath/export.h"
#include "pokermath/game.h"
#include "pokermath/text.h"

/// @cond
class Spec;
namespace pokermath {
template <int cards>
class OmahaSpec;
}
/// @endcond

/// @name Short deck: 36 cards, six to ace; a flush beats a full house, three of a kind a straight
///
/// Hands are two card codes, boards up to five, every number a share of the pot, 0.0 .. 1.0, a tie
/// as one half. Holdings of a range that share a card with the hand or the board, or hold a card
/// below six, are left out; a range that is wholly left out gives not a number. A hand or a board
/// with a card below six is valued as the evaluators value it, nothing in most cases. Exact
/// functions need no table and take microseconds. All may run in several threads at once, as long
/// as no table of equities is loaded meanwhile; those that sample draw from rand(), which is the
/// process's own.
/// @{

/// Estimate against one range for each of 1 to 9 opponents, over `trials` random deals; a pot
/// shared with k others counts 1/(k+1).
///
/// Of each range the holdings up to the first one that shares a card with the hand or the board
/// take part, in the order of the range. A deal that leaves an opponent no free holding is dealt
/// again. Boards are dealt before holdings, as if no range were there; so boards that take cards of
/// a narrow range come too often, and more trials do not mend it: aces against tens are estimated
/// at 0.57, which is 0.70. Calculate() of calculator.h samples without that. Calls srand(), see
/// EasyRandom: two calls within a second make the same deals.
/// @param boardCount  0..5
/// @param specs       one range for each opponent
/// @return 0.0 for counts out of range, without trials, if no deal is possible, and if
///         "six-plus-7.bin" cannot be loaded from the current directory
POKERMATH_EXPORT double getProbabilityOfWinHoldem6PlusCommon(int* hand, int* board, int boardCount,
                                                             Spec* specs, int opponents,
                                                             int& trials);

/// Exact, over the 201,376 five-card boards that two hands leave.
///
/// @param wins    out: boards won by hand1, a tie as 0.5
/// @param boards  out: boards counted
POKERMATH_EXPORT void getProbabilityOfWinWithNoBoard6Plus(int* hand1, int* hand2, double& wins,
                                                          double& boards);
/// The same, answered from the table that load_equity_table_6Plus loads where it holds the matchup
/// in this order. Always returns 1.
POKERMATH_EXPORT int GetWinHandVsHand6Plus(int* hand1, int* hand2, double& wins, double& boards);
/// Adds the records of a file, as PokerLogic::load_equity_table, to the short-deck table of the
/// process. Returns 1; 0 with a message when there is no such file.
POKERMATH_EXPORT int load_equity_table_6Plus(CString path);

/// To the river: exact for 0, 3, 4 and 5 board cards; 0.0 for another count.
POKERMATH_EXPORT double getProbabilityOfWinBySpectr6Plus(int* hand, int* board, int boardCount,
                                                         const Spec& spec);
/// From an empty board, by GetWinHandVsHand6Plus for each holding; shared out among OpenMP's
/// workers. Leaves dynamic team sizes on for the calling thread (omp_set_dynamic).
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithNoBoard6Plus(int* hand, const Spec& spec);
/// From three board cards to the river.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithFlop6Plus(int* hand, int* board,
                                                                 const Spec& spec);
/// From four board cards to the river.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithFlopAndTurn6Plus(int* hand, int* board,
                                                                        const Spec& spec);

/// To the flop, hands of five cards: from an empty board, or on the first three of 3 to 5 cards;
/// those behind them are not looked at, and holdings with them take part. 0.0 for another count.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrToFlop6Plus(int* hand, int* board,
                                                               int boardCount, const Spec& spec);
/// From an empty board to the flop.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithNoBoardToFlop6Plus(int* hand,
                                                                          const Spec& spec);
/// On three board cards as they stand.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithFlopToFlop6Plus(int* hand, int* board,
                                                                       const Spec& spec);

/// To the turn, hands of six cards: from an empty board, from three cards, or on the first four of
/// 4 or 5; the fifth is not looked at, and holdings with it take part. 0.0 for another count.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrToTurn6Plus(int* hand, int* board,
                                                               int boardCount, const Spec& spec);
/// From an empty board to the turn.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithNoBoardToTurn6Plus(int* hand,
                                                                          const Spec& spec);
/// From three board cards to the turn.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithFlopToTurn6Plus(int* hand, int* board,
                                                                       const Spec& spec);
/// On four board cards as they stand.
POKERMATH_EXPORT double getProbabilityOfWinBySpectrWithTurnToTurn6Plus(int* hand, int* board,
                                                                       const Spec& spec);

/// @}

/// @name Omaha: a hand of four against every hand that its opponent may hold, exact, in percent
///
/// A tie counts as one half; `count` receives the cases. Nothing has to be loaded; any number of
/// threads.
/// @{

/// On a flop of three cards as the board stands: 148,995 cases.
POKERMATH_EXPORT double FlopEquityHandVsRandomOnFlopFsm5(int* hand, int* flop, int& count);
/// On a turn of four cards as the board stands: 135,751 cases.
POKERMATH_EXPORT double TurnEquityHandVsRandomOnTurnFsm5(int* hand, int* board, int& count);
/// On a turn of four cards over every river: 5,430,040 cases, the rivers shared out among OpenMP's
/// workers.
POKERMATH_EXPORT double RiverEquityHandVsRandomOnTurnFsm5(int* hand, int* board, int& count);
/// On a river of five cards: 123,410 cases.
POKERMATH_EXPORT double RiverEquityHandVsRandomOnRiver_ofsm7(int* hand, int* board, int& count);

/// @}

namespace pokermath {

/// The result of an exact count, seen from the first hand. Losses are cases - wins - ties.
struct Tally {
  std::int64_t wins = 0;   ///< boards that the first hand wins alone
  std::int64_t ties = 0;   ///< boards that both hands share
  std::int64_t cases = 0;  ///< boards counted

  /// The same counts.
  bool operator==(const Tally&) const = default;
  /// Adds the counts of other cases.
  Tally& operator+=(const Tally& other) {
    wins += other.wins;
    ties += other.ties;
    cases += other.cases;
    return *this;
  }
  /// Share of the pot, 0..1: a tie counts one half; 0 without cases.
  double Equity() const {
    if (cases == 0) return 0.0;
    return (static_cast<double>(wins) + 0.5 * static_cast<double>(ties)) /
           static_cast<double>(cases);
  }
};

/// Exact Hold'em count of one hand against another over every board that the known cards leave.
///
/// @param hand1,hand2  two card codes each, 0..51
/// @param board        known board cards, 0 up to the street's number
/// @param street       the river (seven cards a hand), the turn (six) or the flop (five)
/// @return the count; no cases if the board is longer than the street. Cards are not checked: all
///         must be different.
///
/// Without a board some ten nanoseconds to the river, 2 to 4 µs to the flop or turn; less than 1 µs
/// with a flop, 0.6 ms with one known card. The first call that is no look-up takes up to 3 ms
/// longer: it builds tables, and others are built when a hand of new ranks
/// comes (15 MB when all are). Thread-safe.
POKERMATH_EXPORT Tally HoldemHandVsHand(std::span<const int, 2> hand1,
                                        std::span<const int, 2> hand2,
                                        std::span<const int> board = {},
                                        Street street = Street::kRiver);

/// Exact Hold'em count of a hand against every holding of a range, over every board that the known
/// cards leave. A case is a board and a holding that share no card with each other or the known
/// cards.
///
/// @param hand    two card codes, 0..51
/// @param range   its holdings weigh the same
/// @param board   known board cards, 0 up to the street's number
/// @return the count; no cases if the range is wholly blocked or the board longer than the street
///
/// For 200 holdings without a board a few µs to the river, about 0.1 ms to the flop or turn; 2 µs
/// on a flop, 1 µs on a turn. Thread-safe; the
/// first call takes longer, as above.
POKERMATH_EXPORT Tally HoldemHandVsRange(std::span<const int, 2> hand, const Spec& range,
                                         std::span<const int> board = {},
                                         Street street = Street::kRiver);

/// HoldemHandVsHand for the short deck, where a flush beats a full house and three of a kind a
/// straight; all cards six and better, not checked. Thread-safe.
POKERMATH_EXPORT Tally ShortDeckHandVsHand(std::span<const int, 2> hand1,
                                           std::span<const int, 2> hand2,
                                           std::span<const int> board = {},
                                           Street street = Street::kRiver);
/// HoldemHandVsRange for the short deck; hand and board six and better, not checked. Thread-safe.
POKERMATH_EXPORT Tally ShortDeckHandVsRange(std::span<const int, 2> hand, const Spec& range,
                                            std::span<const int> board = {},
                                            Street street = Street::kRiver);

/// A hand's two card codes, the lower one first, and its count.
struct HandTally {
  std::pair<int, int> hand;  ///< two card codes, rising
  Tally tally;               ///< its cases against the range
};

/// HoldemHandVsRange for every hand that shares no card with the board, in the order of their
/// cards: 1,326 without a board, 1,176 on a flop. What a heat map shows, and the equity of a range
/// against a range when summed up over the hands of one. About 0.5 ms on a flop, about half a
/// second without a board and on two known cards; one known card takes very long.
///
/// @param board  0 cards up to the street's number; an empty list for more
POKERMATH_EXPORT std::vector<HandTally> HoldemEveryHandVsRange(const Spec& range,
                                                               std::span<const int> board = {},
                                                               Street street = Street::kRiver);

/// How the first of several hands does.
struct SharedTally {
  static constexpr int kMostHands = 11;  ///< that OmahaHands takes

  std::int64_t boards = 0;  ///< boards counted
  /// [k]: boards that it shares with k others, k = 0 being those that it wins alone.
  std::array<std::int64_t, kMostHands> shared{};

  /// The same counts.
  bool operator==(const SharedTally&) const = default;
  /// Share of the pot, 0..1: a pot shared with k others counts 1/(k+1); 0 without boards.
  double Equity() const {
    double pots = 0;
    for (std::size_t k = 0; k < shared.size(); ++k) {
      pots += static_cast<double>(shared[k]) / static_cast<double>(k + 1);
    }
    return boards == 0 ? 0.0 : pots / static_cast<double>(boards);
  }
};

/// How the first of several hands does where the best high hand and the best low hand take half the
/// pot each, and the high hand all of it where nobody has a low. [k] counts boards (or, against
/// every hand, cases) on which it shares the pot or the half with k others.
struct HighLowTally {
  std::int64_t boards = 0;                                    ///< boards (or cases) counted
  std::array<std::int64_t, SharedTally::kMostHands> whole{};  ///< [k]: of a pot without a low
  std::array<std::int64_t, SharedTally::kMostHands> high{};   ///< [k]: of the half for high hands
  std::array<std::int64_t, SharedTally::kMostHands> low{};    ///< [k]: of the half for low hands
  std::int64_t scoops = 0;  ///< boards on which it takes all of the pot alone
  std::int64_t losses = 0;  ///< boards on which it takes nothing
  std::int64_t lows = 0;    ///< boards on which somebody has a low

  /// The same counts.
  bool operator==(const HighLowTally&) const = default;
  /// Share of the pot, 0..1; 0 without boards.
  double Equity() const {
    return boards == 0 ? 0.0 : Pots(1, 0.5, 0.5) / static_cast<double>(boards);
  }
  /// How much of that share comes from low hands, 0..1; 0 without boards.
  double LowEquity() const {
    return boards == 0 ? 0.0 : Pots(0, 0, 0.5) / static_cast<double>(boards);
  }
  /// What the counts are worth, if a pot or a half of one that is not shared is worth that.
  double Pots(double of_whole, double of_high, double of_low) const {
    double pots = 0;
    for (std::size_t k = 0; k < whole.size(); ++k) {
      pots += (of_whole * static_cast<double>(whole[k]) + of_high * static_cast<double>(high[k]) +
               of_low * static_cast<double>(low[k])) /
              static_cast<double>(k + 1);
    }
    return pots;
  }
};

/// Exact Omaha count of a hand against others over every board that the known cards leave.
///
/// @param cards      1 to 11 hands, one behind the other, the one that is counted first
/// @param hand_size  one of kOmahaHandSizes: 4, or 5 and 6 for five-card and six-card Omaha
/// @param board      0, 3, 4 or 5 known board cards
/// @param dead       cards that nobody holds and that cannot come
/// @return the count; no boards for another number of hands or board cards, another hand_size, a
///         last hand that is cut short, or if too few cards are left. Cards are not checked: all
///         must be different.
///
/// 0.2 ms without a board, less with one. Thread-safe. The first board of five cards in a process
/// takes a millisecond more, for a table of 1 MB, as all that follows here does.
POKERMATH_EXPORT SharedTally OmahaHands(std::span<const int> cards, int hand_size,
                                        std::span<const int> board = {},
                                        std::span<const int> dead = {});

/// Exact Omaha count of a hand against every hand that an opponent may hold, over every board that
/// the known cards leave. A case is a board and an opponent's hand.
///
/// @param hand   four to six card codes, the opponent's hands are of as many
/// @param board  0, 3, 4 or 5 known board cards, no more than the street has
/// @param street the river, or the turn or the flop for boards of so many cards
/// @param dead   cards that nobody holds and that cannot come
/// @param go_on  called now and then with the parts done and all parts; returning false stops
/// @return the count; no cases if it was stopped, if the board is longer than the street, for
/// another
///         hand, or if too few cards are left. Cards are not checked: all must be different.
///
/// With four cards 3 µs on a river, 0.06 ms on a turn, 0.8 ms on a flop, 0.4 s without a board;
/// three times as long with five, eight times with six. Thread-safe.
POKERMATH_EXPORT Tally
OmahaHandVsRandom(std::span<const int> hand, std::span<const int> board = {},
                  Street street = Street::kRiver, std::span<const int> dead = {},
                  const std::function<bool(std::int64_t done, std::int64_t all)>& go_on = {});

/// Exact Omaha count of a hand against every hand of a range, over every board that the known cards
/// leave. A case is a board and a hand of the range that share no card with each other or the known
/// cards.
///
/// @param hand   as many card codes as the hands of the range have
/// @param range  its hands weigh the same
/// @param board  0, 3, 4 or 5 known board cards, no more than the street has
/// @param street the river, or the turn or the flop for boards of so many cards
/// @param dead   cards that nobody holds and that cannot come
/// @param go_on  called now and then with the parts done and all parts; returning false stops
/// @return the count; no cases if it was stopped, if the range is wholly blocked, if the board is
///         longer than the street, for a hand of another size, or if too few cards are left. Cards
///         are not checked: all must be different.
///
/// For a tenth of all hands of four 0.1 ms on a river or a turn, 1 ms on a flop, 10 ms from the
/// start to the flop and 0.1 s to the river; of five, which are ten times as many, 1, 4, 60 ms and
/// 0.4 s. Thread-safe.
template <int cards>
POKERMATH_EXPORT Tally OmahaHandVsRange(
    std::span<const int> hand, const OmahaSpec<cards>& range, std::span<const int> board = {},
    Street street = Street::kRiver, std::span<const int> dead = {},
    const std::function<bool(std::int64_t done, std::int64_t all)>& go_on = {});

/// @cond
#define POKERMATH_EXTERN_HAND_VS_RANGE(cards)                                      \
  extern template Tally OmahaHandVsRange<cards>(                                   \
      std::span<const int>, const OmahaSpec<cards>&, std::span<const int>, Street, \
      std::span<const int>, const std::function<bool(std::int64_t, std::int64_t)>&);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_EXTERN_HAND_VS_RANGE)
#undef POKERMATH_EXTERN_HAND_VS_RANGE
/// @endcond

/// OmahaHands for Omaha Hi/Lo: the same arguments, and no boards for the same bad ones. Less
/// than 2 ms without a board. Thread-safe.
POKERMATH_EXPORT HighLowTally OmahaHighLowHands(std::span<const int> cards, int hand_size,
                                                std::span<const int> board = {},
                                                std::span<const int> dead = {});
/// OmahaHandVsRandom for Omaha Hi/Lo: the same arguments; no boards where that has no cases.
/// Thread-safe.
POKERMATH_EXPORT HighLowTally
OmahaHighLowVsRandom(std::span<const int> hand, std::span<const int> board = {},
                     Street street = Street::kRiver, std::span<const int> dead = {},
                     const std::function<bool(std::int64_t done, std::int64_t all)>& go_on = {});

}  // namespace pokermath

#endif  // POKERMATH_EQUITY_H_
