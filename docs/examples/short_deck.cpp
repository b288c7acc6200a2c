// The short deck, six to ace, under both of its rules: a set against a straight on the flop.

#include <pokermath/calculator.h>
#include <pokermath/cards.h>
#include <pokermath/evaluators.h>
#include <pokermath/hand_sum.h>

#include <cstdio>

using namespace pokermath;

int main(int argc, char** argv) {
  const char* texts[3] = {argc > 1 ? argv[1] : "7d7s", argc > 2 ? argv[2] : "JcTc",
                          argc > 3 ? argv[3] : "7h8s9d"};
  CardSet cards[3];
  for (int i = 0; i < 3; ++i) {
    const Result<CardSet> read = ReadCardSet(texts[i]);
    if (!read) return std::fprintf(stderr, "%s\n", read.error().text.c_str()), 1;
    cards[i] = *read;
  }
  for (const Game game : {Game::kShortDeck, Game::kShortDeckStraights}) {
    const Result<EquityAnswer> answer =
        Calculate({.game = game,
                   .players = {HandRange::Of(game, cards[0]), HandRange::Of(game, cards[1])},
                   .board = cards[2]});
    if (!answer) return std::fprintf(stderr, "%s\n", answer.error().text.c_str()), 1;
    std::printf("%s: %s has %.3f %%\n", RulesOf(game).title, texts[0],
                100 * answer->players[0].total.equity);
  }

  // Values of the short deck have a scale of their own, 1..1404, larger is better. The answer above
  // says that all cards are of the short deck, which the evaluators do not check.
  for (int i = 0; i < 2; ++i) {
    const int value = ShortDeckHandSum(cards[i] | cards[2]).Evaluate();  // 0 but for 5 to 7 cards
    std::printf("%s %s: %d, %s\n", texts[i], texts[2], value, ShortDeckCategoryName(value));
  }
}
