// Omaha with four cards, and the same hands where high and low share the pot.

#include <pokermath/calculator.h>
#include <pokermath/cards.h>

#include <cstdio>

using namespace pokermath;

int main(int argc, char** argv) {
  const char* hero = argc > 1 ? argv[1] : "AhAd2h3c";
  const char* villain = argc > 2 ? argv[2] : "JTxx:ds,KKxx";
  const char* board = argc > 3 ? argv[3] : "8s7c2cJd";
  for (const Game game : {Game::kOmaha, Game::kOmahaHighLow}) {
    const Result<RangeReading> ours = ReadRange(game, hero);
    if (!ours) return std::fprintf(stderr, "%s\n", ours.error().text.c_str()), 1;
    const Result<RangeReading> theirs = ReadRange(game, villain);
    if (!theirs) return std::fprintf(stderr, "%s\n", theirs.error().text.c_str()), 1;
    const Result<CardSet> cards = ReadCardSet(board);
    if (!cards) return std::fprintf(stderr, "%s\n", cards.error().text.c_str()), 1;

    const Result<EquityAnswer> answer =
        Calculate({.game = game, .players = {ours->range, theirs->range}, .board = *cards});
    if (!answer) return std::fprintf(stderr, "%s\n", answer.error().text.c_str()), 1;
    const Outcome& total = answer->players[0].total;
    std::printf("%-12s %.3f %%", RulesOf(game).title, 100 * total.equity);
    // Wins are pots that the hand takes alone: in Hi/Lo, with both halves.
    std::printf(", takes all of %.3f %%", 100 * total.wins.Value() / total.cases.Value());
    if (RulesOf(game).high_low) std::printf(", from lows %.3f %%", 100 * total.low);
    std::printf(" against %zu hands\n", answer->players[1].hands_left);
  }
}
