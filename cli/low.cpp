// `pokermath low`: the low of an Omaha Hi/Lo hand, what beats it, and the cards that make one.

#include "pages/low.h"

#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/omaha_cards.h"
#include "cli/output.h"

namespace pokermath::cli {
namespace {

constexpr const char* kLowExamples =
    R"(A low is five different ranks of eight or below, the ace low, of exactly two hole cards and
three board cards. Its value is the ranks as digits, the highest first: 54321 is the best.
The board has three to five cards. An out gives a hand without a low one; a nut out is a next
card after which the hand is the nut low.

Examples:
  pokermath low Ah2dKsQc 3c7d8h
  pokermath low 'Ah 2d Ks Qc' '3c 7d Kh'
  pokermath low Ah2d3sQcJc 3c7d8hAd --json
  pokermath low Ah2d3sQcJc9h 3c7d8h --game omaha6-hilo)";

int RunLow(const OmahaWords& words) {
  const LowAnswer answer = FindLow(ReadOmahaHand(words, 5));
  Print(words.json ? JsonLine(LowJson(answer)) : LowText(answer, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace

void AddLow(Command program, int& exit_code) {
  auto words = std::make_shared<OmahaWords>();
  words->low = true;
  Command command = program.AddCommand("low", "The low of an Omaha Hi/Lo hand");
  AddOmahaWords(command, *words);
  command.SetFooter(kLowExamples);
  command.SetAction([words, &exit_code] { exit_code = RunLow(*words); });
}

}  // namespace pokermath::cli
