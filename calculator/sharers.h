// Which players share the pot, on many boards.

#ifndef POKERMATH_CALCULATOR_SHARERS_H_
#define POKERMATH_CALCULATOR_SHARERS_H_

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "calculator/dealing.h"
#include "eval/worth.h"
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

/// Hands on one board by the rules of any game.
class AnyBoard {
 public:
  AnyBoard(const GameRules& rules, const DealtCards& board) : rules_(rules), board_(board.cards) {}
  Worth Of(const DealtCards& hand) const {
    return WorthOf(rules_, CardList(hand.cards).cards(), board_.cards());
  }
  int HighOf(const DealtCards& hand) const { return Of(hand).high; }

 private:
  const GameRules& rules_;
  CardList board_;
};

/// Hold'em hands on one board of so many cards, by the sums of their words.
template <int board_size>
class HoldemBoard {
 public:
  HoldemBoard(const GameRules&, const DealtCards& board) : board_(board) {}
  int HighOf(const DealtCards& hand) const {
    return EvaluateSum<board_size + 2>(hand.word + board_.word, hand.cards | board_.cards);
  }

 private:
  template <int count>
  static int EvaluateSum(std::uint64_t words, CardSet cards) {
    const CompactTables& tables = kCompactTables;
    const std::uint64_t sum = CompactTables::kSuitStart + words;
    if (const std::uint64_t flush = sum & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
      const int suit = std::countr_zero(flush) / 4;
      return tables.flush_values[cards.bits() >> 13 * suit & 0x1FFF];
    }
    const std::uint64_t key = sum >> CompactTables::kKeyShift;
    const std::uint16_t row = tables.rows[count - 5][key >> CompactTables::kColumnBits];
    return tables.values[count - 5][row + (key & (CompactTables::kColumns - 1))];
  }

  DealtCards board_;
};

/// Calls use.operator()<Board>() with the type of board that values high hands of a game fastest.
template <typename Use>
auto WithBoardType(const GameRules& rules, int street, const Use& use) {
  if (rules.IsOmaha() || rules.IsShortDeck()) return use.template operator()<AnyBoard>();
  if (street == 3) return use.template operator()<HoldemBoard<3>>();
  if (street == 4) return use.template operator()<HoldemBoard<4>>();
  return use.template operator()<HoldemBoard<5>>();
}

/// How often each set of players shared the pot for the best high hand.
template <typename Board>
class SharerTimes {
 public:
  SharerTimes(const GameRules& rules, std::size_t players) : rules_(rules), players_(players) {}

  /// Adds up to DealtBlock::kMost deals: their boards, and hand_of(player, deal).
  template <typename HandOf>
  void Add(std::span<const DealtCards> boards, const HandOf& hand_of) {
    // In passes over all deals, so that one need not wait for the other.
    for (std::size_t deal = 0; deal < boards.size(); ++deal) {
      const Board board(rules_, boards[deal]);
      for (std::size_t i = 0; i < players_; ++i) {
        highs_[i][deal] = static_cast<std::uint16_t>(board.HighOf(hand_of(i, deal)));
      }
    }
    std::array<std::uint16_t, DealtBlock::kMost> best{}, sharers{};
    for (std::size_t i = 0; i < players_; ++i) {
      for (std::size_t deal = 0; deal < DealtBlock::kMost; ++deal) {
        best[deal] = std::max(best[deal], highs_[i][deal]);
      }
    }
    for (std::size_t i = 0; i < players_; ++i) {
      const auto bit = static_cast<std::uint16_t>(1u << i);
      for (std::size_t deal = 0; deal < DealtBlock::kMost; ++deal) {
        const bool shares = highs_[i][deal] == best[deal];
        sharers[deal] = static_cast<std::uint16_t>(sharers[deal] | (shares ? bit : 0));
      }
    }
    for (std::size_t deal = 0; deal < boards.size(); ++deal) ++times_[sharers[deal]];
  }

  /// Calls use(sharers, times), the sharers as a bit for each player.
  template <typename Use>
  void ForEach(const Use& use) const {
    for (unsigned sharers = 1; sharers < 1u << players_; ++sharers) {
      if (times_[sharers] > 0) use(sharers, times_[sharers]);
    }
  }

 private:
  const GameRules& rules_;
  std::size_t players_;
  std::array<std::array<std::uint16_t, DealtBlock::kMost>, kMostPlayers> highs_{};
  std::array<std::int64_t, std::size_t{1} << kMostPlayers> times_{};
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_SHARERS_H_
