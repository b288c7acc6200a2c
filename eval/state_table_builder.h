// Building a finite-state table: an array that reads cards one at a time.
//
// A state is an offset into the array, a multiple of the row width. The entry at state + card index
// is the next state; after the last card it is the hand's value. The first row is zero and stands
// for what cannot be, the second is the start. States whose futures are equal are one.

#ifndef POKERMATH_EVAL_STATE_TABLE_BUILDER_H_
#define POKERMATH_EVAL_STATE_TABLE_BUILDER_H_

#include <array>
#include <cstdint>
#include <functional>

#include "pokermath/large_table.h"

namespace pokermath {

using StateEntries = LargeTable<std::uint32_t>;

/// What a table remembers of the cards that it has read, and what they are worth.
class StateRules {
 public:
  static constexpr std::uint64_t kImpossible = 0;
  /// No card yet.
  static constexpr std::uint64_t kStart = 1;

  virtual ~StateRules() = default;
  /// What is to be remembered after one card more.
  ///
  /// @param state  after `cards` cards
  /// @param card   its place in a row, from 0
  virtual std::uint64_t Next(std::uint64_t state, int cards, int card) const = 0;
  /// Fills a row with the values of hands by their last card, 0 where that cannot come.
  virtual void FillValues(std::uint64_t state, std::uint32_t* row) const = 0;
};

struct StateTableShape {
  int width;        ///< of a row, cards that there are
  int cards;        ///< read one after the other
  int first_index;  ///< card index of the first card in a row, 0 or 1
};

/// Works out a table. Rows are in the order in which their states first come, so the same rules
/// give the same bytes.
///
/// @param go_on  called now and then with the rows done; returning false stops
/// @return the entries, none when stopped
StateEntries BuildStateTable(const StateRules& rules, const StateTableShape& shape,
                             const std::function<bool(std::int64_t)>& go_on = {});

/// The states of hands of which any five cards may play: all ranks, and suits as long as a flush
/// can come of them.
class AnyFiveRules : public StateRules {
 public:
  /// @param lowest_rank  of the deck
  /// @param cards        read one after the other, 5 to 7
  /// @param suits        suit of the four cards of a rank, in the order of a row
  AnyFiveRules(int lowest_rank, int cards, const std::array<int, 4>& suits)
      : lowest_rank_(lowest_rank), cards_(cards), suits_(suits) {}

  std::uint64_t Next(std::uint64_t state, int cards, int card) const override;
  void FillValues(std::uint64_t state, std::uint32_t* row) const override;

 protected:
  /// Value of a hand that is no flush, by cards of each rank.
  virtual std::uint32_t ValueOfRanks(const std::array<int, 13>& counts) const = 0;
  /// Value of a flush by the ranks of its suit, five or more.
  virtual std::uint32_t ValueOfFlush(unsigned ranks) const = 0;

 private:
  int lowest_rank_;
  int cards_;
  std::array<int, 4> suits_;
};

/// Cards as a number, in any order and with suits that may be forgotten: seven bits a card.
class CardList {
 public:
  static constexpr int kNoSuit = 4;

  CardList() = default;
  explicit CardList(std::uint64_t packed);

  int size() const { return size_; }
  int RankAt(int i) const { return cards_[static_cast<std::size_t>(i)] / 5; }
  int SuitAt(int i) const { return cards_[static_cast<std::size_t>(i)] % 5; }
  void Add(int rank, int suit) { cards_[static_cast<std::size_t>(size_++)] = rank * 5 + suit; }
  int CountRank(int rank) const;
  int CountSuit(int suit) const;
  bool Holds(int rank, int suit) const;
  /// Ranks of a suit, as bits.
  unsigned RanksOf(int suit) const;
  void ForgetSuit(int suit);
  /// The same number for every order; never 0 or 1.
  std::uint64_t Pack() const;

 private:
  int size_ = 0;
  std::array<int, 7> cards_{};  // rank * 5 + suit
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_STATE_TABLE_BUILDER_H_
