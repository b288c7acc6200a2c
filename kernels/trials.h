// Random deals of a hand against players whose cards are unknown.
//
// A trial completes the board, then deals and judges one opponent after the other until one beats
// the hero. Cards are drawn by rejection: a card is drawn again while it is taken.
// What the caller draws with decides the deals, so two sources of the same numbers give the same
// trials.

#ifndef POKERMATH_KERNELS_TRIALS_H_
#define POKERMATH_KERNELS_TRIALS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "cards/card_list.h"
#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// The deals: the hero's cards and the board, and cards that are not there yet.
template <std::size_t kHandSize>
class Deals {
 public:
  using Hand = std::span<const int, kHandSize>;

  /// @param board    0 to 5 known board cards
  /// @param players  2..10, the hero included; the deck must have cards for all of them
  /// @param dead     cards that nobody holds and that cannot come
  Deals(Hand hand, std::span<const int> board, int players, std::span<const int> dead = {})
      : opponents_(players - 1), known_(board.size()) {
    std::ranges::copy(hand, hero_);
    std::ranges::copy(board, hero_ + kHandSize);
    for (std::size_t i = 0; i < kHandSize + known_; ++i) used_ |= Bit(hero_[i]);
    for (const int card : dead) used_ |= Bit(card);
  }

 protected:
  static constexpr std::size_t kCards = kHandSize + 5;

  // Deals a board, then hands to the opponents.
  //
  // meet_board(cards) sees the hero's cards and the board, meet(cards) an opponent's and the board;
  // it returns false when nothing can change any more.
  template <typename Draw, typename MeetBoard, typename Meet>
  void DealOne(Draw& draw, const MeetBoard& meet_board, const Meet& meet) {
    std::uint64_t used = used_;
    const auto next = [&] {
      int card = draw();
      while ((used >> card & 1) != 0) card = draw();
      used |= Bit(card);
      return card;
    };
    for (std::size_t i = kHandSize + known_; i < kCards; ++i) hero_[i] = next();
    meet_board(hero_);
    int opponent[kCards];
    for (std::size_t i = kHandSize; i < kCards; ++i) opponent[i] = hero_[i];
    for (int i = 0; i < opponents_; ++i) {
      for (std::size_t j = 0; j < kHandSize; ++j) opponent[j] = next();
      if (!meet(opponent)) return;
    }
  }

 private:
  int opponents_;
  std::size_t known_;
  int hero_[kCards] = {};  // hole cards, then the board
  std::uint64_t used_ = 0;
};

/// How a hand stands among others that come one by one.
struct Standing {
  int value = 0;
  int sharers = 1;  ///< who have the best value so far, the hand among them; 0 once it is beaten

  /// False once it is beaten.
  bool Meet(int other) {
    if (sharers > 0) sharers = other > value ? 0 : sharers + (other == value ? 1 : 0);
    return sharers > 0;
  }
};

/// @tparam kHandSize  cards of a hand
/// @tparam evaluate   value of a hand and the five cards of the board behind it, larger is better
template <std::size_t kHandSize, int (*evaluate)(const int* cards)>
class Trials : public Deals<kHandSize> {
 public:
  using Deals<kHandSize>::Deals;

  /// Deals one trial.
  ///
  /// @param draw  callable, returns a uniform card code of the deck
  /// @return how many players share the pot, the hero among them (1 = the hero wins alone); 0 when
  ///         the hero lost
  template <typename Draw>
  int Deal(Draw&& draw) {
    Standing hero;
    this->DealOne(
        draw, [&](const int* cards) { hero.value = evaluate(cards); },
        [&](const int* cards) { return hero.Meet(evaluate(cards)); });
    return hero.sharers;
  }
};

/// How a trial of Omaha Hi/Lo ends: who share the high hand and the low hand with the hero, 0 when
/// he has it not, and whether there is a low.
struct HighLowDeal {
  int high = 0;
  int low = 0;
  bool some_low = false;

  /// Of the pot, 0..1, and what of it comes from the low.
  double Share() const { return (high > 0 ? (some_low ? 0.5 : 1.0) / high : 0.0) + LowShare(); }
  double LowShare() const { return low > 0 ? 0.5 / low : 0.0; }
};

template <std::size_t kHandSize>
class HighLowTrials : public Deals<kHandSize> {
 public:
  using Deals<kHandSize>::Deals;

  template <typename Draw>
  HighLowDeal Deal(Draw&& draw) {
    Standing high, low;
    bool some_low = false;
    this->DealOne(
        draw,
        [&](const int* cards) {
          high.value = BestOmahaValue(HandOf(cards), BoardOf(cards));
          low.value = BestOmahaLow(HandOf(cards), BoardOf(cards));
          some_low = low.value > 0;
          if (!some_low) low.sharers = 0;
        },
        [&](const int* cards) {
          const int other_low = BestOmahaLow(HandOf(cards), BoardOf(cards));
          some_low = some_low || other_low > 0;
          if (other_low > 0) low.Meet(other_low);
          const bool stays = high.Meet(BestOmahaValue(HandOf(cards), BoardOf(cards)));
          return stays || low.sharers > 0;
        });
    return {high.sharers, low.sharers, some_low};
  }

 private:
  static std::span<const int> HandOf(const int* cards) { return {cards, kHandSize}; }
  static std::span<const int> BoardOf(const int* cards) { return {cards + kHandSize, 5}; }
};

inline int EvaluateSeven(const int* cards) { return EvaluateCards<7>(cards); }
using HoldemTrials = Trials<2, EvaluateSeven>;

/// Of two cards or more.
template <std::size_t kHandSize>
int EvaluateOmaha(const int* cards) {
  return BestOmahaValue({cards, kHandSize}, {cards + kHandSize, 5});
}
template <std::size_t kHandSize>
using OmahaTrials = Trials<kHandSize, EvaluateOmaha<kHandSize>>;

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_TRIALS_H_
