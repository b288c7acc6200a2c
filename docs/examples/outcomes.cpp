// What beats a hand on the flop, and what improves it: one question, its answer taken apart by the
// opponent's classes of hands, by the card that comes next and by what the hand makes.

#include <pokermath/calculator.h>
#include <pokermath/cards.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

using namespace pokermath;

// "AA", "AKs", "AKo" of two cards. CardName gives the rank first.
std::string ClassOf(CardSet hand) {
  std::vector<int> cards(hand.begin(), hand.end());
  std::ranges::sort(cards, comparefun);  // high to low
  const bool pair = cards[0] % 13 == cards[1] % 13, suited = cards[0] / 13 == cards[1] / 13;
  const std::string ranks = {CardName(cards[0])[0], CardName(cards[1])[0]};
  return pair ? ranks : ranks + (suited ? 's' : 'o');
}

int main(int argc, char** argv) {
  const Result<RangeReading> hero = ReadRange(Game::kHoldem, argc > 1 ? argv[1] : "AhKd");
  if (!hero) return std::fprintf(stderr, "%s\n", hero.error().text.c_str()), 1;
  const Result<RangeReading> villain = ReadRange(Game::kHoldem, argc > 2 ? argv[2] : "QQ+,AQs");
  if (!villain) return std::fprintf(stderr, "%s\n", villain.error().text.c_str()), 1;
  const Result<CardSet> board = ReadCardSet(argc > 3 ? argv[3] : "2c7dTh");
  if (!board) return std::fprintf(stderr, "%s\n", board.error().text.c_str()), 1;

  const Result<EquityAnswer> answer =
      Calculate({.players = {hero->range, villain->range},
                 .board = *board,
                 .detail = {.hands = true, .next = true, .made = true}});
  if (!answer) return std::fprintf(stderr, "%s\n", answer.error().text.c_str()), 1;

  std::puts("the opponent's equity by class");
  std::map<std::string, double> points, cases;  // of equities the mean by cases
  for (const HandOutcome& hand : answer->players[1].hands) {
    const double of_hand = hand.outcome.cases.Value();
    if (of_hand == 0) continue;  // the other player's hands may all block it
    points[ClassOf(hand.hand.cards)] += hand.outcome.equity * of_hand;
    cases[ClassOf(hand.hand.cards)] += of_hand;
  }
  for (const auto& [name, sum] : points) {
    std::printf("  %-3s %6.2f %%\n", name.c_str(), 100 * sum / cases[name]);
  }

  std::puts("the best next cards");
  std::vector<NextOutcome> next = answer->next;
  std::ranges::stable_sort(next, std::ranges::greater(),
                           [](const NextOutcome& card) { return card.players[0].equity; });
  for (std::size_t i = 0; i < next.size() && i < 5; ++i) {
    std::string names;  // of three cards before the flop
    for (const int card : next[i].cards) names += CardName(card);
    std::printf("  %s %6.2f %%\n", names.c_str(), 100 * next[i].players[0].equity);
  }

  std::puts("what the hand makes, how often, and its equity then");
  for (const MadeOutcome& made : answer->players[0].made) {
    const double part = made.outcome.cases.Value() / answer->cases.Value();
    std::printf("  %2d %6.2f %% %6.2f %%\n", made.category, 100 * part, 100 * made.outcome.equity);
  }
}
