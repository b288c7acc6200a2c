// Card codes taken apart, and CCard.

#include "cards/rank_names.h"
#include "pokermath/cards.h"

namespace {

constexpr int kRanks = 13;
constexpr std::wstring_view kRankLetters = L"23456789TJQKA";  // by rank
constexpr std::wstring_view kFaceLetters = L"A23456789TJQK";  // by face value - 1
constexpr std::wstring_view kSuitLetters = L"cdhs";

// The rank names follow the suit names directly and are indexed by face value, so face value 0 is
// the name before "Ace": an unset card prints "spades of hearts". Hosts show that text.
constexpr int kFaceNames = 3;
constexpr std::wstring_view kNames[] = {L"clubs", L"diamonds", L"hearts", L"spades", L"Ace", L"2",
                                        L"3",     L"4",        L"5",      L"6",      L"7",   L"8",
                                        L"9",     L"10",       L"Jack",   L"Queen",  L"King"};

int IndexOf(std::wstring_view letters, wchar_t letter) {
  const std::size_t place = letters.find(letter);
  return place == std::wstring_view::npos ? -1 : static_cast<int>(place);
}

// Folds ASCII letters only, whatever the host's locale is.
int IndexOfIgnoringCase(std::wstring_view letters, wchar_t letter) {
  const auto lower = [](wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
  };
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (lower(letters[i]) == lower(letter)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace

std::wstring_view pokermath::FaceName(int face_value) {
  return face_value >= 0 && face_value <= 13 ? kNames[kFaceNames + face_value] : L"?";
}

int GetCardRank(int card) { return card % kRanks; }

int GetInverseCardRank(int card) { return kRanks - 1 - card % kRanks; }

bool isSuit(int a, int b) { return a / kRanks == b / kRanks; }

bool isExist(int card, int* cards, int count) {
  for (int i = 0; i < count; ++i) {
    if (cards[i] == card) return true;
  }
  return false;
}

int GetCardRankByName(wchar_t letter) { return IndexOf(kRankLetters, letter); }

bool comparefun(int a, int b) {
  const int rank_a = GetCardRank(a);
  const int rank_b = GetCardRank(b);
  return rank_a != rank_b ? rank_a > rank_b : a > b;
}

CCard::CCard(int card)
    : face_value_(card % kRanks == 12 ? 1 : card % kRanks + 2),
      suit_(static_cast<Suit>(card / kRanks)) {}

CCard::CCard(Suit suit, int faceValue) : face_value_(faceValue), suit_(suit) {}

CCard::CCard(int faceValue, Suit suit) : face_value_(faceValue), suit_(suit) {}

CCard::CCard(wchar_t rankLetter, wchar_t suitLetter) {
  if (const int suit = IndexOf(kSuitLetters, suitLetter); suit >= 0) {
    suit_ = static_cast<Suit>(suit);
  }
  if (const int face = IndexOf(kFaceLetters, rankLetter); face >= 0) face_value_ = face + 1;
}

CCard::CCard(const wchar_t* rankText, const wchar_t* suitText) {
  if (const int suit = IndexOfIgnoringCase(kSuitLetters, suitText[0]); suit >= 0) {
    suit_ = static_cast<Suit>(suit);
  }
  if (const int face = IndexOfIgnoringCase(kFaceLetters, rankText[0]); face >= 0) {
    face_value_ = face + 1;
  }
}

int CCard::GetSuitAsInt() const {
  return suit_ == diamonds || suit_ == hearts || suit_ == spades ? static_cast<int>(suit_) : 0;
}

bool CCard::IsValid() const {
  return face_value_ >= 1 && face_value_ <= 13 && suit_ >= clubs && suit_ <= spades;
}

int CCard::GetInt() const {
  return static_cast<int>(suit_) * kRanks + (face_value_ == 1 ? 12 : face_value_ - 2);
}

CString CCard::GetCardName() const {
  return CString(pokermath::FaceName(face_value_)) + L" of " + CString(kNames[GetSuitAsInt()]);
}

CString CCard::GetName2() const {
  return {face_value_ == 10 ? L'T' : pokermath::FaceName(face_value_)[0],
          kNames[GetSuitAsInt()][0]};
}
