// The equity of one hand against another, from the words of the command line: two_hands AhKd 7s7c
//
// The calculator checks its question, so that whatever a user writes is an answer or one line that
// says what is wrong.

#include <pokermath/calculator.h>
#include <pokermath/cards.h>

#include <cstdio>

using namespace pokermath;

int main(int argc, char** argv) {
  const char* texts[2] = {argc > 1 ? argv[1] : "AhKd", argc > 2 ? argv[2] : "7s7c"};
  EquityQuestion question;
  for (const char* text : texts) {
    const Result<CardSet> hand = ReadCardSet(text);
    if (!hand) return std::fprintf(stderr, "%s\n", hand.error().text.c_str()), 1;
    question.players.push_back(HandRange::Of(Game::kHoldem, *hand));
  }
  const Result<EquityAnswer> answer = Calculate(question);
  if (!answer) return std::fprintf(stderr, "%s\n", answer.error().text.c_str()), 1;

  for (std::size_t i = 0; i < 2; ++i) {
    const Outcome& total = answer->players[i].total;
    std::printf("%s: equity %.3f %%, wins %.0f and ties %.0f of %.0f boards\n", texts[i],
                100 * total.equity, total.wins.Value(), total.ties.Value(), total.cases.Value());
  }
}
