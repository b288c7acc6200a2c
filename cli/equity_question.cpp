#include "cli/equity_question.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/equity_reading.h"
#include "cli/errors.h"
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
    {"--game", &EquityWords::game},       {"--board", &EquityWords::board},
    {"--dead", &EquityWords::dead},       {"--to", &EquityWords::to},
    {"--players", &EquityWords::players}, {"--trials", &EquityWords::trials},
    {"--seed", &EquityWords::seed},       {"--time-ms", &EquityWords::time_ms}};
constexpr std::string_view kExact = "--exact";  // the one that has no value

Option OptionByName(std::string_view name) {
  std::string accepted;
  for (const NamedOption& known : kOptions) {
    if (known.name == name) return known.option;
    accepted += (accepted.empty() ? "" : ", ") + std::string(known.name);
  }
  throw UsageError(Quoted(name) + " is not an option of a question: " + accepted + ", " +
                   std::string(kExact));
}

EquityQuestion QuestionOfGame(const EquityWords& words) {
  EquityQuestion question;
  question.game = ReadGame(words.game.value_or("holdem"), kAllGames);
  if (IsOmaha(question.game)) {
    CheckOmahaOptions(words, question);
  } else {
    CheckHoldemOptions(words, question);
  }
  return question;
}

}  // namespace

void CheckWordBehind(std::string_view option, std::string_view cards, std::string_view word) {
  const bool is_board = option == "--board";
  if (!is_board && option != "--dead") return;
  if (ParseCards(word).cards.size() != 1) return;
  throw UsageError(fmt::format(
      "{} stands behind {} {}: {} one word, like 2c3d4h, and a hand behind it is one too",
      Quoted(word), option, cards, is_board ? "a board is" : "dead cards are"));
}

EquityWords SplitLine(std::string_view line, const EquityWords& defaults) {
  EquityWords words;
  for (std::string_view word = NextWord(line); !word.empty(); word = NextWord(line)) {
    if (!word.starts_with("--")) {
      words.hands.emplace_back(word);
      continue;
    }
    if (word == kExact) {
      words.exact = true;
      continue;
    }
    const std::size_t equals = word.find('=');
    const std::string name(word.substr(0, equals));
    if (name == kExact) throw UsageError(name + " has no value");
    std::optional<std::string>& option = words.*OptionByName(name);
    if (option) throw UsageError(name + " is given twice");
    option = equals == word.npos ? NextWord(line) : word.substr(equals + 1);
    if (option->empty()) throw UsageError(name + " needs a value");
    std::string_view rest = line;
    CheckWordBehind(name, *option, NextWord(rest));
  }
  words.exact = words.exact || defaults.exact;
  for (const NamedOption& known : kOptions) {
    if (!(words.*known.option)) words.*known.option = defaults.*known.option;
  }
  return words;
}

void CheckOptions(const EquityWords& words) {
  EquityQuestion question = QuestionOfGame(words);
  ReadBoard(words, question);
  ReadNumbers(words, question);
}

EquityQuestion ReadQuestion(const EquityWords& words) {
  EquityQuestion question = QuestionOfGame(words);
  if (IsOmaha(question.game)) {
    ReadOmahaQuestion(words, question);
  } else {
    ReadHoldemQuestion(words, question);
  }
  return question;
}

}  // namespace pokermath::cli
