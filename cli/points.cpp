// `pokermath points`: points of Omaha starting hands.

#include "pages/points.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/command.h"
#include "cli/output.h"
#include "pages/card_words.h"

namespace pokermath::cli {
namespace {

constexpr const char* kPointsExamples =
    R"(Points by the Hutchison count: suited cards, pairs, cards that make straights together; with
--hilo low cards, pairs and suits. More is better. A hand is four cards, and one word.

Examples:
  pokermath points AhAdKhKd
  pokermath points 'Ah Kh Qs Js' 2c3d7h8s
  pokermath points Ah2h3dKd --hilo --json)";

struct PointsWords {
  std::vector<std::string> hands;
  bool high_low = false;
  bool json = false;
};

int RunPoints(const PointsWords& words) {
  std::vector<std::vector<int>> hands;
  for (const std::string& word : words.hands) {
    hands.push_back(ReadCards(word, 4, 4, "a starting hand has 4"));
  }
  const PointsAnswer answer = FindPoints(std::move(hands), words.high_low);
  Print(words.json ? JsonLine(PointsJson(answer)) : PointsText(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace

void AddPoints(Command program, int& exit_code) {
  auto words = std::make_shared<PointsWords>();
  Command command = program.AddCommand("points", "Points of Omaha starting hands");
  command.AddOption("HAND", words->hands, "Hands of four cards, one a word")
      .Required()
      .ValueName("");
  command.AddFlag("--hilo", words->high_low, "Count for Hi/Lo");
  command.AddFlag("--json", words->json, "Print a JSON object");
  command.SetFooter(kPointsExamples);
  command.SetAction([words, &exit_code] { exit_code = RunPoints(*words); });
}

}  // namespace pokermath::cli
