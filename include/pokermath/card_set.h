// A set of cards as one number, which is neither a board nor a count.

#ifndef POKERMATH_CARD_SET_H_
#define POKERMATH_CARD_SET_H_

#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <span>

namespace pokermath {

/// Cards without an order, each once: a bit for every card code 0..51.
///
/// `for (const int card : set)` walks them, the lowest code first. Card codes are not checked.
class CardSet {
 public:
  constexpr CardSet() = default;
  constexpr explicit CardSet(std::span<const int> cards) {
    for (const int card : cards) Add(card);
  }
  constexpr CardSet(std::initializer_list<int> cards)
      : CardSet(std::span<const int>(cards.begin(), cards.size())) {}
  static constexpr CardSet OfBits(std::uint64_t bits) {
    CardSet set;
    set.bits_ = bits;
    return set;
  }

  constexpr std::uint64_t bits() const { return bits_; }
  constexpr bool empty() const { return bits_ == 0; }
  constexpr int size() const { return std::popcount(bits_); }
  constexpr bool Contains(int card) const { return (bits_ >> card & 1) != 0; }
  constexpr bool Meets(CardSet other) const { return (bits_ & other.bits_) != 0; }
  constexpr void Add(int card) { bits_ |= std::uint64_t{1} << card; }

  constexpr CardSet operator|(CardSet other) const { return OfBits(bits_ | other.bits_); }
  constexpr CardSet operator&(CardSet other) const { return OfBits(bits_ & other.bits_); }
  /// Without the cards of another set.
  constexpr CardSet operator-(CardSet other) const { return OfBits(bits_ & ~other.bits_); }
  constexpr CardSet& operator|=(CardSet other) { return *this = *this | other; }
  constexpr CardSet& operator-=(CardSet other) { return *this = *this - other; }
  constexpr auto operator<=>(const CardSet&) const = default;

  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = int;
    using difference_type = std::ptrdiff_t;
    using pointer = const int*;
    using reference = int;

    constexpr Iterator() = default;
    constexpr explicit Iterator(std::uint64_t rest) : rest_(rest) {}
    constexpr int operator*() const { return std::countr_zero(rest_); }
    constexpr Iterator& operator++() {
      rest_ &= rest_ - 1;
      return *this;
    }
    constexpr Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    constexpr bool operator==(const Iterator&) const = default;

   private:
    std::uint64_t rest_ = 0;
  };
  constexpr Iterator begin() const { return Iterator(bits_); }
  constexpr Iterator end() const { return Iterator(0); }

 private:
  std::uint64_t bits_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_CARD_SET_H_
