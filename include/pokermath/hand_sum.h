/// @file
/// Hands that grow and shrink card by card, for loops over cards.
///
///     long long total = 0;
///     for (int a = 0; a < 52; ++a) {
///       const HandSum one = hand.With(a);
///       for (int b = a + 1; b < 52; ++b) total += one.With(b).Evaluate();
///     }

#ifndef POKERMATH_HAND_SUM_H_
#define POKERMATH_HAND_SUM_H_

#include <cstdint>

#include "pokermath/card_set.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// Cards of one deck whose value can be asked for when they are five to seven. A small value to be
/// copied: a card more or less is a few additions, Evaluate() two look-ups.
///
/// Where the number of cards is known to the compiler, as in nested loops that start from the same
/// hand, Evaluate() branches for flushes only. Nothing has to be loaded; any number of threads.
template <const auto& kTables>
class BasicHandSum {
 public:
  /// No cards.
  BasicHandSum() = default;
  /// Some cards of the deck; others are not checked.
  explicit BasicHandSum(CardSet cards) {
    for (const int card : cards) Add(card);
  }

  /// The hand and a card more.
  ///
  /// @param card  a card code of the deck that is not in the hand; not checked
  BasicHandSum With(int card) const {
    return {sum_ + kTables.card_words[card], cards_ | std::uint64_t{1} << card, size_ + 1};
  }
  /// The hand without a card.
  ///
  /// @param card  a card that is in the hand; not checked
  BasicHandSum Without(int card) const {
    return {sum_ - kTables.card_words[card], cards_ & ~(std::uint64_t{1} << card), size_ - 1};
  }
  /// The hand and others, such as hole cards and a board.
  ///
  /// @param others  cards that are not in the hand; not checked
  BasicHandSum With(const BasicHandSum& others) const {
    return {sum_ + others.sum_ - kStart, cards_ | others.cards_, size_ + others.size_};
  }
  /// Puts a card in, as With.
  void Add(int card) { *this = With(card); }
  /// Takes a card out, as Without.
  void Remove(int card) { *this = Without(card); }

  /// How many cards it has.
  int size() const { return size_; }
  /// Its cards.
  CardSet cards() const { return CardSet::OfBits(cards_); }

  /// The value of EvaluateCards or, for the short deck, of EvaluateShortDeck; 0 unless there are
  /// five to seven cards.
  int Evaluate() const {
    switch (size_) {
      case 5:
        return kTables.template ValueOf<5>(sum_, cards_);
      case 6:
        return kTables.template ValueOf<6>(sum_, cards_);
      case 7:
        return kTables.template ValueOf<7>(sum_, cards_);
      default:
        return 0;
    }
  }

 private:
  static constexpr std::uint64_t kStart = CompactTables::kSuitStart;

  // Made anew, not changed in place: compilers then keep all three in registers.
  BasicHandSum(std::uint64_t sum, std::uint64_t cards, int size)
      : sum_(sum), cards_(cards), size_(size) {}

  std::uint64_t sum_ = kStart;
  std::uint64_t cards_ = 0;
  int size_ = 0;
};

/// A hand of 52 cards: values 1..7462, larger is better.
using HandSum = BasicHandSum<kCompactTables>;
/// A hand of the short deck: values 1..1404, larger is better.
using ShortDeckHandSum = BasicHandSum<kShortDeckTables>;

}  // namespace pokermath

#endif  // POKERMATH_HAND_SUM_H_
