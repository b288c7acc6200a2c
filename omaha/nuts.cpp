// An opponent's hand is worth what its best pair of hole cards is worth, so a hand is the nuts when
// no pair of unseen cards is worth more.

#include "omaha/nuts.h"

#include <algorithm>

#include "cards/card_list.h"
#include "kernels/omaha_cliques.h"
#include "omaha/next_card.h"
#include "platform/isa.h"
#include "pokermath/omaha.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr int kBadBoard = -5;

// Visits every two unseen cards, in rising order, until visit says no.
template <typename Visit>
void ForEachPair(std::uint64_t known, const Visit& visit) {
  for (int first = 0; first < 51; ++first) {
    if ((known & Bit(first)) != 0) continue;
    for (int second = first + 1; second < 52; ++second) {
      if ((known & Bit(second)) == 0 && !visit(first, second)) return;
    }
  }
}

}  // namespace

int CountBetterPairs(const OmahaPairValues& values, int value, std::uint64_t known) {
  int better = 0;
  ForEachPair(known, [&](int first, int second) {
    better += values.Of(first, second) > value ? 1 : 0;
    return true;
  });
  return better;
}

bool IsNuts(const OmahaPairValues& values, int value, std::uint64_t known) {
  bool nuts = true;
  ForEachPair(known, [&](int first, int second) {
    nuts = values.Of(first, second) <= value;
    return nuts;
  });
  return nuts;
}

BestPairs::BestPairs(const OmahaPairValues& values, std::uint64_t known) {
  ForEachPair(known, [&](int first, int second) {
    value = std::max(value, values.Of(first, second));
    return true;
  });
  ForEachPair(known, [&](int first, int second) {
    if (values.Of(first, second) == value) holdings.AddCard(first, second);
    return true;
  });
}

}  // namespace pokermath

int PokerLogic::IsMyHandNutsOmaha(int* hole, int* board, int n) const {
  using namespace pokermath;
  if (n < 3 || n > 5) return kBadBoard;
  return static_cast<int>(CountOmahaBetter(BestIsa(), CardsOf(hole, 4), CardsOf(board, n)));
}

int PokerLogic::IsMyHandNutsOmahaCommon(int* hole, int nHole, int* board, int n) const {
  return IsMyHandNutsOmahaFsm5Common(hole, nHole, board, n);
}

int IsMyHandNutsOmahaFsm5Common(int* hole, int nHole, int* board, int n) {
  using namespace pokermath;
  if (n < 3 || n > 5) return kBadBoard;
  const OmahaPairValues values(CardsOf(board, n));
  return CountBetterPairs(values, values.Best(CardsOf(hole, nHole)),
                          Bits(CardsOf(hole, nHole)) | Bits(CardsOf(board, n)));
}

int FindAllNuts(int* hole, int nHole, int* board, int n, Spec& nuts, int* outs) {
  using namespace pokermath;
  if (n < 3 || n > 4) return 0;
  const std::span<const int> hand = CardsOf(hole, nHole);
  const std::uint64_t known = Bits(hand) | Bits(CardsOf(board, n));
  const BestPairs best(OmahaPairValues(CardsOf(board, n)), known);
  nuts = best.holdings;
  outs[0] = outs[1] = 0;
  ForEachNextCard(hand, CardsOf(board, n), [&](int, int value, const auto& is_nuts) {
    if (value < best.value) return;
    ++outs[0];
    if (is_nuts()) ++outs[1];
  });
  return static_cast<int>(nuts.combinations().size());
}
