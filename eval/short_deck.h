// Short-deck hands: 36 cards, six and better.
//
// A flush beats a full house, three of a kind beats a straight, and A-6-7-8-9 is the lowest
// straight.

#ifndef POKERMATH_EVAL_SHORT_DECK_H_
#define POKERMATH_EVAL_SHORT_DECK_H_

#include <array>
#include <cstdint>

namespace pokermath {

inline constexpr int kLowestShortDeckCard = 4;  ///< its rank, the six
inline constexpr int kBestShortDeckValue = 1404;

/// Puts the ascending value 1..7462 of five short-deck cards into short-deck order.
constexpr int ToShortDeckOrder(int value) {
  // A-9-8-7-6, a high card or a flush with 52 cards.
  if (value == 853) value = 5854;
  if (value == 6716) value = 7453;
  if (value >= 5854 && value <= 5863) return value - 858;   // straight
  if (value >= 4996 && value <= 5853) return value + 10;    // three of a kind
  if (value >= 7141 && value <= 7296) return value - 1277;  // full house
  if (value >= 5864 && value <= 7140) return value + 156;   // flush
  return value;
}

/// Values 1..1404 by ranks and by flushes.
class ShortDeckValues {
 public:
  static const ShortDeckValues& Get();

  /// A sum of rank keys says which ranks five to seven cards have.
  static constexpr std::uint32_t KeyOf(int rank) { return 1u << 3 * (rank - kLowestShortDeckCard); }
  /// Value of `count` cards that are no flush; any number for ranks that no cards have.
  int OfRanks(int count, std::uint32_t key) const {
    return plain_[static_cast<std::size_t>(count - 5)][PlaceOf(key)];
  }
  /// Value of the best flush of a suit's ranks as bits 4..12; 0 below five.
  int OfFlush(unsigned ranks) const { return flush_[ranks >> kLowestShortDeckCard]; }

 private:
  static constexpr std::size_t kMostPlaces = 6435;  // of seven ranks out of nine

  ShortDeckValues();
  static std::size_t PlaceOf(std::uint32_t key);

  std::array<std::array<std::uint16_t, kMostPlaces>, 3> plain_{};
  std::array<std::uint16_t, 512> flush_{};
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_SHORT_DECK_H_
