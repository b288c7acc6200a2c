// Which players share the pot, on many boards.

#ifndef POKERMATH_CALCULATOR_SHARERS_H_
#define POKERMATH_CALCULATOR_SHARERS_H_

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <vector>

#include "calculator/dealing.h"
#include "eval/omaha_best.h"
#include "eval/worth.h"
#include "kernels/sharers.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// The cards of a set, one behind the other.
class CardList {
 public:
  explicit CardList(CardSet set) {
    for (const int card : set) list_[size_++] = card;
  }
  std::span<const int> cards() const { return std::span(list_).first(size_); }

 private:
  std::array<int, 8> list_;
  std::size_t size_ = 0;
};

// A type of values has Values(rules).Of(boards, hand_of, values), which values the high hand that
// hand_of(deal) makes on the board of each deal, larger being better.

/// By the rules of any game.
class AnyValues {
 public:
  explicit AnyValues(const GameRules& rules) : rules_(rules) {}

  template <typename HandOf>
  void Of(std::span<const DealtCards> boards, const HandOf& hand_of, DealValues& values) const {
    for (std::size_t deal = 0; deal < boards.size(); ++deal) {
      const CardList hand(hand_of(deal).cards), board(boards[deal].cards);
      values[deal] = static_cast<std::int16_t>(WorthOf(rules_, hand.cards(), board.cards()).high);
    }
  }

 private:
  const GameRules& rules_;
};

/// Hold'em on boards of so many cards, by the sums of their words.
template <int board_size>
class HoldemValues {
 public:
  explicit HoldemValues(const GameRules&) {}

  template <typename HandOf>
  [[gnu::noinline]] void Of(std::span<const DealtCards> boards, const HandOf& hand_of,
                            DealValues& values) const {
    const CompactTables& tables = kCompactTables;
    const std::uint16_t* const rows = tables.rows[board_size - 3];
    const std::uint16_t* const of_ranks = tables.values[board_size - 3];
    // Flushes are listed without a branch and done at the end: one that cannot be predicted would
    // stop the look-ups that are under way.
    DealtBlock::Each<std::uint16_t> flushes;
    std::size_t flush_count = 0;
    ForEachDeal(boards.size(), [&](std::size_t deal) {
      const std::uint64_t sum = CompactTables::kSuitStart + hand_of(deal).word + boards[deal].word;
      const std::uint64_t key = sum >> CompactTables::kKeyShift;
      const std::uint16_t row = rows[key >> CompactTables::kColumnBits];
      values[deal] =
          static_cast<std::int16_t>(of_ranks[row + (key & (CompactTables::kColumns - 1))]);
      flushes[flush_count] = static_cast<std::uint16_t>(deal);
      flush_count += (sum & CompactTables::kFlushBits) != 0 ? 1 : 0;
    });
    for (const std::uint16_t deal : std::span(flushes).first(flush_count)) {
      const DealtCards all = hand_of(deal) + boards[deal];
      const std::uint64_t suits =
          (CompactTables::kSuitStart + all.word) & CompactTables::kFlushBits;
      const int suit = std::countr_zero(suits) / 4;
      values[deal] =
          static_cast<std::int16_t>(tables.flush_values[all.cards.bits() >> 13 * suit & 0x1FFF]);
    }
  }
};

/// Omaha on boards of five.
class OmahaValues {
 public:
  explicit OmahaValues(const GameRules&) {}

  template <typename HandOf>
  void Of(std::span<const DealtCards> boards, const HandOf& hand_of, DealValues& values) const {
    for (std::size_t deal = 0; deal < boards.size(); ++deal) {
      const DealtCards hand = hand_of(deal);
      const DealtCards& board = boards[deal];
      values[deal] =
          static_cast<std::int16_t>(BestOmahaValue(hand.cards, hand.word, board.cards, board.word));
    }
  }
};

/// Calls use.operator()<Values>() with the type that values high hands of a game fastest.
template <typename Use>
auto WithValues(const GameRules& rules, int street, const Use& use) {
  if (rules.IsOmaha() && street == 5) return use.template operator()<OmahaValues>();
  if (rules.IsOmaha() || rules.IsShortDeck()) return use.template operator()<AnyValues>();
  if (street == 3) return use.template operator()<HoldemValues<3>>();
  if (street == 4) return use.template operator()<HoldemValues<4>>();
  return use.template operator()<HoldemValues<5>>();
}

/// How often each set of players shared the pot for the best high hand.
class SharerTimes {
 public:
  explicit SharerTimes(std::size_t players)
      : players_(players), times_(std::size_t{1} << players) {}

  /// Where the values of a player's hands in up to DealtBlock::kMost deals belong.
  DealValues& ValuesOf(std::size_t player) { return values_[player]; }

  /// Adds so many deals, in which all players' hands were valued.
  void Add(std::size_t deals) {
    DealValues sharers;
    FindSharers(BestIsa(), std::span(values_).first(players_), sharers);
    for (std::size_t deal = deals; deal % kCounters != 0; ++deal) sharers[deal] = 0;
    for (std::size_t deal = 0; deal < deals; deal += kCounters) {
      for (std::size_t i = 0; i < kCounters; ++i) {
        ++times_[static_cast<std::size_t>(sharers[deal + i])][i];
      }
    }
  }

  /// Calls use(sharers, times), the sharers as a bit for each player.
  template <typename Use>
  void ForEach(const Use& use) const {
    for (unsigned sharers = 1; sharers < 1u << players_; ++sharers) {
      const auto& counters = times_[sharers];
      const std::int64_t times = std::reduce(counters.begin(), counters.end());
      if (times > 0) use(sharers, times);
    }
  }

 private:
  // Neighbours often are alike: they count apart, so as not to wait for each other.
  static constexpr std::size_t kCounters = 4;

  std::size_t players_;
  std::array<DealValues, kMostPlayers> values_{};
  static_assert(DealValues().size() == DealtBlock::kMost);
  std::vector<std::array<std::int64_t, kCounters>> times_;  // nobody shares what is no deal
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_SHARERS_H_
