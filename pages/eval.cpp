#include "pages/eval.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "pages/game.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"
#include "pokermath/showdown.h"
#include "ranges/hand_classes.h"

namespace pokermath {
namespace {

// Orders five cards as players read them: quads, trips and pairs first, then from high to low. In
// a straight with the lowest card of the deck the ace is below it.
void OrderForReading(std::array<int, 5>& cards, int lowest) {
  std::array<int, 13> count = {};
  for (const int card : cards) ++count[static_cast<std::size_t>(card % 13)];
  const auto* from = &count[static_cast<std::size_t>(lowest)];
  const bool wheel = count[12] == 1 && std::count(from, from + 4, 1) == 4;
  const auto place = [&](int card) {
    const int rank = card % 13;
    return count[static_cast<std::size_t>(rank)] * 13 + (wheel && rank == 12 ? -1 : rank);
  };
  std::stable_sort(cards.begin(), cards.end(), [&](int a, int b) { return place(a) > place(b); });
}

// The five cards that make a short-deck hand's value.
std::array<int, 5> BestShortDeckFive(const std::vector<int>& hand, int value) {
  std::array<int, 5> five{};
  for (unsigned chosen = 0; chosen < 1u << hand.size(); ++chosen) {
    if (__builtin_popcount(chosen) != 5) continue;
    std::size_t size = 0;
    for (std::size_t i = 0; i < hand.size(); ++i) {
      if ((chosen >> i & 1) != 0) five[size++] = hand[i];
    }
    if (EvaluateShortDeck(five.data(), 5) == value) break;
  }
  return five;
}

EvalAnswer EvaluateShort(std::vector<int> hand) {
  EvalAnswer answer;
  answer.short_deck = true;
  answer.ascending = EvaluateShortDeck(hand.data(), static_cast<int>(hand.size()));
  answer.playing = BestShortDeckFive(hand, answer.ascending);
  OrderForReading(answer.playing, kLowestShortDeckRank);
  answer.hand = std::move(hand);
  return answer;
}

std::string PlayingText(const EvalAnswer& answer) {
  std::string text;
  for (const int card : answer.playing) text += " " + CardName(card);
  return text;
}

}  // namespace

EvalAnswer Evaluate(bool short_deck, std::vector<int> hand) {
  CheckDeck(short_deck, hand);
  if (short_deck) return EvaluateShort(std::move(hand));
  EvalAnswer answer;
  const int count = static_cast<int>(hand.size());
  answer.ascending = EvaluateCards(hand.data(), count);
  answer.hand_ranks = HandRanksFromAscending(answer.ascending);
  int best[5];
  FindBestFive(hand.data(), count, best);
  for (std::size_t i = 0; i < 5; ++i) answer.playing[i] = hand[static_cast<std::size_t>(best[i])];
  OrderForReading(answer.playing, 0);
  answer.words = HandInWords(hand);
  answer.hand = std::move(hand);
  return answer;
}

std::string EvalHeadline(const EvalAnswer& answer, const Colours& colours) {
  std::string playing;
  for (const int card : answer.playing) playing += " " + colours.Cards({&card, 1});
  return fmt::format("{}: {},{}\n", colours.Cards(answer.hand), colours.Strong(answer.Category()),
                     playing);
}

std::string EvalText(const EvalAnswer& answer, const Colours& colours) {
  const auto row = [&](std::string_view scale, int value, std::string_view meaning) {
    return fmt::format("  {:<10}  {:>5}   {}\n", scale, value, colours.Faint(meaning));
  };
  if (answer.short_deck) {
    return EvalHeadline(answer, colours) + "\n" +
           row("value", answer.ascending, "of 1404, larger is better");
  }
  return EvalHeadline(answer, colours) + fmt::format("\n  {:<10}  {}\n", "in words", answer.words) +
         row("descending", answer.Descending(), "of 7462, smaller is better") +
         row("ascending", answer.ascending, "of 7462, larger is better") +
         row("hand_ranks", answer.hand_ranks, "category * 4096 + place in it, larger is better");
}

std::string EvalLine(const EvalAnswer& answer) {
  if (answer.short_deck) {
    return fmt::format("{} value {} {}:{}\n", CardsText(answer.hand), answer.ascending,
                       answer.Category(), PlayingText(answer));
  }
  return fmt::format("{} descending {} ascending {} hand_ranks {} {}:{}\n", CardsText(answer.hand),
                     answer.Descending(), answer.ascending, answer.hand_ranks, answer.Category(),
                     PlayingText(answer));
}

Json EvalJson(const EvalAnswer& answer) {
  if (answer.short_deck) {
    return {{"schema", kJsonSchema},
            {"game", "shortdeck"},
            {"hand", CardsJson(answer.hand)},
            {"category", answer.Category()},
            {"cards", CardsJson(answer.playing)},
            {"value", answer.ascending}};
  }
  return {{"schema", kJsonSchema},
          {"game", "holdem"},
          {"hand", CardsJson(answer.hand)},
          {"category", answer.Category()},
          {"words", answer.words},
          {"cards", CardsJson(answer.playing)},
          {"descending", answer.Descending()},
          {"ascending", answer.ascending},
          {"hand_ranks", answer.hand_ranks}};
}

int Judge(bool short_deck, std::vector<int> first, std::vector<int> second,
          std::vector<int> board) {
  if (short_deck && !board.empty()) {
    const auto value = [&](std::vector<int> cards) {
      cards.insert(cards.end(), board.begin(), board.end());
      return EvaluateShortDeck(cards.data(), static_cast<int>(cards.size()));
    };
    const int values[2] = {value(first), value(second)};
    return values[0] > values[1] ? 1 : values[0] < values[1] ? -1 : 0;
  }
  PokerLogic logic;
  for (std::vector<int>* cards : {&first, &second}) std::ranges::sort(*cards, comparefun);
  return WhoIsWinner(first.data(), second.data(), board.data(), static_cast<int>(board.size()),
                     logic);
}

std::string OmahaEvalText(const OmahaHand& hand, const Colours& colours) {
  return OmahaHeadline(hand, colours) +
         fmt::format("\n  {:<10}  {}\n  {:<10}  {:>5}   {}\n  {:<10}  {:>5}   {}\n", "in words",
                     hand.Words(), "descending", 7463 - hand.value,
                     colours.Faint("of 7462, smaller is better"), "ascending", hand.value,
                     colours.Faint("of 7462, larger is better"));
}

Json OmahaEvalJson(const OmahaHand& hand) {
  Json json = OmahaJson(hand);
  json["category"] = CategoryName(hand.value);
  json["words"] = hand.Words();
  json["hole_cards"] = CardsJson(hand.hole);
  json["board_cards"] = CardsJson(hand.from_board);
  json["descending"] = 7463 - hand.value;
  json["ascending"] = hand.value;
  return json;
}

}  // namespace pokermath
