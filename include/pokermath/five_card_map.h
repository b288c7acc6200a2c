/// @file
/// A table of all five-card hands.

#ifndef POKERMATH_FIVE_CARD_MAP_H_
#define POKERMATH_FIVE_CARD_MAP_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "pokermath/export.h"
#include "pokermath/large_table.h"

namespace pokermath {

/// Numbers by five-card hand, an ordered map in one piece of memory: 10 MB as soon as it holds
/// anything. A key is five rising card codes, six bits each: (((c1 * 64 + c2) * 64 + c3) * 64 +
/// c4) * 64 + c5. Numbers below 1 are not kept. Const members may run in any number of threads.
/// When memory runs out, std::bad_alloc is thrown.
class POKERMATH_EXPORT FiveCardMap {
 public:
  static constexpr std::size_t kHands = 2598960;  ///< that there are

  /// No numbers, and no memory.
  FiveCardMap() = default;
  /// A copy has memory of its own.
  FiveCardMap(const FiveCardMap&) = default;
  /// Likewise.
  FiveCardMap& operator=(const FiveCardMap&) = default;
  /// What is moved from is empty.
  FiveCardMap(FiveCardMap&& other) noexcept { *this = std::move(other); }
  /// Likewise.
  FiveCardMap& operator=(FiveCardMap&& other) noexcept {
    if (this == &other) return *this;
    numbers_ = std::exchange(other.numbers_, {});
    size_ = std::exchange(other.size_, 0);
    return *this;
  }
  ~FiveCardMap() = default;

  /// The key of five rising card codes; not checked.
  static constexpr int KeyOf(int c1, int c2, int c3, int c4, int c5) {
    return (((c1 * 64 + c2) * 64 + c3) * 64 + c4) * 64 + c5;
  }
  /// Place of a key among all in rising order; kHands if it is no hand.
  static std::size_t PlaceOf(int key);

  /// How many hands have a number.
  std::size_t size() const { return size_; }
  /// Whether none has.
  bool empty() const { return size_ == 0; }
  /// Takes away all numbers.
  void clear();
  /// The number of a key; 0 if there is none.
  int find(int key) const;
  /// Keeps a number for a key; false, and nothing is changed, if the key has one already or is no
  /// hand, or if the number is below 1.
  bool insert(int key, int number);
  /// Calls visit(cards) for every hand, five rising card codes, in the order of the keys.
  template <typename Visit>
  static void ForEachHand(Visit visit) {
    int c[5];
    for (c[0] = 0; c[0] < 48; ++c[0])
      for (c[1] = c[0] + 1; c[1] < 49; ++c[1])
        for (c[2] = c[1] + 1; c[2] < 50; ++c[2])
          for (c[3] = c[2] + 1; c[3] < 51; ++c[3])
            for (c[4] = c[3] + 1; c[4] < 52; ++c[4]) visit(c);
  }
  /// Calls visit(key, number) in the order of the keys.
  template <typename Visit>
  void ForEach(Visit visit) const {
    if (empty()) return;
    std::size_t place = 0;
    ForEachHand([&](const int(&c)[5]) {
      const std::int32_t number = numbers_[place++];
      if (number > 0) visit(KeyOf(c[0], c[1], c[2], c[3], c[4]), number);
    });
  }

 private:
  LargeTable<std::int32_t> numbers_;  // by place, or empty
  std::size_t size_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_FIVE_CARD_MAP_H_
