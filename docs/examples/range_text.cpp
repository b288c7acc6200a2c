// Ranges: read from text, joined and cut like sets, asked and written.

#include <pokermath/cards.h>
#include <pokermath/hand_range.h>
#include <pokermath/ranges.h>

#include <cstdio>
#include <string>

using namespace pokermath;

int main(int argc, char** argv) {
  // With weights, of any game.
  const Result<RangeReading> read =
      ReadRange(Game::kHoldem, argc > 1 ? argv[1] : "TT+,JJ:0.25,AKs");
  if (!read) {
    return std::fprintf(stderr, "byte %zu: %s\n", read.error().position, read.error().text.c_str()),
           1;
  }
  for (const std::string& warning : read->warnings) std::printf("warning: %s\n", warning.c_str());
  std::printf("%zu hands: %s\n", read->range.size(), RangeText(read->range).c_str());
  const Result<CardSet> jacks = ReadCardSet("JhJd");
  if (jacks) std::printf("JhJd weighs %d of %d\n", read->range.WeightOf(*jacks), kWholeWeight);

  // Without weights: sets of holdings.
  RangeResult strong = ParseRange("15%");
  const RangeResult pairs = ParseRange("22+");
  if (!strong.error.empty() || !pairs.error.empty()) return 1;
  strong.range.Subtract(pairs.range);
  std::printf("without pairs: %s\n", FormatRange(strong.range).c_str());

  // What cannot be read says where and what was expected.
  const Result<RangeReading> wrong = ReadRange(Game::kHoldem, "AA,A9s-Q5s");
  std::printf("%s\n", wrong ? "read" : wrong.error().text.c_str());
}
