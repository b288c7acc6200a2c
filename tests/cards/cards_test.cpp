#include "pokermath/cards.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "tests/cards/dealer.h"

namespace pokermath {
namespace {

TEST(CardCodes, ComeApartAndBack) {
  const std::wstring ranks = L"23456789TJQKA";
  const std::wstring suits = L"cdhs";
  for (int card = 0; card < 52; ++card) {
    const CCard built(card);
    const std::wstring name = {ranks[static_cast<std::size_t>(card % 13)],
                               suits[static_cast<std::size_t>(card / 13)]};
    EXPECT_EQ(built.GetInt(), card);
    EXPECT_EQ(built.GetName2(), name);
    EXPECT_EQ(built.GetSuit(), card / 13);
    EXPECT_EQ(built.GetSuitAsInt(), card / 13);
    EXPECT_EQ(built.GetRank(), card % 13 == 12 ? 1 : card % 13 + 2);
    EXPECT_EQ(CCard(name[0], name[1]).GetInt(), card);
    EXPECT_EQ(CCard(built.GetRank(), built.GetSuit()).GetInt(), card);
    EXPECT_EQ(CCard(built.GetSuit(), built.GetRank()).GetInt(), card);
    EXPECT_EQ(CardName(card), std::string(name.begin(), name.end()));
    EXPECT_EQ(GetCardRank(card), GetCardRankByName(name[0]));
    EXPECT_EQ(GetCardRank(card) + GetInverseCardRank(card), 12);
    for (int other = 0; other < 52; ++other) {
      EXPECT_EQ(isSuit(card, other), card / 13 == other / 13);
      EXPECT_EQ(built == CCard(other), card % 13 == other % 13);
      EXPECT_EQ(built != CCard(other), card % 13 != other % 13);
      EXPECT_EQ(built < CCard(other), card % 13 < other % 13);
      EXPECT_EQ(built > CCard(other), card % 13 > other % 13);
    }
  }
  for (const wchar_t letter : {L'a', L'1', L'\0'}) EXPECT_EQ(GetCardRankByName(letter), -1);
}

TEST(CardCodes, SortFromAceOfSpadesToDeuceOfClubs) {
  std::vector<int> cards = Dealer(1).Deal(52);
  std::sort(cards.begin(), cards.end(), comparefun);
  for (int i = 0; i < 52; ++i) {
    EXPECT_EQ(cards[static_cast<std::size_t>(i)], (3 - i % 4) * 13 + 12 - i / 4);
  }
  EXPECT_FALSE(comparefun(7, 7));
}

TEST(CardCodes, AreFoundOnlyAmongTheFirst) {
  int cards[] = {5, 9, 51};
  EXPECT_TRUE(isExist(51, cards, 3));
  EXPECT_FALSE(isExist(51, cards, 2));
  EXPECT_FALSE(isExist(5, cards, 0));
  EXPECT_FALSE(isExist(5, nullptr, -1));
}

TEST(CCard, NamesAndLetters) {
  EXPECT_EQ(CCard(51).GetCardName(), L"Ace of spades");
  EXPECT_EQ(CCard(10, hearts).GetCardName(), L"10 of hearts");
  EXPECT_EQ(CCard(clubs, 12).GetCardName(), L"Queen of clubs");
  EXPECT_EQ(CCard().GetCardName(), L"spades of hearts");
  EXPECT_EQ(CCard(static_cast<Suit>(7), 2).GetSuitAsInt(), 0);

  EXPECT_EQ(CCard(L"t", L"H").GetName2(), L"Th");
  EXPECT_EQ(CCard(L"aces", L"Spades").GetName2(), L"As") << "only the first characters count";
  // A letter that is none leaves its field as in an unset card; the other field is read.
  EXPECT_EQ(CCard(L't', L's').GetCardName(), L"spades of spades");
  EXPECT_EQ(CCard(L'T', L'S').GetCardName(), L"10 of hearts");
  EXPECT_EQ(CCard(L"", L"").GetCardName(), L"spades of hearts");
}

TEST(CDeck, KeepsCardsInOrderAndTwice) {
  CDeck deck;
  EXPECT_EQ(deck.display2(), L"");
  for (const int card : {38, 24, 5, 38}) deck.AddCard(card);
  const CDeck copy = deck;
  deck.DeleteCards();
  EXPECT_EQ(deck.GetTotalCards(), 0);
  EXPECT_EQ(copy.GetTotalCards(), 4);
  EXPECT_EQ(copy.display2(), L"Ah Kd 7c Ah ");
}

TEST(CardText, EveryWrittenDeckReadsBack) {
  Dealer dealer(2);
  SCOPED_TRACE(dealer.Trace());
  const std::string separators[] = {"", " ", ",", " , ", ";", "\t\n"};
  const std::string_view signs[2][4] = {{"♣", "♦", "♥", "♠"}, {"♧", "♢", "♡", "♤"}};
  const std::string_view selectors[] = {"", "", "\uFE0E", "\uFE0F"};
  for (int trial = 0; trial < 200; ++trial) {
    const std::vector<int> cards = dealer.Deal(dealer.Below(53));
    std::string text;
    for (const int card : cards) {
      std::string name = CardName(card);
      if (name[0] == 'T' && dealer.Below(2) == 0) name.replace(0, 1, "10");
      for (char& letter : name) {
        letter =
            static_cast<char>(dealer.Below(2) == 0 ? std::tolower(letter) : std::toupper(letter));
      }
      if (dealer.Below(3) == 0) {
        name.pop_back();
        name += signs[dealer.Below(2)][card / 13];
        name += selectors[dealer.Below(4)];
      }
      text += name + separators[dealer.Below(6)];
    }
    const CardsResult read = ParseCards(text);
    EXPECT_EQ(read.cards, cards) << text;
    EXPECT_EQ(read.error, "") << text;
    EXPECT_EQ(ReadCardSet(text).value(), CardSet(cards)) << text;
  }
}

TEST(CardText, AnErrorOfASetSaysWhereAndWhichCard) {
  const Result<CardSet> no_card = ReadCardSet(" A\u2665,10x");
  ASSERT_FALSE(no_card);
  EXPECT_EQ(no_card.error().code, ErrorCode::kText);
  EXPECT_EQ(no_card.error().position, 6u);
  EXPECT_EQ(no_card.error().card, -1);
  EXPECT_EQ(no_card.error().text, ParseCards("10x").error);
  const Result<CardSet> twice = ReadCardSet("As ks, AS");
  ASSERT_FALSE(twice);
  EXPECT_EQ(twice.error().code, ErrorCode::kCard);
  EXPECT_EQ(twice.error().position, 7u);
  EXPECT_EQ(twice.error().card, 51);
}

TEST(CardText, AnErrorNamesTheBadPieceOnOneLine) {
  const std::string_view cases[][2] = {
      {"AhXd", "'Xd'"},  {"Ah 10x Kd", "'10x'"},  {"1h", "'1h'"},     {"Ah K d", "'K'"},
      {"10", "'10'"},    {"Ah,hA", "'hA'"},       {"AhKd ah", "Ah"},  {"10sTS", "Ts"},
      {"Ah-Kd", "'-K'"}, {"Ah\x01\x7F", "'?\?'"}, {"A\nh", "'A'"},    {"A♪", "'A♪'"},
      {"A♥♥", "'♥'"},    {"A\xE2\x99", "'A"},     {"A♥\xEF\xB8", "'"}};
  for (const auto& [text, piece] : cases) {
    const CardsResult read = ParseCards(text);
    EXPECT_TRUE(read.cards.empty()) << text;
    EXPECT_NE(read.error.find(piece), std::string::npos) << text << ": " << read.error;
    EXPECT_EQ(read.error.find('\n'), std::string::npos) << text;
  }
  for (const char byte : {'z', '\0', '\x80', '\xC3'}) {
    const std::string error = ParseCards(std::string(100'000, byte)).error;
    EXPECT_TRUE(!error.empty() && error.size() < 100) << error.substr(0, 100);
  }
}

}  // namespace
}  // namespace pokermath
