// The rules of the finite-state tables that are kept in files.
//
// Any five of a short-deck hand may play. In Omaha two hole cards and three board cards play: the
// board comes first, and its suits matter as long as three cards of one can come; a hole card
// matters by its suit only if the board has three of it.

#include "contracts/state_tables.h"

#include <algorithm>
#include <unordered_map>

#include "eval/compact_keys.h"
#include "eval/short_deck.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

class ShortDeckRules final : public AnyFiveRules {
 public:
  explicit ShortDeckRules(int cards)
      : AnyFiveRules(kLowestShortDeckCard, cards, {0, 1, 2, 3}), cards_(cards) {}

 protected:
  std::uint32_t ValueOfRanks(const std::array<int, 13>& counts) const override {
    std::uint32_t key = 0;
    for (int rank = kLowestShortDeckCard; rank < 13; ++rank) {
      key +=
          static_cast<std::uint32_t>(counts[static_cast<std::size_t>(rank)]) * kShortDeckKeys[rank];
    }
    return static_cast<std::uint32_t>(cards_ == 5 ? kShortDeckTables.ValueOfRanks<5>(key)
                                                  : kShortDeckTables.ValueOfRanks<7>(key));
  }
  std::uint32_t ValueOfFlush(unsigned ranks) const override {
    return static_cast<std::uint32_t>(kShortDeckTables.FlushOf(0, ranks));
  }

 private:
  int cards_;
};

class OmahaRules final : public StateRules {
 public:
  std::uint64_t Next(std::uint64_t state, int cards, int card) const override {
    const int rank = card / 4;
    int suit = card % 4;
    CardList board(state);
    if (board.CountRank(rank) == 4 || board.Holds(rank, suit)) return kImpossible;
    if (cards < kBoard) {
      board.Add(rank, suit);
      for (int i = 0; i < 4; ++i) {
        if (board.CountSuit(i) + kBoard - board.size() < 3) board.ForgetSuit(i);
      }
      return board.Pack();
    }
    if (board.CountSuit(suit) == 0) {
      for (int i = 0; i < 4; ++i) board.ForgetSuit(i);
      suit = CardList::kNoSuit;
    }
    return PackHole(rank, suit) | board.Pack();
  }

  void FillValues(std::uint64_t state, std::uint32_t* row) const override {
    const CardList board(state & kBoardBits);
    const int hole = static_cast<int>(state >> kHoleShift) - 1;
    const int hole_rank = hole / 5;
    const int hole_suit = hole % 5;
    const PlainRow& plain = PlainValues(board, hole_rank);
    const unsigned suited = hole_suit == CardList::kNoSuit ? 0 : board.RanksOf(hole_suit);
    for (int rank = 0; rank < 13; ++rank) {
      const std::uint32_t value = plain[static_cast<std::size_t>(rank)];
      std::fill_n(row, 4, value);
      if (suited != 0 && value != 0) {
        const unsigned holes = 1u << hole_rank | 1u << rank;
        const bool there = rank == hole_rank || (suited >> rank & 1) != 0;
        row[hole_suit] = there ? 0 : std::max(value, FlushValue(suited, holes));
      }
      row += 4;
    }
  }

 private:
  static constexpr int kBoard = 5;
  static constexpr int kHoleShift = 40;
  static constexpr std::uint64_t kBoardBits = (std::uint64_t{1} << kHoleShift) - 1;
  using PlainRow = std::array<std::uint16_t, 13>;

  static std::uint64_t PackHole(int rank, int suit) {
    return static_cast<std::uint64_t>(rank * 5 + suit + 1) << kHoleShift;
  }

  // The best flush of three board cards of a suit and two hole cards.
  static std::uint32_t FlushValue(unsigned board, unsigned holes) {
    std::uint32_t best = 0;
    for (unsigned a = board; a != 0; a &= a - 1) {
      for (unsigned b = a & (a - 1); b != 0; b &= b - 1) {
        for (unsigned c = b & (b - 1); c != 0; c &= c - 1) {
          const unsigned ranks = (a & -a) | (b & -b) | (c & -c) | holes;
          best = std::max<std::uint32_t>(best, kCompactTables.flush_values[ranks]);
        }
      }
    }
    return best;
  }

  // Values without a flush by the rank of the second hole card; 0 for a fifth card of a rank. The
  // states of one board that differ in suits share them.
  const PlainRow& PlainValues(const CardList& board, int hole_rank) const {
    CardList ranks = board;
    for (int suit = 0; suit < 4; ++suit) ranks.ForgetSuit(suit);
    const auto [place, is_new] =
        plain_.try_emplace(PackHole(hole_rank, CardList::kNoSuit) | ranks.Pack());
    if (!is_new) return place->second;
    PlainRow& row = place->second;
    for (int rank = 0; rank < 13; ++rank) {
      const int count = board.CountRank(rank) + (rank == hole_rank ? 1 : 0);
      if (count == 4) continue;
      const std::uint32_t holes = kRankKeys[hole_rank] + kRankKeys[rank];
      for (int a = 0; a < 3; ++a) {
        for (int b = a + 1; b < 4; ++b) {
          for (int c = b + 1; c < 5; ++c) {
            const int value =
                ValueOfRanks<5>(holes + kRankKeys[board.RankAt(a)] + kRankKeys[board.RankAt(b)] +
                                kRankKeys[board.RankAt(c)]);
            std::uint16_t& best = row[static_cast<std::size_t>(rank)];
            best = std::max(best, static_cast<std::uint16_t>(value));
          }
        }
      }
    }
    return row;
  }

  mutable std::unordered_map<std::uint64_t, PlainRow> plain_;
};

}  // namespace

StateEntries BuildStates(const StateFile& file, const std::function<bool(std::int64_t)>& go_on) {
  if (file.shape.width == 52) return BuildStateTable(OmahaRules(), file.shape, go_on);
  return BuildStateTable(ShortDeckRules(file.shape.cards), file.shape, go_on);
}

}  // namespace pokermath
