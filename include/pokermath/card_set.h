/// @file
/// A set of cards as one number, which is neither a board nor a count.

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
/// `for (const int card : set)` walks them, the lowest code first. Card codes are not checked: one
/// below 0 or above 63 is undefined, one of 52..63 a card that no game has, which Calculate
/// refuses. A number of eight bytes to be passed by value; all of it is constexpr. ReadCardSet
/// (cards.h) reads one from text.
class CardSet {
 public:
  /// No cards.
  constexpr CardSet() = default;
  /// Some card codes; one that comes twice counts once.
  constexpr explicit CardSet(std::span<const int> cards) {
    for (const int card : cards) Add(card);
  }
  /// The same, as in `CardSet{12, 51}`.
  constexpr CardSet(std::initializer_list<int> cards)
      : CardSet(std::span<const int>(cards.begin(), cards.size())) {}
  /// The set of a number, bit c for card code c.
  static constexpr CardSet OfBits(std::uint64_t bits) {
    CardSet set;
    set.bits_ = bits;
    return set;
  }

  /// The set as a number, bit c for card code c.
  constexpr std::uint64_t bits() const { return bits_; }
  /// Whether it holds no card.
  constexpr bool empty() const { return bits_ == 0; }
  /// How many cards it holds.
  constexpr int size() const { return std::popcount(bits_); }
  /// Whether it holds a card.
  constexpr bool Contains(int card) const { return (bits_ >> card & 1) != 0; }
  /// Whether the sets share a card.
  constexpr bool Meets(CardSet other) const { return (bits_ & other.bits_) != 0; }
  /// Puts a card in, if it is not there.
  constexpr void Add(int card) { bits_ |= std::uint64_t{1} << card; }

  /// The cards of either set.
  constexpr CardSet operator|(CardSet other) const { return OfBits(bits_ | other.bits_); }
  /// The cards of both sets.
  constexpr CardSet operator&(CardSet other) const { return OfBits(bits_ & other.bits_); }
  /// Without the cards of another set.
  constexpr CardSet operator-(CardSet other) const { return OfBits(bits_ & ~other.bits_); }
  /// Adds the cards of another set.
  constexpr CardSet& operator|=(CardSet other) { return *this = *this | other; }
  /// Takes away the cards of another set.
  constexpr CardSet& operator-=(CardSet other) { return *this = *this - other; }
  /// Orders sets by their bits: by the highest card code that only one of them has.
  constexpr auto operator<=>(const CardSet&) const = default;

  /// Walks the card codes of a set, rising.
  class Iterator {
   public:
    /// @name What the standard library asks of a forward iterator
    /// @{

    /// Its kind.
    using iterator_category = std::forward_iterator_tag;
    /// A card code.
    using value_type = int;
    /// Of no use here.
    using difference_type = std::ptrdiff_t;
    /// Of no use here.
    using pointer = const int*;
    /// A card code, by value.
    using reference = int;

    /// Behind the last card.
    constexpr Iterator() = default;
    /// At the lowest bit of what is left to walk.
    constexpr explicit Iterator(std::uint64_t rest) : rest_(rest) {}
    /// The card code.
    constexpr int operator*() const { return std::countr_zero(rest_); }
    /// To the next card.
    constexpr Iterator& operator++() {
      rest_ &= rest_ - 1;
      return *this;
    }
    /// To the next card; gives the place before.
    constexpr Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    /// Whether the same cards are left.
    constexpr bool operator==(const Iterator&) const = default;
    /// @}

   private:
    std::uint64_t rest_ = 0;
  };
  /// At the lowest card code.
  constexpr Iterator begin() const { return Iterator(bits_); }
  /// Behind the highest one.
  constexpr Iterator end() const { return Iterator(0); }

 private:
  std::uint64_t bits_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_CARD_SET_H_
