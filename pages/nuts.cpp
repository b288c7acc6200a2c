#include "pages/nuts.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iterator>
#include <nlohmann/json.hpp>

#include "kernels/hole_cards.h"
#include "kernels/omaha_cliques.h"
#include "omaha/nuts.h"
#include "pages/number_text.h"
#include "pages/range_picture.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"
#include "ranges/hand_classes.h"

namespace pokermath {
namespace {

// @param width  of the numbers
std::string BeatenLine(const Beaten& beaten, const char* cards, std::size_t width) {
  return fmt::format("  beaten by  {:>{}} of {:>{}} {:<15} {:>6.2f} %\n", Grouped(beaten.by), width,
                     Grouped(beaten.of), width, cards, beaten.Percent());
}

}  // namespace

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

std::string NutsText(const NutsAnswer& answer, const Colours& colours) {
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

Json NutsJson(const NutsAnswer& answer) {
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

}  // namespace pokermath
