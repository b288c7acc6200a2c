// Cards as the whole library sees them.
//
// A card is an int, the card code: suit * 13 + rank, with rank 0 = deuce .. 12 = ace and suit
// 0 = clubs, 1 = diamonds, 2 = hearts, 3 = spades. So 0 is the deuce of clubs, 12 the ace of clubs
// and 51 the ace of spades. The short deck uses the codes of rank 4 (six) and above.

#ifndef POKERMATH_CARDS_H_
#define POKERMATH_CARDS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// Rank of a card code: 0 = deuce .. 12 = ace.
POKERMATH_EXPORT int GetCardRank(int card);

/// 12 less the rank of a card code: 0 = ace .. 12 = deuce.
POKERMATH_EXPORT int GetInverseCardRank(int card);

/// Whether two card codes have the same suit.
POKERMATH_EXPORT bool isSuit(int a, int b);

/// Whether `card` is among the first `count` entries of `cards`; a count of 0 or less gives false.
POKERMATH_EXPORT bool isExist(int card, int* cards, int count);

/// Rank 0..12 of a letter of "23456789TJQKA" (case matters), -1 for any other character.
POKERMATH_EXPORT int GetCardRankByName(wchar_t letter);

/// Strict weak order that sorts card codes from high to low: by rank, then spades, hearts,
/// diamonds, clubs.
POKERMATH_EXPORT bool comparefun(int a, int b);

/// Suits in the order of the card code.
enum Suit : std::int32_t { clubs, diamonds, hearts, spades };

/// One card as face value and suit, for readable code; the evaluators take card codes.
///
/// The face value is not the rank of the card code: 1 = ace, 2..10, 11 = jack, 12 = queen,
/// 13 = king. Nothing is checked.
class POKERMATH_EXPORT CCard {
 public:
  /// An unset card: face value 0, hearts.
  CCard() = default;
  CCard(int card);  // NOLINT(google-explicit-constructor): a card code is a card
  CCard(Suit suit, int faceValue);
  CCard(int faceValue, Suit suit);
  /// From letters of "A23456789TJQK" and "cdhs", case matters. A letter that is not one of them
  /// leaves that field as in an unset card.
  CCard(wchar_t rankLetter, wchar_t suitLetter);
  /// The same from the first character of each text, in either case.
  CCard(const wchar_t* rankText, const wchar_t* suitText);

  /// Face value, 1 = ace .. 13 = king.
  int GetRank() const { return face_value_; }
  Suit GetSuit() const { return suit_; }
  /// 1, 2 or 3 for those suits, 0 for any other value.
  int GetSuitAsInt() const;
  /// The card code.
  int GetInt() const;
  /// "Ace of spades", "10 of hearts". An unset card prints "spades of hearts".
  CString GetCardName() const;
  /// "As", "Th".
  CString GetName2() const;

  // Comparison is by rank alone, the ace highest: cards of one rank and different suits are equal.
  // The hand classification counts pairs with it.
  bool operator<(const CCard& other) const { return Order() < other.Order(); }
  bool operator>(const CCard& other) const { return Order() > other.Order(); }
  bool operator==(const CCard& other) const { return Order() == other.Order(); }
  bool operator!=(const CCard& other) const { return Order() != other.Order(); }

 private:
  int Order() const { return face_value_ == 1 ? 14 : face_value_; }

  std::int32_t face_value_ = 0;
  Suit suit_ = hearts;
};

/// An ordered list of cards; the same card may be in it more than once.
class POKERMATH_EXPORT CDeck {
 public:
  /// Appends a copy of the card.
  void AddCard(CCard card);
  void DeleteCards();
  int GetTotalCards() const;
  /// Every card's GetName2 and a blank, in order: "Ah Kd 7c ".
  CString display2() const;

 private:
  std::vector<CCard> cards_;
  [[maybe_unused]] std::int32_t value_[6] = {};  // category, then five ranks that break ties
  [[maybe_unused]] std::int32_t extra_ = 0;      // copied with the deck
};

namespace pokermath {

/// What ParseCards read: either cards or an error.
struct CardsResult {
  std::vector<int> cards;
  /// Empty when the text was read; otherwise one line that names the bad piece and what is
  /// accepted, for example "'Xh' is not a card: rank 23456789TJQKA (or 10), suit cdhs".
  std::string error;
};

/// Reads cards as people write them: "AhKd", "Ah Kd", "ah,kd", "10h". Ranks and suits in either
/// case; blanks, commas and semicolons may stand between cards. A card given twice is an error.
POKERMATH_EXPORT CardsResult ParseCards(std::string_view text);

/// Two characters for a card code 0..51: "Ah", "Tc".
POKERMATH_EXPORT std::string CardName(int card);

}  // namespace pokermath

#endif  // POKERMATH_CARDS_H_
