// Free evaluators: the value of five, six or seven cards.
//
// Two scales: descending, 1 = royal flush .. 7462 = seven high (smaller is better), and ascending,
// 7463 less that (1 .. 7462, larger is better). Every function says which one it returns.

#ifndef POKERMATH_EVALUATORS_H_
#define POKERMATH_EVALUATORS_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// The 52 card words of the prime-product evaluator, indexed by card code.
///
/// word = prime | rank << 8 | suit bit | 1 << (16 + rank); primes 2 .. 41 for deuce .. ace, suit
/// bit 0x8000, 0x4000, 0x2000, 0x1000 for clubs, diamonds, hearts, spades.
/// This is the published prime-product scheme for five-card hands.
class POKERMATH_EXPORT CPokerDeck {
 public:
  CPokerDeck();
  int operator[](int card) const { return words[card]; }

  int words[52];
};

// All of these take card words (CPokerDeck), return the descending scale 1..7462, need nothing
// loaded and may run in any number of threads. Cards are not checked.

/// Five cards, products found by binary search. Prints a line on standard error and returns 0 for
/// five card words that cannot be one hand, such as one card five times.
POKERMATH_EXPORT int eval_5cards(int c1, int c2, int c3, int c4, int c5);
/// Five cards, products found by a perfect hash.
POKERMATH_EXPORT int eval_5hand_fast(int c1, int c2, int c3, int c4, int c5);
/// Five card words in an array.
POKERMATH_EXPORT int eval_5hand(int* words);
/// The best five of six card words.
POKERMATH_EXPORT int eval_6hand(int* words);
/// The best five of seven card words.
POKERMATH_EXPORT int eval_7hand(int* words);

// --- finite-state tables: cards are read one at a time, ascending scales, larger is better ---
//
// Cards are card codes. The table of five cards from 52 is part of the library. Those of the short
// deck (36 cards, six and better) and of Omaha are files that `pokermath tables build` writes; each
// is loaded once into the process. Loading is not synchronised: load before threads start. Then all
// evaluators may run in any number of threads. Codes are not checked.

/// Five cards, on the scale 1..7462. About 100 million hands a second.
POKERMATH_EXPORT int LookupFsm5(int* cards);
/// Category of such a value: 1 high card .. 9 straight flush, 10 royal flush; 0 below 1.
POKERMATH_EXPORT int Get_rankFsm5(int value);
/// The category in words: "one pair", "four of kind", "Error" below 1. Returns 1.
POKERMATH_EXPORT int verify_rankFsm5(int value, CString& name);
/// The best Omaha value, two of four hole cards and three of five board cards, on that scale.
POKERMATH_EXPORT int get_rank7(int* hole, int* board);

/// Five short-deck cards, on the scale 1..7462 put into short-deck order: a flush beats a full
/// house, three of a kind beats a straight, A-6-7-8-9 is the lowest straight. -1 if a card is below
/// six.
POKERMATH_EXPORT int LookupHoldem6PlusFsm5(int* cards);
/// Category of such a value in short-deck order: 1 high card, 2 one pair, 3 two pair, 4 straight,
/// 5 three of a kind, 6 full house, 7 flush, 8 four of a kind, 9 straight flush, 10 royal flush; 0
/// below 1.
POKERMATH_EXPORT int Get_rankHoldem6PlusFsm5(int value);
/// The best five of seven short-deck cards, on that scale.
POKERMATH_EXPORT int eval_7hand6PlusFsm5(int* cards);

/// What is loaded for the short deck. The class and its one object share their name: the type is
/// written `class fsm5`.
class POKERMATH_EXPORT fsm5 {
 public:
  constexpr fsm5() = default;
  fsm5(const fsm5&) = delete;
  fsm5& operator=(const fsm5&) = delete;
  /// Releases the tables with delete[].
  virtual ~fsm5();

  /// The tables of five and of seven cards, to be walked through: a state is a place in the
  /// array, 36 the first one, and the entry at state + (rank - 4) * 4 + suit the next one or, after
  /// the last card, the value. Null while nothing is loaded.
  std::uint32_t* five_cards = nullptr;
  std::uint32_t* seven_cards = nullptr;
  /// What load_equity_table_6Plus has loaded: matchup of two hand keys (smaller card code * 64 +
  /// larger one) → 2 * wins + ties of the first hand over 201,376 boards. Null while nothing is.
  std::unique_ptr<std::map<std::pair<int, int>, int>> equity;
};
/// The object of the process; load_fsm5, load_fsm7 and load_equity_table_6Plus fill it.
POKERMATH_EXPORT extern class fsm5 fsm5;

/// What is loaded for Omaha; `class ofsm_omaha7`, as above.
class POKERMATH_EXPORT ofsm_omaha7 {
 public:
  constexpr ofsm_omaha7() = default;
  ofsm_omaha7(const ofsm_omaha7&) = delete;
  ofsm_omaha7& operator=(const ofsm_omaha7&) = delete;
  /// Releases the table with delete[].
  virtual ~ofsm_omaha7();

  /// The table of five board cards and then two hole cards: 52 is the first state, the entry at
  /// state + rank * 4 + suit + 1 the next. Null while nothing is loaded.
  std::uint32_t* table = nullptr;
};
/// The object of the process; load_ofsm_omaha7 fills it.
POKERMATH_EXPORT extern class ofsm_omaha7 ofsm_omaha7;

/// Loads "six-plus-5.bin", "six-plus-7.bin" or "omaha7.bin" from the current directory, unless it
/// is loaded already.
///
/// @return 1 if the table is loaded; 0, with a message, if there is no file that can be opened (a
///         folder or a FIFO is none), and without one if it is not sound: a wrong header, fewer
///         entries than the header says, an entry that leads out of the table
POKERMATH_EXPORT int load_fsm5();
POKERMATH_EXPORT int load_fsm7();
POKERMATH_EXPORT int load_ofsm_omaha7();

/// Category of a value of the short-deck tables, 1..1404, numbered as in Get_rankHoldem6PlusFsm5.
POKERMATH_EXPORT int Get_rank36(int value);
/// Five short-deck cards through the loaded table, 1..1404; 0 if a card is below six or nothing is
/// loaded.
POKERMATH_EXPORT int eval_rank5_via_fsm5(const int* cards);
/// The best five of six, likewise.
POKERMATH_EXPORT int eval_rank6_via_fsm5(int* cards);
/// The best five of seven through the table of seven cards, likewise.
POKERMATH_EXPORT int eval_rank7_via_fsm7(const int* cards);
/// The best Omaha value of holeCount hole cards, two of which play, and five board cards through
/// the loaded table, 1..7462; 0 if nothing is loaded and for fewer than two hole cards.
POKERMATH_EXPORT int eval_rank7_via_ofsm7(int* hole, int holeCount, int* board);

namespace pokermath {

/// The loaders for a folder other than the current directory.
POKERMATH_EXPORT int load_fsm5(const CString& folder);
POKERMATH_EXPORT int load_fsm7(const CString& folder);
POKERMATH_EXPORT int load_ofsm_omaha7(const CString& folder);

/// Value of five to seven short-deck cards, 1..1404 as in the short-deck tables, without any of
/// them; 0 for another count and if a card is below six. About 40 ns.
POKERMATH_EXPORT int EvaluateShortDeck(const int* cards, int count);

/// Constant tables of the compact evaluator; its functions below are how to use them. They are
/// inlined into hosts, so the layout belongs to the binary interface.
///
/// Every card adds one 64-bit word. Bits 38..63 sum up a key of the ranks, which finds the value of
/// the hand without its suits in two steps: values[rows[key >> 13] + (key & 8191)]. Bits 0..15
/// count the suits, four bits each, offset so that five cards of a suit set the highest of the
/// four.
struct CompactTables {
  static constexpr int kKeyShift = 38;
  static constexpr std::uint64_t kSuitStart = 0x3333;
  static constexpr std::uint64_t kFlushBits = 0x8888;
  static constexpr int kColumnBits = 13;
  static constexpr std::uint64_t kColumns = std::uint64_t{1} << kColumnBits;

  std::uint64_t card_words[52];      ///< by card code
  std::uint16_t flush_values[8192];  ///< best flush of a 13-bit rank mask, 0 below five ranks
  const std::uint16_t* rows[3];      ///< for 5, 6 and 7 cards: 8,192 row offsets each
  const std::uint16_t* values[3];    ///< for 5, 6 and 7 cards: ascending values without suits
};
POKERMATH_EXPORT extern const CompactTables kCompactTables;

/// Value of `count` cards (5, 6 or 7) on the ascending scale 1..7462, larger is better.
///
/// @param cards  card codes 0..51, all different; not checked
/// Needs nothing loaded, takes about 3 ns, may run in any number of threads.
template <int count, typename Card>
inline int EvaluateCards(const Card* cards) {
  static_assert(count >= 5 && count <= 7);
  const CompactTables& tables = kCompactTables;
  std::uint64_t sum = CompactTables::kSuitStart;
  for (int i = 0; i < count; ++i) sum += tables.card_words[static_cast<int>(cards[i])];
  if (const std::uint64_t flush = sum & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
    // Five cards of a suit leave at most two others: no full house, no four of a kind beats it.
    const int suit = __builtin_ctzll(flush) / 4;
    unsigned mask = 0;
    for (int i = 0; i < count; ++i) {
      const int card = static_cast<int>(cards[i]);
      mask |= static_cast<unsigned>(card / 13 == suit) << (card % 13);
    }
    return tables.flush_values[mask];
  }
  const std::uint64_t key = sum >> CompactTables::kKeyShift;
  const std::uint16_t row = tables.rows[count - 5][key >> CompactTables::kColumnBits];
  return tables.values[count - 5][row + (key & (CompactTables::kColumns - 1))];
}

/// The same for a count that is known at run time; 0 for any count but 5, 6 and 7.
POKERMATH_EXPORT int EvaluateCards(const int* cards, int count);

/// Values of many seven-card hands at once, on the ascending scale.
///
/// @param cards   7 bytes a hand, one hand behind the other: card codes 0..51; not checked
/// @param hands   how many hands
/// @param values  out: one value a hand, 1..7462
/// About 1 ns a hand with AVX2, 2 ns without. May run in any number of threads.
POKERMATH_EXPORT void EvaluateBatch(const std::uint8_t* cards, std::size_t hands,
                                    std::uint16_t* values);

/// What players call the category of a value 1..7462 on the ascending scale: "high card" .. "royal
/// flush"; "" for any other number. Lives as long as the program.
POKERMATH_EXPORT const char* CategoryName(int ascending);
/// The same for the short deck's values 1..1404.
POKERMATH_EXPORT const char* ShortDeckCategoryName(int value);

/// What five to seven cards make of 52, in words: "two pair Ace King kicker 7", "flush Ace high",
/// "royal flush". An Omaha hand is the five cards that play.
///
/// @param cards  card codes, all different; not checked
/// @return "" for another count
POKERMATH_EXPORT std::string HandInWords(std::span<const int> cards);

/// Converts the ascending scale, 1..7462, to the HandRanks scale (category * 4096 + place,
/// poker_logic.h).
POKERMATH_EXPORT int HandRanksFromAscending(int ascending);

/// The five cards that play among five to seven: indexes into `cards`, in rising order.
///
/// @param cards  card codes, all different; not checked
/// @param count  5, 6 or 7; nothing is done for another count
/// @param best   out: five indexes 0..count-1
POKERMATH_EXPORT void FindBestFive(const int* cards, int count, int best[5]);

}  // namespace pokermath

#endif  // POKERMATH_EVALUATORS_H_
