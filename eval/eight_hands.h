// Eight hands of bytes at a time, with AVX-512 (VBMI).
//
// A hand takes eight bytes of a register, of which those behind its cards do not count. A permute
// of 64 bytes looks up what each card adds, and one sum of absolute differences adds it up over a
// hand.

#ifndef POKERMATH_EVAL_EIGHT_HANDS_H_
#define POKERMATH_EVAL_EIGHT_HANDS_H_

#include "platform/intrinsics.h"

#if defined(__x86_64__)

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/isa.h"

namespace pokermath {

/// What cards add, as 64-entry tables of bytes.
struct CardBytes {
  using Table = std::array<std::uint8_t, 64>;

  alignas(64) Table key[3] = {};   ///< bytes of the keys of their ranks
  alignas(64) Table suit[2] = {};  ///< four bits for each of two suits
  alignas(64) Table rank[2] = {};  ///< a bit for the rank, the lower eight and the upper five
  alignas(64) Table zeros = {};    ///< leading zeros of the flush bit of their suits

  /// @param keys  of ranks
  explicit CardBytes(const std::uint32_t* keys) {
    for (std::size_t card = 0; card < 52; ++card) {
      const std::size_t s = card / 13;
      for (std::size_t i = 0; i < 3; ++i) {
        key[i][card] = static_cast<std::uint8_t>(keys[card % 13] >> (8 * i));
      }
      suit[s / 2][card] = s % 2 == 0 ? 1 : 16;
      rank[card % 13 / 8][card] = static_cast<std::uint8_t>(1u << (card % 13 % 8));
      zeros[card] = static_cast<std::uint8_t>(60 - 4 * s);
    }
  }
};

using Eight = __m512i;  // 64 bits for each of eight hands

/// The highest of four bits for each suit.
inline constexpr std::uint64_t kSuitBits = 0x8888;

/// Where the cards of eight hands are.
template <int kCount>
constexpr __mmask64 kCardPlaces = 0x0101010101010101u * ((1u << kCount) - 1);

POKERMATH_TARGET_VBMI inline Eight Load(const CardBytes::Table& table) {
  return _mm512_load_si512(table.data());
}

/// The sum of two where the second one is to be moved up.
POKERMATH_TARGET_VBMI inline Eight Joined(Eight low, Eight high, unsigned shift) {
  return _mm512_add_epi64(low, _mm512_slli_epi64(high, shift));
}

/// Sums of what the cards of each hand add, and where they count.
POKERMATH_TARGET_VBMI inline Eight SumOf(const CardBytes::Table& table, Eight cards,
                                         __mmask64 places) {
  return _mm512_sad_epu8(_mm512_maskz_permutexvar_epi8(places, cards, Load(table)),
                         _mm512_setzero_si512());
}

/// The sums of the keys of each hand, without what is above 24 bits.
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight SumKeys(const CardBytes& bytes, Eight cards) {
  constexpr __mmask64 kPlaces = kCardPlaces<kCount>;
  return Joined(Joined(SumOf(bytes.key[0], cards, kPlaces), SumOf(bytes.key[1], cards, kPlaces), 8),
                SumOf(bytes.key[2], cards, kPlaces), 16);
}

/// How many cards there are of each suit, four bits each, and `start`.
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight SumSuits(const CardBytes& bytes, Eight cards,
                                            std::uint64_t start) {
  constexpr __mmask64 kPlaces = kCardPlaces<kCount>;
  return _mm512_add_epi64(
      Joined(SumOf(bytes.suit[0], cards, kPlaces), SumOf(bytes.suit[1], cards, kPlaces), 8),
      _mm512_set1_epi64(static_cast<long long>(start)));
}

/// Up to eight hands.
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight LoadEight(const std::uint8_t* cards, std::size_t hands) {
  constexpr auto kSpread = [] {
    CardBytes::Table spread{};
    for (std::size_t i = 0; i < 64; ++i) {
      spread[i] = static_cast<std::uint8_t>(i / 8 * kCount + i % 8);
    }
    return spread;
  }();
  const __mmask64 readable = hands == 0 ? 0 : ~std::uint64_t{0} >> (64 - kCount * hands);
  return _mm512_permutexvar_epi8(_mm512_loadu_si512(kSpread.data()),
                                 _mm512_maskz_loadu_epi8(readable, cards));
}

/// Up to eight hands of a list.
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight LoadListed(const std::uint8_t* cards, const std::uint32_t* hands,
                                              std::size_t there) {
  alignas(64) std::uint8_t bytes[8][8] = {};
  for (std::size_t i = 0; i < there; ++i) std::memcpy(bytes[i], cards + kCount * hands[i], kCount);
  return _mm512_load_si512(bytes);
}

/// The ranks that hands have of a suit, as bits: different cards of a suit add different ones.
///
/// @param suits  one of kSuitBits for each hand
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight RanksOfSuits(const CardBytes& bytes, Eight cards, Eight suits) {
  const Eight zeros = _mm512_lzcnt_epi64(suits);
  // The lowest byte of each hand in all of them.
  const Eight to_all = _mm512_set4_epi32(0x08080808, 0x08080808, 0, 0);
  const __mmask64 of_suit = _mm512_mask_cmpeq_epi8_mask(
      kCardPlaces<kCount>, _mm512_permutexvar_epi8(cards, Load(bytes.zeros)),
      _mm512_shuffle_epi8(zeros, to_all));
  return Joined(SumOf(bytes.rank[0], cards, of_suit), SumOf(bytes.rank[1], cards, of_suit), 8);
}

}  // namespace pokermath

#endif  // __x86_64__

#endif  // POKERMATH_EVAL_EIGHT_HANDS_H_
