// `pokermath pots`: who gets what of the pot and the side pots.

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/output.h"
#include "pages/errors.h"
#include "pages/json.h"
#include "pages/number_text.h"
#include "pokermath/showdown.h"

namespace pokermath::cli {
namespace {

constexpr const char* kPotsExamples =
    R"(Seats are numbered from 0 in the order given. A score says how strong a hand is: larger is
better, equal scores share, 0 for a player who has folded. What is only claimed by scores
below 0 goes back to its owners. Equal scores share up to 1000 chips of each player at a
time, and each time the odd chips go to the lowest of their seats.

Examples:
  pokermath pots --stakes 100,50,100 --scores 5,9,7
  pokermath pots --stakes 30,30,31 --scores 8,8,3 --json)";

struct PotsWords {
  std::string stakes, scores;
  bool json = false;
};

std::string_view WithoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::vector<int> ReadNumbers(const char* option, std::string_view text, int low) {
  std::vector<int> numbers;
  while (true) {
    const std::string_view whole = text.substr(0, text.find(','));
    const std::string_view piece = WithoutBlanks(whole);
    int number = 0;
    const auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), number);
    if (error != std::errc{} || end != piece.data() + piece.size() || number < low) {
      throw UsageError(fmt::format("{} {} is not accepted: whole numbers from {} to {} with commas",
                                   option, Quoted(piece), low, std::numeric_limits<int>::max()));
    }
    numbers.push_back(number);
    if (whole.size() == text.size()) return numbers;
    text.remove_prefix(whole.size() + 1);
  }
}

std::vector<std::int64_t> WinningsOf(const std::vector<Pot>& pots, std::size_t seats) {
  std::vector<std::int64_t> winnings(seats);
  for (const Pot& pot : pots) {
    for (std::size_t seat = 0; seat < seats; ++seat) winnings[seat] += pot.won[seat];
  }
  return winnings;
}

Json ToJson(const std::vector<Pot>& pots, const std::vector<std::int64_t>& winnings) {
  Json list = Json::array();
  for (const Pot& pot : pots) {
    list.push_back(
        {{"chips", pot.chips}, {"winners", pot.winners}, {"paid", pot.paid}, {"won", pot.won}});
  }
  return {{"schema", kJsonSchema}, {"winnings", winnings}, {"pots", list}};
}

// "seat 1 wins 150", "seat 0 wins 35, seat 1 wins 33", "seat 2 gets 1 back".
std::string PotText(const Pot& pot) {
  std::string text;
  for (std::size_t seat = 0; seat < pot.won.size(); ++seat) {
    if (pot.won[seat] == 0) continue;
    const bool own = pot.won[seat] == pot.paid[seat];
    text += fmt::format("{}seat {} {} {}{}", text.empty() ? "" : ", ", seat, own ? "gets" : "wins",
                        Grouped(pot.won[seat]), own ? " back" : "");
  }
  return text;
}

std::string ToText(const std::vector<int>& stakes, const std::vector<int>& scores,
                   const std::vector<Pot>& pots, const std::vector<std::int64_t>& winnings) {
  const Colours colours = ColoursForStandardOutput();
  std::string text;
  for (std::size_t i = 0; i < pots.size(); ++i) {
    text +=
        fmt::format("pot {}: {}, {}\n", i + 1, Counted(pots[i].chips, "chip"), PotText(pots[i]));
  }
  text += "\n" +
          colours.Faint(fmt::format("{:<6}{:>15}{:>13}{:>15}", "seat", "stake", "score", "gets")) +
          "\n";
  for (std::size_t seat = 0; seat < stakes.size(); ++seat) {
    text += fmt::format("{:<6}{:>15}{:>13}{}\n", seat, Grouped(stakes[seat]), scores[seat],
                        colours.Strong(fmt::format("{:>15}", Grouped(winnings[seat]))));
  }
  return text;
}

int RunPots(const PotsWords& words) {
  const std::vector<int> stakes = ReadNumbers("--stakes", words.stakes, 0);
  const std::vector<int> scores =
      ReadNumbers("--scores", words.scores, std::numeric_limits<int>::min());
  if (stakes.size() != scores.size()) {
    throw UsageError(fmt::format("--stakes has {} and --scores has {} numbers: one each for a seat",
                                 stakes.size(), scores.size()));
  }
  constexpr std::size_t kMostSeats = 1000;
  if (stakes.size() > kMostSeats) {
    throw UsageError(fmt::format("{} seats are too many: up to {}", stakes.size(), kMostSeats));
  }
  const std::vector<Pot> pots = SplitPots(stakes, scores);
  const std::vector<std::int64_t> winnings = WinningsOf(pots, stakes.size());
  Print(words.json ? JsonLine(ToJson(pots, winnings)) : ToText(stakes, scores, pots, winnings));
  return kExitDone;
}

}  // namespace

void AddPots(Command program, int& exit_code) {
  auto words = std::make_shared<PotsWords>();
  Command command = program.AddCommand("pots", "Who gets what of the pot and side pots");
  command.AddOption("--stakes", words->stakes, "Chips that each seat has put in, with commas")
      .Required()
      .ValueName("CHIPS");
  command.AddOption("--scores", words->scores, "How strong each seat's hand is, with commas")
      .Required()
      .ValueName("SCORES");
  command.AddFlag("--json", words->json, "Print a JSON object");
  command.SetFooter(kPotsExamples);
  command.SetAction([words, &exit_code] { exit_code = RunPots(*words); });
}

}  // namespace pokermath::cli
