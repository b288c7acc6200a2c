/// @file
/// Omaha: the best hand of exactly two hole cards and exactly three board cards.

#ifndef POKERMATH_OMAHA_H_
#define POKERMATH_OMAHA_H_

#include <set>
#include <utility>

#include "pokermath/export.h"

/// @cond
class Spec;
/// @endcond

/// @name The best hand
/// Cards are card codes, not checked; hands of four cards, or of two and more with the functions
/// that take a hand count; boards of three to five. Values are on the ascending scale 1..7462,
/// larger is better. `record` receives which cards make the value, as five indexes: two into the
/// hand, three into the board, each rising; of equal choices the first. Nothing has to be loaded;
/// any number of threads. The first board of five in a process takes a millisecond. Where the
/// counts are no hand and board, -1 is the value and nothing is written. PokerLogic has the same
/// functions on the descending scale.
/// @{

/// The best of four hole cards and five board cards.
POKERMATH_EXPORT int getCombinationOmahaFsm5(int* hand, int* board, int* record);
/// The best of four hole cards and four board cards.
POKERMATH_EXPORT int getCombinationOmahaTurnFsm5(int* hand, int* board, int* record);
/// The best of four hole cards and three board cards.
POKERMATH_EXPORT int getCombinationOmahaFlopFsm5(int* hand, int* board, int* record);
/// The best of handCount hole cards, 2 or more, and 3 to 5 board cards.
POKERMATH_EXPORT int getCombinationOmahaFsm5Common(int* hand, int handCount, int* board,
                                                   int boardCount, int* record);
/// @}

/// Which flush a hand of four cards makes with a board of three to five.
///
/// The fields are public as hosts know them; cards and what follows from them are from high to low,
/// as comparefun sorts.
class POKERMATH_EXPORT CHandOmahaType {
 public:
  /// Copies four hole cards and boardCards_ board cards; a count beyond 0..5 is taken as the
  /// nearest of these.
  CHandOmahaType(int* hand, int* board, int boardCards_);

  /// 117 for a royal flush, 65 for any other flush, -1 for none.
  int getOmahaHand() const;
  /// 1 for ace to ten of the flush suit, else -1. The walk down from the ace ends with the third
  /// hole card or the fourth board card that it meets, so a hand with three cards of the royal
  /// flush gives -1. Hosts know it so.
  int isRoyalFlushOmaha() const;
  /// -1.
  int isStraightFlush() const;
  /// The suit of which there are at least three board cards and two hole cards, or -1.
  int isFlushOmaha() const;
  /// The suits with at least two board cards and two hole cards.
  ///
  /// @param suits  out: room for two
  /// @param count  out: how many
  /// @return the count
  int isFlushDrawOmaha(int* suits, int& count) const;

  int holeCards[4];        ///< card codes
  int boardCards[5];       ///< card codes, -1 behind the last one
  int boardCount;          ///< 0..5
  int holeRanks[4];        ///< 0..12, by place in holeCards
  int boardRanks[5];       ///< 0..12, by place in boardCards, -1 behind the last one
  int holeSuitCounts[4];   ///< hole cards by suit
  int boardSuitCounts[4];  ///< board cards by suit
  int holeSuits[4];        ///< 0..3, by place in holeCards
  int boardSuits[5];       ///< 0..3, by place in boardCards, -1 behind the last one
  int flushHoleRanks[4];   ///< ranks of the hole cards of flushSuit, -1 behind the last one
  int flushBoardRanks[5];  ///< ranks of the board cards of flushSuit, -1 behind the last one
  int flushHoleCount;      ///< how many hole cards are of flushSuit
  int flushBoardCount;     ///< how many board cards are of flushSuit
  int flushSuit;           ///< of the flush, 0..3; -1 for none
};

/// @name Nuts and outs
/// Unseen is every card but the nHole hole cards and the n board cards. nHole is not
/// checked: 0 or more, and two or more make a hand. An out is a card that makes a hand when it
/// comes next. Cards are card codes, all different, not checked. Nothing has to be loaded; any
/// number of threads.
/// @{

/// How many holdings of two unseen cards, which must both play, beat a hand on a board of three to
/// five; 0 is the nuts, -5 is another board.
POKERMATH_EXPORT int IsMyHandNutsOmahaFsm5Common(int* hole, int nHole, int* board, int n);
/// The best holdings of two unseen cards on a board of three or four.
///
/// @param nuts  out: those holdings alone
/// @param outs  out: two numbers, of next cards after which the hand is worth at least what these
///              are worth now, and of those that make it the nuts
/// @return how many holdings; 0, and nothing written, for another board
POKERMATH_EXPORT int FindAllNuts(int* hole, int nHole, int* board, int n, Spec& nuts, int* outs);

/// Cards that lift a hand to a higher category, by that category: 1 high card .. 9 straight flush,
/// 10 royal flush.
///
/// @param outs,nutOuts  out: 11 numbers each, of outs and of those that make the nuts
/// @return 1; -5 unless the board has three or four cards
POKERMATH_EXPORT int getOutsOmahaFsm5Common(int* hole, int nHole, int* board, int n, int* outs,
                                            int* nutOuts);
/// Cards that give both hole cards a pair with the board, another one than now.
///
/// @param outs  out: the number; 0 with -5
/// @return the number, 0 on a paired board and for a hand better than two pair; -5 unless the board
///         has three or four cards
POKERMATH_EXPORT int getOutsOmahaFsm5CommonTwoPairs(int* hole, int nHole, int* board, int n,
                                                    int& outs);
/// Straights that a board of three to five cards allows.
///
/// @param counts         out: two-card holdings that make one (no straight flush), of all cards but
///                       the board's and of unseen cards
/// @param straightRanks  out: their ranks, the higher one first, an ace that plays low behind
/// @param heldRanks      out: those of which the hand holds a rank; none if no unseen holding makes
///                       a straight
/// @return counts[0]; 0 for another board
POKERMATH_EXPORT int TestStraight(int* hole, int nHole, int* board, int n, int* counts,
                                  std::set<std::pair<int, int>>& straightRanks,
                                  std::set<std::pair<int, int>>& heldRanks);

/// @}

#endif  // POKERMATH_OMAHA_H_
