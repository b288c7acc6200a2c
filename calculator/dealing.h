// Random deals of all players and the board.

#ifndef POKERMATH_CALCULATOR_DEALING_H_
#define POKERMATH_CALCULATOR_DEALING_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "calculator/question.h"
#include "calculator/random.h"

namespace pokermath {

/// Cards that were dealt together, and the sum of their words of the compact evaluator.
struct DealtCards {
  CardSet cards;
  std::uint64_t word = 0;

  DealtCards operator+(const DealtCards& other) const {
    return {cards | other.cards, word + other.word};
  }
};
DealtCards DealtOf(CardSet cards);
/// All sets of so many cards, by their highest card, then the next one: those of the lowest cards
/// come first.
std::vector<DealtCards> DealtSetsOf(CardSet from, int count);

/// Hands drawn by their weights, by the alias method (Alastair J. Walker, 1977, "An efficient
/// method for generating discrete random variables with general distributions"), in whole numbers.
class Bag {
 public:
  explicit Bag(const Side& side);

  std::size_t size() const { return hands_.size(); }
  /// The place of a hand in the range.
  std::uint32_t Draw(StepRandom& random) const;
  const DealtCards& operator[](std::uint32_t place) const { return hands_[place]; }

 private:
  // Numbers below its limit are its own, the others that of another hand.
  struct Column {
    std::uint64_t limit;
    std::uint32_t other;
  };

  std::vector<DealtCards> hands_;
  std::vector<Column> columns_;  // empty where all weights are alike
  std::uint64_t all_ = 0;        // sum of the weights
};

/// Sets of so many cards out of some, up to five, all as likely: drawn as two parts from lists,
/// again where these share a card. Every set comes in as many ways.
class CardDraw {
 public:
  CardDraw(CardSet from, int count);

  bool empty() const { return count_ == 0; }
  /// Whether so many of the sets hold a taken card that cards are better drawn one by one.
  bool IsCrowded(CardSet taken) const;
  /// A set that holds none of the taken cards, drawn card by card.
  DealtCards DrawOneByOne(StepRandom& random, CardSet taken) const;
  /// A set, and whether it holds none of the taken cards: if not, it has to be drawn again.
  bool Draw(StepRandom& random, CardSet taken, DealtCards& drawn) const {
    const auto [place1, place2] = random.Below(static_cast<std::uint32_t>(first_.size()),
                                               static_cast<std::uint32_t>(second_.size()));
    const DealtCards& part1 = first_[place1];
    const DealtCards& part2 = second_[place2];
    drawn = part1 + part2;
    return ((part1.cards & part2.cards) | (drawn.cards & taken)).empty();
  }

 private:
  CardSet from_;
  int count_;
  std::vector<DealtCards> cards_;  // one by one
  std::vector<DealtCards> first_, second_;
};

/// Some deals side by side.
struct DealtBlock {
  static constexpr std::size_t kMost = 256;

  std::array<std::array<DealtCards, kMost>, kMostPlayers> hands;
  /// In the ranges of those that are listed.
  std::array<std::array<std::uint32_t, kMost>, kMostPlayers> places;
  std::array<DealtCards, kMost> next;  ///< what comes next; with Detail::next
  std::array<DealtCards, kMost> board;
};

/// Deals whole tables.
///
/// Every player whose hands are listed draws one of them by its weight; if two of them share a
/// card, the whole deal is drawn again, by all of them: to draw only for the one who clashed would
/// favour hands that clash more often. Then the board and those who may hold anything take cards
/// that are left. They need no second deal, because so many cards are left whatever the others
/// hold.
class Dealing {
 public:
  explicit Dealing(const CheckedQuestion& question);

  /// Fills the first `wanted` places of a block, fewer if that takes more attempts than there are.
  ///
  /// @param attempts  in: how many there may be; out: how many are left
  /// @return how many places were filled
  std::size_t Deal(StepRandom& random, std::size_t wanted, std::int64_t& attempts,
                   DealtBlock& block) const;

 private:
  struct Listed {
    Bag bag;
    std::size_t player;
    bool plays;
  };
  using TakenCards = std::array<CardSet, DealtBlock::kMost>;

  std::size_t DealListed(StepRandom& random, std::size_t wanted, std::int64_t& attempts,
                         DealtBlock& block, TakenCards& taken) const;

  DealtCards board_;
  std::vector<std::pair<std::size_t, DealtCards>> certain_;  // players of one hand
  std::vector<Listed> listed_;
  std::vector<std::size_t> any_;  // players who may hold anything
  CardDraw next_, later_, hand_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_DEALING_H_
