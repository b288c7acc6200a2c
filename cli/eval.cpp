// `pokermath eval`: the value of five to seven cards on the three scales, in words, and the five
// cards that play; and which of two Hold'em hands is the better one.

#include "pages/eval.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/command.h"
#include "cli/line_mode.h"
#include "cli/output.h"
#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"

namespace pokermath::cli {
namespace {

constexpr const char* kEvalExamples =
    R"(Scales: descending 1..7462, smaller is better (1 = royal flush);
        ascending 1..7462, larger is better;
        hand_ranks = category * 4096 + place in it, larger is better;
        short deck 1..1404, larger is better.
With --versus, two hands of two cards are compared on a board of three to five cards; without
a board as starting hands: a pair first, then the higher card, then the other one, never suits.
In JSON the verdict is 1 if the first hand is the better one, -1 if the other is, else 0.

Examples:
  pokermath eval AhKhQhJhTh2c3d
  pokermath eval Ah 10c 9d 9s 2c
  pokermath eval --json 5c4d3h2sAc
  pokermath eval AhKd --versus QcJs --board 2c7dTh
  pokermath eval Ah6h7h8h9h --game shortdeck
  pokermath eval AhKhQsJs --board Th9h2h --game omaha
  pokermath eval - <hands.txt      one answer a line; empty lines and lines that
                                   start with # have none)";

std::vector<int> ReadHand(std::string_view text) {
  return ReadCards(text, 5, 7, "5 to 7 have a value");
}

struct EvalWords {
  std::vector<std::string> cards;
  std::string game = "holdem";
  std::optional<std::string> versus, board;
  bool json = false;
};

// Two hands and a board, all cards different.
struct Showdown {
  std::vector<int> hands[2];
  std::vector<int> board;
};

Showdown ReadShowdown(const EvalWords& words, bool short_deck) {
  const std::string hand = fmt::format("{}", fmt::join(words.cards, " "));
  Showdown showdown;
  showdown.hands[0] = ReadCards(hand, 2, 2, "with --versus a hand has 2");
  showdown.hands[1] = ReadCards(*words.versus, 2, 2, "with --versus a hand has 2");
  if (words.board) showdown.board = ReadCards(*words.board, 3, 5, "a board has 3 to 5 here");
  // Reads all of them as one list, which refuses a card that is there twice.
  CheckDeck(short_deck, ReadCards(hand + " " + *words.versus + " " + words.board.value_or("")));
  return showdown;
}

int RunVersus(const EvalWords& words, bool short_deck) {
  const Showdown showdown = ReadShowdown(words, short_deck);
  const int verdict = Judge(short_deck, showdown.hands[0], showdown.hands[1], showdown.board);
  const Colours colours = ColoursForStandardOutput();
  Json json = {{"schema", kJsonSchema}, {"board", CardsJson(showdown.board)}};
  std::string text;
  for (const std::vector<int>& hand : showdown.hands) {
    std::vector<int> cards = hand;
    cards.insert(cards.end(), showdown.board.begin(), showdown.board.end());
    if (cards.size() == 2) {
      json["hands"].push_back({{"hand", CardsJson(hand)}});
    } else {
      const EvalAnswer answer = Evaluate(short_deck, cards);
      text += EvalHeadline(answer, colours);
      if (!short_deck) text += fmt::format("  {}\n", answer.words);
      json["hands"].push_back(EvalJson(answer));
      json["hands"].back()["hand"] = CardsJson(hand);
      json["hands"].back().erase("schema");
      json["hands"].back().erase("game");
    }
  }
  json["verdict"] = verdict;
  if (!text.empty()) text += "\n";
  const char* what = showdown.board.empty() ? "is the better starting hand" : "wins";
  text += verdict == 0
              ? "The hands are equal.\n"
              : fmt::format("{} {}.\n", colours.Cards(showdown.hands[verdict > 0 ? 0 : 1]), what);
  Print(words.json ? JsonLine(json) : text);
  return kExitDone;
}

int RunOmaha(const EvalWords& words) {
  const OmahaHand hand = ReadOmahaHand({.hand = fmt::format("{}", fmt::join(words.cards, " ")),
                                        .board = *words.board,
                                        .game = words.game},
                                       5);
  Print(words.json ? JsonLine(OmahaEvalJson(hand))
                   : OmahaEvalText(hand, ColoursForStandardOutput()));
  return kExitDone;
}

int RunEval(const EvalWords& words) {
  const Game game = ReadGame(words.game, kHighGames);
  if (IsOmaha(game)) {
    if (words.versus) throw UsageError("--versus is for holdem and shortdeck");
    if (!words.board) throw UsageError("--board is needed: an Omaha hand plays three cards of it");
    return RunOmaha(words);
  }
  const bool json = words.json;
  const bool short_deck = game == Game::kShortDeck;
  const bool lines = words.cards == std::vector<std::string>{"-"};
  if (lines && (words.versus || words.board)) {
    throw UsageError("--versus and --board go with one question, not with lines");
  }
  if (words.versus) return RunVersus(words, short_deck);
  if (lines) {
    return AnswerLines({.json = json},
                       [json, short_deck](std::string_view line, int, std::string& out) {
                         const EvalAnswer answer = Evaluate(short_deck, ReadHand(line));
                         out += json ? JsonLine(EvalJson(answer)) : EvalLine(answer);
                       });
  }
  const std::string cards = fmt::format("{}", fmt::join(words.cards, " "));
  const EvalAnswer answer =
      Evaluate(short_deck, ReadHand(words.board ? cards + " " + *words.board : cards));
  Print(json ? JsonLine(EvalJson(answer)) : EvalText(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace

void AddEval(Command program, int& exit_code) {
  auto options = std::make_shared<EvalWords>();
  Command command =
      program.AddCommand("eval", "Value of five to seven cards, or the better of two hands");
  command
      .AddOption(
          "CARDS", options->cards,
          "Five to seven cards, --board counted; two with --versus; or - for one hand a line "
          "from standard input")
      .Required()
      .ValueName("");
  command.AddOption("--game", options->game, NamesOf(kHighGames) + " [holdem]")
      .ValueName("GAME")
      .OneOf(ListOf(kHighGames));
  command.AddOption("--versus", options->versus, "Compare two hands: the other one")
      .ValueName("CARDS");
  command
      .AddOption("--board", options->board, "Cards that hands share: three to five with --versus")
      .ValueName("CARDS");
  command.AddFlag("--json", options->json, "Print a JSON object (one a line with -)");
  command.SetFooter(kEvalExamples);
  command.SetAction([options, &exit_code] { exit_code = RunEval(*options); });
}

}  // namespace pokermath::cli
