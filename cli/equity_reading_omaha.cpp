// Questions about Omaha with hands of four or five cards.
//
// Several hands are counted exactly. So are a range and one random hand, but for the start: there
// they are sampled unless the exact count, which takes its time, is asked for. More random hands
// are sampled.

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "cli/equity_reading.h"
#include "cli/errors.h"
#include "pokermath/cards.h"

namespace pokermath::cli {
namespace {

constexpr const char* kOpponents = "an Omaha opponent is a hand, a range or the word random";

std::vector<int> ReadHand(const std::string& text, Game game) {
  return ReadCards(text, HandSize(game), HandSize(game),
                   fmt::format("a hand of {} has {}", NameOf(game), HandSize(game)));
}

// Cards between commas are a list of hands, unless they are too few for one.
bool IsMeantAsHand(const CardsResult& as_cards, std::string_view text, std::size_t hand_size) {
  return as_cards.error.empty() &&
         (as_cards.cards.size() <= hand_size || text.find_first_of(",;") == text.npos);
}

// A slip in the word random.
bool IsLikeRandom(std::string_view text) {
  return (text[0] | 0x20) == 'r' &&
         std::ranges::all_of(text, [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
}

// One hand is a hand; so is what is cards only but no list of hands: it was meant as one.
template <int cards>
void ReadOpponent(const std::string& text, EquityQuestion& question) {
  const std::string pieces = Pieces(text);
  const CardsResult as_cards = ParseCards(text);
  const bool is_hand = as_cards.error.empty() && as_cards.cards.size() == cards;
  OmahaRangeResult<cards> read;
  if (!is_hand && !pieces.empty()) read = ParseOmahaRange<cards>(text);
  const bool only_cards = IsMeantAsHand(as_cards, text, cards) || IsHighLow(question.game);
  if (is_hand || pieces.empty() || (only_cards && !read.error.empty())) {
    question.opponents.push_back(ReadHand(text, question.game));
    return;
  }
  if (!read.error.empty() && IsLikeRandom(pieces)) {
    throw UsageError(Quoted(text) + " is no hand: " + kOpponents);
  }
  if (!read.error.empty()) throw UsageError(read.error);
  if (IsHighLow(question.game)) {
    throw UsageError(Quoted(text) + " is a range: in Hi/Lo the opponents are hands or random");
  }
  question.omaha_range = std::move(read.range);
  question.range_text = pieces;
}

void ReadOpponents(const std::vector<std::string>& texts, EquityQuestion& question) {
  for (const std::string& text : texts) {
    if (IsRandom(Pieces(text))) {
      throw UsageError(
          "'random' does not go with other opponents: --players sets how many there are");
    }
    if (HandSize(question.game) == 5) {
      ReadOpponent<5>(text, question);
    } else {
      ReadOpponent<4>(text, question);
    }
    if (question.omaha_range && texts.size() > 1) {
      throw UsageError(Quoted(text) +
                       " is a range, which is the only opponent: commas join its pieces");
    }
  }
}

void ReadHands(const EquityWords& words, EquityQuestion& question) {
  const std::vector<std::string> texts = PlayerTexts(words.hands, HandSize(question.game));
  question.hand = ReadHand(texts[0], question.game);
  if (texts.size() == 1) throw UsageError(std::string("an opponent is needed: ") + kOpponents);
  if (texts.size() == 2 && IsRandom(Pieces(texts[1]))) return;
  ReadOpponents({texts.begin() + 1, texts.end()}, question);
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
    throw UsageError(
        fmt::format("--to goes with {}: hands against each other are compared on the river",
                    IsHighLow(question.game) ? "'random'" : "a range or 'random'"));
  }
}

void CheckExact(const EquityWords& words, const EquityQuestion& question) {
  const char* option = SamplingOption(words);
  if (option == nullptr) return;
  std::string other = "--exact";
  if (!words.exact && question.board.empty()) {
    other = "--to " + *words.to + ", where a range is counted exactly";
  } else if (!words.exact) {
    other = question.HasRange() ? "a range on a board, where it is counted exactly"
                                : "'random' on a board, where one random hand is counted exactly";
  }
  throw UsageError(fmt::format("{} does not go with {}", option, other));
}

bool IsBlocked(const EquityQuestion& question) {
  std::vector<int> known = question.hand;
  known.insert(known.end(), question.board.begin(), question.board.end());
  known.insert(known.end(), question.dead.begin(), question.dead.end());
  return std::visit(
      [&known](const auto& range) {
        std::decay_t<decltype(range)> left;
        range.Exclude(known, left);
        return left.Empty();
      },
      *question.omaha_range);
}

// To an earlier street than the river the count is fast from the start, too.
void CheckRange(const EquityWords& words, EquityQuestion& question) {
  if (words.players) {
    throw UsageError("--players goes with the opponent 'random' only: a range is one player's");
  }
  question.exact = words.exact || !question.board.empty() || question.street != Street::kRiver;
  if (question.exact) CheckExact(words, question);
  // A range of which nothing is left cannot be sampled, and has not to be.
  question.exact = question.exact || IsBlocked(question);
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
  throw UsageError(fmt::format("{} goes with holdem and shortdeck only", option));
}

void ReadOmahaQuestion(const EquityWords& words, EquityQuestion& question) {
  ReadHands(words, question);
  ReadBoard(words, question);
  CheckCardsDiffer(question);
  ReadNumbers(words, question);
  CheckDeckSuffices(question);
  const bool one_random = question.opponents.empty() && question.players == 2;
  if (question.omaha_range) {
    CheckRange(words, question);
  } else if (!question.opponents.empty()) {
    question.exact = true;
    CheckHands(words, question);
  } else if (one_random && (words.exact || !question.board.empty())) {
    question.exact = true;
    CheckExact(words, question);
  } else {
    CheckSampled(words, question);
  }
}

}  // namespace pokermath::cli
