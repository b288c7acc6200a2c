// `pokermath pots`: who gets what of the pot and the side pots.

#include "pages/pots.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/output.h"
#include "pages/errors.h"

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

int RunPots(const PotsWords& words) {
  const PotsAnswer answer =
      FindPots(ReadNumbers("--stakes", words.stakes, 0),
               ReadNumbers("--scores", words.scores, std::numeric_limits<int>::min()));
  Print(words.json ? JsonLine(PotsJson(answer)) : PotsText(answer, ColoursForStandardOutput()));
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
