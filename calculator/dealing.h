// Random deals of all players and the board.

#ifndef POKERMATH_CALCULATOR_DEALING_H_
#define POKERMATH_CALCULATOR_DEALING_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "calculator/dealt.h"
#include "calculator/pools.h"
#include "calculator/question.h"
#include "calculator/range_draw.h"
#include "kernels/random_numbers.h"

namespace pokermath {

/// Sets of so many cards out of some, up to six, all as likely: drawn as two parts from lists,
/// again where these share a card. Every set comes in as many ways.
class CardDraw {
 public:
  /// @param start  cards that every set is added to
  CardDraw(CardSet from, int count, const DealtCards& start = {});

  bool empty() const { return count_ == 0; }
  /// For each place, draws a set that holds none of the cards that are taken there, which are as
  /// many everywhere.
  void Draw(RandomNumbers& random, std::span<const CardSet> taken,
            std::span<DealtCards> drawn) const;

 private:
  bool IsCrowded(CardSet taken) const;
  void DrawOneByOne(RandomNumbers& random, std::span<const CardSet> taken,
                    std::span<DealtCards> drawn) const;
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
/// First come the hands that are listed. Then the board and those who may hold anything take cards
/// that are left. They need no second deal, because so many cards are left whatever the others
/// hold.
class Dealing {
 public:
  explicit Dealing(const CheckedQuestion& question);

  /// Where listed hands hardly ever fit together, they are dealt in pools and not one by one.
  const std::optional<Pools>& pools() const { return pools_; }

  /// Fills the first `wanted` places of a block, fewer if that takes more attempts than there are.
  ///
  /// @param attempts  in: how many there may be; out: how many are left
  /// @return how many places were filled
  std::size_t Deal(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                   DealtBlock& block) const;
  /// Deals a pool, as Pools::Deal.
  std::int64_t DealPool(RandomNumbers& random, std::int64_t& attempts, DealtBlock& block,
                        const std::function<void(std::size_t)>& visit) const;

 private:
  void DealRest(RandomNumbers& random, std::span<CardSet> taken, DealtBlock& block) const;

  std::optional<RangeDraw> listed_;  // or the pools
  std::optional<Pools> pools_;
  std::vector<std::size_t> any_;  // players who may hold anything
  CardDraw next_, later_, hand_;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_DEALING_H_
