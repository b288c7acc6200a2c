#include "ranges/omaha/pattern.h"

#include "ranges/text_pieces.h"

namespace pokermath {
namespace {

// Runs of three and more with a dash, "T-A"; the highest rank first.
std::string RanksText(RankSet ranks) {
  std::string text;
  for (int high = 12; high >= 0; --high) {
    if ((ranks >> high & 1) == 0) continue;
    int low = high;
    while (low > 0 && (ranks >> (low - 1) & 1) != 0) --low;
    if (high - low < 2) {
      text += kRankLetters[static_cast<std::size_t>(high)];
      continue;
    }
    text += kRankLetters[static_cast<std::size_t>(low)];
    text += '-';
    text += kRankLetters[static_cast<std::size_t>(high)];
    high = low;
  }
  return text;
}

}  // namespace

std::string OmahaAtom::Text() const {
  std::string text = ranks == kAllRanks ? "x" : RanksText(ranks);
  if (text.size() > 1) text = "[" + text + "]";
  if (suit != kAnySuit) text += kSuitLetters[static_cast<std::size_t>(suit)];
  return text;
}

}  // namespace pokermath
