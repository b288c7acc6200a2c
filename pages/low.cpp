#include "pages/low.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "kernels/hole_cards.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Why there is no low; numbers of PokerLogic::CountLowCards.
enum Standing { kBoardHigh = 0, kHandHigh = 1, kDraw = 3, kCounterfeited = 100 };

// "8-6-4-2-A"
std::string LowName(int value) {
  std::string name;
  for (const char digit : std::to_string(value)) {
    if (!name.empty()) name += '-';
    name += digit == '1' ? 'A' : digit;
  }
  return name;
}

struct StandingWords {
  const char* name;
  const char* text;
};

StandingWords WordsFor(int standing) {
  switch (standing) {
    case kBoardHigh:
      return {"board too high", "no low: the board allows none any more"};
    case kHandHigh:
      return {"hand too high", "no low: the hand has not two different low ranks"};
    case kDraw:
      return {"draw", "no low yet: the board has not three low ranks"};
    case kCounterfeited:
      return {"counterfeited", "no low: the board repeats the low ranks of the hand"};
    default:
      return {"made", "a low"};
  }
}

}  // namespace

LowAnswer FindLow(OmahaHand hand) {
  LowAnswer answer;
  const PokerLogic logic;
  const auto size = static_cast<int>(hand.hand.size());
  const auto board_size = static_cast<int>(hand.board.size());
  int* const hole = hand.hand.data();
  int* const board = hand.board.data();
  int value_or_outs, nut_outs;
  double probability;
  answer.standing =
      logic.CountLowCards(hole, size, board, board_size, value_or_outs, nut_outs, probability);
  answer.value = logic.SetLowValueCombinationOmahaCommon(hole, size, board, board_size);
  answer.better = logic.IsMyHandNutsOmahaLow(hole, size, board, board_size);
  if (board_size < 5) {
    logic.getOutsOmahaLow(hole, size, board, board_size, answer.outs, answer.nut_outs);
  }
  answer.hand = std::move(hand);
  return answer;
}

std::string LowText(const LowAnswer& answer, const Colours& colours) {
  const int unseen = answer.hand.Unseen();
  std::string text = answer.hand.Cards(colours) + ": ";
  if (answer.value == 0) {
    text += colours.Strong(WordsFor(answer.standing).text) + "\n";
  } else {
    text += fmt::format("{}, value {}\n\n{}\n", colours.Strong(LowName(answer.value)), answer.value,
                        answer.better == 0 ? "The nut low." : "Not the nut low.");
    text += fmt::format("  better lows  {:>4} of {} holdings of two   {:.2f} %\n", answer.better,
                        Choose(unseen, 2), 100.0 * answer.better / Choose(unseen, 2));
  }
  if (!answer.CardToCome()) return text;
  text += answer.value == 0 ? fmt::format("\n  outs         {:>4} of {} next cards   {:.2f} %\n",
                                          answer.outs, unseen, 100 * answer.Chance())
                            : "";
  return text + fmt::format("  nut outs     {:>4} of {} next cards\n", answer.nut_outs, unseen);
}

Json LowJson(const LowAnswer& answer) {
  const bool has_low = answer.value != 0;
  Json json = OmahaJson(answer.hand, true);
  json["standing"] = WordsFor(answer.standing).name;
  json["low"] = has_low ? Json(LowName(answer.value)) : Json(nullptr);
  json["value"] = answer.value;
  json["is_nuts"] = has_low && answer.better == 0;
  json["beaten_by_pairs"] = has_low ? Json(answer.better) : Json(nullptr);
  json["of_pairs"] = Choose(answer.hand.Unseen(), 2);
  json["unseen"] = answer.hand.Unseen();
  if (answer.CardToCome()) {
    json["outs"] = answer.outs;
    json["nut_outs"] = answer.nut_outs;
    json["chance"] = answer.Chance();
  }
  return json;
}

}  // namespace pokermath
