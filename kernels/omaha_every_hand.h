// Every Omaha hand against a random hand at once.

#ifndef POKERMATH_KERNELS_OMAHA_EVERY_HAND_H_
#define POKERMATH_KERNELS_OMAHA_EVERY_HAND_H_

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "eval/rank_sets.h"

namespace pokermath {

/// Sums up over boards how every hand of a number of cards does against every hand that it leaves
/// its opponent. The boards come in steps, one for each multiset of five ranks; steps in any order
/// and on several objects give the same when they are added up.
class OmahaEveryHand {
 public:
  static constexpr int kSteps = MultisetsOf(5);

  /// @param hand_size  one of kOmahaHandSizes; of six cards the first object makes tables of 130 MB
  explicit OmahaEveryHand(int hand_size);
  ~OmahaEveryHand();

  /// Counts the boards of a step, 0..kSteps - 1.
  void Add(int step);

  /// Twice the wins plus the ties of a hand in the steps so far.
  std::int64_t Of(std::span<const int> hand) const;

  /// What has been summed up, to be kept and added to.
  std::span<std::int64_t> sums() { return sums_; }

 private:
  struct Scratch;

  template <int hand_size>
  void AddBoards(std::span<const int> ranks);
  template <int hand_size, typename Result>
  void CountClass(std::span<const int> ranks, RankSet suited, const Result& result);

  int hand_size_;
  std::vector<std::int64_t> sums_;  // by ranks, then by what a suit sees of a hand
  std::unique_ptr<Scratch> scratch_;
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_EVERY_HAND_H_
