#include "pages/outs.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "omaha/next_card.h"
#include "pages/deck_picture.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"

namespace pokermath {
namespace {

void LookAtEveryCard(OutsAnswer& answer) {
  const OmahaHand& now = answer.hand;
  const int category_now = Get_rankFsm5(now.value);
  ForEachNextCard(now.hand, now.board, [&](int card, int value, const auto& is_nuts) {
    const int category = Get_rankFsm5(value);
    if (category <= category_now) return;
    const bool nuts = is_nuts();
    for (Outs* outs : {&answer.outs[category], &answer.all}) {
      outs->value = value;
      outs->cards.push_back(card);
      if (nuts) outs->nut_cards.push_back(card);
    }
  });
  // As they are shown: from high to low.
  const auto sort = [](Outs& outs) {
    for (std::vector<int>* cards : {&outs.cards, &outs.nut_cards}) {
      std::ranges::sort(*cards, comparefun);
    }
  };
  for (auto& [category, outs] : answer.outs) sort(outs);
  sort(answer.all);
}

std::vector<FlushDraw> FlushDraws(const OmahaHand& hand) {
  FlushDraw suits[4] = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
  for (const int card : hand.hand) ++suits[card / 13].in_hand;
  for (const int card : hand.board) ++suits[card / 13].on_board;
  std::vector<FlushDraw> draws;
  for (const FlushDraw& draw : suits) {
    if (draw.in_hand >= 2 && draw.on_board >= 2) draws.push_back(draw);
  }
  return draws;
}

MarkedDeck Marked(const OutsAnswer& answer) {
  MarkedDeck deck = {};
  const auto mark = [&](const std::vector<int>& cards, CardMark as) {
    for (const int card : cards) deck[static_cast<std::size_t>(card)] = as;
  };
  mark(answer.hand.hand, CardMark::kHand);
  mark(answer.hand.board, CardMark::kBoard);
  mark(answer.all.cards, CardMark::kOut);
  mark(answer.all.nut_cards, CardMark::kNutOut);
  return deck;
}

// The higher rank first, an ace that plays low behind.
std::vector<std::string> RankNames(const std::set<std::pair<int, int>>& straights) {
  constexpr std::string_view kRanks = "23456789TJQKA";
  std::vector<std::string> names;
  for (auto pair = straights.rbegin(); pair != straights.rend(); ++pair) {
    names.push_back({kRanks[static_cast<std::size_t>(pair->first)],
                     kRanks[static_cast<std::size_t>(pair->second)]});
  }
  return names;
}

std::string OutsLine(const char* name, const Outs& outs, const std::string& cards) {
  return fmt::format("{:<16}{:>4}{:>10}{}\n", name, outs.cards.size(), outs.nut_cards.size(),
                     cards.empty() ? "" : "   " + cards);
}

// "Ks* Qd": a star behind those that make the nuts.
std::string OutCards(const Outs& outs, const Colours& colours) {
  std::string text;
  for (const int card : outs.cards) {
    const bool nuts = std::ranges::count(outs.nut_cards, card) != 0;
    text += (text.empty() ? "" : " ") + colours.Out(CardName(card) + (nuts ? "*" : ""), nuts);
  }
  return text;
}

std::string OutsTable(const OutsAnswer& answer, const Colours& colours) {
  if (answer.outs.empty()) return "No card makes a higher hand.\n";
  std::string table =
      colours.Faint(fmt::format("{:<16}outs  nut outs   cards, those with * make the nuts", "")) +
      "\n";
  for (const auto& [category, outs] : answer.outs) {
    table += OutsLine(CategoryName(outs.value), outs, OutCards(outs, colours));
  }
  table += OutsLine("together", answer.all, "");
  return table + fmt::format("\nThe next card is one of {} unseen ones, an out with {:.2f} %.\n",
                             answer.hand.Unseen(), 100 * answer.Chance());
}

std::string DrawsText(const OutsAnswer& answer) {
  std::string text;
  if (!answer.straights.empty()) {
    text += fmt::format("Straights with {}: {} of {} holdings unseen\n",
                        fmt::join(RankNames(answer.straights), " "), answer.straight_holdings[1],
                        answer.straight_holdings[0]);
  }
  if (!answer.held_straights.empty()) {
    text += fmt::format("The hand has a rank of {}\n",
                        fmt::join(RankNames(answer.held_straights), " "));
  }
  static constexpr const char* kSuits[4] = {"clubs", "diamonds", "hearts", "spades"};
  for (const auto& [suit, in_hand, on_board] : answer.flush_draws) {
    text += fmt::format("{}: {}, {} in the hand and {} on the board\n",
                        on_board == 2 ? "Flush draw" : "Flush", kSuits[suit], in_hand, on_board);
  }
  return text.empty() ? text : text + "\n";
}

Json ObjectOf(const Outs& outs) {
  return {{"outs", outs.cards.size()},
          {"nut_outs", outs.nut_cards.size()},
          {"cards", CardsJson(outs.cards)},
          {"nut_cards", CardsJson(outs.nut_cards)}};
}

}  // namespace

OutsAnswer FindOuts(OmahaHand hand) {
  OutsAnswer answer;
  TestStraight(hand.hand.data(), static_cast<int>(hand.hand.size()), hand.board.data(),
               static_cast<int>(hand.board.size()), answer.straight_holdings, answer.straights,
               answer.held_straights);
  answer.hand = std::move(hand);
  answer.flush_draws = FlushDraws(answer.hand);
  LookAtEveryCard(answer);
  return answer;
}

std::string OutsText(const OutsAnswer& answer, const Colours& colours) {
  return fmt::format("{}  {}\n\n{}\n{}{}", OmahaHeadline(answer.hand, colours), answer.hand.Words(),
                     OutsTable(answer, colours), DrawsText(answer),
                     DeckText(Marked(answer), colours));
}

Json OutsJson(const OutsAnswer& answer) {
  Json json = OmahaJson(answer.hand);
  json["value"] = answer.hand.value;
  json["category"] = CategoryName(answer.hand.value);
  json["words"] = answer.hand.Words();
  json["by_category"] = Json::object();
  for (const auto& [category, outs] : answer.outs) {
    json["by_category"][CategoryName(outs.value)] = ObjectOf(outs);
  }
  json["all"] = ObjectOf(answer.all);
  json["unseen"] = answer.hand.Unseen();
  json["chance"] = answer.Chance();
  json["straights"] = {{"ranks", RankNames(answer.straights)},
                       {"held", RankNames(answer.held_straights)},
                       {"holdings", answer.straight_holdings[0]},
                       {"holdings_unseen", answer.straight_holdings[1]}};
  json["flush_draws"] = Json::array();
  for (const auto& [suit, in_hand, on_board] : answer.flush_draws) {
    json["flush_draws"].push_back({{"suit", std::string(1, "cdhs"[suit])},
                                   {"hand_cards", in_hand},
                                   {"board_cards", on_board}});
  }
  return json;
}

std::string OutsSvg(const OutsAnswer& answer) {
  return DeckSvg(Marked(answer),
                 fmt::format("{}: {}, {} outs, {} nut outs", answer.hand.Cards(Colours(false)),
                             CategoryName(answer.hand.value), answer.all.cards.size(),
                             answer.all.nut_cards.size()));
}

}  // namespace pokermath
