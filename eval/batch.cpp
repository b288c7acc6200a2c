// Many hands of one deck at once.
//
// A hand takes eight bytes of a register, those behind its cards empty. Byte shuffles turn cards
// into the three bytes of their rank keys, and one sum of absolute differences adds each of them up
// over a hand. The look-ups by these sums are plain loads, which are faster than gathers and may be
// under way while the next hands are summed up. Flushes
// are listed without a branch and done at the end of a block: a branch that cannot be predicted
// would stop the look-ups that are under way, and a table look-up for every hand's flush would push
// the values out of the nearest cache.
//
// AVX2 shuffles 16 bytes: cards are split into suits and ranks. The suits are coded 0, 1, 16, 17:
// with S their sum over five to seven cards, (S >> 2) & 17 is the suit of five of them, if there is
// one. AVX-512 with VBMI permutes 64 bytes: a card is an index by itself, and so is what it adds to
// the counts of the suits. Eight flushes of the list are then done at once.

#include "eval/batch.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

#include "eval/compact_keys.h"
#include "eval/eight_hands.h"
#include "platform/dispatch.h"
#include "platform/intrinsics.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

template <const auto& kTables, int kCount>
void EvaluateOneByOne(const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
  for (std::size_t i = 0; i < hands; ++i) {
    values[i] = static_cast<std::uint16_t>(kTables.template ValueOf<kCount>(cards + kCount * i));
  }
}

#if defined(__x86_64__)

constexpr std::size_t kBlock = 512;

const std::uint32_t* KeysOf(const CompactTables&) { return kRankKeys; }
const std::uint32_t* KeysOf(const ShortDeckTables&) { return kShortDeckKeys; }

// ---- AVX2 ----

// The bytes of the rank keys as 16-entry tables for a shuffle.
struct KeyBytes {
  alignas(16) std::uint8_t byte[3][16] = {};

  explicit KeyBytes(const std::uint32_t* keys) {
    for (std::size_t rank = 0; rank < 13; ++rank) {
      for (std::size_t i = 0; i < 3; ++i) {
        byte[i][rank] = static_cast<std::uint8_t>(keys[rank] >> (8 * i));
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

// The bytes of each of four hands and zeros, which stand for a deuce, whose key is 0. Reads up to
// six bytes more than are there.
template <int kCount>
POKERMATH_TARGET_AVX2 inline Four LoadFour(const std::uint8_t* cards) {
  constexpr auto kSpread = [] {
    std::array<std::int8_t, 16> spread{};
    for (int i = 0; i < 16; ++i) {
      spread[static_cast<std::size_t>(i)] =
          static_cast<std::int8_t>(i % 8 < kCount ? i / 8 * kCount + i % 8 : -1);
    }
    return spread;
  }();
  const auto load = [](const auto* from) POKERMATH_TARGET_AVX2 {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  };
  return _mm256_shuffle_epi8(_mm256_set_m128i(load(cards + 2 * kCount), load(cards)),
                             _mm256_broadcastsi128_si256(load(kSpread.data())));
}

// Sums the looked-up bytes of each hand.
POKERMATH_TARGET_AVX2 inline Four Sum(Four table, Four ranks) {
  return _mm256_sad_epu8(_mm256_shuffle_epi8(table, ranks), _mm256_setzero_si256());
}

// Stores the key sums of four hands and returns a bit for each that holds a flush.
template <int kCount>
POKERMATH_TARGET_AVX2 inline unsigned SumFour(const std::uint8_t* cards, const KeyBytes& tables,
                                              std::uint64_t* keys) {
  const Four no_card = _mm256_set1_epi64x(static_cast<long long>(~std::uint64_t{0} << 8 * kCount));
  const Four zero = _mm256_setzero_si256();
  const Four bytes = LoadFour<kCount>(cards);
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

// Evaluates kBlock hands.
template <const auto& kTables, int kCount>
POKERMATH_TARGET_AVX2 void EvaluateBlockAvx2(const std::uint8_t* cards, const KeyBytes& tables,
                                             std::uint16_t* values) {
  constexpr std::size_t kGroup = 16;
  alignas(32) std::uint64_t keys[kGroup];
  std::uint16_t flushes[kBlock + 4];
  std::size_t flush_count = 0;
  for (std::size_t group = 0; group < kBlock; group += kGroup) {
    for (std::size_t i = 0; i < kGroup; i += 4) {
      const unsigned flush = SumFour<kCount>(cards + kCount * (group + i), tables, keys + i);
      const std::uint64_t places = kBitPlaces[flush] + (group + i) * 0x0001000100010001u;
      std::memcpy(flushes + flush_count, &places, sizeof places);
      flush_count += static_cast<std::size_t>(__builtin_popcount(flush));
    }
    for (std::size_t i = 0; i < kGroup; ++i) {
      values[group + i] =
          static_cast<std::uint16_t>(kTables.template ValueOfRanks<kCount>(keys[i]));
    }
  }
  for (std::size_t i = 0; i < flush_count; ++i) {
    EvaluateOneByOne<kTables, kCount>(cards + kCount * flushes[i], 1, values + flushes[i]);
  }
}

template <const auto& kTables, int kCount>
POKERMATH_TARGET_AVX2 void EvaluateAvx2(const std::uint8_t* cards, std::size_t hands,
                                        std::uint16_t* values) {
  static const KeyBytes tables(KeysOf(kTables));
  // The last hands are left to the plain loop: a block reads six bytes behind its own, two hands.
  std::size_t done = 0;
  for (; done + kBlock + 1 < hands; done += kBlock) {
    EvaluateBlockAvx2<kTables, kCount>(cards + kCount * done, tables, values + done);
  }
  EvaluateOneByOne<kTables, kCount>(cards + kCount * done, hands - done, values + done);
}

// ---- AVX-512 with VBMI ----

// The highest of four bits is set for a suit that has five cards.
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight SuitsOfFive(const CardBytes& bytes, Eight cards) {
  return _mm512_and_si512(SumSuits<kCount>(bytes, cards, CompactTables::kSuitStart),
                          _mm512_set1_epi64(kSuitBits));
}

// Sixteen hands go as two times eight, side by side in 32 bits each: hand i and hand 8 + i.
constexpr std::size_t kPairOfEights = 16;
constexpr std::size_t HandOf(std::size_t lane) { return lane / 2 + lane % 2 * 8; }

// Between the two passes, sums and look-ups, lie so many hands: enough for the first one to be done
// when the second one reads, and few enough for that to be under way with the first of the next.
constexpr std::size_t kGroup = 32;

// The columns and rows of the key sums of up to kGroup hands, 16 bits each, in the order of lanes;
// and adds the flushes to a list, in any order. Returns how many they are.
template <typename Tables, int kCount>
[[gnu::always_inline]] POKERMATH_TARGET_VBMI inline std::size_t Prepare(
    const CardBytes& bytes, const std::uint8_t* cards, std::size_t hands, std::size_t first_number,
    std::uint16_t* columns_and_rows, std::uint32_t* flushes) {
  const __m512i places = _mm512_setr_epi32(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15);
  std::size_t flush_count = 0;
  for (std::size_t first = 0; first < hands; first += kPairOfEights) {
    const std::size_t there = std::min(hands - first, kPairOfEights);
    const std::uint8_t* from = cards + kCount * first;
    const Eight low = LoadEight<kCount>(from, std::min<std::size_t>(there, 8));
    const Eight high = there <= 8 ? low : LoadEight<kCount>(from + 8 * kCount, there - 8);
    const __m512i sums = Joined(SumKeys<kCount>(bytes, low), SumKeys<kCount>(bytes, high), 32);
    const __m512i columns = _mm512_and_si512(sums, _mm512_set1_epi32(Tables::kColumns - 1));
    const __m512i rows =
        _mm512_and_si512(_mm512_slli_epi32(sums, 16 - Tables::kColumnBits),
                         _mm512_set1_epi32((Tables::kKeys / Tables::kColumns - 1) << 16));
    _mm512_storeu_si512(columns_and_rows + 2 * first, _mm512_or_si512(columns, rows));

    const __m512i suits =
        Joined(SuitsOfFive<kCount>(bytes, low), SuitsOfFive<kCount>(bytes, high), 32);
    const __mmask16 flush = _mm512_mask_test_epi32_mask(
        _mm512_cmplt_epu32_mask(places, _mm512_set1_epi32(static_cast<int>(there))), suits, suits);
    const __m512i numbers =
        _mm512_add_epi32(places, _mm512_set1_epi32(static_cast<int>(first_number + first)));
    _mm512_storeu_si512(flushes + flush_count, _mm512_maskz_compress_epi32(flush, numbers));
    flush_count += static_cast<std::size_t>(__builtin_popcount(flush));
  }
  return flush_count;
}

// The values of hands without their suits.
template <const auto& kTables, int kCount>
[[gnu::always_inline]] inline void LookUp(const std::uint16_t* columns_and_rows, std::size_t hands,
                                          std::uint16_t* values) {
  const std::uint16_t* rows = kTables.rows[kCount - 5];
  const std::uint16_t* without_suits = kTables.values[kCount - 5];
  const auto value = [=](std::size_t place) {
    return without_suits[columns_and_rows[2 * place] + rows[columns_and_rows[2 * place + 1]]];
  };
  for (std::size_t first = 0; first < hands; first += kPairOfEights) {
#pragma GCC unroll 16
    for (std::size_t lane = 0; lane < kPairOfEights; ++lane) {
      if (first + HandOf(lane) < hands) values[first + HandOf(lane)] = value(first + lane);
    }
  }
}

// Up to kBlock hands without their suits, and a list of the flushes.
template <const auto& kTables, int kCount>
POKERMATH_TARGET_VBMI std::size_t EvaluateRanks(const CardBytes& bytes, const std::uint8_t* cards,
                                                std::size_t hands, std::uint16_t* values,
                                                std::uint32_t* flushes) {
  using Tables = std::remove_cvref_t<decltype(kTables)>;
  std::uint16_t columns_and_rows[2 * kGroup];
  std::size_t flush_count = 0;
  std::size_t first = 0;
  // Inlined for a number that is known and for another one.
  for (; first + kGroup <= hands; first += kGroup) {
    flush_count += Prepare<Tables, kCount>(bytes, cards + kCount * first, kGroup, first,
                                           columns_and_rows, flushes + flush_count);
    LookUp<kTables, kCount>(columns_and_rows, kGroup, values + first);
  }
  flush_count += Prepare<Tables, kCount>(bytes, cards + kCount * first, hands - first, first,
                                         columns_and_rows, flushes + flush_count);
  LookUp<kTables, kCount>(columns_and_rows, hands - first, values + first);
  return flush_count;
}

template <const auto& kTables, int kCount>
POKERMATH_TARGET_VBMI void EvaluateVbmi(const std::uint8_t* cards, std::size_t hands,
                                        std::uint16_t* values) {
  static const CardBytes bytes(KeysOf(kTables));
  std::uint32_t flushes[kBlock + kPairOfEights];
  for (std::size_t done = 0; done < hands; done += kBlock) {
    const std::size_t size = std::min(hands - done, kBlock);
    const std::size_t flush_count =
        EvaluateRanks<kTables, kCount>(bytes, cards, size, values, flushes);
    for (std::size_t first = 0; first < flush_count; first += 8) {
      const std::size_t there = std::min<std::size_t>(flush_count - first, 8);
      alignas(64) std::uint64_t ranks[8];
      const Eight listed = LoadListed<kCount>(cards, flushes + first, there);
      _mm512_store_si512(ranks,
                         RanksOfSuits<kCount>(bytes, listed, SuitsOfFive<kCount>(bytes, listed)));
      for (std::size_t i = 0; i < there; ++i) {
        values[flushes[first + i]] = static_cast<std::uint16_t>(kTables.FlushOf(0, ranks[i]));
      }
    }
    cards += kCount * size;
    values += size;
  }
}

#endif  // __x86_64__

template <const auto& kTables, int kCount>
void Evaluate(Isa isa, const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
  using Batch = void(const std::uint8_t* cards, std::size_t hands, std::uint16_t* values);
  constexpr Versions<Batch> kVersions = {
    EvaluateOneByOne<kTables, kCount>,
#if defined(__x86_64__)
    EvaluateAvx2<kTables, kCount>,
    EvaluateVbmi<kTables, kCount>,
#endif
  };
  kVersions.At(isa)(cards, hands, values);
}

template <const auto& kTables>
void Evaluate(Isa isa, int count, const std::uint8_t* cards, std::size_t hands,
              std::uint16_t* values) {
  switch (count) {
    case 5:
      return Evaluate<kTables, 5>(isa, cards, hands, values);
    case 6:
      return Evaluate<kTables, 6>(isa, cards, hands, values);
    case 7:
      return Evaluate<kTables, 7>(isa, cards, hands, values);
    default:
      std::fill_n(values, hands, std::uint16_t{0});
  }
}

}  // namespace

void EvaluateBatch(Isa isa, int count, const std::uint8_t* cards, std::size_t hands,
                   std::uint16_t* values) {
  Evaluate<kCompactTables>(isa, count, cards, hands, values);
}

void EvaluateShortDeckBatch(Isa isa, int count, const std::uint8_t* cards, std::size_t hands,
                            std::uint16_t* values) {
  Evaluate<kShortDeckTables>(isa, count, cards, hands, values);
}

void EvaluateBatch(int count, const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
  EvaluateBatch(BestIsa(), count, cards, hands, values);
}

void EvaluateBatch(const std::uint8_t* cards, std::size_t hands, std::uint16_t* values) {
  EvaluateBatch(BestIsa(), 7, cards, hands, values);
}

void EvaluateShortDeckBatch(int count, const std::uint8_t* cards, std::size_t hands,
                            std::uint16_t* values) {
  EvaluateShortDeckBatch(BestIsa(), count, cards, hands, values);
}

}  // namespace pokermath
