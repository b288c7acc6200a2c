#include "pages/equity_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/number_text.h"
#include "pages/player_words.h"
#include "platform/decimal.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::int64_t kMostTrials = 1'000'000'000'000;

// Cuts the next word off the front of a text; empty at its end.
std::string_view NextWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

struct NamedOption {
  std::string_view name;
  std::optional<std::string> EquityWords::*option;
};
constexpr NamedOption kOptions[] = {{"--game", &EquityWords::game},
                                    {"--board", &EquityWords::board},
                                    {"--dead", &EquityWords::dead},
                                    {"--to", &EquityWords::to},
                                    {"--standard-error", &EquityWords::standard_error},
                                    {"--trials", &EquityWords::trials},
                                    {"--time-ms", &EquityWords::time_ms},
                                    {"--seed", &EquityWords::seed}};
constexpr std::string_view kFolded = "--folded";  // the one that may be there more than once

struct NamedFlag {
  std::string_view name;
  bool EquityWords::*flag;
};
constexpr NamedFlag kFlags[] = {{"--exact", &EquityWords::exact},
                                {"--sampled", &EquityWords::sampled}};

[[noreturn]] void RefuseOption(std::string_view name) {
  if (name == "--players") {
    Refuse("--players is no option: write 'random' once for each opponent");
  }
  std::string accepted;
  for (const NamedOption& known : kOptions) accepted += std::string(known.name) + ", ";
  Refuse(fmt::format("{} is not an option of a question: {}--folded, --exact, --sampled",
                     Quoted(name), accepted));
}

// Sets a flag of that name; false if it is none.
bool SetFlag(std::string_view word, EquityWords& words) {
  for (const NamedFlag& known : kFlags) {
    if (word == known.name) return words.*known.flag = true;
    if (word.starts_with(known.name) && word[known.name.size()] == '=') {
      Refuse(std::string(known.name) + " has no value");
    }
  }
  return false;
}

void SetOption(std::string_view name, std::string_view value, EquityWords& words) {
  if (value.empty()) Refuse(std::string(name) + " needs a value");
  if (name == kFolded) {
    words.folded.emplace_back(value);
    return;
  }
  const auto known = std::ranges::find(kOptions, name, &NamedOption::name);
  std::optional<std::string>& option = words.*known->option;
  if (option) Refuse(std::string(name) + " is given twice");
  option = value;
}

Game ReadGame(const std::string& name, const std::string& text) {
  if (const std::optional<Game> game = FindGame(text)) return *game;
  Refuse(fmt::format("{} {} is not known: {}", name, Quoted(text), GameNames()), "game");
}

Street ReadStreet(const std::string& name, std::string_view text) {
  const auto found = std::ranges::find(kStreetNames, text);
  if (found == kStreetNames.end()) {
    Refuse(name + " " + Quoted(text) + " is not known: " + OneOf(kStreetNames), "to");
  }
  return static_cast<Street>(static_cast<int>(Street::kFlop) + (found - kStreetNames.begin()));
}

// A share of the pot, or with its sign a percentage.
double ReadStandardError(const std::string& name, std::string_view text) {
  const bool percent = text.ends_with('%');
  const std::string_view digits = text.substr(0, text.size() - (percent ? 1 : 0));
  double error = 0;
  const auto [end, code] = ReadDecimal(digits, error, std::chars_format::general);
  if (percent) error /= 100;
  if (code != std::errc{} || end != digits.data() + digits.size() || !(error > 0 && error <= 1)) {
    Refuse(name + " " + Quoted(text) + " is not accepted: a share of the pot, like 0.0005 or 0.05%",
           "standard_error");
  }
  return error;
}

void ReadMethod(const EquityWords& words, EquityQuestion& question) {
  if (words.exact && words.sampled) Refuse("--exact does not go with --sampled", "method");
  if (words.exact) question.method = Method::kExact;
  if (words.sampled) question.method = Method::kSampled;
}

// Trials and time are ends of their own; only without them the usual standard error is one.
void ReadLimits(const EquityWords& words, AskedEquity& asked) {
  SamplingLimits& limits = asked.question.sampling;
  if (words.trials || words.time_ms) limits = {.standard_error = 0, .trials = kMostTrials};
  const auto number = [&](const char* key, const std::string& text, auto low, auto high) {
    return ReadNumber(words.Named(key).c_str(), text, low, high, key);
  };
  if (words.trials) limits.trials = number("trials", *words.trials, std::int64_t{1}, kMostTrials);
  if (words.standard_error)
    limits.standard_error = ReadStandardError(words.Named("standard_error"), *words.standard_error);
  if (words.time_ms) {
    constexpr std::int64_t kDay = 86'400'000;
    asked.time =
        std::chrono::milliseconds(number("time_ms", *words.time_ms, std::int64_t{1}, kDay));
  }
  if (words.seed) {
    asked.question.seed =
        number("seed", *words.seed, std::uint64_t{0}, std::numeric_limits<std::uint64_t>::max());
  }
}

By ReadBy(const std::string& name, std::string_view text) {
  const auto found = std::ranges::find(kByNames, text);
  if (found == kByNames.end()) {
    Refuse(name + " " + Quoted(text) + " is not known: " + OneOf(kByNames), "detail");
  }
  return static_cast<By>(found - kByNames.begin());
}

void ReadDetail(const EquityWords& words, AskedEquity& asked) {
  Detail& detail = asked.question.detail;
  for (const std::string& text : words.by) {
    const By by = ReadBy(words.by_name, text);
    asked.by.push_back(by);
    detail.hands = detail.hands || by == By::kHand || by == By::kClass;
    detail.next = detail.next || by == By::kNext;
    detail.made = detail.made || by == By::kMade;
  }
}

// The key of a question that an error of the calculator is about, with the place in its list.
std::string FieldOf(const Error& error, const AskedEquity& asked) {
  if (error.player >= 0) return FieldInList("players", static_cast<std::size_t>(error.player));
  if (error.folded >= 0) return FieldInList("folded", static_cast<std::size_t>(error.folded));
  if (error.code == ErrorCode::kPlayers) return "players";
  if (error.code == ErrorCode::kBoard) return "board";
  if (error.code == ErrorCode::kLimit) return asked.question.detail.hands ? "detail" : "method";
  if (error.code != ErrorCode::kCard) return "";
  return std::ranges::find(asked.board, error.card) != asked.board.end() ? "board" : "dead";
}

// The player that an error is about, with the words that he was given in.
[[noreturn]] void RefuseQuestion(const Error& error, const AskedEquity& asked) {
  std::string text = error.text;
  const std::string player = fmt::format("player {}", error.player + 1);
  if (error.player >= 0 && text.starts_with(player)) {
    const std::string& words = asked.players[static_cast<std::size_t>(error.player)];
    text = fmt::format("{}, {}{}", player, Quoted(words), text.substr(player.size()));
  }
  Refuse(text, FieldOf(error, asked));
}

}  // namespace

std::string EquityWords::Named(std::string_view key) const {
  if (of_object) return std::string(key);
  std::string option = "--" + std::string(key);
  std::ranges::replace(option, '_', '-');
  return option;
}

void EquityWords::TakeMissing(const EquityWords& defaults) {
  if (!exact && !sampled && !any_method) {
    exact = defaults.exact;
    sampled = defaults.sampled;
  }
  if (folded.empty()) folded = defaults.folded;
  for (const NamedOption& known : kOptions) {
    if (!(this->*known.option)) this->*known.option = defaults.*known.option;
  }
}

std::string FieldInList(std::string_view key, std::size_t place) {
  return std::string(key) + '/' + std::to_string(place);
}

void CheckWordBehind(std::string_view option, std::string_view cards, std::string_view word) {
  const bool is_board = option == "--board";
  if (!is_board && option != "--dead") return;
  const std::size_t known = ParseCards(cards).cards.size();
  const std::size_t more = ParseCards(word).cards.size();
  // Cards that would make a whole board of a part of one.
  const bool completes =
      is_board && known < 3 && more > 0 && known + more >= 3 && known + more <= 5;
  if (more != 1 && !completes) return;
  Refuse(fmt::format(
      "{} stands behind {} {}: {} one word, like 2c3d4h, and hands stand before {} or are one word",
      Quoted(word), option, cards, is_board ? "a board is" : "dead cards are", option));
}

EquityWords SplitLine(std::string_view line, const EquityWords& defaults) {
  EquityWords words;
  for (std::string_view word = NextWord(line); !word.empty(); word = NextWord(line)) {
    if (!word.starts_with("--")) {
      words.players.emplace_back(word);
      continue;
    }
    if (SetFlag(word, words)) continue;
    const std::size_t equals = word.find('=');
    const std::string_view name = word.substr(0, equals);
    if (name != kFolded &&
        std::ranges::find(kOptions, name, &NamedOption::name) == std::ranges::end(kOptions)) {
      RefuseOption(name);
    }
    const std::string_view value = equals == word.npos ? NextWord(line) : word.substr(equals + 1);
    SetOption(name, value, words);
    std::string_view rest = line;
    CheckWordBehind(name, value, NextWord(rest));
  }
  words.TakeMissing(defaults);
  return words;
}

AskedEquity ReadOptions(const EquityWords& words) {
  AskedEquity asked;
  EquityQuestion& question = asked.question;
  if (words.game) question.game = ReadGame(words.Named("game"), *words.game);
  if (words.to) question.street = ReadStreet(words.Named("to"), *words.to);
  if (words.board) asked.board = ReadCards(*words.board, "board");
  if (words.dead) asked.dead = ReadCards(*words.dead, "dead");
  question.board = CardSet(asked.board);
  question.dead = CardSet(asked.dead);
  ReadMethod(words, question);
  ReadDetail(words, asked);
  ReadLimits(words, asked);
  return asked;
}

AskedEquity ReadEquity(const EquityWords& words) {
  AskedEquity asked = ReadOptions(words);
  EquityQuestion& question = asked.question;
  if (words.players.empty()) Refuse("players are needed, like AhKd 7s7c", "players");
  const std::vector<std::string> texts =
      words.of_object ? words.players : PlayerTexts(words.players, question.game);
  const auto read = [&](const char* key, const std::string& text, std::vector<HandRange>& ranges,
                        std::vector<std::string>& names) {
    PlayerReading player = ReadPlayer(text, question.game, FieldInList(key, ranges.size()));
    ranges.push_back(std::move(player.range));
    names.push_back(std::move(player.name));
    for (const std::string& warning : player.warnings) asked.warnings.push_back(warning);
  };
  for (const std::string& text : texts) read("players", text, question.players, asked.players);
  for (const std::string& text : words.folded) read("folded", text, question.folded, asked.folded);
  return asked;
}

Calculation PlanOf(const AskedEquity& asked) {
  Result<Calculation> plan = Plan(asked.question);
  if (!plan) RefuseQuestion(plan.error(), asked);
  return *std::move(plan);
}

}  // namespace pokermath
