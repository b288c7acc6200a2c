/// @file
/// Free evaluators: the value of five, six or seven cards.
///
/// Two scales: descending, 1 = royal flush .. 7462 = seven high (smaller is better), and ascending,
/// 7463 less that (1 .. 7462, larger is better). Every function says which one it returns. For
/// the short deck there is a scale of its own as well, 1 .. 1404, larger is better.
///
/// Values follow from the rules of poker: what is part of the library is worked out when it is
/// built. Card codes are not checked: one beyond 0..51 is undefined. What is not said to load
/// something may be called by any number of threads.

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
  /// Makes the words.
  CPokerDeck();
  /// The word of a card code 0..51; not checked.
  int operator[](int card) const { return words[card]; }

  int words[52];  ///< by card code
};

/// @name Prime products
/// All of these take card words (CPokerDeck), return the descending scale 1..7462, need nothing
/// loaded and may run in any number of threads. Cards are not checked.
/// @{

/// Five cards, products found by binary search. Five cards of one rank in more than one suit print
/// a line on standard error and give 0; other cards that come twice give 0 or any value.
/// eval_5hand does the same.
POKERMATH_EXPORT int eval_5cards(int c1, int c2, int c3, int c4, int c5);
/// Five cards, products found by a perfect hash.
POKERMATH_EXPORT int eval_5hand_fast(int c1, int c2, int c3, int c4, int c5);
/// Five card words in an array.
POKERMATH_EXPORT int eval_5hand(int* words);
/// The best five of six card words.
POKERMATH_EXPORT int eval_6hand(int* words);
/// The best five of seven card words.
POKERMATH_EXPORT int eval_7hand(int* words);

/// @}

/// @name Finite-state tables
/// Cards are read one at a time; ascending scales, larger is better.
///
/// Cards are card codes. The table of five cards from 52 is part of the library. Those of the short
/// deck (36 cards, six and better) and of Omaha are files that `pokermath tables build` writes;
/// each is loaded once into the process, by whichever thread asks first. A thread that evaluates
/// has loaded itself or was started after another one had. Codes are not checked.
/// @{

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
/// The best five of seven short-deck cards, on that scale. Cards below six do not play: 0 with
/// fewer than five others.
POKERMATH_EXPORT int eval_7hand6PlusFsm5(int* cards);

/// What is loaded for the short deck. The class and its one object share their name: the type is
/// written `class fsm5`.
class POKERMATH_EXPORT fsm5 {
 public:
  /// Nothing is loaded.
  constexpr fsm5() = default;
  /// There is one object in a process.
  fsm5(const fsm5&) = delete;
  /// Likewise.
  fsm5& operator=(const fsm5&) = delete;
  /// Releases the tables with delete[].
  virtual ~fsm5();

  /// The table of five cards, to be walked through: a state is a place in the
  /// array, 36 the first one, and the entry at state + (rank - 4) * 4 + suit the next one or, after
  /// the last card, the value. Null while nothing is loaded.
  std::uint32_t* five_cards = nullptr;
  /// The same of seven cards.
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
  /// Nothing is loaded.
  constexpr ofsm_omaha7() = default;
  /// There is one object in a process.
  ofsm_omaha7(const ofsm_omaha7&) = delete;
  /// Likewise.
  ofsm_omaha7& operator=(const ofsm_omaha7&) = delete;
  /// Releases the table with delete[].
  virtual ~ofsm_omaha7();

  /// The table of five board cards and then two hole cards: 52 is the first state, the entry at
  /// state + rank * 4 + suit + 1 the next. Null while nothing is loaded.
  std::uint32_t* table = nullptr;
};
/// The object of the process; load_ofsm_omaha7 fills it.
POKERMATH_EXPORT extern class ofsm_omaha7 ofsm_omaha7;

/// Loads "six-plus-5.bin" from the current directory, unless it is loaded already.
///
/// @return 1 if the table is loaded; 0, with a message, if there is no file that can be opened (a
///         folder or a FIFO is none), and without one if it is not sound: a wrong header, fewer
///         entries than the header says, an entry that leads out of the table
POKERMATH_EXPORT int load_fsm5();
/// Loads "six-plus-7.bin", likewise.
POKERMATH_EXPORT int load_fsm7();
/// Loads "omaha7.bin", likewise.
POKERMATH_EXPORT int load_ofsm_omaha7();

/// Category of a value of the short-deck tables, 1..1404, numbered as in Get_rankHoldem6PlusFsm5.
POKERMATH_EXPORT int Get_rank36(int value);
/// Five short-deck cards through the loaded table, 1..1404; 0 if a card is below six or nothing is
/// loaded.
POKERMATH_EXPORT int eval_rank5_via_fsm5(const int* cards);
/// The best five of six; cards below six do not play: 0 if two or more are, or nothing is loaded.
POKERMATH_EXPORT int eval_rank6_via_fsm5(int* cards);
/// The best five of seven through the table of seven cards, likewise.
POKERMATH_EXPORT int eval_rank7_via_fsm7(const int* cards);
/// The best Omaha value of holeCount hole cards, two of which play, and five board cards through
/// the loaded table, 1..7462; 0 if nothing is loaded and for fewer than two hole cards.
POKERMATH_EXPORT int eval_rank7_via_ofsm7(int* hole, int holeCount, int* board);

/// @}

namespace pokermath {

/// ::load_fsm5 from a folder other than the current directory.
POKERMATH_EXPORT int load_fsm5(const CString& folder);
/// ::load_fsm7 likewise.
POKERMATH_EXPORT int load_fsm7(const CString& folder);
/// ::load_ofsm_omaha7 likewise.
POKERMATH_EXPORT int load_ofsm_omaha7(const CString& folder);

/// Constant tables of the compact evaluator for one deck; the functions below are how to use them.
/// They are inlined into hosts, so the layout belongs to the binary interface.
///
/// Every card adds one 64-bit word. The upper bits sum up a key of the ranks (and wrap), which
/// finds the value of the hand without its suits in two steps: values[rows[key >> columns] +
/// column]. Bits 0..15 count the suits, four bits each, offset so that five cards of a suit set the
/// highest of the four. Cards that come as bytes are taken two at a time, by 32-bit words that have
/// the key above and the counts of three suits in bits 0..8: fewer loads, of which a single
/// evaluation has most.
template <int lowest_rank, int key_bits, int column_bits>
struct DeckTables {
  static constexpr int kLowestRank = lowest_rank;        ///< of the deck: 0 = deuce, 4 = six
  static constexpr int kKeyBits = key_bits;              ///< length of a key
  static constexpr int kKeyShift = 64 - key_bits;        ///< where it stands in a word
  static constexpr int kShortKeyShift = 32 - key_bits;   ///< where it stands in a short word
  static constexpr std::uint64_t kSuitStart = 0x3333;    ///< of a sum: counts of suits
  static constexpr std::uint64_t kFlushBits = 0x8888;    ///< of counts: five cards of a suit
  static constexpr std::uint64_t kAbsentBits = 0x70000;  ///< set by cards that the deck lacks
  static constexpr int kColumnBits = column_bits;        ///< the lower bits of a key
  static constexpr std::uint64_t kColumns = std::uint64_t{1} << kColumnBits;  ///< of a row
  static constexpr std::uint64_t kKeys = std::uint64_t{1} << key_bits;        ///< there are
  static constexpr unsigned kFlushRanks = (1u << (13 - lowest_rank)) - 1;     ///< a bit for each

  std::uint64_t card_words[52];                 ///< by card code
  std::uint32_t short_words[52];                ///< likewise
  std::uint16_t flush_values[kFlushRanks + 1];  ///< best flush of a suit's ranks, 0 below five
  const std::uint16_t* rows[3];                 ///< for 5, 6 and 7 cards: a row offset each
  const std::uint16_t* values[3];               ///< for 5, 6 and 7 cards: values without suits
  const std::uint32_t* pair_words;              ///< sum of two short words: by card + 256 * card
  const std::uint8_t* flush_suits[3];  ///< for 5, 6 and 7 cards by the counts: suit + 1, 0 for none

  /// Value of `count` cards that are no flush, by the sum of their keys; higher bits are ignored.
  template <int count>
  int ValueOfRanks(std::uint64_t key) const {
    return values[count - 5]
                 [rows[count - 5][(key & (kKeys - 1)) >> kColumnBits] + (key & (kColumns - 1))];
  }
  /// Value of the flush in a suit, 0 below five cards; cards are bits by their codes.
  int FlushOf(int suit, std::uint64_t cards) const {
    return flush_values[cards >> (13 * suit + kLowestRank) & kFlushRanks];
  }
  /// Value of `count` cards by kSuitStart and the sum of their words, and by their bits.
  template <int count>
  int ValueOf(std::uint64_t sum, std::uint64_t cards) const {
    // Five cards of a suit leave at most two others: nothing that they make beats the flush.
    if (const std::uint64_t flush = sum & kFlushBits; flush != 0) [[unlikely]] {
      return FlushOf(__builtin_ctzll(flush) / 4, cards);
    }
    return ValueOfRanks<count>(sum >> kKeyShift);
  }
  /// Value of `count` cards given by their codes. Loops are unrolled for hosts that are compiled
  /// with -O2, by a fifth to a third faster.
  template <int count, typename Card>
  int ValueOf(const Card* cards) const {
    static_assert(count >= 5 && count <= 7);
    const auto bits = [cards] {
      std::uint64_t all = 0;
#pragma GCC unroll 7
      for (int i = 0; i < count; ++i) all |= std::uint64_t{1} << static_cast<int>(cards[i]);
      return all;
    };
    if constexpr (sizeof(Card) == 1) {
      std::uint32_t sum = count % 2 == 0 ? 0 : short_words[static_cast<int>(cards[count - 1])];
#pragma GCC unroll 3
      for (int i = 0; i + 1 < count; i += 2) {
        std::uint16_t two;
        __builtin_memcpy(&two, cards + i, sizeof two);
        sum += pair_words[two];
      }
      if (const int flush = flush_suits[count - 5][sum & 0x1FF]; flush != 0) [[unlikely]] {
        return FlushOf(flush - 1, bits());
      }
      return ValueOfRanks<count>(sum >> kShortKeyShift);
    } else {
      std::uint64_t sum = kSuitStart;
#pragma GCC unroll 7
      for (int i = 0; i < count; ++i) sum += card_words[static_cast<int>(cards[i])];
      if ((sum & kFlushBits) != 0) [[unlikely]]
        return ValueOf<count>(sum, bits());
      return ValueOfRanks<count>(sum >> kKeyShift);
    }
  }
};

/// The tables of 52 cards.
using CompactTables = DeckTables<0, 23, 10>;
/// The tables of 36 cards.
using ShortDeckTables = DeckTables<4, 17, 7>;
/// The tables behind EvaluateCards and HandSum, part of the library.
POKERMATH_EXPORT extern const CompactTables kCompactTables;
/// The tables behind EvaluateShortDeck and ShortDeckHandSum, part of the library.
POKERMATH_EXPORT extern const ShortDeckTables kShortDeckTables;

/// @name Single evaluations
/// They need nothing loaded and may run in any number of threads. Cards may be
/// bytes, ints or any other integers; bytes are the fastest. No compiler flag beyond -O2 matters:
/// they are table look-ups, which -march does not change.
/// @{

/// Value of `count` cards (5, 6 or 7) on the ascending scale 1..7462, larger is better. About 2 ns.
///
/// @param cards  card codes 0..51, all different; not checked
template <int count, typename Card>
inline int EvaluateCards(const Card* cards) {
  return kCompactTables.ValueOf<count>(cards);
}

/// The same for a count that is known at run time; 0 for any count but 5, 6 and 7.
POKERMATH_EXPORT int EvaluateCards(const int* cards, int count);

/// Value of `count` short-deck cards (5, 6 or 7), 1..1404 as in the short-deck tables, without any
/// of them. Less than 2 ns.
///
/// @param cards  codes of cards of rank six and better, all different; not checked
template <int count, typename Card>
inline int EvaluateShortDeck(const Card* cards) {
  return kShortDeckTables.ValueOf<count>(cards);
}

/// The same for a count that is known at run time; 0 for any count but 5, 6 and 7, and if a card is
/// below six.
POKERMATH_EXPORT int EvaluateShortDeck(const int* cards, int count);

/// @}

/// @name Batches
/// `hands` hands of `count` bytes, card codes, one hand behind the other; one value a hand
/// out. Values are those of the functions above, 0 for any count but 5, 6 and 7. Nothing is read or
/// written beyond the arrays, which need no alignment. The instructions that the machine has are
/// chosen when the program runs. Any number of threads.
/// @{

/// About 0.8 ns a hand with AVX-512 (VBMI), 1.2 ns with AVX2, 2 ns without.
POKERMATH_EXPORT void EvaluateBatch(int count, const std::uint8_t* cards, std::size_t hands,
                                    std::uint16_t* values);
/// Seven cards.
POKERMATH_EXPORT void EvaluateBatch(const std::uint8_t* cards, std::size_t hands,
                                    std::uint16_t* values);
/// Cards of the short deck, of rank six and better; about 0.7 ns a hand with AVX-512 (VBMI).
POKERMATH_EXPORT void EvaluateShortDeckBatch(int count, const std::uint8_t* cards,
                                             std::size_t hands, std::uint16_t* values);

/// @}

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
