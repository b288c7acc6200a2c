// `pokermath points`: points of Omaha starting hands.

#include <fmt/format.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/output.h"
#include "pages/card_words.h"
#include "pages/json.h"
#include "pokermath/ranges.h"

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
  Json json = {{"schema", kJsonSchema}, {"count", words.high_low ? "hilo" : "high"}};
  const Colours colours = ColoursForStandardOutput();
  std::string text;
  for (const std::string& word : words.hands) {
    const std::vector<int> hand = ReadCards(word, 4, 4, "a starting hand has 4");
    const Json points = words.high_low ? Json(HutchisonPointsOmahaHL(hand.data()))
                                       : Json(HutchisonPointsOmaha(hand.data()));
    text += fmt::format("{}  {:>6}\n", colours.Cards(hand), points.get<double>());
    json["hands"].push_back({{"hand", CardsJson(hand)}, {"points", points}});
  }
  Print(words.json ? JsonLine(json) : text);
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
