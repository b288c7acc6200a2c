#include "kernels/board_judge.h"

#include "kernels/hole_cards.h"
#include "pokermath/evaluators.h"

namespace pokermath {

BoardJudge::BoardJudge(std::span<const int, 2> hand, std::span<const Combination> opponents) {
  const auto holding = [](int card1, int card2) {
    return Holding{kCompactTables.card_words[card1] + kCompactTables.card_words[card2],
                   Bit(card1) | Bit(card2)};
  };
  hero_ = holding(hand[0], hand[1]);
  opponents_.reserve(opponents.size());
  for (const auto& [first, second] : opponents) {
    const Holding opponent = holding(first, second);
    if ((opponent.cards & hero_.cards) == 0) opponents_.push_back(opponent);
  }
}

template <int kCards>
void BoardJudge::JudgeHoldings(std::span<const int> board, std::uint64_t dead, Tally& tally) const {
  std::uint64_t sum = CompactTables::kSuitStart;
  for (const int card : board) sum += kCompactTables.card_words[card];
  const std::uint64_t cards = Bits(board);
  const std::uint64_t taken = cards | dead;
  const int value = kCompactTables.ValueOf<kCards>(sum + hero_.word, cards | hero_.cards);
  for (const Holding& opponent : opponents_) {
    if ((opponent.cards & taken) != 0) continue;
    const int other = kCompactTables.ValueOf<kCards>(sum + opponent.word, cards | opponent.cards);
    tally.wins += value > other ? 1 : 0;
    tally.ties += value == other ? 1 : 0;
    ++tally.cases;
  }
}

void BoardJudge::Judge(std::span<const int> board, std::uint64_t dead, Tally& tally) const {
  switch (board.size()) {
    case 3:
      return JudgeHoldings<5>(board, dead, tally);
    case 4:
      return JudgeHoldings<6>(board, dead, tally);
    case 5:
      return JudgeHoldings<7>(board, dead, tally);
    default:
      return;
  }
}

}  // namespace pokermath
