#include "pages/player_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <span>
#include <utility>

#include "pages/card_words.h"
#include "pages/colours.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

constexpr std::string_view kBetweenPieces = " \t\r\n,;";

bool IsRandom(std::string_view piece) {
  return std::ranges::equal(piece, std::string_view("random"),
                            [](char a, char b) { return (a | 0x20) == b; });
}

// A slip in the word random.
bool IsLikeRandom(std::string_view text) {
  return (text[0] | 0x20) == 'r' &&
         std::ranges::all_of(text, [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
}

// How many words at the front are one player's.
std::size_t WordsOfPlayer(std::span<const std::string> words, std::size_t hand_size) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    text += (i == 0 ? "" : " ") + words[i];
    const CardsResult read = ParseCards(text);
    if (!read.error.empty() || read.cards.empty() || read.cards.size() > hand_size) return 1;
    if (read.cards.size() == hand_size) return i + 1;
  }
  return 1;
}

// Ranges that a thread has read: a file of questions words the same ones again and again.
class KnownPlayers {
 public:
  static KnownPlayers& OfThread() {
    thread_local KnownPlayers known;
    return known;
  }

  const PlayerReading* Find(Game game, std::string_view text) const {
    const auto& of_game = by_text_[static_cast<std::size_t>(game)];
    const auto found = of_game.find(text);
    return found == of_game.end() ? nullptr : &found->second;
  }

  /// Keeps what is small, and gives it back.
  PlayerReading Keep(Game game, std::string_view text, PlayerReading player) {
    constexpr std::size_t kMostKept = 200;  // of 20 KB
    constexpr std::size_t kLongest = 1000;
    if (HandSize(game) > 2 || text.size() > kLongest) return player;
    auto& of_game = by_text_[static_cast<std::size_t>(game)];
    if (of_game.size() >= kMostKept) of_game.clear();
    of_game.emplace(text, player);
    return player;
  }

 private:
  std::array<std::map<std::string, PlayerReading, std::less<>>, kGames.size()> by_text_;
};

}  // namespace

std::string Pieces(std::string_view text) {
  std::string pieces;
  for (const char c : text) {
    if (kBetweenPieces.find(c) == kBetweenPieces.npos) {
      pieces += c;
    } else if (!pieces.empty() && pieces.back() != ',') {
      pieces += ',';
    }
  }
  if (!pieces.empty() && pieces.back() == ',') pieces.pop_back();
  return pieces;
}

std::vector<std::string> PlayerTexts(const std::vector<std::string>& words, Game game) {
  std::vector<std::string> texts;
  for (std::span<const std::string> rest(words); !rest.empty();) {
    const std::size_t count = WordsOfPlayer(rest, HandSize(game));
    texts.push_back(rest[0]);
    for (std::size_t i = 1; i < count; ++i) texts.back() += " " + rest[i];
    rest = rest.subspan(count);
  }
  return texts;
}

PlayerReading ReadPlayer(std::string_view text, Game game, std::string_view field) {
  constexpr const char* kPlayer = "a player is a hand, a range or the word random";
  const std::size_t size = HandSize(game);
  const CardsResult cards = ParseCards(text);
  if (cards.cards.size() == size) {
    return {HandRange::Of(game, CardSet(cards.cards)), CardsText(cards.cards), {}};
  }
  KnownPlayers& known = KnownPlayers::OfThread();
  if (const PlayerReading* player = known.Find(game, text)) return *player;
  std::string pieces = Pieces(text);
  if (pieces.empty()) Refuse(fmt::format("{}: {}", Quoted(text), kPlayer), field);
  if (IsRandom(pieces)) return known.Keep(game, text, {HandRange::Every(game), "random", {}});
  Result<RangeReading> read = ReadRange(game, text);
  if (read) return known.Keep(game, text, {read->range, std::move(pieces), read->warnings});
  // What is cards only, but no list of holdings, was meant as a hand.
  const bool is_list = pieces.find(',') != pieces.npos && cards.cards.size() > size;
  if (cards.error.empty() && !is_list) {
    Refuse(fmt::format("{}: a hand of {} has {}", CountOfCards(text, cards.cards.size()),
                       NameOf(game), size),
           field);
  }
  if (IsLikeRandom(pieces)) Refuse(fmt::format("{}: {}", Quoted(text), kPlayer), field);
  Refuse(read.error().text, field);
}

}  // namespace pokermath
