#include "pages/equity_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>

#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/number_text.h"
#include "pages/player_words.h"
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
    throw UsageError("--players is no option: write 'random' once for each opponent");
  }
  std::string accepted;
  for (const NamedOption& known : kOptions) accepted += std::string(known.name) + ", ";
  throw UsageError(fmt::format("{} is not an option of a question: {}--folded, --exact, --sampled",
                               Quoted(name), accepted));
}

// Sets a flag of that name; false if it is none.
bool SetFlag(std::string_view word, EquityWords& words) {
  for (const NamedFlag& known : kFlags) {
    if (word == known.name) return words.*known.flag = true;
    if (word.starts_with(known.name) && word[known.name.size()] == '=') {
      throw UsageError(std::string(known.name) + " has no value");
    }
  }
  return false;
}

void SetOption(std::string_view name, std::string_view value, EquityWords& words) {
  if (value.empty()) throw UsageError(std::string(name) + " needs a value");
  if (name == kFolded) {
    words.folded.emplace_back(value);
    return;
  }
  const auto known = std::ranges::find(kOptions, name, &NamedOption::name);
  std::optional<std::string>& option = words.*known->option;
  if (option) throw UsageError(std::string(name) + " is given twice");
  option = value;
}

Game ReadGame(const std::string& name, const std::string& text) {
  if (const std::optional<Game> game = FindGame(text)) return *game;
  throw UsageError(fmt::format("{} {} is not known: {}", name, Quoted(text), GameNames()));
}

Street ReadStreet(const std::string& name, std::string_view text) {
  if (text == "flop") return Street::kFlop;
  if (text == "turn") return Street::kTurn;
  if (text == "river") return Street::kRiver;
  throw UsageError(name + " " + Quoted(text) + " is not known: flop, turn or river");
}

// A share of the pot, or with its sign a percentage.
double ReadStandardError(const std::string& name, std::string_view text) {
  const bool percent = text.ends_with('%');
  const std::string_view digits = text.substr(0, text.size() - (percent ? 1 : 0));
  double error = 0;
  const auto [end, code] = std::from_chars(digits.data(), digits.data() + digits.size(), error);
  if (percent) error /= 100;
  if (code != std::errc{} || end != digits.data() + digits.size() || !(error > 0 && error <= 1)) {
    throw UsageError(name + " " + Quoted(text) +
                     " is not accepted: a share of the pot, like 0.0005 or 0.05%");
  }
  return error;
}

void ReadMethod(const EquityWords& words, EquityQuestion& question) {
  if (words.exact && words.sampled) throw UsageError("--exact does not go with --sampled");
  if (words.exact) question.method = Method::kExact;
  if (words.sampled) question.method = Method::kSampled;
}

// Trials and time are ends of their own; only without them the usual standard error is one.
void ReadLimits(const EquityWords& words, AskedEquity& asked) {
  SamplingLimits& limits = asked.question.sampling;
  if (words.trials || words.time_ms) limits = {.standard_error = 0, .trials = kMostTrials};
  if (words.trials)
    limits.trials =
        ReadNumber(words.Named("--trials").c_str(), *words.trials, std::int64_t{1}, kMostTrials);
  if (words.standard_error)
    limits.standard_error =
        ReadStandardError(words.Named("--standard-error"), *words.standard_error);
  if (words.time_ms) {
    constexpr std::int64_t kDay = 86'400'000;
    asked.time = std::chrono::milliseconds(
        ReadNumber(words.Named("--time-ms").c_str(), *words.time_ms, std::int64_t{1}, kDay));
  }
  if (words.seed) {
    asked.question.seed = ReadNumber(words.Named("--seed").c_str(), *words.seed, std::uint64_t{0},
                                     std::numeric_limits<std::uint64_t>::max());
  }
}

By ReadBy(const std::string& name, std::string_view text) {
  if (text == "hand") return By::kHand;
  if (text == "class") return By::kClass;
  if (text == "next") return By::kNext;
  if (text == "made") return By::kMade;
  throw UsageError(name + " " + Quoted(text) + " is not known: hand, class, next or made");
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

// The player that an error is about, with the words that he was given in.
UsageError Refused(const Error& error, const AskedEquity& asked) {
  const std::string player = fmt::format("player {}", error.player + 1);
  if (error.player < 0 || !error.text.starts_with(player)) return UsageError(error.text);
  return UsageError(fmt::format("{}, {}{}", player,
                                Quoted(asked.players[static_cast<std::size_t>(error.player)]),
                                error.text.substr(player.size())));
}

}  // namespace

std::string EquityWords::Named(std::string_view option) const {
  std::string name(option);
  if (of_object) {
    name.erase(0, 2);
    std::ranges::replace(name, '-', '_');
  }
  return name;
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

void CheckWordBehind(std::string_view option, std::string_view cards, std::string_view word) {
  const bool is_board = option == "--board";
  if (!is_board && option != "--dead") return;
  const std::size_t known = ParseCards(cards).cards.size();
  const std::size_t more = ParseCards(word).cards.size();
  // Cards that would make a whole board of a part of one.
  const bool completes =
      is_board && known < 3 && more > 0 && known + more >= 3 && known + more <= 5;
  if (more != 1 && !completes) return;
  throw UsageError(fmt::format(
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
  if (words.game) question.game = ReadGame(words.Named("--game"), *words.game);
  if (words.to) question.street = ReadStreet(words.Named("--to"), *words.to);
  if (words.board) asked.board = ReadCards(*words.board);
  if (words.dead) asked.dead = ReadCards(*words.dead);
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
  if (words.players.empty()) throw UsageError("players are needed, like AhKd 7s7c");
  const std::vector<std::string> texts =
      words.of_object ? words.players : PlayerTexts(words.players, question.game);
  const auto read = [&](const std::string& text, std::vector<HandRange>& ranges,
                        std::vector<std::string>& names) {
    PlayerReading player = ReadPlayer(text, question.game);
    ranges.push_back(std::move(player.range));
    names.push_back(std::move(player.name));
    for (const std::string& warning : player.warnings) asked.warnings.push_back(warning);
  };
  for (const std::string& text : texts) read(text, question.players, asked.players);
  for (const std::string& text : words.folded) read(text, question.folded, asked.folded);
  return asked;
}

Calculation PlanOf(const AskedEquity& asked) {
  Result<Calculation> plan = Plan(asked.question);
  if (!plan) throw Refused(plan.error(), asked);
  return *std::move(plan);
}

}  // namespace pokermath
