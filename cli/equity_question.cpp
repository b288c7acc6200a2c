#include "cli/equity_question.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>

#include "cli/errors.h"
#include "cli/game.h"
#include "cli/number_text.h"
#include "pokermath/cards.h"

namespace pokermath::cli {
namespace {

constexpr std::string_view kBlanks = " \t\r";

// Cuts the next word off the front of a text; empty at its end.
std::string_view NextWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

using Option = std::optional<std::string> EquityWords::*;

struct NamedOption {
  std::string_view name;
  Option option;
};
constexpr NamedOption kOptions[] = {
    {"--game", &EquityWords::game},     {"--board", &EquityWords::board},
    {"--to", &EquityWords::to},         {"--players", &EquityWords::players},
    {"--trials", &EquityWords::trials}, {"--seed", &EquityWords::seed}};

Option OptionByName(std::string_view name) {
  std::string accepted;
  for (const NamedOption& known : kOptions) {
    if (known.name == name) return known.option;
    accepted += (accepted.empty() ? "" : ", ") + std::string(known.name);
  }
  throw UsageError(Quoted(name) + " is not an option of a question: " + accepted);
}

std::vector<int> ReadCards(std::string_view text) {
  CardsResult read = ParseCards(text);
  if (!read.error.empty()) throw UsageError(read.error);
  return std::move(read.cards);
}

std::string CountOfCards(std::string_view text, std::size_t count) {
  return fmt::format("{} has {} {}", Quoted(text), count, count == 1 ? "card" : "cards");
}

std::array<int, 2> ReadHand(std::string_view text) {
  const std::vector<int> cards = ReadCards(text);
  if (cards.size() != 2) throw UsageError(CountOfCards(text, cards.size()) + ": a hand has 2");
  return {cards[0], cards[1]};
}

constexpr const char* kOpponents = "two cards, a range, or the word random";

struct TwoTexts {
  std::string hand;
  std::string opponent;
};

// The first word is the hand, the others are the opponent; a hand of which the first word holds one
// card goes on in the second: Ah Kd 7s 7c.
TwoTexts HandAndOpponent(const std::vector<std::string>& words) {
  TwoTexts texts;
  bool hand_is_open = true;
  for (const std::string& word : words) {
    std::string& text = hand_is_open ? texts.hand : texts.opponent;
    text += (text.empty() ? "" : " ") + word;
    hand_is_open = hand_is_open && ParseCards(text).cards.size() == 1;
  }
  if (texts.opponent.empty()) {
    ReadHand(texts.hand);
    throw UsageError(std::string("an opponent is needed: ") + kOpponents);
  }
  return texts;
}

// The pieces of a list with a comma between them.
std::string Pieces(std::string_view text) {
  std::string pieces;
  for (const char c : text) {
    const bool between = kBlanks.find(c) != kBlanks.npos || c == ',' || c == ';' || c == '\n';
    if (!between) {
      pieces += c;
    } else if (!pieces.empty() && pieces.back() != ',') {
      pieces += ',';
    }
  }
  if (!pieces.empty() && pieces.back() == ',') pieces.pop_back();
  return pieces;
}

bool IsRandom(std::string_view word) {
  return std::ranges::equal(word, std::string_view("random"),
                            [](char a, char b) { return (a | 0x20) == b; });
}

// Two cards are a hand, the word random alone is random hands, everything else is range text. By
// class everything is, random hands too.
void ReadOpponent(const std::string& text, EquityQuestion& question) {
  const std::string pieces = Pieces(text);
  if (pieces.empty()) throw UsageError(std::string("an opponent is needed: ") + kOpponents);
  if (IsRandom(pieces) && !question.by_class) return;
  const CardsResult cards = ParseCards(text);
  RangeResult read = ParseRange(text, {.short_deck = question.short_deck});
  // What is cards only, but no list of holdings, was meant as a hand.
  if (cards.cards.size() == 2 || (cards.error.empty() && !read.error.empty())) {
    question.opponent = ReadHand(text);
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

std::vector<int> ReadBoard(std::string_view text, Street street) {
  std::vector<int> cards = ReadCards(text);
  if (cards.size() > static_cast<std::size_t>(street)) {
    throw UsageError(fmt::format("{}: a board has up to {}{}", CountOfCards(text, cards.size()),
                                 static_cast<int>(street),
                                 street == Street::kTurn   ? " with --to turn"
                                 : street == Street::kFlop ? " with --to flop"
                                                           : ""));
  }
  return cards;
}

Street ReadStreet(std::string_view text) {
  if (text == "flop") return Street::kFlop;
  if (text == "turn") return Street::kTurn;
  if (text == "river") return Street::kRiver;
  throw UsageError("--to " + Quoted(text) + " is not known: flop, turn or river");
}

template <typename Number>
Number ReadNumber(const char* option, std::string_view text, Number low, Number high) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size() || number < low || number > high) {
    throw UsageError(fmt::format("{} {} is not accepted: a whole number from {} to {}", option,
                                 Quoted(text), low, high));
  }
  return number;
}

void CheckCardsDiffer(const EquityQuestion& question) {
  std::uint64_t seen = 0;
  const auto check = [&seen](const auto& cards) {
    for (const int card : cards) {
      if ((seen >> card & 1) != 0) throw UsageError(CardName(card) + " is given twice");
      seen |= std::uint64_t{1} << card;
    }
  };
  check(question.hand);
  if (question.opponent) check(*question.opponent);
  check(question.board);
}

void ReadNumbers(const EquityWords& words, EquityQuestion& question) {
  if (words.players) question.players = ReadNumber("--players", *words.players, 2, 10);
  if (words.trials) {
    constexpr std::int64_t kMostTrials = 1'000'000'000'000;
    question.trials = ReadNumber("--trials", *words.trials, std::int64_t{1}, kMostTrials);
  }
  if (words.seed) {
    question.seed = ReadNumber("--seed", *words.seed, std::uint64_t{0},
                               std::numeric_limits<std::uint64_t>::max());
  }
}

void ReadSampling(const EquityWords& words, EquityQuestion& question) {
  if (question.street != Street::kRiver) {
    throw UsageError("--to goes with a hand or a range only: 'random' is played to the river");
  }
  ReadNumbers(words, question);
}

void RefuseSampling(const EquityWords& words) {
  const char* option = words.players  ? "--players"
                       : words.trials ? "--trials"
                       : words.seed   ? "--seed"
                                      : nullptr;
  if (option == nullptr) return;
  if (words.by_class) {
    throw UsageError(fmt::format("{} does not go with --by-class, which is exact", option));
  }
  throw UsageError(
      fmt::format("{} goes with the opponent 'random' only: hands and ranges are exact", option));
}

}  // namespace

EquityWords SplitLine(std::string_view line, const EquityWords& defaults) {
  EquityWords words;
  for (std::string_view word = NextWord(line); !word.empty(); word = NextWord(line)) {
    if (!word.starts_with("--")) {
      words.hands.emplace_back(word);
      continue;
    }
    const std::size_t equals = word.find('=');
    const std::string name(word.substr(0, equals));
    std::optional<std::string>& option = words.*OptionByName(name);
    if (option) throw UsageError(name + " is given twice");
    option = equals == word.npos ? NextWord(line) : word.substr(equals + 1);
    if (option->empty()) throw UsageError(name + " needs a value");
  }
  for (const NamedOption& known : kOptions) {
    if (!(words.*known.option)) words.*known.option = defaults.*known.option;
  }
  return words;
}

void CheckOptions(const EquityWords& words) {
  EquityQuestion question;
  question.short_deck = IsShortDeck(words.game.value_or("holdem"));
  if (words.to) question.street = ReadStreet(*words.to);
  if (words.board) CheckDeck(question.short_deck, ReadBoard(*words.board, question.street));
  ReadNumbers(words, question);
}

EquityQuestion ReadQuestion(const EquityWords& words) {
  const auto [hand, opponent] = HandAndOpponent(words.hands);
  EquityQuestion question;
  question.short_deck = IsShortDeck(words.game.value_or("holdem"));
  question.hand = ReadHand(hand);
  question.by_class = words.by_class;
  ReadOpponent(opponent, question);
  if (words.to) question.street = ReadStreet(*words.to);
  if (words.board) question.board = ReadBoard(*words.board, question.street);
  CheckCardsDiffer(question);
  CheckDeck(question.short_deck, question.hand);
  if (question.opponent) CheckDeck(question.short_deck, *question.opponent);
  CheckDeck(question.short_deck, question.board);
  if (question.IsExact()) {
    RefuseSampling(words);
  } else {
    ReadSampling(words, question);
  }
  return question;
}

}  // namespace pokermath::cli
