// The compact evaluator: batches, and what people ask about one hand.
//
// A batch splits a hand's seven bytes into ranks and suits with byte arithmetic, looks up the three
// bytes of every rank key by a byte shuffle and sums each of them over a hand with one
// sum-of-absolute-differences; so a 32-byte register works on four hands. The suits are coded
// 0, 1, 16, 17: with S the sum over seven cards, (S >> 2) & 17 is the bitwise majority, the only
// suit that can flush. The few hands that hold five of it are evaluated again one by one: a table
// look-up for every hand's flush would push the values out of the nearest cache.

#include <array>
#include <cstring>

#include "eval/batch.h"
#include "eval/compact_keys.h"
#include "eval/scales.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pokermath {
namespace {

void EvaluateOneByOne(const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
  for (std::size_t i = 0; i < hands; ++i) {
    values[i] = static_cast<std::uint16_t>(EvaluateCards<7>(cards + 7 * i));
  }
}

#if defined(__x86_64__)

// The bytes of the rank keys as 16-entry tables for a shuffle.
struct KeyBytes {
  alignas(16) std::uint8_t byte[3][16] = {};

  KeyBytes() {
    for (unsigned rank = 0; rank < 13; ++rank) {
      for (unsigned i = 0; i < 3; ++i) {
        byte[i][rank] = static_cast<std::uint8_t>(kRankKeys[rank] >> (8 * i));
      }
    }
  }
};

// First card code and flush code of each suit.
alignas(16) constexpr std::uint8_t kSuitFirsts[16] = {0, 13, 26, 39};
alignas(16) constexpr std::uint8_t kSuitCodes[16] = {0, 1, 16, 17};

using Four = __m256i;  // 64 bits for each of four hands

POKERMATH_TARGET_AVX2 inline Four Repeat(const std::uint8_t* table) {
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(table)));
}

// Seven bytes and a zero from each of four hands. Reads 30 bytes, two more than are there. The zero
// stands for a deuce, whose key is 0.
POKERMATH_TARGET_AVX2 inline Four LoadFour(const std::uint8_t* cards) {
  const auto load = [](const std::uint8_t* from) POKERMATH_TARGET_AVX2 {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  };
  const __m128i spread = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, -1, 7, 8, 9, 10, 11, 12, 13, -1);
  return _mm256_shuffle_epi8(_mm256_set_m128i(load(cards + 14), load(cards)),
                             _mm256_broadcastsi128_si256(spread));
}

// Sums the looked-up bytes of each hand.
POKERMATH_TARGET_AVX2 inline Four Sum(Four table, Four ranks) {
  return _mm256_sad_epu8(_mm256_shuffle_epi8(table, ranks), _mm256_setzero_si256());
}

// Stores the key sums of four hands and returns a bit for each that holds a flush.
POKERMATH_TARGET_AVX2 inline unsigned SumFour(const std::uint8_t* cards, const KeyBytes& tables,
                                              std::uint64_t* keys) {
  const Four no_card = _mm256_set1_epi64x(static_cast<long long>(0xFF00000000000000ull));
  const Four zero = _mm256_setzero_si256();
  const Four bytes = LoadFour(cards);
  // A card's suit is its code / 13, which for 0..51 is code * 5 / 64.
  const Four five_fold = _mm256_add_epi8(bytes, _mm256_slli_epi16(bytes, 2));
  const Four suit = _mm256_and_si256(_mm256_srli_epi16(five_fold, 6), _mm256_set1_epi8(3));
  const Four first = _mm256_shuffle_epi8(Repeat(kSuitFirsts), suit);
  const Four ranks = _mm256_sub_epi8(bytes, first);
  const Four key0 = Sum(Repeat(tables.byte[0]), ranks);
  const Four key1 = _mm256_slli_epi64(Sum(Repeat(tables.byte[1]), ranks), 8);
  const Four key2 = _mm256_slli_epi64(Sum(Repeat(tables.byte[2]), ranks), 16);
  const Four key = _mm256_add_epi64(key0, _mm256_add_epi64(key1, key2));
  _mm256_store_si256(reinterpret_cast<Four*>(keys), key);

  const Four suits = _mm256_shuffle_epi8(Repeat(kSuitCodes), suit);
  const Four total = _mm256_sad_epu8(suits, zero);
  const Four majority = _mm256_and_si256(_mm256_srli_epi64(total, 2), _mm256_set1_epi64x(0x11));
  const Four first_byte = _mm256_set_epi64x(0x0808080808080808, 0, 0x0808080808080808, 0);
  const Four of_majority = _mm256_cmpeq_epi8(suits, _mm256_shuffle_epi8(majority, first_byte));
  const Four held = _mm256_sad_epu8(_mm256_andnot_si256(no_card, of_majority), zero);
  const Four flush = _mm256_cmpgt_epi64(held, _mm256_set1_epi64x(4 * 255));
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_castsi256_pd(flush)));
}

// Places of the bits of a four-bit number, 16 bits each.
constexpr std::array<std::uint64_t, 16> kBitPlaces = [] {
  std::array<std::uint64_t, 16> places{};
  for (unsigned bits = 0; bits < 16; ++bits) {
    int shift = 0;
    for (std::uint64_t i = 0; i < 4; ++i) {
      if ((bits >> i & 1) == 0) continue;
      places[bits] |= i << shift;
      shift += 16;
    }
  }
  return places;
}();

// Evaluates kBlock hands. Flushes are listed without a branch and done at the end: a branch that
// cannot be predicted would stop the look-ups that are under way.
constexpr std::size_t kBlock = 512;

POKERMATH_TARGET_AVX2 void EvaluateBlock(const std::uint8_t* cards, const KeyBytes& tables,
                                         std::uint16_t* values) {
  constexpr std::size_t kGroup = 16;
  const std::uint16_t* rows = kCompactTables.rows[2];
  const std::uint16_t* without_suits = kCompactTables.values[2];
  alignas(32) std::uint64_t keys[kGroup];
  std::uint16_t flushes[kBlock + 4];
  std::size_t flush_count = 0;
  for (std::size_t group = 0; group < kBlock; group += kGroup) {
    for (std::size_t i = 0; i < kGroup; i += 4) {
      const unsigned flush = SumFour(cards + 7 * (group + i), tables, keys + i);
      const std::uint64_t places = kBitPlaces[flush] + (group + i) * 0x0001000100010001u;
      std::memcpy(flushes + flush_count, &places, sizeof places);
      flush_count += static_cast<std::size_t>(__builtin_popcount(flush));
    }
    for (std::size_t i = 0; i < kGroup; ++i) {
      const std::uint64_t column = keys[i] & (CompactTables::kColumns - 1);
      values[group + i] = without_suits[rows[keys[i] >> CompactTables::kColumnBits] + column];
    }
  }
  for (std::size_t i = 0; i < flush_count; ++i) {
    EvaluateOneByOne(cards + 7 * flushes[i], 1, values + flushes[i]);
  }
}

POKERMATH_TARGET_AVX2 void EvaluateAvx2(const std::uint8_t* cards, std::size_t hands,
                                        std::uint16_t* values) {
  static const KeyBytes tables;
  // The last hands are left to the plain loop: a block reads two bytes behind its own.
  std::size_t done = 0;
  for (; done + kBlock < hands; done += kBlock) {
    EvaluateBlock(cards + 7 * done, tables, values + done);
  }
  EvaluateOneByOne(cards + 7 * done, hands - done, values + done);
}

#endif  // __x86_64__

}  // namespace

void EvaluateBatch(Isa isa, const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
#if defined(__x86_64__)
  if (isa != Isa::kBaseline) return EvaluateAvx2(cards, hands, values);
#endif
  EvaluateOneByOne(cards, hands, values);
}

void EvaluateBatch(const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
  EvaluateBatch(BestIsa(), cards, hands, values);
}

int EvaluateCards(const int* cards, int count) {
  switch (count) {
    case 5:
      return EvaluateCards<5>(cards);
    case 6:
      return EvaluateCards<6>(cards);
    case 7:
      return EvaluateCards<7>(cards);
    default:
      return 0;
  }
}

int HandRanksFromAscending(int ascending) { return ToHandRanks(ascending); }

void FindBestFive(const int* cards, int count, int best[5]) {
  if (count < 5 || count > 7) return;
  const int value = EvaluateCards(cards, count);
  for (unsigned chosen = 0; chosen < 1u << count; ++chosen) {
    if (__builtin_popcount(chosen) != 5) continue;
    int five[5];
    int size = 0;
    for (int i = 0; i < count; ++i) {
      if ((chosen >> i & 1) == 0) continue;
      best[size] = i;
      five[size++] = cards[i];
    }
    if (EvaluateCards<5>(five) == value) return;
  }
}

}  // namespace pokermath
