// What a calculation adds up, and where each number stands among its sums.
//
// A case is settled in one place for all games: who takes which share of the pot. Shares are whole
// numbers, 5,040 for a pot, since that divides by 2 and by every number of players up to 10.

#ifndef POKERMATH_CALCULATOR_SUMS_H_
#define POKERMATH_CALCULATOR_SUMS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "calculator/question.h"
#include "eval/worth.h"
#include "pokermath/calculator.h"

namespace pokermath {

inline constexpr int kPot = 5040;
inline constexpr int kHalfPot = kPot / 2;
/// Of a sample without a limit; a standard error is reached long before. Pools may have a few more.
inline constexpr std::int64_t kMostTrials = std::int64_t{1} << 40;

/// Numbers that stand for an outcome; `cases` first where there is one.
struct OutcomePlace {
  std::size_t first;
  std::size_t wins() const { return first; }
  std::size_t ties() const { return first + 1; }
  std::size_t points() const { return first + 2; }  ///< shares of the pot
  std::size_t low() const { return first + 3; }     ///< those of them that are for lows
  static constexpr std::size_t kSize = 4;
};

/// Where the numbers of a question stand.
class SumsLayout {
 public:
  explicit SumsLayout(const CheckedQuestion& question);

  static constexpr std::size_t kSteps = 0;     ///< steps done
  static constexpr std::size_t kCases = 1;     ///< cases or trials
  static constexpr std::size_t kAttempts = 2;  ///< sampled: deals, those with clashes included
  /// Of trials that were dealt in pools: squares of the trials of each pool, and trials that are
  /// independent.
  static constexpr std::size_t kPoolSquares = 3;
  static constexpr std::size_t kIndependent = 4;

  std::size_t size() const { return size_; }
  OutcomePlace Total(std::size_t player) const { return {Player(player)}; }
  /// Of samples, squares of the points of each trial or pool.
  std::size_t Squares(std::size_t player) const { return Player(player) + 4; }
  /// Of pools, the points of each times its trials.
  std::size_t Products(std::size_t player) const { return Player(player) + 5; }
  std::size_t Shared(std::size_t player, std::size_t others) const {
    return Player(player) + 6 + others;
  }
  std::size_t LowShared(std::size_t player, std::size_t others) const {
    return Player(player) + 6 + kMostPlayers + others;
  }

  /// Of a hand, category or next board: its cases, and the outcome behind them.
  std::size_t HandCases(std::size_t player, std::size_t hand) const {
    return hands_[player] + hand * kCell;
  }
  std::size_t MadeCases(std::size_t player, std::size_t category) const {
    return made_ + (player * kCategories + category) * kCell;
  }
  std::size_t NextCases(std::size_t next) const {
    return next_ + next * (1 + players_ * OutcomePlace::kSize);
  }
  static OutcomePlace OutcomeOf(std::size_t cases) { return {cases + 1}; }
  OutcomePlace NextOutcome(std::size_t next, std::size_t player) const {
    return {NextCases(next) + 1 + player * OutcomePlace::kSize};
  }

  static constexpr std::size_t kCell = 1 + OutcomePlace::kSize;  ///< cases and their outcome

 private:
  static constexpr std::size_t kPlayer = 6 + 2 * kMostPlayers;

  std::size_t Player(std::size_t player) const { return 5 + player * kPlayer; }

  std::size_t players_;
  std::array<std::size_t, kMostPlayers> hands_{};
  std::size_t next_ = 0;
  std::size_t made_ = 0;
  std::size_t size_ = 0;
};

/// The boards that come next, numbered: flops up to the names of suits, and single cards or parts
/// of a flop as they are.
class NextBoards {
 public:
  explicit NextBoards(const CheckedQuestion& question);

  /// Numbers that there are for a question.
  static std::size_t CountOf(const CheckedQuestion& question);
  std::size_t size() const { return boards_.size(); }
  std::size_t NumberOf(CardSet next) const;
  /// One board of a number; empty if it has none.
  CardSet BoardOf(std::size_t number) const { return boards_[number]; }
  /// Boards of a number that the known cards and certain hands leave.
  int Alike(std::size_t number) const { return alike_[number]; }

 private:
  int cards_;
  std::vector<CardSet> boards_;
  std::vector<int> alike_;
};

/// Three of five cards to come may be the flop.
inline constexpr std::size_t kMostNext = 10;

/// A deal of all players on a complete board.
struct SettledDeal {
  std::array<Worth, kMostPlayers> worths{};
  std::array<std::size_t, kMostPlayers> hands{};  ///< places in the ranges; with Detail::hands
  /// Numbers of the boards that come next on the way to this one; with Detail::next.
  std::array<std::size_t, kMostNext> next{};
  std::size_t next_count = 0;
};

/// What trials add to sums, so that they count as one pool.
class PoolSums {
 public:
  /// @param sums  those to which the pool's trials will be added
  PoolSums(const SumsLayout& layout, std::size_t players, std::span<Int128> sums);
  /// All trials of the pool were added.
  ///
  /// @param independent  so many of them at the least are independent
  void Close(std::int64_t independent);

 private:
  const SumsLayout& layout_;
  std::size_t players_;
  std::span<Int128> sums_;
  Int128 trials_;
  std::array<Int128, kMostPlayers> points_, squares_;
};

/// Adds cases to sums.
class Settler {
 public:
  explicit Settler(const CheckedQuestion& question);

  const SumsLayout& layout() const { return layout_; }
  /// Adds a deal that counts `weight` times.
  void Add(const SettledDeal& deal, Int128 weight, std::span<Int128> sums) const;
  /// The same for a trial, whose squares are needed too.
  void AddTrial(const SettledDeal& deal, std::span<Int128> sums) const;
  /// So many deals in which these players, a bit for each, share the pot; of games without lows and
  /// where no details are asked for, or of hands alone where everybody has one.
  void AddSharers(unsigned sharers, Int128 times, std::span<Int128> sums) const;
  /// The same for trials.
  void AddTrials(unsigned sharers, std::int64_t times, std::span<Int128> sums) const;

 private:
  struct Shares;
  Shares SharesOf(const SettledDeal& deal) const;
  void AddShares(const SettledDeal& deal, const Shares& shares, Int128 weight,
                 std::span<Int128> sums) const;

  const GameRules& rules_;
  Detail detail_;
  std::size_t players_;
  SumsLayout layout_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_SUMS_H_
