// `pokermath eval`: the value of five to seven cards on the three scales, in words, and the five
// cards that play; and which of two Hold'em hands is the better one.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/command.h"
#include "cli/eval_omaha.h"
#include "cli/line_mode.h"
#include "cli/output.h"
#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/json.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"
#include "pokermath/showdown.h"
#include "ranges/hand_classes.h"

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

constexpr int kBest = 7462;

struct EvalAnswer {
  bool short_deck = false;
  std::vector<int> hand;
  std::string words;
  std::array<int, 5> playing;
  int ascending;   // of 7462, or of 1404 in the short deck
  int hand_ranks;  // of 52 cards

  int Descending() const { return kBest + 1 - ascending; }
  const char* Category() const {
    return short_deck ? ShortDeckCategoryName(ascending) : CategoryName(ascending);
  }
};

std::vector<int> ReadHand(std::string_view text) {
  return ReadCards(text, 5, 7, "5 to 7 have a value");
}

// Orders five cards as players read them: quads, trips and pairs first, then from high to low. In
// a straight with the lowest card of the deck the ace is below it.
void OrderForReading(std::array<int, 5>& cards, int lowest) {
  std::array<int, 13> count = {};
  for (const int card : cards) ++count[static_cast<std::size_t>(card % 13)];
  const auto* from = &count[static_cast<std::size_t>(lowest)];
  const bool wheel = count[12] == 1 && std::count(from, from + 4, 1) == 4;
  const auto place = [&](int card) {
    const int rank = card % 13;
    return count[static_cast<std::size_t>(rank)] * 13 + (wheel && rank == 12 ? -1 : rank);
  };
  std::stable_sort(cards.begin(), cards.end(), [&](int a, int b) { return place(a) > place(b); });
}

// The five cards that make a short-deck hand's value.
std::array<int, 5> BestShortDeckFive(const std::vector<int>& hand, int value) {
  std::array<int, 5> five{};
  for (unsigned chosen = 0; chosen < 1u << hand.size(); ++chosen) {
    if (__builtin_popcount(chosen) != 5) continue;
    std::size_t size = 0;
    for (std::size_t i = 0; i < hand.size(); ++i) {
      if ((chosen >> i & 1) != 0) five[size++] = hand[i];
    }
    if (EvaluateShortDeck(five.data(), 5) == value) break;
  }
  return five;
}

EvalAnswer EvaluateShort(std::vector<int> hand) {
  EvalAnswer answer;
  answer.short_deck = true;
  answer.ascending = EvaluateShortDeck(hand.data(), static_cast<int>(hand.size()));
  answer.playing = BestShortDeckFive(hand, answer.ascending);
  OrderForReading(answer.playing, kLowestShortDeckRank);
  answer.hand = std::move(hand);
  return answer;
}

EvalAnswer Evaluate(bool short_deck, std::vector<int> hand) {
  CheckDeck(short_deck, hand);
  if (short_deck) return EvaluateShort(std::move(hand));
  EvalAnswer answer;
  const int count = static_cast<int>(hand.size());
  answer.ascending = EvaluateCards(hand.data(), count);
  answer.hand_ranks = HandRanksFromAscending(answer.ascending);
  int best[5];
  FindBestFive(hand.data(), count, best);
  for (std::size_t i = 0; i < 5; ++i) answer.playing[i] = hand[static_cast<std::size_t>(best[i])];
  OrderForReading(answer.playing, 0);
  answer.words = HandInWords(hand);
  answer.hand = std::move(hand);
  return answer;
}

std::string PlayingText(const EvalAnswer& answer) {
  std::string text;
  for (const int card : answer.playing) text += " " + CardName(card);
  return text;
}

Json ToJson(const EvalAnswer& answer) {
  if (answer.short_deck) {
    return {{"schema", kJsonSchema},
            {"game", "shortdeck"},
            {"hand", CardsJson(answer.hand)},
            {"category", answer.Category()},
            {"cards", CardsJson(answer.playing)},
            {"value", answer.ascending}};
  }
  return {{"schema", kJsonSchema},
          {"hand", CardsJson(answer.hand)},
          {"category", answer.Category()},
          {"words", answer.words},
          {"cards", CardsJson(answer.playing)},
          {"descending", answer.Descending()},
          {"ascending", answer.ascending},
          {"hand_ranks", answer.hand_ranks}};
}

// "AhKd2c7dTh: high card, Ah Kd Th 7d 2c"
std::string Headline(const EvalAnswer& answer, const Colours& colours) {
  std::string playing;
  for (const int card : answer.playing) playing += " " + colours.Cards({&card, 1});
  return fmt::format("{}: {},{}\n", colours.Cards(answer.hand), colours.Strong(answer.Category()),
                     playing);
}

std::string ToText(const EvalAnswer& answer) {
  const Colours colours = ColoursForStandardOutput();
  const auto row = [&](std::string_view scale, int value, std::string_view meaning) {
    return fmt::format("  {:<10}  {:>5}   {}\n", scale, value, colours.Faint(meaning));
  };
  if (answer.short_deck) {
    return Headline(answer, colours) + "\n" +
           row("value", answer.ascending, "of 1404, larger is better");
  }
  return Headline(answer, colours) + fmt::format("\n  {:<10}  {}\n", "in words", answer.words) +
         row("descending", answer.Descending(), "of 7462, smaller is better") +
         row("ascending", answer.ascending, "of 7462, larger is better") +
         row("hand_ranks", answer.hand_ranks, "category * 4096 + place in it, larger is better");
}

void AppendLine(const EvalAnswer& answer, std::string& out) {
  if (answer.short_deck) {
    fmt::format_to(std::back_inserter(out), "{} value {} {}:{}\n", CardsText(answer.hand),
                   answer.ascending, answer.Category(), PlayingText(answer));
    return;
  }
  fmt::format_to(std::back_inserter(out), "{} descending {} ascending {} hand_ranks {} {}:{}\n",
                 CardsText(answer.hand), answer.Descending(), answer.ascending, answer.hand_ranks,
                 answer.Category(), PlayingText(answer));
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

// 1 if the first hand is the better one, -1 if the second is, 0 if they are equal.
int Judge(bool short_deck, Showdown showdown) {
  if (short_deck && !showdown.board.empty()) {
    int values[2];
    for (std::size_t i = 0; i < 2; ++i) {
      std::vector<int> cards = showdown.hands[i];
      cards.insert(cards.end(), showdown.board.begin(), showdown.board.end());
      values[i] = EvaluateShortDeck(cards.data(), static_cast<int>(cards.size()));
    }
    return values[0] > values[1] ? 1 : values[0] < values[1] ? -1 : 0;
  }
  PokerLogic logic;
  for (std::vector<int>& cards : showdown.hands) std::ranges::sort(cards, comparefun);
  return WhoIsWinner(showdown.hands[0].data(), showdown.hands[1].data(), showdown.board.data(),
                     static_cast<int>(showdown.board.size()), logic);
}

int RunVersus(const EvalWords& words, bool short_deck) {
  const Showdown showdown = ReadShowdown(words, short_deck);
  const int verdict = Judge(short_deck, showdown);
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
      text += Headline(answer, colours);
      if (!short_deck) text += fmt::format("  {}\n", answer.words);
      json["hands"].push_back(ToJson(answer));
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

int RunEval(const EvalWords& words) {
  const Game game = ReadGame(words.game, kHighGames);
  if (IsOmaha(game)) {
    if (words.versus) throw UsageError("--versus is for holdem and shortdeck");
    if (!words.board) throw UsageError("--board is needed: an Omaha hand plays three cards of it");
    return RunEvalOmaha(
        {fmt::format("{}", fmt::join(words.cards, " ")), *words.board, words.game, words.json});
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
                         if (json) {
                           out += JsonLine(ToJson(answer));
                         } else {
                           AppendLine(answer, out);
                         }
                       });
  }
  const std::string cards = fmt::format("{}", fmt::join(words.cards, " "));
  const EvalAnswer answer =
      Evaluate(short_deck, ReadHand(words.board ? cards + " " + *words.board : cards));
  Print(json ? JsonLine(ToJson(answer)) : ToText(answer));
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
  command.AddOption("--game", options->game, NamesOf(kHighGames) + " [holdem]").ValueName("GAME");
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
