// Six players before the flop: too much to count, so it is dealt at random until the standard error
// is small enough. A host shows how far it is and may stop at any time.

#include <pokermath/calculator.h>

#include <cstdint>
#include <cstdio>

using namespace pokermath;

int main() {
  EquityQuestion question{.method = Method::kSampled,
                          .sampling = {.standard_error = 0.001},  // of the pot: 0.1 %
                          .seed = 7};
  for (const char* text : {"AhKd", "15%", "15%", "30%", "random", "random"}) {
    const Result<RangeReading> read = ReadRange(question.game, text);
    if (!read) return std::fprintf(stderr, "%s\n", read.error().text.c_str()), 1;
    question.players.push_back(read->range);
  }
  const Result<Calculation> calculation = Plan(question);
  if (!calculation) return std::fprintf(stderr, "%s\n", calculation.error().text.c_str()), 1;

  // Calculate does the same, and calls a function before every step.
  Sums sums = calculation->NewSums();
  for (std::int64_t done = 0; !calculation->Enough(done, sums);) {
    const std::int64_t stop = calculation->NextStop(done);
    calculation->Do(done, stop, sums);
    done = stop;
    std::printf("%3.0f %%, %.0f trials\n", 100 * calculation->Part(done, sums),
                calculation->Cases(sums).Value());
    // To stop is to leave this loop: the answer is then that of the trials so far.
  }
  const Result<EquityAnswer> answer = calculation->Answer(sums);
  if (!answer) return std::fprintf(stderr, "%s\n", answer.error().text.c_str()), 1;
  const PlayerAnswer& hero = answer->players[0];
  std::printf("equity %.2f %%\n", 100 * hero.total.equity);
  // There is none after too few trials.
  if (hero.standard_error) std::printf("standard error %.3f %%\n", 100 * *hero.standard_error);
}
