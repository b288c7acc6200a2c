// `pokermath outs`: the cards that lift an Omaha hand to a higher category when they come next.

#include "pages/outs.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/omaha_cards.h"
#include "cli/output.h"

namespace pokermath::cli {
namespace {

constexpr const char* kOutsExamples =
    R"(An out is an unseen card that makes a hand of a higher category if it comes next; a nut out
makes a hand that no two other cards beat. The board has three or four cards.
Straights are the two ranks that make one with the board, and no flush; a flush draw is a suit
with two hole cards and two board cards or more.

Examples:
  pokermath outs AsKsQsJs Ts9s2d3c
  pokermath outs 'Ah Ad Jc Tc' 'Qh Kd 2s' --svg outs.svg
  pokermath outs 5dJh4s3hTh 2d2s4c9h --game omaha5 --json)";

struct OutsWords : OmahaWords {
  std::optional<std::string> svg;
};

int RunOuts(const OutsWords& words) {
  const bool picture_only = IsAlone("--svg", words.svg, words.json);
  const OutsAnswer answer = FindOuts(ReadOmahaHand(words, 4));
  if (words.svg) WriteDocument(*words.svg, OutsSvg(answer));
  if (picture_only) return kExitDone;
  Print(words.json ? JsonLine(OutsJson(answer)) : OutsText(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace

void AddOuts(Command program, int& exit_code) {
  auto words = std::make_shared<OutsWords>();
  Command command =
      program.AddCommand("outs", "Cards that improve an Omaha hand, and a picture of them");
  AddOmahaWords(command, *words);
  command.AddOption("--svg", words->svg, "Also write the deck as a picture; - for a picture alone")
      .ValueName("FILE");
  command.SetFooter(kOutsExamples);
  command.SetAction([words, &exit_code] { exit_code = RunOuts(*words); });
}

}  // namespace pokermath::cli
