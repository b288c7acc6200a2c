// `pokermath nuts`: whether an Omaha hand is the nuts, how much beats it, and the best that two
// unseen cards make.

#include "pages/nuts.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/omaha_cards.h"
#include "cli/output.h"

namespace pokermath::cli {
namespace {

constexpr const char* kNutsExamples =
    R"(The board has three to five cards. Exactly two hole cards and three board cards play, so a
hand is the nuts when no two unseen cards make more. Hands of as many unseen cards that beat it
are counted, too. Values are 1..7462, larger is better.
The best holdings are of unseen cards: those that the hand itself holds are not among them.
They are written as range text, which 'pokermath range' reads.

Examples:
  pokermath nuts AhKhQsJs Th9h2h
  pokermath nuts '8h 7h 6c 5c' '9h Th 2h Jd'
  pokermath nuts 5dJh4s3hTh 2d2s4c9h --game omaha5 --json)";

int RunNuts(const OmahaWords& words) {
  const NutsAnswer answer = FindNuts(ReadOmahaHand(words, 5));
  Print(words.json ? JsonLine(NutsJson(answer)) : NutsText(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace

void AddNuts(Command program, int& exit_code) {
  auto words = std::make_shared<OmahaWords>();
  Command command = program.AddCommand("nuts", "What beats an Omaha hand, and the nuts");
  AddOmahaWords(command, *words);
  command.SetFooter(kNutsExamples);
  command.SetAction([words, &exit_code] { exit_code = RunNuts(*words); });
}

}  // namespace pokermath::cli
