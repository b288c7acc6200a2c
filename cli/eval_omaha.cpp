#include "cli/eval_omaha.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "pokermath/evaluators.h"

namespace pokermath::cli {
namespace {

std::string ToText(const OmahaHand& hand, const Colours& colours) {
  return OmahaHeadline(hand, colours) +
         fmt::format("\n  {:<10}  {}\n  {:<10}  {:>5}   {}\n  {:<10}  {:>5}   {}\n", "in words",
                     hand.Words(), "descending", 7463 - hand.value,
                     colours.Faint("of 7462, smaller is better"), "ascending", hand.value,
                     colours.Faint("of 7462, larger is better"));
}

Json ToJson(const OmahaHand& hand) {
  Json json = OmahaJson(hand);
  json["category"] = CategoryName(hand.value);
  json["words"] = hand.Words();
  json["hole_cards"] = CardsJson(hand.hole);
  json["board_cards"] = CardsJson(hand.from_board);
  json["descending"] = 7463 - hand.value;
  json["ascending"] = hand.value;
  return json;
}

}  // namespace

int RunEvalOmaha(const OmahaWords& words) {
  const OmahaHand hand = ReadOmahaHand(words, 5);
  Print(words.json ? JsonLine(ToJson(hand)) : ToText(hand, ColoursForStandardOutput()));
  return kExitDone;
}

}  // namespace pokermath::cli
