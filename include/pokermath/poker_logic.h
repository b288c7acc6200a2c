/// @file
/// PokerLogic, the central object: the HandRanks state table, Hold'em and Omaha equity, nuts and
/// outs.
///
/// Hands, boards and lists are card codes 0..51, all different, unless something else is said; they
/// are not checked. Every function says its scale: values on the HandRanks scale, descending or
/// ascending 1..7462, shares of the pot 0..1 or percentages 0..100.
///
/// What the library knows of hand against hand before the flop was counted by the rules of poker
/// and is part of it (`pokermath tables build matchups` counts it again). Tables are files of the
/// host's, by any name, or those of `pokermath tables build`: VarnholtHR.dat (generate_table),
/// VarnholtPC.dat (generate_PokerCombinations_table), holdem-river-equity.bin (load_equity_table)
/// and holdem-turn-equity.bin (load_equity_turn_table); docs/tables.md has their formats.

#ifndef POKERMATH_POKER_LOGIC_H_
#define POKERMATH_POKER_LOGIC_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "pokermath/evaluators.h"
#include "pokermath/export.h"
#include "pokermath/five_card_map.h"
#include "pokermath/large_table.h"
#include "pokermath/ranges.h"
#include "pokermath/text.h"

/// @cond
class CHandOmahaType;
/// @endcond

namespace pokermath {

/// What the file of PokerCombinations is called where nothing else is said.
inline constexpr wchar_t kPokerCombinationsFile[] = L"VarnholtPC.dat";

}  // namespace pokermath

/// The central object. It owns the HandRanks table and the two equity tables; copies and moves
/// carry them along. An object that never loads its table holds next to no memory.
///
/// The HandRanks table evaluates five to seven cards by one step a card. A card number inside it is
/// 1..52 = rank * 4 + suit + 1. A hand value is category * 4096 + place in the category, larger is
/// better: category 1 high card, 2 one pair, 3 two pair, 4 three of a kind, 5 straight, 6 flush,
/// 7 full house, 8 four of a kind, 9 straight flush; 0 = impossible hand.
/// This is the published state-table construction over a five-card evaluator.
class POKERMATH_EXPORT PokerLogic {
 public:
  /// Holds no table.
  PokerLogic() = default;
  /// A copy has tables of its own: 130 MB where the HandRanks table is loaded.
  PokerLogic(const PokerLogic&) = default;
  /// Likewise.
  PokerLogic& operator=(const PokerLogic&) = default;
  /// What is moved from is as new, but for IDs, which are empty until one is saved, and for
  /// trialCount, random and deck, which it keeps.
  PokerLogic(PokerLogic&& other) noexcept : PokerLogic(NoIDs()) { *this = std::move(other); }
  /// Likewise.
  PokerLogic& operator=(PokerLogic&& other) noexcept;
  ~PokerLogic() = default;

  /// @name The HandRanks state table
  /// MakeID, SaveID and generate_table change the object; DoEval and the look-ups may run in
  /// several threads at once, as long as none of these runs. An ID that MakeID did not make is
  /// undefined.
  /// @{

  /// ID of the partial hand `id` with one card more, 0 if that is impossible. Sets numcards.
  ///
  /// An ID holds one byte a card, in descending order from the lowest byte: (rank + 1) << 4 |
  /// (suit + 1), the suit 0 where it cannot make a flush any more.
  /// @param card  card number 1..52
  std::int64_t MakeID(std::int64_t id, int card);

  /// Puts an ID into IDs if it is new and returns its slot; 0 for an ID of 0. A new ID that is not
  /// the largest moves those above it.
  int SaveID(std::int64_t id);

  /// Hand value of an ID of five to seven cards; 0 for an ID of 0. For any other count it prints a
  /// line on standard output and returns 0.
  int DoEval(std::int64_t id);

  /// Loads the table from a file, or generates it and writes the file.
  ///
  /// A file of another length than 129,951,336 bytes, or with an entry that no table holds, is
  /// replaced; nobody is asked. What the object held before is forgotten; after a load IDs holds
  /// the empty hand only. About 0.05 s to load, 0.2 s to generate, 130 MB. The file name is UTF-8
  /// on disk.
  /// @return 0, or 1 when the file could not be written (the table in memory is complete)
  int generate_table(CString fileName);

  /// Value of seven card numbers (1..52, not checked) in any order; 0 without a loaded table. A
  /// card given twice is not noticed by the look-ups: nearly all such lists have a value like any
  /// other, the rest 0.
  int LookupHand(int* cards) const {
    if (HR.empty()) return 0;
    std::uint32_t state = HR[static_cast<std::size_t>(53 + cards[0])];
    for (int i = 1; i < 7; ++i) state = HR[state + static_cast<std::uint32_t>(cards[i])];
    return static_cast<int>(state);
  }

  /// Value of seven card codes (0..51, not checked); 0 without a loaded table.
  int LookupSingleHands(int* codes) const;

  /// Value, on the same scale, of the best Omaha hand: four hole cards, two of which play, followed
  /// by five board cards, three of which play.
  ///
  /// @param cards  card codes 0..51, all different; not checked
  ///
  /// Needs no table and may run in any number of threads, as the two that follow.
  int LookupHandsOmaha(int* cards) const;
  /// The same with three board cards.
  int LookupHandsOmahaFlop(int* cards) const;
  /// The same with four board cards.
  int LookupHandsOmahaTurn(int* cards) const;

  /// @}

  /// @name Hands by the rules of poker
  /// These read nothing but their arguments and `deck`. Ranks are those of card codes, 0..12, in
  /// the order of sortHand: from high to low. The tests return a rank, or -1 when the hand does not
  /// qualify.
  /// @{

  /// Sorts card codes with comparefun and takes them apart.
  ///
  /// @param cards        card codes 0..51; sorted on return
  /// @param ranks,suits  out: of every card in the new order; as long as `cards` already
  /// @param suitCounts   in and out: four counts, one is added for every card
  void sortHand(std::vector<int>& cards, std::vector<int>& ranks, std::vector<int>& suits,
                int* suitCounts) const;

  /// The highest rank; -1 for no cards.
  int isHighCard(const std::vector<int>& ranks) const;
  /// The highest pair.
  int isOnePair(const std::vector<int>& ranks) const;
  /// The higher of two pairs. Three of a kind are two pairs here, the first two cards and the last
  /// two: test the stronger categories first.
  int isTwoPair(const std::vector<int>& ranks) const;
  /// The highest three of a kind.
  int isSet(const std::vector<int>& ranks) const;
  /// The highest four of a kind.
  int isQuads(const std::vector<int>& ranks) const;
  /// The three of a full house; of two threes the lower one.
  int isFullHouse(const std::vector<int>& ranks) const;
  /// The top card of the highest straight among five cards or more; 3 (the five) when the ace is
  /// low.
  int isStraight(const std::vector<int>& ranks) const;
  /// The highest card of a suit that has five cards or more.
  int isFlush(const std::vector<int>& ranks, const std::vector<int>& suits,
              const int* suitCounts) const;
  /// The highest card of a suit that has exactly four cards, where no suit has more: one card is
  /// missing for a flush.
  int isFlushDraw(const std::vector<int>& ranks, const std::vector<int>& suits,
                  const int* suitCounts) const;
  /// Of the first suit that has four cards or more among two hole cards and n board cards, the
  /// highest rank of a hole card, 0 if there is none; -1 without such a suit, 0 for fewer than
  /// three board cards, any number of which are looked at.
  int isFlushDraw(int* hole, int* board, int n) const;
  /// The top card of the highest straight among the cards of a flush.
  int isStraightFlush(const std::vector<int>& ranks, const std::vector<int>& suits,
                      const int* suitCounts) const;
  /// 12 for ace to ten of the suit of a flush.
  int isRoyalFlush(const std::vector<int>& ranks, const std::vector<int>& suits,
                   const int* suitCounts) const;

  /// The category that two hole cards make with three to five board cards: 1 high card .. 9
  /// straight flush, 10 royal flush, as in CDeck::SetValueCombination; 0 for another board.
  int getCombination(int* hole, int* board, int boardCount);

  /// Value of five card codes on the descending scale 1..7462, smaller is better. Not checked.
  int eval_5handHoldem(int* codes) const;
  /// Value of the best five of six card codes, likewise.
  int eval_6handHoldem(int* codes) const;
  /// Value of the best five of two hole cards and three to five board cards, likewise; 0 for
  /// another board.
  int getNewCombination(int* hole, int* board, int boardCount) const;

  /// @}

  /// @name The best Omaha hand: two hole cards and three board cards; see omaha.h
  /// Values are on the descending scale, smaller is better. `record` receives the cards that play;
  /// the one with counts, their indexes.
  /// @{

  /// The best of four hole cards and five board cards. Record: two hole cards, three board cards.
  int getCombinationOmaha(int* hand, int* board, int* record) const;
  /// The same with four board cards.
  int getCombinationOmahaTurn(int* hand, int* board, int* record) const;
  /// The same with three board cards.
  int getCombinationOmahaFlop(int* hand, int* board, int* record) const;
  /// The same for two hole cards and more and three to five board cards; 100000 and nothing written
  /// for other counts.
  int getCombinationOmahaCommon(int* hand, int handCount, int* board, int boardCount,
                                int* record) const;

  /// Fills PokerCombinations from a file of exactly 20,791,680 bytes, or works it out and writes
  /// the file. A file with a key that is no hand is replaced; a value below 1 is shown as a message
  /// and left out. Values above 0 are not checked.
  /// @return 1 loaded, 0 worked out
  int generate_PokerCombinations_table(CString path);
  /// Writes PokerCombinations as records of two little-endian 32-bit ints, key and value, in key
  /// order. Returns 1 even when nothing could be written; an existing file is then as it was.
  int save_PokerCombinations_table(CString path);
  /// The best of four hole cards and five board cards through PokerCombinations. A combination that
  /// the table lacks counts as its key.
  int eval_7handOmaha(int* hand, int* board) const;

  /// @}

  /// @name Hold'em equity
  /// A hand is two card codes, a board up to five. getProbabilityOfWin and the loaders change the
  /// object; the others may run in several threads at once, as long as none of these runs.
  /// @{

  /// Estimate of the chance that `hand` wins at a table of `players`, over trialCount random deals;
  /// a pot shared with k others counts 1/(k+1).
  ///
  /// @param board       the known board cards, boardCount of them (0..5)
  /// @param players     2..10, the hero included
  /// @return 0.0 .. 1.0; 0.0 for counts out of range, without trials and without a loaded HandRanks
  ///         table. About 0.1 µs a trial and player, most of it rand().
  ///
  /// The table has to be there because hosts know the 0.0; nothing is looked up in it. Without its
  /// 130 MB: getProbabilityOfWinBySpectr against the range of Spec::MakeRandom for two players,
  /// which is exact but for one and two board cards.
  double getProbabilityOfWin(int* hand, int* board, int boardCount, int players);

  /// Exact chance of hand1 against hand2 over every five-card board that the two leave.
  ///
  /// @param hand1,hand2  two card codes each (0..51), all four different; not checked
  /// @param wins    out: boards won by hand1, a tie as 0.5
  /// @param boards  out: boards counted, 1,712,304
  /// A look-up in what the library knows; some ten nanoseconds.
  void getProbabilityOfWinWithNoBoard(int* hand1, int* hand2, double& wins, double& boards) const;

  /// The same over the 194,580 four-card boards, hands of six cards. Counted; about 1 µs.
  void getProbabilityOfWinWithNoBoardToTurn(int* hand1, int* hand2, double& wins,
                                            double& boards) const;

  /// hand1's chance as in getProbabilityOfWinWithNoBoard: wins with ties as 0.5, and 1,712,304
  /// boards.
  ///
  /// Answered from equityTable where it holds the matchup in this order; at once where both hands
  /// are pairs of one rank or suited hands of the same ranks; else from what the library knows.
  /// Always returns 1.
  int GetWinHandVsHand(int* hand1, int* hand2, double& wins, double& boards) const;
  /// The same to the turn, from equityTurnTable, with 194,580 boards.
  int GetWinHandVsHandToTurn(int* hand1, int* hand2, double& wins, double& boards) const;

  /// Writes a text report: one line for every ordered matchup that equityTable lacks.
  ///
  /// Line: number, card codes and names of both hands, wins (ties as half), boards, percent. A file
  /// of that name that exists is left as it is. It is written in place: what was stopped leaves a
  /// part, which has to be removed first. Returns 0 in any case. About 1 s for all 1,624,350
  /// lines.
  int generate_equity_table(CString path);
  /// The same report to the turn, for what equityTurnTable lacks.
  int generate_equity_turn_table(CString path);

  /// Writes equityTable as records of three little-endian 32-bit ints: key of the first hand, key
  /// of the second, 2 * wins + ties. Entries below 1 are left out. Returns 1 even when nothing
  /// could be written; an existing file is then as it was.
  int save_equity_table(CString path);
  /// Writes equityTurnTable likewise; an entry below 1 is also shown as a message.
  int save_equity_turn_table(CString path);

  /// Adds the records of such a file to equityTable; a matchup that is already there keeps its
  /// value. A record below 1 is shown as a message and left out, a last record that is cut short is
  /// ignored; keys and values above 0 are not checked. Returns 1; 0 with a message when there is no
  /// file that can be opened (a folder or a FIFO is none).
  int load_equity_table(CString path);
  /// The same for equityTurnTable.
  int load_equity_turn_table(CString path);

  /// @}

  /// @name Hold'em equity against a range
  /// Every holding of the range weighs the same; one that shares a card with the hand or the board
  /// is left out. The result is hand's share over all boards and holdings, 0.0 .. 1.0, a tie as one
  /// half; not a number when the range is wholly blocked, or trialCount is below 1 with 1, 2 or 5
  /// board cards or, to the flop or turn, with any but none and 3 to the turn. No HandRanks table
  /// is needed. The two functions with a board count change the object's random numbers; the others
  /// only read it.
  /// @{

  /// To the river, from 0 to 5 known board cards: exact for 0, 3, 4 and 5, over trialCount random
  /// boards for 1 and 2. 0.0 for another count.
  double getProbabilityOfWinBySpectr(int* hand, int* board, int boardCount, const Spec& spec);
  /// From an empty board, by GetWinHandVsHand for each holding. The one function here that starts
  /// threads: the holdings are shared out among OpenMP's workers. It switches dynamic team sizes on
  /// for the calling thread (omp_set_dynamic) and leaves them on.
  double getProbabilityOfWinBySpectrWithNoBoard(int* hand, const Spec& spec) const;
  /// From three board cards.
  double getProbabilityOfWinBySpectrWithFlop(int* hand, int* board, const Spec& spec) const;
  /// From four board cards.
  double getProbabilityOfWinBySpectrWithFlopAndTurn(int* hand, int* board, const Spec& spec) const;

  /// To the flop (street 3) or the turn (street 4), hands of five or six cards: exact for 0 known
  /// board cards, and for 3 to the turn; else over trialCount random boards. Of more known cards
  /// than the street has, the first make the board and the others are dead. 0.0 for another count
  /// or street.
  double getProbOfWinBySpectrToFlopOrTurn(int* hand, int* board, int boardCount, const Spec& spec,
                                          int street);
  /// From an empty board to the flop.
  double getProbabilityOfWinBySpectrWithNoBoardToFlop(int* hand, const Spec& spec) const;
  /// From an empty board to the turn, by GetWinHandVsHandToTurn for each holding.
  double getProbabilityOfWinBySpectrWithNoBoardToTurn(int* hand, const Spec& spec) const;
  /// From three board cards to the turn.
  double getProbabilityOfWinBySpectrWithFlopToTurn(int* hand, int* board, const Spec& spec) const;

  /// @}

  /// @name Omaha equity
  /// Hands of four to six card codes (handSize, not checked), exact over every board that the known
  /// cards leave. Results are percentages, 0 .. 100; not a number where no board is left. `count`
  /// receives the boards, `time` the milliseconds taken. Nothing has to be loaded; about 0.2 ms
  /// before the flop.
  /// @{

  /// hand1 against hand2, a tie as one half.
  double RiverEquityHandVsHandOnPreFlopCommon(int* hand1, int handSize, int* hand2, int& count,
                                              int& time) const;
  /// After a flop; 0.0, no boards and no time unless boardCount is 3.
  double RiverEquityHandVsHandOnFlopCommon(int* hand1, int handSize, int* hand2, int* board,
                                           int boardCount, int& count, int& time) const;
  /// After a flop and a turn, four board cards; boardCount is not looked at.
  double RiverEquityHandVsHandOnTurnCommon(int* hand1, int handSize, int* hand2, int* board,
                                           int boardCount, int& count, int& time) const;

  /// The first of several hands. A board that it shares with k others counts 1/k: a tie with one
  /// other hand counts in full, a tie of three one half. Hosts know it so.
  ///
  /// @param hands      players * handSize card codes, then deadCount cards that cannot come
  /// @param players    1..11; not a number for 0 and for more, fewer are not checked
  /// @param deadCount  0 or more, not checked
  double RiverEquityHandsOnPreFlopCommon(int* hands, int handSize, int players, int deadCount,
                                         int& count, int& time) const;
  /// The same after three board cards.
  double RiverEquityHandsOnFlopCommon(int* hands, int handSize, int players, int deadCount,
                                      int* board, int& count, int& time) const;
  /// The same after four board cards.
  double RiverEquityHandsOnTurnCommon(int* hands, int handSize, int players, int deadCount,
                                      int* board, int& count, int& time) const;

  /// A hand of four against every opponent hand on a board of five as it stands, in percent, a tie
  /// as one half. `count` receives the cases: 123,410. Free functions for other streets are in
  /// equity.h.
  double RiverEquityHandVsRandomOnRiver(int* hand, int* board, int& count) const;
  /// The same on a board of four, over every opponent hand and river: 5,430,040 cases.
  double RiverEquityHandVsRandomOnTurn(int* hand, int* board, int& count) const;

  /// Hands of a range: each a set of card codes, the four lowest of which are looked at; smaller
  /// sets are left out.
  using OmahaRange = std::set<std::set<int>>;

  /// A hand of four against every hand of a range on a flop as it stands, in percent; those that
  /// share a card with hand or flop are left out. `count` receives the cases; not a number if there
  /// are none.
  double FlopEquityHandVsRangeOnFlop(int* hand, int* flop, const OmahaRange& range,
                                     int& count) const;
  /// The mean of that over every flop, times 100: 0 .. 10000. `count` receives 0. One flop that
  /// blocks the whole range makes the result not a number. Hosts know it so.
  double FlopEquityHandVsRangeOnPreFlop(int* hand, const OmahaRange& range, int& count) const;

  /// @}

  /// @name Omaha equity by sampling
  /// These sample. They call srand(), which seeds rand() for the whole process, through
  /// EasyRandom::SetTimerSeed: two calls within a second draw the same numbers, so they deal the
  /// same cards and asking again says nothing new. Other members that sample, but for the Hi/Lo
  /// counterparts, go on with the numbers of rand() as they come; of the free functions
  /// getProbabilityOfWinHoldem6PlusCommon calls srand() too.
  /// @{

  /// Estimate of the chance that a hand of four wins at a table of 2 to 10 players, over trialCount
  /// random deals; a pot shared with k others counts 1/(k+1). 0.0 .. 1.0; 0.0 for counts out of
  /// range and without trials.
  double getProbabilityOfWinOmaha(int* hand, int* board, int boardCount, int players) const;
  /// A hand of four to six against one random hand on a board of targetCount cards, of which
  /// boardCount are known, in percent; not a number without trials.
  ///
  /// @param handSize,boardCount,targetCount  4 to 6; 0 to targetCount; 3 to 5: not checked
  /// @param trials  in: most deals; out: deals made
  /// @param time    in: milliseconds, looked at after the first deal and every 10,000; out:
  /// milliseconds taken
  double EquityHandVsRandomCommon(int* hand, int handSize, int* board, int boardCount,
                                  int targetCount, int& trials, int& time);
  /// The same for four cards from a flop to the river.
  double RiverEquityHandVsRandomOnFlopLight(int* hand, int* flop, int& trials, int& time);
  /// The same against a range, of which some hand must share no card with hand and flop.
  double RiverEquityHandVsRangeOnFlopLight(int* hand, int* flop, const OmahaRange& range,
                                           int& trials, int& time);

  /// @}

  /// @name Omaha Hi/Lo
  /// The best high hand and the best low hand take half the pot each; where nobody has a low the
  /// high hand takes it all. A low is five different ranks of eight or below, the ace low, of
  /// exactly two hole cards and three board cards. Its value is the ranks as digits, the highest
  /// first: 54321 is the best, smaller is better, 0 is none. Where nothing is said of it, handSize
  /// is 0 or more and not checked; hands of fewer than two cards have no low.
  /// @{

  /// The low of a hand of two cards or more on a board of three to five; 0 for other counts.
  int SetLowValueCombinationOmahaCommon(int* hand, int handSize, int* board, int boardCount) const;
  /// The same for four cards on a board of five.
  int SetLowValueCombinationOmaha(int* hand, int* board) const;
  /// How many holdings of two unseen cards have a better low, 0 for the nut low; 1 when the hand
  /// has none, -5 unless the board has three to five cards.
  int IsMyHandNutsOmahaLow(int* hand, int handSize, int* board, int boardCount) const;
  /// Counts the next cards that give a hand without a low one, and those after which it is the nut
  /// low. 1; -5, and nothing written, unless the board has three or four cards.
  int getOutsOmahaLow(int* hand, int handSize, int* board, int boardCount, int& outs,
                      int& nutOuts) const;
  /// Sums up the chances of a low: 0 when the board allows none any more; 1 when the hand has not
  /// two low ranks; 2 when it has a low, which is written; 3 when a card is missing, with outs, nut
  /// outs and the probability that the next card is an out; 100 when the board is low enough and
  /// the hand counterfeited. boardCount is 3 to 5 and not checked.
  int CountLowCards(int* hand, int handSize, int* board, int boardCount, int& lowValueOrOuts,
                    int& nutOuts, double& probability) const;

  /// @}

  /// @name Omaha Hi/Lo equity
  /// The counterparts of the functions of the same names, with the same ranges of counts, the first
  /// one 0.0 .. 1.0 (0.0 without trials too), the others in percent. The first two call srand()
  /// like theirs. A pot or a half of one that is shared with k others counts 1/(k+1) of it, here
  /// with several hands too.
  /// @{

  /// As getProbabilityOfWinOmaha: an estimate, 0.0 .. 1.0.
  double getProbabilityOfWinOmahaHL(int* hand, int* board, int boardCount, int players) const;
  /// As EquityHandVsRandomCommon: an estimate in percent.
  double EquityHandVsRandomHL(int* hand, int handSize, int* board, int boardCount, int targetCount,
                              int& trials, int& time);
  /// As RiverEquityHandVsRandomOnRiver: exact, in percent.
  double RiverEquityHandVsRandomOnRiverHL(int* hand, int* board, int& count) const;
  /// As RiverEquityHandsOnPreFlopCommon: exact, in percent.
  double RiverEquityHandsOnPreFlopCommonHL(int* hands, int handSize, int players, int deadCount,
                                           int& count, int& time) const;
  /// As RiverEquityHandsOnFlopCommon: exact, in percent.
  double RiverEquityHandsOnFlopCommonHL(int* hands, int handSize, int players, int deadCount,
                                        int* board, int& count, int& time) const;
  /// As RiverEquityHandsOnTurnCommon: exact, in percent.
  double RiverEquityHandsOnTurnCommonHL(int* hands, int handSize, int players, int deadCount,
                                        int* board, int& count, int& time) const;

  /// @}

  /// @name Omaha: nuts and outs; free functions for them are in omaha.h
  /// Unseen is every card but the hole cards and the n board cards. -5 for another number of board
  /// cards; nHole is 0 or more and not checked, fewer than two make no hand.
  /// @{

  /// How many hands of four unseen cards beat a hand of four on a board of three to five; 0 is the
  /// nuts. About 2 µs.
  int IsMyHandNutsOmaha(int* hole, int* board, int n) const;
  /// How many holdings of two unseen cards, which must both play, beat a hand of two and more.
  int IsMyHandNutsOmahaCommon(int* hole, int nHole, int* board, int n) const;

  /// @}

  /// @name Omaha: outs
  /// Outs are cards that make a hand when they come next, on boards of three or four cards; all
  /// return -5 for another board. The three by draw leave 0 in their counts then, and count an out
  /// as 1 and one that makes the nuts as 101: outs % 100, nut outs / 100.
  /// @{

  /// Flushes, and straight flushes. Returns the number of suits with a flush draw; without one
  /// nothing is counted.
  int GetFlushDrawOutsOmaha(CHandOmahaType& hand, int& flushOuts, int& straightFlushOuts) const;
  /// Straights. 1; 5, and nothing counted, if the hand is a straight.
  int GetStraightDrawOutsOmaha(int* hole, int* board, int n, int& straightOuts) const;
  /// Full houses and fours of a kind, for hands from two pair to a flush. 1; 7, and nothing
  /// counted, for any other hand.
  int GetFullHouseOutsOmaha(int* hole, int* board, int n, int& fullHouseOuts, int& quadsOuts) const;
  /// Cards that lift a hand to a higher category 1..9, by that category.
  ///
  /// @param outs,nutOuts  out: 10 numbers each, cards counted as 1
  /// @return 1; -5, and nothing is written, unless the board has three or four cards
  int getOutsOmahaCommon(int* hole, int nHole, int* board, int n, int* outs, int* nutOuts) const;

  /// @}

  /// @name Short deck; free functions for it are in equity.h
  /// @{

  /// As getProbabilityOfWin with the 36 cards of the short deck. Values come from "six-plus-7.bin",
  /// which is loaded from the current directory unless it is loaded; 0.0 if it cannot be. It
  /// changes the object's random numbers.
  double getProbabilityOfWinHoldem6Plus(int* hand, int* board, int boardCount, int players);
  /// Exact chance against a random hand before the flop; the 112,971,936 cases of opponent and
  /// board are counted, not dealt.
  ///
  /// @param hand     two card codes; one below six is worth nothing, the board and the other one
  ///                 play: 141,214,920 cases (175,301,280 with two of them), 30 ms
  /// @param count    out: cases
  /// @param elapsed  out: time taken in milliseconds
  double RiverEquityHandVsRandomOnPreFlop6Plus(int* hand, int& count, int& elapsed) const;

  /// @}

  /// @name Data, in the order that hosts know
  /// @{

  CPokerDeck deck;  ///< the card words of the prime-product evaluators
  /// Partial-hand IDs in rising order; slot 0 is the empty hand. Filled by generating, not by
  /// loading.
  std::vector<std::uint64_t> IDs = {0};
  /// The state table, 32,487,834 entries, or empty while nothing is loaded. The row of state s
  /// (a multiple of 53, the first being 53) is HR[s + 1 .. s + 52]; HR[s] is the value of a state
  /// of five or six cards.
  pokermath::LargeTable<std::uint32_t> HR;
  int numIDs = 1;           ///< IDs in use
  int numcards = 0;         ///< card count of the ID that MakeID built last
  int maxHR = 0;            ///< highest HR index written
  std::uint64_t maxID = 0;  ///< largest ID stored

  /// Two hand keys.
  using MatchupKey = std::pair<int, int>;
  /// Matchup (hand key, hand key) → 2 * wins + ties of the first hand over 1,712,304 boards. A hand
  /// key is smaller card code * 64 + larger card code.
  std::map<MatchupKey, int> equityTable;
  /// The same over 194,580 four-card boards.
  std::map<MatchupKey, int> equityTurnTable;
  /// Value of every five-card hand on the descending scale, or empty.
  pokermath::FiveCardMap PokerCombinations;
  EasyRandom random{0, 1};  ///< what the object draws its random numbers with
  /// Trials, or random boards, of the functions that sample and are not given a number.
  int trialCount = 50000;

  /// @}

 private:
  // The empty hand among the IDs takes memory, which a move must not need.
  struct NoIDs {};
  explicit PokerLogic(NoIDs) noexcept : IDs() {}
};

#endif  // POKERMATH_POKER_LOGIC_H_
