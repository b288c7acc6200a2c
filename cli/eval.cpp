// `pokermath eval`: the value of five to seven cards on the three scales, in words, and the five
// cards that play.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/line_mode.h"
#include "cli/output.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"

namespace pokermath::cli {
namespace {

constexpr const char* kExamples =
    R"(Scales: descending 1..7462, smaller is better (1 = royal flush);
        ascending 1..7462, larger is better;
        hand_ranks = category * 4096 + place in it, larger is better.

Examples:
  pokermath eval AhKhQhJhTh2c3d
  pokermath eval Ah 10c 9d 9s 2c
  pokermath eval --json 5c4d3h2sAc
  pokermath eval - <hands.txt      one answer a line; empty lines and lines that
                                   start with # have none)";

constexpr const char* kCategories[11] = {
    "",      "high card",  "one pair",       "two pair",       "three of a kind", "straight",
    "flush", "full house", "four of a kind", "straight flush", "royal flush"};
constexpr int kBest = 7462;
constexpr int kHandRanksCategory = 4096;

struct EvalAnswer {
  std::vector<int> hand;
  std::array<int, 5> playing;
  int ascending;
  int hand_ranks;

  int Descending() const { return kBest + 1 - ascending; }
  const char* Category() const {
    return kCategories[ascending == kBest ? 10 : hand_ranks / kHandRanksCategory];
  }
};

std::vector<int> ReadHand(std::string_view text) {
  CardsResult read = ParseCards(text);
  if (!read.error.empty()) throw UsageError(read.error);
  if (read.cards.size() < 5 || read.cards.size() > 7) {
    throw UsageError(
        fmt::format("{} has {} cards: 5 to 7 have a value", Quoted(text), read.cards.size()));
  }
  return std::move(read.cards);
}

// Orders five cards as players read them: quads, trips and pairs first, then from high to low. In
// a straight with a deuce the ace is the lowest card.
void OrderForReading(std::array<int, 5>& cards) {
  std::array<int, 13> count = {};
  for (const int card : cards) ++count[static_cast<std::size_t>(card % 13)];
  const bool wheel =
      count[12] == 1 && count[0] == 1 && count[1] == 1 && count[2] == 1 && count[3] == 1;
  const auto place = [&](int card) {
    const int rank = card % 13;
    return count[static_cast<std::size_t>(rank)] * 13 + (wheel && rank == 12 ? -1 : rank);
  };
  std::stable_sort(cards.begin(), cards.end(), [&](int a, int b) { return place(a) > place(b); });
}

EvalAnswer Evaluate(std::vector<int> hand) {
  EvalAnswer answer;
  const int count = static_cast<int>(hand.size());
  answer.ascending = EvaluateCards(hand.data(), count);
  answer.hand_ranks = HandRanksFromAscending(answer.ascending);
  int best[5];
  FindBestFive(hand.data(), count, best);
  for (std::size_t i = 0; i < 5; ++i) answer.playing[i] = hand[static_cast<std::size_t>(best[i])];
  OrderForReading(answer.playing);
  answer.hand = std::move(hand);
  return answer;
}

std::string PlayingText(const EvalAnswer& answer) {
  std::string text;
  for (const int card : answer.playing) text += " " + CardName(card);
  return text;
}

Json ToJson(const EvalAnswer& answer) {
  return {{"schema", kJsonSchema},
          {"hand", CardsJson(answer.hand)},
          {"category", answer.Category()},
          {"cards", CardsJson(answer.playing)},
          {"descending", answer.Descending()},
          {"ascending", answer.ascending},
          {"hand_ranks", answer.hand_ranks}};
}

std::string ToText(const EvalAnswer& answer) {
  const Colours colours = Colours::ForStandardOutput();
  std::string playing;
  for (const int card : answer.playing) playing += " " + colours.Cards({&card, 1});
  const auto row = [&](std::string_view scale, int value, std::string_view meaning) {
    return fmt::format("  {:<10}  {:>5}   {}\n", scale, value, colours.Faint(meaning));
  };
  return fmt::format("{}: {},{}\n\n", colours.Cards(answer.hand), colours.Strong(answer.Category()),
                     playing) +
         row("descending", answer.Descending(), "of 7462, smaller is better") +
         row("ascending", answer.ascending, "of 7462, larger is better") +
         row("hand_ranks", answer.hand_ranks, "category * 4096 + place in it, larger is better");
}

void AppendLine(const EvalAnswer& answer, std::string& out) {
  fmt::format_to(std::back_inserter(out), "{} descending {} ascending {} hand_ranks {} {}:{}\n",
                 CardsText(answer.hand), answer.Descending(), answer.ascending, answer.hand_ranks,
                 answer.Category(), PlayingText(answer));
}

int RunEval(const std::vector<std::string>& words, bool json) {
  if (words == std::vector<std::string>{"-"}) {
    return AnswerLines(json, [json](std::string_view line, std::string& out) {
      const EvalAnswer answer = Evaluate(ReadHand(line));
      if (json) {
        out += JsonLine(ToJson(answer));
      } else {
        AppendLine(answer, out);
      }
    });
  }
  const EvalAnswer answer = Evaluate(ReadHand(fmt::format("{}", fmt::join(words, " "))));
  Print(json ? JsonLine(ToJson(answer)) : ToText(answer));
  return kExitDone;
}

}  // namespace

void AddEval(CLI::App& program, int& exit_code) {
  struct Options {
    std::vector<std::string> words;
    bool json = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("eval", "Value of five to seven cards");
  command
      ->add_option("CARDS", options->words,
                   "Five to seven cards, or - for one hand a line from standard input")
      ->required()
      ->type_name("");
  command->add_flag("--json", options->json, "Print a JSON object (one a line with -)");
  command->footer(kExamples);
  command->callback([options, &exit_code] { exit_code = RunEval(options->words, options->json); });
}

}  // namespace pokermath::cli
