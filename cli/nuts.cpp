// `pokermath nuts`: whether an Omaha hand is the nuts, how much beats it, and the best that two
// unseen cards make.

#include "omaha/nuts.h"

#include <fmt/format.h>

#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/omaha_cards.h"
#include "kernels/hole_cards.h"
#include "kernels/omaha_cliques.h"
#include "pages/number_text.h"
#include "pages/range_picture.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"
#include "ranges/hand_classes.h"

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

// How many there are, and how many of them beat the hand.
struct Beaten {
  std::int64_t by = 0;
  std::int64_t of = 0;

  double Percent() const { return 100.0 * static_cast<double>(by) / static_cast<double>(of); }
};

struct NutsAnswer {
  OmahaHand hand;
  Beaten by_hands;  // of as many cards
  Beaten by_pairs;
  int nut_value;
  std::string nut_words;
  std::map<int, std::vector<std::string>> nuts;  // by class, its matrix cell

  bool IsNuts() const { return by_pairs.by == 0; }
};

NutsAnswer FindNuts(OmahaHand hand) {
  NutsAnswer answer;
  const auto size = static_cast<int>(hand.hand.size());
  const auto board_size = static_cast<int>(hand.board.size());
  int* const hole = hand.hand.data();
  int* const board = hand.board.data();
  answer.by_pairs = {IsMyHandNutsOmahaFsm5Common(hole, size, board, board_size),
                     Choose(hand.Unseen(), 2)};
  answer.by_hands = {CountOmahaBetter(BestIsa(), hand.hand, hand.board),
                     Choose(hand.Unseen(), size)};
  const BestPairs best(OmahaPairValues(hand.board), Bits(hand.hand) | Bits(hand.board));
  answer.nut_value = best.value;
  for (const auto& [first, second] : best.holdings.combinations()) {
    answer.nuts[CellOf(first, second)].push_back(CardName(first) + CardName(second));
  }
  const Combination& any = *best.holdings.combinations().begin();
  answer.nut_words = BestOfOmaha({any.first, any.second}, hand.board).Words();
  answer.hand = std::move(hand);
  return answer;
}

// @param width  of the numbers
std::string BeatenLine(const Beaten& beaten, const char* cards, std::size_t width) {
  return fmt::format("  beaten by  {:>{}} of {:>{}} {:<15} {:>6.2f} %\n", Grouped(beaten.by), width,
                     Grouped(beaten.of), width, cards, beaten.Percent());
}

std::string ToText(const NutsAnswer& answer, const Colours& colours) {
  std::string text = OmahaHeadline(answer.hand, colours);
  text += fmt::format("  {}\n\n{}\n", answer.hand.Words(),
                      colours.Strong(answer.IsNuts() ? "The nuts." : "Not the nuts."));
  constexpr const char* kHands[] = {"hands of four", "hands of five", "hands of six"};
  static_assert(std::size(kHands) == kOmahaHandSizes.size() && kOmahaHandSizes[0] == 4);
  const std::size_t width = Grouped(answer.by_hands.of).size();
  text += BeatenLine(answer.by_hands, kHands[answer.hand.hand.size() - 4], width);
  text += BeatenLine(answer.by_pairs, "holdings of two", width);
  text += fmt::format("\nThe best that two unseen cards make, {}:\n", answer.nut_words);
  for (const auto& [cell, holdings] : answer.nuts) {
    text += fmt::format("  {:<5}{}\n", RangeMatrix::Name(cell / 13, cell % 13),
                        fmt::join(holdings, ","));
  }
  return text;
}

Json ToJson(const NutsAnswer& answer) {
  Json json = OmahaJson(answer.hand);
  json["value"] = answer.hand.value;
  json["category"] = CategoryName(answer.hand.value);
  json["words"] = answer.hand.Words();
  json["is_nuts"] = answer.IsNuts();
  json["beaten_by"] = answer.by_hands.by;
  json["of"] = answer.by_hands.of;
  json["beaten_by_pairs"] = answer.by_pairs.by;
  json["of_pairs"] = answer.by_pairs.of;
  json["nut_value"] = answer.nut_value;
  json["nut_category"] = CategoryName(answer.nut_value);
  json["nut_words"] = answer.nut_words;
  for (const auto& [cell, holdings] : answer.nuts) {
    for (const std::string& holding : holdings) json["nuts"].push_back(holding);
  }
  return json;
}

int RunNuts(const OmahaWords& words) {
  const NutsAnswer answer = FindNuts(ReadOmahaHand(words, 5));
  Print(words.json ? JsonLine(ToJson(answer)) : ToText(answer, ColoursForStandardOutput()));
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
