// Random deals of all players and the board.

#ifndef POKERMATH_CALCULATOR_DEALING_H_
#define POKERMATH_CALCULATOR_DEALING_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "calculator/question.h"
#include "kernels/random_numbers.h"

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

/// Some deals side by side.
struct DealtBlock {
  static constexpr std::size_t kMost = 512;
  template <typename T>
  using Each = std::array<T, kMost>;

  /// Of the players who have more than one.
  std::array<Each<DealtCards>, kMostPlayers> hands;
  /// In the ranges of those that are listed.
  std::array<Each<std::uint32_t>, kMostPlayers> places;
  Each<DealtCards> next;  ///< what comes next; with Detail::next
  Each<DealtCards> board;
};

/// Places drawn by their weights, by the alias method (Alastair J. Walker, 1977, "An efficient
/// method for generating discrete random variables with general distributions"), in whole numbers.
class Bag {
 public:
  explicit Bag(std::span<const std::uint64_t> weights);

  std::size_t size() const { return size_; }
  /// Draws up to DealtBlock::kMost places.
  void Draw(RandomNumbers& random, std::span<std::uint32_t> places) const;

 private:
  // Numbers below its limit are its own, the others that of another place.
  struct Column {
    std::uint64_t limit;
    std::uint32_t other;
  };

  std::size_t size_;
  std::vector<Column> columns_;  // empty where all weights are alike
  std::uint64_t all_ = 0;        // sum of the weights
  // A number below that sum may have more than 32 bits.
  int low_bits_ = 0;
  PairLimits limits_, low_limits_;
};

/// Sets of so many cards out of some, up to five, all as likely: drawn as two parts from lists,
/// again where these share a card. Every set comes in as many ways.
class CardDraw {
 public:
  /// @param start  cards that every set is added to
  CardDraw(CardSet from, int count, const DealtCards& start = {});

  bool empty() const { return count_ == 0; }
  /// For each place, draws a set that holds none of the cards that are taken there, and takes it.
  /// As many cards are taken everywhere.
  void Draw(RandomNumbers& random, std::span<CardSet> taken, std::span<DealtCards> drawn) const;

 private:
  bool IsCrowded(CardSet taken) const;
  DealtCards DrawOneByOne(RandomNumbers& random, CardSet taken) const;
  void DrawSets(RandomNumbers& random, std::span<const CardSet> taken,
                std::span<DealtCards> drawn) const;

  CardSet from_;
  int count_;
  DealtCards start_;
  std::vector<DealtCards> cards_;           // one by one
  std::vector<DealtCards> first_, second_;  // no second part of up to three cards
  PairLimits limits_;
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
  std::size_t Deal(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                   DealtBlock& block) const;

 private:
  struct Listed {
    std::vector<DealtCards> hands;
    Bag bag;
    std::size_t player;
    bool plays;
  };
  struct Attempts;

  std::size_t DealListed(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                         DealtBlock& block, std::span<CardSet> held) const;
  void Attempt(RandomNumbers& random, Attempts& made) const;

  std::vector<Listed> listed_;
  std::vector<std::size_t> any_;  // players who may hold anything
  CardDraw next_, later_, hand_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_DEALING_H_
