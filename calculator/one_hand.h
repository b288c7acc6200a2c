// What the hands of players who have a single one make on many boards.

#ifndef POKERMATH_CALCULATOR_ONE_HAND_H_
#define POKERMATH_CALCULATOR_ONE_HAND_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "calculator/dealt.h"
#include "calculator/question.h"
#include "calculator/sharers.h"
#include "pokermath/evaluators.h"
#include "pokermath/game.h"

namespace pokermath {

/// A player's only hand. Boards are what all such hands need to know of up to DealtBlock::kMost
/// boards.
template <typename Values>
class OneHand {
 public:
  using Boards = std::span<const DealtCards>;

  OneHand(const GameRules& rules, const DealtCards& hand) : values_(rules), hand_(hand) {}
  /// Its value on each board.
  void Of(const Boards& boards, DealValues& values) const {
    values_.Of(
        boards, [this](std::size_t) { return hand_; }, values);
  }

 private:
  Values values_;
  DealtCards hand_;
};

/// Boards of five by their ranks alone, and those on which somebody may have a flush.
class RankedBoards {
 public:
  explicit RankedBoards(std::span<const DealtCards> boards);

  /// Of a board's ranks in the compact evaluator's table of five cards.
  std::span<const std::uint16_t> places() const { return std::span(places_).first(count_); }

  struct Suited {
    std::uint16_t deal;
    std::uint16_t ranks;  // of the suit
    std::uint32_t suit;
  };
  std::span<const Suited> suited() const { return std::span(suited_).first(suited_count_); }

 private:
  std::size_t count_, suited_count_ = 0;
  DealtBlock::Each<std::uint16_t> places_;
  DealtBlock::Each<Suited> suited_;
};

/// The values of a Hold'em hand on all boards of five are a table by the ranks of the board.
template <>
class OneHand<HoldemValues<5>> {
 public:
  using Boards = RankedBoards;

  OneHand(const GameRules& rules, const DealtCards& hand);
  void Of(const Boards& boards, DealValues& values) const;

 private:
  std::vector<std::int16_t> by_place_;
  std::array<std::uint16_t, 4> ranks_;  // of each suit
};

/// The hands of all players of a question who have a single one.
template <typename Values>
class SingleHands {
 public:
  /// @param deals  about how many boards there will be
  SingleHands(const CheckedQuestion& question, std::int64_t deals) : values_(question.rules()) {
    for (std::size_t i = 0; i < question.players().size(); ++i) {
      const Side& side = question.players()[i];
      if (side.IsOneHand()) hands_.push_back({i, DealtOf(side.range.hands()[0].cards)});
    }
    // To rank boards takes as long as to value one or two hands, a table as some thousand.
    if (hands_.size() < 3 || deals < 20'000) return;
    for (const Single& one : hands_) tabled_.emplace_back(question.rules(), one.hand);
  }

  void Value(std::span<const DealtCards> boards, SharerTimes& times) const {
    if (tabled_.empty()) {
      for (const Single& one : hands_) {
        values_.Of(
            boards, [&one](std::size_t) { return one.hand; }, times.ValuesOf(one.player));
      }
      return;
    }
    const typename OneHand<Values>::Boards known(boards);
    for (std::size_t i = 0; i < hands_.size(); ++i) {
      tabled_[i].Of(known, times.ValuesOf(hands_[i].player));
    }
  }

 private:
  struct Single {
    std::size_t player;
    DealtCards hand;
  };

  Values values_;
  std::vector<Single> hands_;
  std::vector<OneHand<Values>> tabled_;  // the same, or none
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_ONE_HAND_H_
