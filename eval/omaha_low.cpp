#include "eval/omaha_low.h"

namespace pokermath {

int BestOmahaLow(std::span<const int> hand, std::span<const int> board) {
  unsigned ranks = 0;
  for (const int card : board) ranks |= LowBit(card % 13);
  int best = 0;
  for (std::size_t i = 0; i < hand.size(); ++i) {
    for (std::size_t j = i + 1; j < hand.size(); ++j) {
      best = std::max(best, BestLow(LowBit(hand[i] % 13) | LowBit(hand[j] % 13), ranks));
    }
  }
  return best;
}

}  // namespace pokermath
