// Cards as people type them.

#include "cards/card_text.h"

#include <cctype>
#include <string>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

constexpr std::string_view kRankLetters = "23456789TJQKA";
constexpr std::string_view kSuitLetters = "cdhs";

bool IsSeparator(char c) {
  return c == ' ' || c == ',' || c == ';' || c == '\t' || c == '\r' || c == '\n';
}

// The piece of the text that an error quotes: up to two characters (three after "10"), as they
// stand, but for control characters and what is no UTF-8.
std::string BadPiece(std::string_view text) {
  const std::size_t wanted = text.starts_with("10") ? 3 : 2;
  constexpr std::size_t kBytes = 16;  // three characters are at most twelve
  std::wstring piece;
  for (const wchar_t c : FromUtf8(text.substr(0, kBytes))) {
    if (piece.size() == wanted || (c < 0x80 && IsSeparator(static_cast<char>(c)))) break;
    piece += c;
  }
  return ToUtf8(OnOneLine(piece));
}

// The card at the start of the text and its length; -1 if there is none.
struct CardAt {
  int card = -1;
  std::size_t length = 0;
};

CardAt ReadCard(std::string_view text) {
  const bool ten = text.starts_with("10");
  const std::size_t length = ten ? 2 : 1;
  if (text.size() < length) return {};
  const char rank_letter =
      ten ? 'T' : static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  const std::size_t rank = kRankLetters.find(rank_letter);
  const SuitAt read = ReadSuitAt(text.substr(length));
  if (rank == std::string_view::npos || read.suit < 0) return {};
  return {read.suit * 13 + static_cast<int>(rank), length + read.length};
}

Result<std::vector<int>> ReadInOrder(std::string_view text) {
  std::vector<int> cards;
  CardSet seen;
  for (std::size_t at = 0; at < text.size();) {
    if (IsSeparator(text[at])) {
      ++at;
      continue;
    }
    const std::string_view rest = text.substr(at);
    const CardAt read = ReadCard(rest);
    if (read.card < 0) {
      std::string error = "'" + BadPiece(rest) + "' is not a card: rank ";
      error.append(kRankLetters).append(" (or 10), suit ").append(kSuitLetters);
      return Error{ErrorCode::kText, std::move(error), -1, -1, at};
    }
    if (seen.Contains(read.card)) {
      return Error{ErrorCode::kCard, CardName(read.card) + " is given twice", -1, read.card, at};
    }
    seen.Add(read.card);
    cards.push_back(read.card);
    at += read.length;
  }
  return cards;
}

}  // namespace

SuitAt ReadSuitAt(std::string_view text) {
  if (text.empty()) return {};
  // U+2660..2667: spades, hearts, diamonds and clubs, first the black sign or the white one and
  // then the other. U+FE0E and U+FE0F ask for the sign as text or as a picture.
  constexpr std::string_view kSigns = "\xE2\x99", kSelectors = "\xEF\xB8";
  constexpr int kSuitOfSign[4] = {3, 2, 1, 0};
  if (text.starts_with(kSigns) && text.size() > 2 && text[2] >= '\xA0' && text[2] <= '\xA7') {
    const std::string_view behind = text.substr(3);
    const bool selected = behind.starts_with(kSelectors) && behind.size() > 2 &&
                          (behind[2] == '\x8E' || behind[2] == '\x8F');
    return {kSuitOfSign[text[2] & 3], std::size_t{selected ? 6u : 3u}};
  }
  const std::size_t suit =
      kSuitLetters.find(static_cast<char>(std::tolower(static_cast<unsigned char>(text[0]))));
  return suit == std::string_view::npos ? SuitAt{} : SuitAt{static_cast<int>(suit), 1};
}

std::string CardName(int card) {
  return {kRankLetters[static_cast<std::size_t>(card % 13)],
          kSuitLetters[static_cast<std::size_t>(card / 13)]};
}

CardsResult ParseCards(std::string_view text) {
  Result<std::vector<int>> read = ReadInOrder(text);
  if (!read) return {{}, read.error().text};
  return {*std::move(read), {}};
}

Result<CardSet> ReadCardSet(std::string_view text) {
  const Result<std::vector<int>> read = ReadInOrder(text);
  if (!read) return read.error();
  return CardSet(*read);
}

}  // namespace pokermath
