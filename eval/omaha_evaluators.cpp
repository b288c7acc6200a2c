// Omaha hands with a board each, single and in batches.
//
// A board has a row with what pairs of hole ranks make (omaha_rows.h), and a hand is worth the
// largest of its pairs there. Whether two hole cards and three board cards of a suit can meet is
// seen from the sums of the cards' words; such deals are looked at once more. In a batch the rows
// of a block are found first, so that they come near while the next are looked for.
//
// With VBMI a row is three registers, and two permutes look up all pairs of a hand. There is an
// instruction that finds the smallest of eight, so we look for the smallest complement. A batch
// sums up the words of eight deals at a time, numbers the pairs of two or four hands, and does
// eight flushes of its list at once.

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "eval/eight_hands.h"
#include "eval/omaha_batch.h"
#include "eval/omaha_best.h"
#include "eval/omaha_pairs.h"
#include "eval/omaha_rows.h"
#include "eval/rank_sets.h"
#include "platform/dispatch.h"
#include "platform/intrinsics.h"

namespace pokermath {
namespace {

template <typename Card>
unsigned RanksOfSuit(const Card* cards, int count, int suit) {
  std::uint64_t bits = 0;
  for (int i = 0; i < count; ++i) bits |= std::uint64_t{1} << static_cast<int>(cards[i]);
  return static_cast<unsigned>(bits >> 13 * suit) & kAllRanks;
}

// The value of a deal by its flush bits and what it is worth without a flush. Not inlined: what
// calls it last needs no registers saved.
template <int kHoles, typename Card>
[[gnu::noinline]] int WithFlush(const Card* hand, const Card* board, std::uint32_t flush_bits,
                                int plain) {
  const int suit = OmahaRows::SuitOf(flush_bits);
  return std::max(plain,
                  BestOmahaFlush(RanksOfSuit(hand, kHoles, suit), RanksOfSuit(board, 5, suit)));
}

template <int kHoles, typename Card>
inline int EvaluateOne(const OmahaRows& rows, const Card* hand, const Card* board) {
  const std::uint32_t words = rows.SumBoard(board);
  const int plain = BestOfPairs<kHoles>(rows.OfWords(words), hand);
  const std::uint32_t flush_bits = rows.FlushBits<kHoles>(hand, words);
  if (flush_bits == 0) [[likely]]
    return plain;
  return WithFlush<kHoles>(hand, board, flush_bits, plain);
}

// A block of deals: their rows, and a list of those that can flush.
constexpr std::size_t kBlock = 128;

inline void Prefetch(const std::uint16_t* row) {
  for (std::size_t line = 0; line < OmahaRows::kRow; line += 32) __builtin_prefetch(row + line);
}

template <int kHoles>
void EvaluateBlock(const OmahaRows& all_rows, const std::uint8_t* hands, const std::uint8_t* boards,
                   std::size_t count, std::uint16_t* values) {
  const std::uint16_t* rows[kBlock];
  std::uint32_t flush_bits[kBlock];
  std::uint32_t flushes[kBlock];
  std::size_t flush_count = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t words = all_rows.SumBoard(boards + 5 * i);
    rows[i] = all_rows.OfWords(words);
    Prefetch(rows[i]);
    const std::uint32_t bits = all_rows.FlushBits<kHoles>(hands + kHoles * i, words);
    flush_bits[flush_count] = bits;
    flushes[flush_count] = static_cast<std::uint32_t>(i);
    flush_count += bits != 0 ? 1 : 0;
  }
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = static_cast<std::uint16_t>(BestOfPairs<kHoles>(rows[i], hands + kHoles * i));
  }
  for (std::size_t i = 0; i < flush_count; ++i) {
    const std::size_t deal = flushes[i];
    values[deal] = static_cast<std::uint16_t>(
        WithFlush<kHoles>(hands + kHoles * deal, boards + 5 * deal, flush_bits[i], values[deal]));
  }
}

#if defined(__x86_64__)

// ---- AVX-512 with VBMI ----

// A hand's pairs take eight lanes of 16 bits, or sixteen if there are more.
template <int kHoles>
constexpr std::size_t kLanes = kHoles == 4 ? 8 : 16;
template <int kHoles>
constexpr std::size_t kHandsInRegister = 32 / kLanes<kHoles>;

// The two cards of each pair by the lower byte of its lane, hands one behind the other; the first
// pair again where there is none. The upper byte is to be 0.
template <int kHoles>
struct PairPlaces {
  alignas(64) std::array<std::uint8_t, 64> card[2];
};

template <int kHoles>
constexpr PairPlaces<kHoles> kPairPlaces = [] {
  constexpr std::uint8_t kNone = 0x80;
  PairPlaces<kHoles> places;
  for (auto& card : places.card) card.fill(kNone);
  for (std::size_t hand = 0; hand < kHandsInRegister<kHoles>; ++hand) {
    const auto set = [&](std::size_t lane, std::size_t i, std::size_t j) {
      const std::size_t byte = 2 * (hand * kLanes<kHoles> + lane);
      places.card[0][byte] = static_cast<std::uint8_t>(hand * kHoles + i);
      places.card[1][byte] = static_cast<std::uint8_t>(hand * kHoles + j);
    };
    std::size_t lane = 0;
    for (std::size_t i = 1; i < kHoles; ++i) {
      for (std::size_t j = 0; j < i; ++j) set(lane++, i, j);
    }
    while (lane < kLanes<kHoles>) set(lane++, 1, 0);
  }
  return places;
}();

// The numbers of pairs by their higher rank, less the lower one, in every quarter of a register.
alignas(64) constexpr auto kPairStarts64 = [] {
  std::array<std::uint8_t, 64> starts{};
  for (std::size_t i = 0; i < starts.size(); ++i) starts[i] = kPairStarts[i % 16];
  return starts;
}();

alignas(64) constexpr auto kFirstOfLast = [] {
  std::array<std::uint16_t, 32> numbers{};
  numbers.fill(64);
  return numbers;
}();

POKERMATH_TARGET_VBMI inline __m256i Load256(const std::uint8_t* table) {
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(table));
}

POKERMATH_TARGET_VBMI inline __m512i RanksOf(__m512i cards) {
  return _mm512_permutexvar_epi8(cards, _mm512_load_si512(kRanksOfCards.data()));
}

// The numbers of the pairs of as many hands as there is room for, a lane each.
template <int kHoles>
POKERMATH_TARGET_VBMI inline __m512i PairsOfHands(__m512i cards) {
  constexpr __mmask64 kLowerBytes = 0x5555555555555555;
  const __m512i ranks = RanksOf(cards);
  const auto rank_of = [&](std::size_t card) POKERMATH_TARGET_VBMI {
    return _mm512_maskz_permutexvar_epi8(
        kLowerBytes, _mm512_load_si512(kPairPlaces<kHoles>.card[card].data()), ranks);
  };
  const __m512i first = rank_of(0);
  const __m512i second = rank_of(1);
  const __m512i starts = _mm512_load_si512(kPairStarts64.data());
  return _mm512_add_epi8(_mm512_shuffle_epi8(starts, _mm512_max_epu8(first, second)),
                         _mm512_min_epu8(first, second));
}

// Of one hand, in half a register: its instructions can go to one port more.
template <int kHoles>
POKERMATH_TARGET_VBMI inline __m512i PairsOfHand(__m128i cards) {
  const __m128i in_quarter = _mm512_castsi512_si128(RanksOf(_mm512_castsi128_si512(cards)));
  const __m256i ranks = _mm256_broadcastsi128_si256(in_quarter);
  const __m256i first = _mm256_shuffle_epi8(ranks, Load256(kPairPlaces<kHoles>.card[0].data()));
  const __m256i second = _mm256_shuffle_epi8(ranks, Load256(kPairPlaces<kHoles>.card[1].data()));
  return _mm512_castsi256_si512(_mm256_add_epi8(
      _mm256_shuffle_epi8(Load256(kPairStarts64.data()), _mm256_max_epu8(first, second)),
      _mm256_min_epu8(first, second)));
}

// The largest value of a hand's pairs, which are in the lowest lanes.
template <int kHoles>
POKERMATH_TARGET_VBMI inline int BestOfPairs(const std::uint16_t* row, __m512i pairs) {
  // Numbers from 64 on are in the last register.
  const __mmask32 is_last = _mm512_test_epi16_mask(pairs, _mm512_load_si512(kFirstOfLast.data()));
  const __m512i first =
      _mm512_permutex2var_epi16(_mm512_loadu_si512(row), pairs, _mm512_loadu_si512(row + 32));
  const __m512i found =
      _mm512_mask_permutexvar_epi16(first, is_last, pairs, _mm512_loadu_si512(row + 64));
  __m128i best = _mm512_castsi512_si128(found);
  if constexpr (kLanes<kHoles> == 16) {
    best = _mm_max_epu16(best, _mm256_extracti128_si256(_mm512_castsi512_si256(found), 1));
  }
  const __m128i least = _mm_minpos_epu16(_mm_xor_si128(best, _mm_set1_epi8(-1)));
  return 0xFFFF - _mm_extract_epi16(least, 0);
}

template <int kHoles>
POKERMATH_TARGET_VBMI inline __m128i LoadHand(const std::uint8_t* hand) {
  int four;
  std::memcpy(&four, hand, sizeof four);
  __m128i cards = _mm_cvtsi32_si128(four);
  if constexpr (kHoles > 4) cards = _mm_insert_epi8(cards, hand[4], 4);
  if constexpr (kHoles > 5) cards = _mm_insert_epi8(cards, hand[5], 5);
  return cards;
}

template <int kHoles>
POKERMATH_TARGET_VBMI inline __m128i LoadHand(const int* hand) {
  constexpr __mmask8 kCards = (1u << kHoles) - 1;
  return _mm256_cvtepi32_epi8(_mm256_maskz_loadu_epi32(kCards, hand));
}

template <int kHoles, typename Card>
POKERMATH_TARGET_VBMI int EvaluateOneVbmi(const OmahaRows& rows, const Card* hand,
                                          const Card* board) {
  const std::uint32_t words = rows.SumBoard(board);
  const int plain =
      BestOfPairs<kHoles>(rows.OfWords(words), PairsOfHand<kHoles>(LoadHand<kHoles>(hand)));
  const std::uint32_t flush_bits = rows.FlushBits<kHoles>(hand, words);
  if (flush_bits == 0) [[likely]]
    return plain;
  return WithFlush<kHoles>(hand, board, flush_bits, plain);
}

// The suits with two hole cards and more, and three of the board's.
template <int kHoles>
POKERMATH_TARGET_VBMI inline Eight FlushSuits(const CardBytes& bytes, Eight hands, Eight boards) {
  constexpr std::uint64_t kFromTwo = 0x6666;
  constexpr std::uint64_t kFromThree = 0x5555;
  constexpr int kAnd = 0x80;
  return _mm512_ternarylogic_epi64(SumSuits<kHoles>(bytes, hands, kFromTwo),
                                   SumSuits<5>(bytes, boards, kFromThree),
                                   _mm512_set1_epi64(kSuitBits), kAnd);
}

// Finds the rows of up to eight deals, and lists those that can flush, by their numbers. Returns
// how many these are.
template <int kHoles>
[[gnu::always_inline]] POKERMATH_TARGET_VBMI inline std::size_t FindRows(
    const CardBytes& bytes, const OmahaRows& all_rows, const std::uint8_t* hands,
    const std::uint8_t* boards, std::size_t count, std::size_t first_number,
    const std::uint16_t** rows, std::uint32_t* flushes) {
  const Eight eight_boards = LoadEight<5>(boards, count);
  const Eight eight_hands = LoadEight<kHoles>(hands, count);
  alignas(64) std::uint64_t keys[8];
  _mm512_store_si512(keys, SumKeys<5>(bytes, eight_boards));
  for (std::size_t i = 0; i < 8; ++i) {
    rows[i] = all_rows.OfKey(static_cast<std::uint32_t>(keys[i]));
    Prefetch(rows[i]);
  }
  const Eight suits = FlushSuits<kHoles>(bytes, eight_hands, eight_boards);
  const __mmask8 flush =
      _mm512_mask_test_epi64_mask(static_cast<__mmask8>((1u << count) - 1), suits, suits);
  const Eight numbers = _mm512_add_epi64(_mm512_setr_epi64(0, 1, 2, 3, 4, 5, 6, 7),
                                         _mm512_set1_epi64(static_cast<long long>(first_number)));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(flushes),
                      _mm512_cvtepi64_epi32(_mm512_maskz_compress_epi64(flush, numbers)));
  return static_cast<std::size_t>(__builtin_popcount(flush));
}

// The values of up to eight hands without flushes.
template <int kHoles>
[[gnu::always_inline]] POKERMATH_TARGET_VBMI inline void EvaluatePlain(
    const std::uint16_t* const* rows, const std::uint8_t* hands, std::size_t count,
    std::uint16_t* values) {
  constexpr std::size_t kHands = kHandsInRegister<kHoles>;
  constexpr std::uint64_t kBytes = (std::uint64_t{1} << kHands * kHoles) - 1;
#pragma GCC unroll 4
  for (std::size_t first = 0; first < count; first += kHands) {
    const std::size_t there = std::min(count - first, kHands);
    const __mmask64 readable = kBytes >> (kHands - there) * kHoles;
    alignas(64) std::uint16_t pairs[32];
    _mm512_store_si512(
        pairs, PairsOfHands<kHoles>(_mm512_maskz_loadu_epi8(readable, hands + kHoles * first)));
    for (std::size_t i = 0; i < kHands; ++i) {
      __m512i of_hand;
      if constexpr (kLanes<kHoles> == 8) {
        of_hand =
            _mm512_castsi128_si512(_mm_load_si128(reinterpret_cast<const __m128i*>(pairs + 8 * i)));
      } else {
        of_hand = _mm512_castsi256_si512(
            _mm256_load_si256(reinterpret_cast<const __m256i*>(pairs + 16 * i)));
      }
      values[first + i] = static_cast<std::uint16_t>(BestOfPairs<kHoles>(rows[first + i], of_hand));
    }
  }
}

// The highest ranks of each set, which has so many.
template <int kCount>
POKERMATH_TARGET_VBMI inline Eight Highest(Eight sets) {
  Eight highest = _mm512_setzero_si512();
  for (int i = 0; i < kCount; ++i) {
    const Eight rest = _mm512_andnot_si512(highest, sets);
    highest = _mm512_or_si512(
        highest,
        _mm512_srlv_epi64(_mm512_set1_epi64(static_cast<long long>(std::uint64_t{1} << 63)),
                          _mm512_lzcnt_epi64(rest)));
  }
  return highest;
}

// Which of the sets have five ranks in a row.
POKERMATH_TARGET_VBMI inline __mmask8 HaveStraight(Eight sets) {
  const Eight from_ace = _mm512_or_si512(_mm512_slli_epi64(sets, 1), _mm512_srli_epi64(sets, 12));
  const Eight two = _mm512_and_si512(from_ace, _mm512_srli_epi64(from_ace, 1));
  const Eight four = _mm512_and_si512(two, _mm512_srli_epi64(two, 2));
  return _mm512_test_epi64_mask(four, _mm512_srli_epi64(from_ace, 4));
}

// Raises the values of up to eight deals of a list to those of their flushes.
template <int kHoles>
POKERMATH_TARGET_VBMI void AddFlushes(const CardBytes& bytes, const std::uint8_t* hands,
                                      const std::uint8_t* boards, const std::uint32_t* deals,
                                      std::size_t count, std::uint16_t* values) {
  const Eight hand_cards = LoadListed<kHoles>(hands, deals, count);
  const Eight board_cards = LoadListed<5>(boards, deals, count);
  const Eight suits = FlushSuits<kHoles>(bytes, hand_cards, board_cards);
  const Eight in_hand = RanksOfSuits<kHoles>(bytes, hand_cards, suits);
  const Eight on_board = RanksOfSuits<5>(bytes, board_cards, suits);
  alignas(64) std::uint64_t in_hands[8], on_boards[8], best[8];
  _mm512_store_si512(in_hands, in_hand);
  _mm512_store_si512(on_boards, on_board);
  _mm512_store_si512(best, _mm512_or_si512(Highest<2>(in_hand), Highest<3>(on_board)));
  const unsigned straights = HaveStraight(_mm512_or_si512(in_hand, on_board));
  for (std::size_t i = 0; i < count; ++i) {
    int flush = kCompactTables.flush_values[best[i]];
    if ((straights >> i & 1) != 0) [[unlikely]] {
      flush =
          BestOmahaFlush(static_cast<unsigned>(in_hands[i]), static_cast<unsigned>(on_boards[i]));
    }
    values[deals[i]] = std::max(values[deals[i]], static_cast<std::uint16_t>(flush));
  }
}

template <int kHoles>
POKERMATH_TARGET_VBMI void EvaluateBlockVbmi(const OmahaRows& all_rows, const std::uint8_t* hands,
                                             const std::uint8_t* boards, std::size_t count,
                                             std::uint16_t* values) {
  static const CardBytes bytes(kOmahaKeys);
  const std::uint16_t* rows[kBlock];
  std::uint32_t flushes[kBlock + 8];
  std::size_t flush_count = 0;
  // Of whole registers, those behind the last hand too.
  std::uint16_t best[kBlock];
  // Inlined for a number that is known and for another one.
  const std::size_t whole = count / 8 * 8;
  const auto find = [&](std::size_t first, std::size_t size) POKERMATH_TARGET_VBMI {
    flush_count += FindRows<kHoles>(bytes, all_rows, hands + kHoles * first, boards + 5 * first,
                                    size, first, rows + first, flushes + flush_count);
  };
  for (std::size_t first = 0; first < whole; first += 8) find(first, 8);
  if (whole < count) find(whole, count - whole);
  const auto evaluate = [&](std::size_t first, std::size_t size) POKERMATH_TARGET_VBMI {
    EvaluatePlain<kHoles>(rows + first, hands + kHoles * first, size, best + first);
  };
  for (std::size_t first = 0; first < whole; first += 8) evaluate(first, 8);
  if (whole < count) evaluate(whole, count - whole);
  for (std::size_t first = 0; first < flush_count; first += 8) {
    AddFlushes<kHoles>(bytes, hands, boards, flushes + first,
                       std::min<std::size_t>(flush_count - first, 8), best);
  }
  std::copy_n(best, count, values);
}

#endif  // __x86_64__

template <int kHoles>
void EvaluateDeals(Isa isa, const std::uint8_t* hands, const std::uint8_t* boards,
                   std::size_t count, std::uint16_t* values) {
  using Block = void(const OmahaRows& rows, const std::uint8_t* hands, const std::uint8_t* boards,
                     std::size_t count, std::uint16_t* values);
  constexpr Versions<Block> kVersions = {
    .baseline = EvaluateBlock<kHoles>,
#if defined(__x86_64__)
    .vbmi = EvaluateBlockVbmi<kHoles>,
#endif
  };
  Block* const evaluate = kVersions.At(isa);
  const OmahaRows& rows = OmahaRows::Get();
  for (std::size_t size; count > 0; count -= size) {
    size = std::min(count, kBlock);
    evaluate(rows, hands, boards, size, values);
    hands += kHoles * size;
    boards += 5 * size;
    values += size;
  }
}

// The first hand of a process. Not inlined, for the sake of all others.
template <int kHoles, typename Card>
[[gnu::noinline]] int EvaluateFirst(const Card* hand, const Card* board) {
  OmahaRows::Get();
  HasVbmi();
  return EvaluateOmaha<kHoles>(hand, board);
}

}  // namespace

template <int holes, typename Card>
int EvaluateOmaha(const Card* hand, const Card* board) {
  const OmahaRows* rows = OmahaRows::IfMade();
  const int vbmi = KnownVbmi();
  if (rows == nullptr || vbmi < 0) [[unlikely]]
    return EvaluateFirst<holes>(hand, board);
#if defined(__x86_64__)
  if (vbmi != 0) return EvaluateOneVbmi<holes>(*rows, hand, board);
#endif
  return EvaluateOne<holes>(*rows, hand, board);
}

template int EvaluateOmaha<4>(const int*, const int*);
template int EvaluateOmaha<5>(const int*, const int*);
template int EvaluateOmaha<6>(const int*, const int*);
template int EvaluateOmaha<4>(const std::uint8_t*, const std::uint8_t*);
template int EvaluateOmaha<5>(const std::uint8_t*, const std::uint8_t*);
template int EvaluateOmaha<6>(const std::uint8_t*, const std::uint8_t*);

void EvaluateOmahaBatch(Isa isa, int holes, const std::uint8_t* hands, const std::uint8_t* boards,
                        std::size_t count, std::uint16_t* values) {
  switch (holes) {
    case 4:
      return EvaluateDeals<4>(isa, hands, boards, count, values);
    case 5:
      return EvaluateDeals<5>(isa, hands, boards, count, values);
    case 6:
      return EvaluateDeals<6>(isa, hands, boards, count, values);
    default:
      std::fill_n(values, count, std::uint16_t{0});
  }
}

void EvaluateOmahaBatch(int holes, const std::uint8_t* hands, const std::uint8_t* boards,
                        std::size_t count, std::uint16_t* values) {
  EvaluateOmahaBatch(BestIsa(), holes, hands, boards, count, values);
}

}  // namespace pokermath
