#include "contracts/cached_opponents.h"

#include <vector>

#include "contracts/team.h"
#include "kernels/decks.h"
#include "kernels/matchups.h"
#include "kernels/range_count.h"

namespace pokermath {
namespace {

// Sums up what an equity table knows of a hand against holdings; the others are left.
Tally CountCached(Deck deck, std::span<const int, 2> hand, std::span<const Combination> holdings,
                  const EquityTable& table, int boards, std::vector<Combination>& left) {
  const std::uint64_t taken = Bits(hand) | AbsentCards(deck);
  const int key = HandKey(hand[0], hand[1]);
  Tally tally;
  for (const Combination& cards : holdings) {
    if ((Bits(cards) & taken) != 0) continue;
    const auto entry = table.find({key, HandKey(cards.first, cards.second)});
    if (entry == table.end()) {
      left.push_back(cards);
    } else {
      tally.ties += entry->second;  // half wins
      tally.cases += boards;
    }
  }
  return tally;
}

Tally Count(Deck deck, std::span<const int, 2> hand, std::span<const Combination> holdings,
            const EquityTable& table, Street street, int boards) {
  if (table.empty()) return CountAgainst(deck, hand, holdings, {}, street);
  std::vector<Combination> left;
  Tally tally = CountCached(deck, hand, holdings, table, boards, left);
  tally += CountAgainst(deck, hand, left, {}, street);
  return tally;
}

}  // namespace

Tally CountWithTable(Deck deck, std::span<const int, 2> hand, std::span<const Combination> holdings,
                     const EquityTable& table) {
  const int boards = deck == Deck::kFull ? BoardsOf(Street::kRiver) : kShortDeckBoards;
  // Matchups that are known are looked up one by one, others counted together.
  const std::size_t together = IsHandOf(deck, hand) ? 1 : holdings.size();
  const auto parts = static_cast<int>(together == 0 ? 0 : holdings.size() / together);
  return SumOfTeam(parts, [&](int i) {
    const auto first = static_cast<std::size_t>(i) * together;
    return Count(deck, hand, holdings.subspan(first, together), table, Street::kRiver, boards);
  });
}

Tally CountWithTurnTable(std::span<const int, 2> hand, std::span<const Combination> holdings,
                         const EquityTable& table) {
  return Count(Deck::kFull, hand, holdings, table, Street::kTurn, BoardsOf(Street::kTurn));
}

}  // namespace pokermath
