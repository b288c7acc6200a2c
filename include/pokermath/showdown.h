/// @file
/// The end of a hand: who wins, how the pot and side pots are shared, and what game it was.
///
/// Winners are found by the rules of poker in some microseconds. Any number of threads, also with
/// one PokerLogic, as long as nobody changes it.

#ifndef POKERMATH_SHOWDOWN_H_
#define POKERMATH_SHOWDOWN_H_

#include <cstdint>
#include <span>
#include <vector>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// @cond
class PokerLogic;
/// @endcond

/// Code of a game by its name in a hand history; case matters.
///
/// @return 13 "5 Card Omaha Pot Limit", 14 "5 Card Omaha Hi/Lo Pot Limit", 7 any name that starts
///         with "Omaha Pot Limit", 2 "Hold'em No Limit", 16 "Courchevel Pot Limit", -1 any other
///         name, "Omaha Hi/Lo Pot Limit" among them (its code 10 is reserved)
POKERMATH_EXPORT int GetTypeGameHH(const CString& name);

/// Whether `a` is the better starting hand: a pair beats two ranks, then the first cards decide,
/// then the second ones, suits never.
///
/// @param a,b  two card codes each, the higher card first; not checked
/// @return 1 if a is the better, -1 if b is, 0 if they are equal
POKERMATH_EXPORT int WhatHandIsBetter(int a[2], int b[2]);

/// Which of two Hold'em hands is better on a board: FindMaxCombination, but WhatHandIsBetter
/// without board cards, which wants the higher card of each hand first: 2hAd counts as a deuce
/// there.
///
/// @param board   nBoard card codes, 0 or 3 to 5; not checked
/// @param logic   as in FindMaxCombination
POKERMATH_EXPORT int WhoIsWinner(int a[2], int b[2], int board[], int nBoard, PokerLogic& logic);

/// Compares what two hands make with a board by the rules of poker.
///
/// @param board   nBoard card codes, 3 to 5; not checked
/// @param logic   for its rule tests; nothing has to be loaded
/// @return 1 if a makes the better hand, -1 if b does, 0 if they are equal
POKERMATH_EXPORT int FindMaxCombination(int a[2], int b[2], int board[], int nBoard,
                                        PokerLogic& logic);

/// @name Pots
/// A pot is shared by three lists of one entry a seat: what each player has staked, in whole chips,
/// how strong his hand is, larger is better, 0 for one who has folded, and what he gets.
/// Any number of threads.
/// @{

/// The smallest stake that is not 0 among the n players whose score is `best`, but no more than
/// 1000; 1000 if there is none.
POKERMATH_EXPORT int GetMinVinnerBet(int stake[], int score[], int n, int best);

/// Shares out all stakes among the players, pot by pot.
///
/// The best score takes from every player up to his own stake, then the next best from what is
/// left. Equal scores share up to 1000 chips of each player at a time; chips that cannot be shared
/// go to the lowest of their seats. What only negative scores claim goes back to its owners.
///
/// @param n         players, entries of each list; nothing is done for 0 and less
/// @param stake     chips of each player, 0 or more; all 0 on return
/// @param score     changed: 0 for players who have been paid
/// @param winnings  in and out: what each player gets is added. The caller clears it, and no sum
///                  may exceed an int.
POKERMATH_EXPORT void GameResult(int stake[], int score[], int winnings[], int n);

/// @}

namespace pokermath {

/// A pot, main or side, and those who share it.
struct Pot {
  std::int64_t chips = 0;          ///< what is in it
  std::vector<int> winners;        ///< seats in rising order; none where stakes go back
  std::vector<std::int64_t> paid;  ///< what each seat put in
  std::vector<std::int64_t> won;   ///< what each seat gets
};

/// The pots of GameResult, one after the other; passes that have the same winners are one pot.
///
/// @param stakes,scores  as above, one entry a seat, equally many, which is not checked
POKERMATH_EXPORT std::vector<Pot> SplitPots(std::span<const int> stakes,
                                            std::span<const int> scores);

}  // namespace pokermath

#endif  // POKERMATH_SHOWDOWN_H_
