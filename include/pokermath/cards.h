/// @file
/// Cards as the whole library sees them.
///
/// A card is an int, the card code: suit * 13 + rank, with rank 0 = deuce .. 12 = ace and suit
/// 0 = clubs, 1 = diamonds, 2 = hearts, 3 = spades. So 0 is the deuce of clubs, 12 the ace of clubs
/// and 51 the ace of spades. The short deck uses the codes of rank 4 (six) and above.
///
/// Nothing here has to be loaded, and all of it may be called by any number of threads, an object
/// that is changed by one at a time. Functions that take codes do not check them. What reads text
/// checks it.

#ifndef POKERMATH_CARDS_H_
#define POKERMATH_CARDS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/card_set.h"
#include "pokermath/export.h"
#include "pokermath/result.h"
#include "pokermath/text.h"

/// Rank of a card code: 0 = deuce .. 12 = ace.
POKERMATH_EXPORT int GetCardRank(int card);

/// 12 less the rank of a card code: 0 = ace .. 12 = deuce.
POKERMATH_EXPORT int GetInverseCardRank(int card);

/// Whether two card codes have the same suit.
POKERMATH_EXPORT bool isSuit(int a, int b);

/// Whether `card` is among the first `count` entries of `cards`; a count of 0 or less gives false,
/// one of more than there are is not checked.
POKERMATH_EXPORT bool isExist(int card, int* cards, int count);

/// Rank 0..12 of a letter of "23456789TJQKA" (case matters), -1 for any other character.
POKERMATH_EXPORT int GetCardRankByName(wchar_t letter);

/// Strict weak order that sorts card codes from high to low: by rank, then spades, hearts,
/// diamonds, clubs.
POKERMATH_EXPORT bool comparefun(int a, int b);

/// Suits in the order of the card code.
enum Suit : std::int32_t {
  clubs,     ///< 0
  diamonds,  ///< 1
  hearts,    ///< 2
  spades     ///< 3
};

/// One card as face value and suit, for readable code; the evaluators take card codes.
///
/// The face value is not the rank of the card code: 1 = ace, 2..10, 11 = jack, 12 = queen,
/// 13 = king. Nothing is checked.
class POKERMATH_EXPORT CCard {
 public:
  /// An unset card: face value 0, hearts.
  CCard() = default;
  /// From a card code 0..51.
  CCard(int card);  // NOLINT(google-explicit-constructor): a card code is a card
  /// From suit and face value, 1..13, which are kept as they are.
  CCard(Suit suit, int faceValue);
  /// The same the other way round.
  CCard(int faceValue, Suit suit);
  /// From letters of "A23456789TJQK" and "cdhs", case matters. A letter that is not one of them
  /// leaves that field as in an unset card.
  CCard(wchar_t rankLetter, wchar_t suitLetter);
  /// The same from the first character of each text, in either case.
  CCard(const wchar_t* rankText, const wchar_t* suitText);

  /// Face value, 1 = ace .. 13 = king.
  int GetRank() const { return face_value_; }
  /// The suit.
  Suit GetSuit() const { return suit_; }
  /// 1, 2 or 3 for those suits, 0 for any other value.
  int GetSuitAsInt() const;
  /// Whether it is one of the 52: a face value 1..13 and one of the four suits.
  bool IsValid() const;
  /// The card code. That of a card that is not valid may be any number, also one of 0..51.
  int GetInt() const;
  /// "Ace of spades", "10 of hearts". An unset card prints "spades of hearts".
  CString GetCardName() const;
  /// "As", "Th".
  CString GetName2() const;

  /// @name Comparison
  /// By rank alone, the ace highest: cards of one rank and different suits are equal. The hand
  /// classification counts pairs with it.
  /// @{

  /// Whether the rank is lower.
  bool operator<(const CCard& other) const { return Order() < other.Order(); }
  /// Whether the rank is higher.
  bool operator>(const CCard& other) const { return Order() > other.Order(); }
  /// Whether the ranks are equal.
  bool operator==(const CCard& other) const { return Order() == other.Order(); }
  /// Whether they are not.
  bool operator!=(const CCard& other) const { return Order() != other.Order(); }
  /// @}

 private:
  int Order() const { return face_value_ == 1 ? 14 : face_value_; }

  std::int32_t face_value_ = 0;
  Suit suit_ = hearts;
};

class PokerLogic;

/// An ordered list of cards; the same card may be in it more than once.
class POKERMATH_EXPORT CDeck {
 public:
  /// Appends a copy of the card.
  void AddCard(CCard card);
  /// Takes away all cards; `value` and `extra` stay as they are.
  void DeleteCards();
  /// How many cards there are.
  int GetTotalCards() const;
  /// Every card's GetName2 and a blank, in order: "Ah Kd 7c ".
  CString display2() const;

  /// Whether five cards or more have one suit.
  bool isFlush() const;

  /// Classifies five to seven cards by the rules of poker and sets `value`, so that compareTo
  /// orders decks exactly as the evaluators do.
  ///
  /// value[0]: 1 high card, 2 one pair, 3 two pair, 4 three of a kind, 5 straight, 6 flush, 7 full
  /// house, 8 four of a kind, 9 straight flush, 10 royal flush. value[1..5]: ranks 0..12 that break
  /// ties, unused places 0. Fewer cards are classified as far as they go; a card that is not one of
  /// the 52 leaves all six at 0.
  /// @param logic  for its rule tests; nothing has to be loaded
  void SetValueCombination(PokerLogic& logic);

  /// The same for an Omaha hand: four hole cards, two of which play, and behind them three to five
  /// board cards, three of which play. Fewer than seven cards leave all six at 0; choices with a
  /// card that is not one of the 52 do not count.
  void SetValueCombinationOmaha(PokerLogic& logic);

  /// The low of such an Omaha hand goes to `extra`, as
  /// PokerLogic::SetLowValueCombinationOmahaCommon gives it; 0 with fewer than seven cards and with
  /// one that is not one of the 52.
  void SetLowValueCombinationOmaha(PokerLogic& logic);

  /// Compares the values, category first: 1 if this one is the better, -1 if the other, 0 if they
  /// are equal.
  int compareTo(CDeck other) const;

  /// The value in words: "pair of Ace kicker King kicker Queen", "full house King over 7",
  /// "RoyalFlush ". A deck without a value: "error in Hand.display: m_value[0] contains invalid
  /// value".
  CString display() const;

  // --- data, in the order that hosts know ---

  std::vector<CCard> cards;    ///< in the order in which they were added
  std::int32_t value[6] = {};  ///< category, then five ranks that break ties
  std::int32_t extra = 0;      ///< a low, see SetLowValueCombinationOmaha; copied with the deck
};

/// Five cards, classified by the rules of poker with face values: 1 = ace .. 13 = king, and 14 for
/// an ace where it is high.
///
/// value[0] is the category, 1 high card .. 9 straight flush as in CDeck; value[1..5] break ties:
/// the ranks of groups first, then odd cards from high to low. A pair, a three, a four and a full
/// house of aces keep the face value 1 there, so they lose to every other of their kind in
/// compareTo; two pair counts aces as 14. Hosts compare against both.
class POKERMATH_EXPORT CHand {
 public:
  /// Classifies a deck of five cards. From a deck of any other size no card is taken over, and the
  /// value is that of a high card with ranks 0.
  CHand(CDeck deck);  // NOLINT(google-explicit-constructor): five cards are a hand

  /// Compares the values, category first: 1 if this one is the greater, -1 if the other, 0 if they
  /// are equal.
  int compareTo(CHand other) const;
  /// The value in words: "pair of King's", "5 high straight", "two pair Ace King".
  CString display() const;
  /// The cards and the value in words: "Kh Kd 7c 5s 2h: pair of King's".
  CString displayAll() const;

  // --- data, in the order that hosts know ---

  CCard cards[5];              ///< as in the deck
  std::int32_t value[6] = {};  ///< category, then what breaks ties, as above
};

namespace pokermath {

/// What ParseCards read: either cards or an error.
struct CardsResult {
  std::vector<int> cards;  ///< card codes in the order of the text; none if there is an error
  /// Empty when the text was read; otherwise one line that names the bad piece and what is
  /// accepted, for example "'Xh' is not a card: rank 23456789TJQKA (or 10), suit cdhs".
  std::string error;
};

/// Reads cards as people write them: "AhKd", "Ah Kd", "ah,kd", "10h", "A♥K♢" in UTF-8. Ranks and
/// suits in either case; blanks, commas and semicolons may stand between cards. A card given twice
/// is an error.
POKERMATH_EXPORT CardsResult ParseCards(std::string_view text);

/// Reads the same texts as a set, for boards, dead cards and hands whose order does not matter. An
/// empty text is an empty set.
///
/// @return the cards, or an error: ErrorCode::kText for a piece that is no card, ErrorCode::kCard
///         with the card for one that is given twice; both with the position of the bad piece in
///         bytes and the line of ParseCards. Any number of threads.
POKERMATH_EXPORT Result<CardSet> ReadCardSet(std::string_view text);

/// Two characters for a card code 0..51: "Ah", "Tc".
POKERMATH_EXPORT std::string CardName(int card);

}  // namespace pokermath

#endif  // POKERMATH_CARDS_H_
