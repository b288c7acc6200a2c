#include "calculator/one_hand.h"

#include <algorithm>
#include <bit>

#include "eval/compact_keys.h"
#include "eval/rank_sets.h"

namespace pokermath {

RankedBoards::RankedBoards(std::span<const DealtCards> boards) : count_(boards.size()) {
  // Moves counts up so that the highest bit of the four is set from three cards of a suit on.
  constexpr std::uint64_t kFromThree = 0x5555;
  ForEachDeal(boards.size(), [&](std::size_t deal) {
    const std::uint64_t word = boards[deal].word;
    places_[deal] = static_cast<std::uint16_t>(PlaceOfFive(word >> CompactTables::kKeyShift));
    suited_[suited_count_].deal = static_cast<std::uint16_t>(deal);
    suited_count_ += ((word + kFromThree) & CompactTables::kFlushBits) != 0 ? 1 : 0;
  });
  for (Suited& board : std::span(suited_).first(suited_count_)) {
    const DealtCards& dealt = boards[board.deal];
    const std::uint64_t suits = (dealt.word + kFromThree) & CompactTables::kFlushBits;
    board.suit = static_cast<std::uint32_t>(std::countr_zero(suits)) / 4;
    board.ranks = static_cast<std::uint16_t>(dealt.cards.bits() >> 13 * board.suit & kAllRanks);
  }
}

OneHand<HoldemValues<5>>::OneHand(const GameRules&, const DealtCards& hand) {
  RankCounts left;
  left.fill(4);
  for (const int card : hand.cards) --left[static_cast<std::size_t>(card % 13)];
  const auto key_of_hand = static_cast<std::uint32_t>(hand.word >> CompactTables::kKeyShift);
  std::array<int, 5> ranks;
  ForEachMultiset(left, ranks, [&](std::int64_t) {
    std::uint32_t key = 0;
    for (const int rank : ranks) key += kRankKeys[rank];
    by_place_.resize(std::max(by_place_.size(), PlaceOfFive(key) + 1));
    by_place_[PlaceOfFive(key)] = static_cast<std::int16_t>(ValueOfRanks<7>(key_of_hand + key));
  });
  for (std::size_t suit = 0; suit < 4; ++suit) {
    ranks_[suit] = static_cast<std::uint16_t>(hand.cards.bits() >> 13 * suit & kAllRanks);
  }
}

void OneHand<HoldemValues<5>>::Of(const RankedBoards& boards, DealValues& values) const {
  const std::span<const std::uint16_t> places = boards.places();
  ForEachDeal(places.size(), [&](std::size_t deal) { values[deal] = by_place_[places[deal]]; });
  // Five cards of a suit leave no room for what beats a flush, and fewer are worth 0 here.
  for (const RankedBoards::Suited& board : boards.suited()) {
    const auto flush =
        static_cast<std::int16_t>(kCompactTables.flush_values[board.ranks | ranks_[board.suit]]);
    values[board.deal] = std::max(values[board.deal], flush);
  }
}

}  // namespace pokermath
