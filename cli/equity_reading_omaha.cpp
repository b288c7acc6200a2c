// Questions about Omaha with hands of four or five cards.
//
// Several hands are counted exactly. So is one random hand, but for the start: there it is sampled
// unless the exact count, which takes its time, is asked for. More random hands are sampled.

#include <fmt/format.h>

#include "cli/equity_reading.h"
#include "cli/errors.h"
#include "pokermath/cards.h"

namespace pokermath::cli {
namespace {

constexpr const char* kOpponents = "an Omaha opponent is a hand or the word random";

// The words of each hand; a hand goes on in the next word as long as it is short of cards.
std::vector<std::string> HandTexts(const std::vector<std::string>& words, std::size_t hand_size) {
  std::vector<std::string> texts;
  bool hand_is_open = false;
  for (const std::string& word : words) {
    if (hand_is_open && !IsRandom(Pieces(word))) {
      texts.back() += " " + word;
    } else {
      texts.push_back(word);
    }
    const CardsResult read = ParseCards(texts.back());
    hand_is_open = read.error.empty() && read.cards.size() < hand_size;
  }
  return texts;
}

std::vector<int> ReadHand(const std::string& text, Game game) {
  return ReadCards(text, HandSize(game), HandSize(game),
                   fmt::format("a hand of {} has {}", NameOf(game), HandSize(game)));
}

std::vector<int> ReadOpponent(const std::string& text, Game game) {
  const std::string pieces = Pieces(text);
  if (IsRandom(pieces)) {
    throw UsageError(
        "'random' does not go with other opponents: --players sets how many there are");
  }
  if (!pieces.empty() && !ParseCards(text).error.empty()) {
    // A slip in the word random.
    const bool is_word = (pieces[0] | 0x20) == 'r';
    const bool is_range = ParseRange(text).error.empty();
    if (is_word || is_range) {
      throw UsageError(
          fmt::format("{} is {}: {}", Quoted(text), is_range ? "a range" : "no hand", kOpponents));
    }
  }
  return ReadHand(text, game);
}

void ReadHands(const EquityWords& words, EquityQuestion& question) {
  const std::vector<std::string> texts = HandTexts(words.hands, HandSize(question.game));
  question.hand = ReadHand(texts[0], question.game);
  if (texts.size() == 1) throw UsageError(std::string("an opponent is needed: ") + kOpponents);
  if (texts.size() == 2 && IsRandom(Pieces(texts[1]))) return;
  for (std::size_t i = 1; i < texts.size(); ++i) {
    question.opponents.push_back(ReadOpponent(texts[i], question.game));
  }
  if (texts.size() > SharedTally::kMostHands) {
    throw UsageError(fmt::format("{} hands are too many: up to {} can be compared", texts.size(),
                                 SharedTally::kMostHands));
  }
}

void CheckDeckSuffices(const EquityQuestion& question) {
  const std::size_t hands = question.opponents.empty() ? static_cast<std::size_t>(question.players)
                                                       : question.opponents.size() + 1;
  const auto board = static_cast<std::size_t>(question.street);
  const std::size_t needed = hands * HandSize(question.game) + board + question.dead.size();
  if (needed <= 52) return;
  std::string text =
      fmt::format("{} hands of {} and a board of {}", hands, HandSize(question.game), board);
  if (!question.dead.empty()) text += fmt::format(" beside {} dead", question.dead.size());
  throw UsageError(fmt::format("{} need {} cards: the deck has 52", text, needed));
}

void CheckHands(const EquityWords& words, const EquityQuestion& question) {
  const char* option = words.players ? "--players" : SamplingOption(words);
  if (option != nullptr) {
    throw UsageError(
        fmt::format("{} goes with the opponent 'random' only: hands are exact", option));
  }
  if (question.street != Street::kRiver) {
    throw UsageError("--to goes with the opponent 'random' only: hands are compared on the river");
  }
}

void CheckExactRandom(const EquityWords& words) {
  const char* option = SamplingOption(words);
  if (option == nullptr) return;
  throw UsageError(fmt::format(
      "{} does not go with {}", option,
      words.exact ? "--exact" : "'random' on a board, where one random hand is counted exactly"));
}

void CheckSampled(const EquityWords& words, const EquityQuestion& question) {
  if (words.exact) {
    throw UsageError(
        fmt::format("--exact goes with one random hand, not with the {} of --players {}",
                    question.players - 1, question.players));
  }
  if (question.street != Street::kRiver) {
    throw UsageError(
        "--to goes with exact answers only: what is sampled is played to the river; before the "
        "flop --exact counts one random hand");
  }
}

}  // namespace

void CheckOmahaOptions(const EquityWords& words, const EquityQuestion&) {
  const char* option = words.by_class ? "--by-class" : words.svg ? "--svg" : nullptr;
  if (option == nullptr) return;
  throw UsageError(fmt::format("{} goes with holdem and shortdeck only: {}", option, kOpponents));
}

void ReadOmahaQuestion(const EquityWords& words, EquityQuestion& question) {
  ReadHands(words, question);
  ReadBoard(words, question);
  CheckCardsDiffer(question);
  ReadNumbers(words, question);
  CheckDeckSuffices(question);
  const bool one_random = question.opponents.empty() && question.players == 2;
  if (!question.opponents.empty()) {
    question.exact = true;
    CheckHands(words, question);
  } else if (one_random && (words.exact || !question.board.empty())) {
    question.exact = true;
    CheckExactRandom(words);
  } else {
    CheckSampled(words, question);
  }
}

}  // namespace pokermath::cli
