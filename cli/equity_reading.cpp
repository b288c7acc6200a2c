#include "cli/equity_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "cli/errors.h"
#include "cli/number_text.h"
#include "pokermath/cards.h"

namespace pokermath::cli {
namespace {

constexpr std::string_view kBetweenPieces = " \t\r\n,;";
constexpr std::int64_t kMostTrials = 1'000'000'000'000;

Street ReadStreet(std::string_view text) {
  if (text == "flop") return Street::kFlop;
  if (text == "turn") return Street::kTurn;
  if (text == "river") return Street::kRiver;
  throw UsageError("--to " + Quoted(text) + " is not known: flop, turn or river");
}

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

std::vector<std::string> PlayerTexts(const std::vector<std::string>& words, std::size_t hand_size) {
  if (words.empty()) throw UsageError("a hand is needed, like AhKd");
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

bool IsRandom(std::string_view piece) {
  return std::ranges::equal(piece, std::string_view("random"),
                            [](char a, char b) { return (a | 0x20) == b; });
}

void ReadBoard(const EquityWords& words, EquityQuestion& question) {
  if (words.to) question.street = ReadStreet(*words.to);
  if (words.dead) question.dead = ReadCards(*words.dead);
  if (!words.board) return;
  question.board = ReadCards(*words.board);
  const std::size_t size = question.board.size();
  const auto most = static_cast<std::size_t>(question.street);
  if (size > most) {
    throw UsageError(fmt::format("{}: a board has up to {}{}", CountOfCards(*words.board, size),
                                 most,
                                 question.street == Street::kTurn   ? " with --to turn"
                                 : question.street == Street::kFlop ? " with --to flop"
                                                                    : ""));
  }
  if (IsOmaha(question.game) && (size == 1 || size == 2)) {
    throw UsageError(CountOfCards(*words.board, size) + ": an Omaha board has 3, 4 or 5");
  }
  CheckDeck(question.game == Game::kShortDeck, question.board);
}

void ReadNumbers(const EquityWords& words, EquityQuestion& question) {
  if (words.players) question.players = ReadNumber("--players", *words.players, 2, 10);
  if (words.trials) {
    question.trials = ReadNumber("--trials", *words.trials, std::int64_t{1}, kMostTrials);
  }
  if (words.seed) {
    question.seed = ReadNumber("--seed", *words.seed, std::uint64_t{0},
                               std::numeric_limits<std::uint64_t>::max());
  }
  if (words.time_ms) {
    constexpr int kDay = 86'400'000;
    question.time = std::chrono::milliseconds(ReadNumber("--time-ms", *words.time_ms, 1, kDay));
    if (!words.trials) question.trials = kMostTrials;
  }
}

const char* SamplingOption(const EquityWords& words) {
  return words.trials ? "--trials" : words.seed ? "--seed" : words.time_ms ? "--time-ms" : nullptr;
}

void CheckCardsDiffer(const EquityQuestion& question) {
  std::uint64_t seen = 0;
  const auto check = [&seen](const std::vector<int>& cards) {
    for (const int card : cards) {
      if ((seen >> card & 1) != 0) throw UsageError(CardName(card) + " is given twice");
      seen |= std::uint64_t{1} << card;
    }
  };
  check(question.hand);
  for (const std::vector<int>& opponent : question.opponents) check(opponent);
  check(question.board);
  check(question.dead);
}

}  // namespace pokermath::cli
