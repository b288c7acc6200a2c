// Deals of ranges that hardly ever fit together.

#ifndef POKERMATH_CALCULATOR_POOLS_H_
#define POKERMATH_CALCULATOR_POOLS_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "calculator/dealt.h"
#include "calculator/range_draw.h"
#include "kernels/random_numbers.h"

namespace pokermath {

/// Deals hands to all whose hands are listed, many times in one pool.
class Pools {
 public:
  /// Whether ranges fit together so seldom that pools take less time than to draw until they do.
  static bool PayFor(const RangeDraw& draw);

  /// @param draw     of two groups or more
  /// @param to_come  board cards
  /// @param trials   about so many are wanted, for which there are pools enough; 0 for no limit
  Pools(RangeDraw draw, int to_come, std::int64_t trials);
  Pools(Pools&&) noexcept;
  ~Pools();

  /// Deals of each half of the players in a pool, about.
  std::size_t deals() const { return deals_; }
  /// Trials of a pool, about.
  double trials() const { return trials_; }
  /// What a pool takes, about, in deals that are drawn.
  double attempts() const { return attempts_; }

  /// Deals one pool: fills blocks and calls visit(trials) with each of them.
  ///
  /// @param attempts  in and out: more by what it takes, in deals that are drawn
  /// @param held      out: the cards of all of them
  /// @return about how many of the trials are independent
  std::int64_t Deal(RandomNumbers& random, std::int64_t& attempts, DealtBlock& block,
                    std::span<CardSet> held, const std::function<void(std::size_t)>& visit) const;

 private:
  class Part;

  std::unique_ptr<const Part> all_;
  std::size_t deals_ = 0;
  double trials_ = 0;
  double attempts_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_POOLS_H_
