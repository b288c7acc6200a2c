// A board's part of the evaluator's sum is worked out once; a holding then costs one addition and
// two look-ups. The cards as bits of a number say both who shares a card and, 13 bits a suit, which
// ranks a flush has.

#include "equity/kernels/range_count.h"

#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

std::uint64_t Bit(int card) { return std::uint64_t{1} << card; }

// Ascending value of `count` cards by the sum of their words and by their bits.
template <int count>
int ValueOf(std::uint64_t sum, std::uint64_t cards) {
  const CompactTables& tables = kCompactTables;
  if (const std::uint64_t flush = sum & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
    const int suit = __builtin_ctzll(flush) / 4;
    return tables.flush_values[cards >> (13 * suit) & 0x1FFF];
  }
  const std::uint64_t key = sum >> CompactTables::kKeyShift;
  const std::uint16_t row = tables.rows[count - 5][key >> CompactTables::kColumnBits];
  return tables.values[count - 5][row + (key & (CompactTables::kColumns - 1))];
}

}  // namespace

RangeOpponents::RangeOpponents(std::span<const int, 2> hand, const CombinationSet& range) {
  const auto holding = [](int card1, int card2) {
    return Holding{kCompactTables.card_words[card1] + kCompactTables.card_words[card2],
                   Bit(card1) | Bit(card2)};
  };
  hero_ = holding(hand[0], hand[1]);
  opponents_.reserve(range.size());
  for (const auto& [first, second] : range) {
    const Holding opponent = holding(first, second);
    if ((opponent.cards & hero_.cards) == 0) opponents_.push_back(opponent);
  }
}

template <int kCards>
void RangeOpponents::JudgeHoldings(std::span<const int> board, std::uint64_t dead,
                                   Tally& tally) const {
  std::uint64_t sum = CompactTables::kSuitStart;
  std::uint64_t cards = 0;
  for (const int card : board) {
    sum += kCompactTables.card_words[card];
    cards |= Bit(card);
  }
  const std::uint64_t taken = cards | dead;
  const int value = ValueOf<kCards>(sum + hero_.word, cards | hero_.cards);
  for (const Holding& opponent : opponents_) {
    if ((opponent.cards & taken) != 0) continue;
    const int other = ValueOf<kCards>(sum + opponent.word, cards | opponent.cards);
    tally.wins += value > other ? 1 : 0;
    tally.ties += value == other ? 1 : 0;
    ++tally.cases;
  }
}

void RangeOpponents::Judge(std::span<const int> board, std::uint64_t dead, Tally& tally) const {
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

Tally RangeOpponents::Count(std::span<const int> known, int cards) const {
  std::uint64_t taken = hero_.cards;
  for (const int card : known) taken |= Bit(card);
  std::vector<int> board(known.begin(), known.end());
  Tally tally;
  const auto deal = [&](auto& self, int first) -> void {
    if (static_cast<int>(board.size()) == cards) return Judge(board, 0, tally);
    for (int card = first; card < 52; ++card) {
      if ((taken & Bit(card)) != 0) continue;
      board.push_back(card);
      self(self, card + 1);
      board.pop_back();
    }
  };
  deal(deal, 0);
  return tally;
}

}  // namespace pokermath
