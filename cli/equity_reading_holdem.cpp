// Questions about Hold'em and the short deck.

#include <fmt/format.h>

#include "cli/equity_reading.h"
#include "cli/errors.h"
#include "pokermath/cards.h"

namespace pokermath::cli {
namespace {

std::vector<int> ReadHand(std::string_view text) { return ReadCards(text, 2, 2, "a hand has 2"); }

constexpr const char* kOpponents = "two cards, a range, or the word random";

// Two cards are a hand, the word random alone is random hands, everything else is range text. By
// class everything is, random hands too.
void ReadOpponent(const std::string& text, EquityQuestion& question) {
  const std::string pieces = Pieces(text);
  if (pieces.empty()) throw UsageError(std::string("an opponent is needed: ") + kOpponents);
  if (IsRandom(pieces) && !question.by_class) return;
  const CardsResult cards = ParseCards(text);
  RangeResult read = ParseRange(text, {.short_deck = question.game == Game::kShortDeck});
  // What is cards only, but no list of holdings, was meant as a hand.
  if (cards.cards.size() == 2 || (cards.error.empty() && !read.error.empty())) {
    question.opponents = {ReadHand(text)};
    if (question.by_class)
      throw UsageError("--by-class goes with a range: " + Quoted(text) + " is a hand");
    return;
  }
  // A slip in that word.
  if (!read.error.empty() && (pieces[0] | 0x20) == 'r') {
    throw UsageError(Quoted(text) + " is not an opponent: " + kOpponents);
  }
  if (!read.error.empty()) throw UsageError(read.error);
  question.range = std::move(read.range);
  question.range_text = pieces;
}

void RefuseSampling(const EquityWords& words) {
  const char* option = words.players ? "--players" : SamplingOption(words);
  if (option == nullptr) return;
  if (words.by_class) {
    throw UsageError(fmt::format("{} does not go with --by-class, which is exact", option));
  }
  throw UsageError(
      fmt::format("{} goes with the opponent 'random' only: hands and ranges are exact", option));
}

void CheckSampling(const EquityWords& words, const EquityQuestion& question) {
  if (words.exact) {
    throw UsageError(
        "--exact does not go with 'random' in this game: hands, ranges and --by-class are exact");
  }
  if (question.street != Street::kRiver) {
    throw UsageError("--to goes with a hand or a range only: 'random' is played to the river");
  }
}

}  // namespace

void CheckHoldemOptions(const EquityWords& words, const EquityQuestion& question) {
  if (words.dead) {
    throw UsageError(fmt::format("--dead goes with --game omaha and omaha5 only, not with {}",
                                 NameOf(question.game)));
  }
  if (words.svg && !words.by_class) {
    throw UsageError("--svg goes with --by-class: it draws the equity against every class");
  }
}

void ReadHoldemQuestion(const EquityWords& words, EquityQuestion& question) {
  const std::vector<std::string> texts = PlayerTexts(words.hands, HandSize(question.game));
  question.hand = ReadHand(texts[0]);
  if (texts.size() == 1) throw UsageError(std::string("an opponent is needed: ") + kOpponents);
  if (texts.size() > 2) {
    throw UsageError(Quoted(texts[2]) +
                     " is one word too many: there is one opponent; a comma joins the pieces of a "
                     "range (TT+,AQs+), and a board is one word (2c3d4h)");
  }
  question.by_class = words.by_class;
  ReadOpponent(texts[1], question);
  ReadBoard(words, question);
  CheckCardsDiffer(question);
  CheckDeck(question.game == Game::kShortDeck, question.hand);
  for (const std::vector<int>& cards : question.opponents) {
    CheckDeck(question.game == Game::kShortDeck, cards);
  }
  question.exact = !question.opponents.empty() || question.range;
  if (question.exact) {
    RefuseSampling(words);
  } else {
    CheckSampling(words, question);
    ReadNumbers(words, question);
  }
}

}  // namespace pokermath::cli
