// Omaha evaluators: single hands, hands with a board each, and hands on one board.
//
// A board has a row with what pairs of hole ranks make (omaha_rows.h), and a hand is worth the
// largest of its pairs there. Whether two hole cards and three board cards of a suit can meet is
// seen from the sums of the cards' words; such deals are looked at once more. In a batch the rows
// of a block are found first, so that they come near while the next are looked for. With AVX-512 a
// row is three registers: two permutes look up all pairs of a hand, and one instruction finds the
// smallest of eight, so we look for the smallest complement.
//
// On one board there are at most 169 different values of pairs. Their places in order are bytes:
// with VBMI one permute looks a pair up for 64 hands.

#include <algorithm>
#include <array>
#include <bit>

#include "eval/omaha_batch.h"
#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "eval/omaha_rows.h"
#include "eval/rank_sets.h"
#include "platform/intrinsics.h"

namespace pokermath {
namespace {

// The number of the pair of ranks of two cards, by card * 64 + card.
constexpr auto kPairOfCards = [] {
  std::array<std::uint8_t, 52 * 64> pairs{};
  for (int card1 = 0; card1 < 52; ++card1) {
    for (int card2 = 0; card2 < 52; ++card2) {
      pairs[static_cast<std::size_t>(card1 * 64 + card2)] =
          static_cast<std::uint8_t>(PairOf(card1 % 13, card2 % 13));
    }
  }
  return pairs;
}();

// A board's row and the counts of its suits, moved up so that the highest bit of four is set from
// three on.
struct BoardSums {
  const std::uint16_t* row;
  std::uint64_t suits;
};

template <typename Card>
inline BoardSums SumBoard(const OmahaRows& rows, const Card* board) {
  constexpr std::uint64_t kFromThree = 0x5555;
  std::uint64_t sum = kFromThree;
  for (int i = 0; i < 5; ++i) sum += kCompactTables.card_words[static_cast<int>(board[i])];
  return {rows.OfKey(sum >> CompactTables::kKeyShift), sum};
}

// The bits of the suits with three board cards and two hole cards.
template <int kHoles, typename Card>
inline std::uint64_t FlushBits(const Card* hand, std::uint64_t board_suits) {
  constexpr std::uint64_t kFromTwo = 0x6666;
  std::uint64_t suits = kFromTwo;
  for (int i = 0; i < kHoles; ++i) suits += kCompactTables.card_words[static_cast<int>(hand[i])];
  return suits & board_suits & CompactTables::kFlushBits;
}

template <typename Card>
unsigned RanksOfSuit(const Card* cards, int count, int suit) {
  std::uint64_t bits = 0;
  for (int i = 0; i < count; ++i) bits |= std::uint64_t{1} << static_cast<int>(cards[i]);
  return static_cast<unsigned>(bits >> 13 * suit) & kAllRanks;
}

// The best flush of a deal, by its flush bits.
template <int kHoles, typename Card>
int BestFlush(const Card* hand, const Card* board, std::uint64_t flush_bits) {
  const int suit = std::countr_zero(flush_bits) / 4;
  return BestOmahaFlush(RanksOfSuit(hand, kHoles, suit), RanksOfSuit(board, 5, suit));
}

// The largest of what the pairs of a hand find.
template <int kHoles, typename Card>
inline int BestPlain(const Card* hand, const std::uint16_t* row) {
  std::size_t cards[kHoles];
  for (std::size_t i = 0; i < kHoles; ++i) cards[i] = static_cast<std::size_t>(hand[i]);
  int best = 0;
  for (std::size_t i = 1; i < kHoles; ++i) {
    const std::uint8_t* pairs = &kPairOfCards[cards[i] * 64];
    for (std::size_t j = 0; j < i; ++j) best = std::max<int>(best, row[pairs[cards[j]]]);
  }
  return best;
}

// ---- a board each ----

constexpr std::size_t kBlock = 128;

// A block of deals: their rows, and a list of those that can flush.
struct Deals {
  const std::uint16_t* rows[kBlock];
  std::uint64_t flush_bits[kBlock];
  std::uint32_t flushes[kBlock];
  std::size_t flush_count = 0;

  template <int kHoles>
  void Find(const OmahaRows& all_rows, const std::uint8_t* hands, const std::uint8_t* boards,
            std::size_t count) {
    flush_count = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const BoardSums board = SumBoard(all_rows, boards + 5 * i);
      rows[i] = board.row;
      for (std::size_t line = 0; line < OmahaRows::kRow; line += 32) {
        __builtin_prefetch(board.row + line);
      }
      const std::uint64_t bits = FlushBits<kHoles>(hands + kHoles * i, board.suits);
      flush_bits[flush_count] = bits;
      flushes[flush_count] = static_cast<std::uint32_t>(i);
      flush_count += bits != 0 ? 1 : 0;
    }
  }

  template <int kHoles>
  void Correct(const std::uint8_t* hands, const std::uint8_t* boards, std::uint16_t* values) const {
    for (std::size_t i = 0; i < flush_count; ++i) {
      const std::size_t deal = flushes[i];
      const int flush = BestFlush<kHoles>(hands + kHoles * deal, boards + 5 * deal, flush_bits[i]);
      values[deal] = std::max(values[deal], static_cast<std::uint16_t>(flush));
    }
  }
};

template <int kHoles>
void Evaluate(const Deals& deals, const std::uint8_t* hands, std::size_t count,
              std::uint16_t* values) {
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = static_cast<std::uint16_t>(BestPlain<kHoles>(hands + kHoles * i, deals.rows[i]));
  }
}

#if defined(__x86_64__)

// The two cards of each pair of a hand, 16 bits each; the first pair again where there is none.
template <int kHoles>
struct PairPlaces {
  alignas(32) std::array<std::int8_t, 32> card[2];
};

template <int kHoles>
constexpr PairPlaces<kHoles> kPairPlaces = [] {
  PairPlaces<kHoles> places;
  for (auto& card : places.card) card.fill(-1);
  std::size_t lane = 0;
  for (int i = 1; i < kHoles; ++i) {
    for (int j = 0; j < i; ++j) {
      places.card[0][2 * lane] = static_cast<std::int8_t>(i);
      places.card[1][2 * lane++] = static_cast<std::int8_t>(j);
    }
  }
  for (; lane < 16; ++lane) {
    places.card[0][2 * lane] = places.card[0][0];
    places.card[1][2 * lane] = places.card[1][0];
  }
  return places;
}();

// Numbers of pairs by their higher rank, less the lower one.
alignas(16) constexpr std::uint8_t kPairStarts[16] = {0,  1,  3,  6,  10, 15, 21,
                                                      28, 36, 45, 55, 66, 78};

POKERMATH_TARGET_AVX512 inline __m256i Repeat(const void* table) {
  return _mm256_broadcastsi128_si256(_mm_load_si128(static_cast<const __m128i*>(table)));
}

POKERMATH_TARGET_AVX512 inline __m256i Load256(const void* from) {
  return _mm256_load_si256(static_cast<const __m256i*>(from));
}

POKERMATH_TARGET_AVX512 inline __m512i Load512(const std::uint16_t* from) {
  return _mm512_loadu_si512(from);
}

// The largest value of a hand's pairs in a row.
template <int kHoles>
POKERMATH_TARGET_AVX512 inline int BestOfRow(__m256i ranks, const std::uint16_t* row) {
  const __m256i first = _mm256_shuffle_epi8(ranks, Load256(kPairPlaces<kHoles>.card[0].data()));
  const __m256i second = _mm256_shuffle_epi8(ranks, Load256(kPairPlaces<kHoles>.card[1].data()));
  const __m256i pairs =
      _mm256_add_epi16(_mm256_shuffle_epi8(Repeat(kPairStarts), _mm256_max_epi16(first, second)),
                       _mm256_min_epi16(first, second));
  const __m512i index = _mm512_castsi256_si512(pairs);
  // The highest bit of a lane is set for numbers from 64 on, which are in the last register.
  const __mmask16 is_last = _mm256_movepi16_mask(_mm256_slli_epi16(pairs, 9));
  const __m512i found = _mm512_mask_permutexvar_epi16(
      _mm512_permutex2var_epi16(Load512(row), index, Load512(row + 32)), is_last, index,
      Load512(row + 64));
  const __m256i best = _mm256_xor_si256(_mm512_castsi512_si256(found), _mm256_set1_epi8(-1));
  __m128i least = _mm256_castsi256_si128(best);
  if constexpr (kHoles > 4) least = _mm_min_epu16(least, _mm256_extracti128_si256(best, 1));
  return 0xFFFF - _mm_extract_epi16(_mm_minpos_epu16(least), 0);
}

template <int kHoles>
POKERMATH_TARGET_AVX512 void EvaluateAvx512(const Deals& deals, const std::uint8_t* hands,
                                            std::size_t count, std::uint16_t* values) {
  // A hand is read as eight bytes.
  std::uint8_t ranks[kBlock * kHoles + 8];
  for (std::size_t i = 0; i < count * kHoles; ++i) {
    // A card's suit is its code / 13, which for 0..51 is code * 5 / 64.
    ranks[i] = static_cast<std::uint8_t>(hands[i] - 13 * (hands[i] * 5 >> 6));
  }
  for (std::size_t i = 0; i < count; ++i) {
    long long eight;
    __builtin_memcpy(&eight, ranks + kHoles * i, sizeof eight);
    values[i] =
        static_cast<std::uint16_t>(BestOfRow<kHoles>(_mm256_set1_epi64x(eight), deals.rows[i]));
  }
}

#endif  // __x86_64__

template <int kHoles>
void EvaluateDeals([[maybe_unused]] Isa isa, const std::uint8_t* hands, const std::uint8_t* boards,
                   std::size_t count, std::uint16_t* values) {
  const OmahaRows& rows = OmahaRows::Get();
  Deals deals;
  for (std::size_t size; count > 0; count -= size) {
    size = std::min(count, kBlock);
    deals.Find<kHoles>(rows, hands, boards, size);
#if defined(__x86_64__)
    if (isa == Isa::kAvx512) {
      EvaluateAvx512<kHoles>(deals, hands, size, values);
    } else {
      Evaluate<kHoles>(deals, hands, size, values);
    }
#else
    Evaluate<kHoles>(deals, hands, size, values);
#endif
    deals.Correct<kHoles>(hands, boards, values);
    hands += kHoles * size;
    boards += 5 * size;
    values += size;
  }
}

}  // namespace

template <int holes, typename Card>
int EvaluateOmaha(const Card* hand, const Card* board) {
  const BoardSums sums = SumBoard(OmahaRows::Get(), board);
  const int plain = BestPlain<holes>(hand, sums.row);
  const std::uint64_t flush_bits = FlushBits<holes>(hand, sums.suits);
  if (flush_bits == 0) [[likely]]
    return plain;
  return std::max(plain, BestFlush<holes>(hand, board, flush_bits));
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

// ---- one board ----

OmahaBoardValues::OmahaBoardValues(std::span<const int> board) {
  const OmahaPairValues of_pairs(board);
  suit_ = of_pairs.suit();
  // Ranks of which the board has the flush suit make no flush with two hole cards.
  const int first = 13 * std::max(suit_, 0);
  unsigned on_board = 0;
  for (const int card : board) {
    if (card / 13 == suit_) on_board |= 1u << card % 13;
  }
  std::array<std::uint16_t, kRankPairs> plain;
  std::array<std::uint16_t, kRankPairs> suited{};
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) {
      const auto pair = static_cast<std::size_t>(PairOf(high, low));
      // Cards of two suits make no flush.
      plain[pair] = static_cast<std::uint16_t>(of_pairs.Of(high, 13 + low));
      const bool can_flush =
          suit_ >= 0 && high != low && (on_board >> high & 1) == 0 && (on_board >> low & 1) == 0;
      suited[pair] = can_flush ? static_cast<std::uint16_t>(of_pairs.Of(first + high, first + low))
                               : plain[pair];
    }
  }
  for (std::size_t card1 = 0; card1 < 52; ++card1) {
    for (std::size_t card2 = 0; card2 < 52; ++card2) {
      const auto pair = static_cast<std::size_t>(
          PairOf(static_cast<int>(card1 % 13), static_cast<int>(card2 % 13)));
      const bool of_suit = static_cast<int>(card1 / 13) == suit_ && card1 / 13 == card2 / 13;
      pairs_[card1 * kRow + card2] = of_suit ? suited[pair] : plain[pair];
    }
  }

  std::array<std::uint16_t, 2 * kRankPairs> all;
  std::ranges::copy(suited, std::ranges::copy(plain, all.begin()).out);
  std::ranges::sort(all);
  const auto end = std::unique(all.begin(), all.end());
  value_count_ =
      static_cast<std::size_t>(std::copy(all.begin(), end, values_.begin()) - values_.begin());
  const auto place = [&](std::uint16_t value) {
    return static_cast<std::uint8_t>(std::lower_bound(all.begin(), end, value) - all.begin());
  };
  std::ranges::transform(plain, plain_.begin(), place);
  std::ranges::transform(suited, suited_.begin(), place);
}

template <int kHoles>
void OmahaBoardKernels::Plain(const OmahaBoardValues& board, const std::uint8_t* hands,
                              std::size_t count, std::uint16_t* values) {
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = static_cast<std::uint16_t>(board.Evaluate<kHoles>(hands + kHoles * i));
  }
}

#if defined(__x86_64__)

namespace {

// Card by card what the bytes of 64 hands are in: a register for each card.
template <int kHoles>
struct Hands64 {
  __m512i card[kHoles];
};

// Where the bytes of card `card` are in the registers of 64 hands: byte and register.
template <int kHoles>
struct Gather {
  alignas(64) std::array<std::array<std::uint8_t, 64>, kHoles> byte;
  std::array<std::array<std::uint64_t, kHoles>, kHoles> from;
};

template <int kHoles>
constexpr Gather<kHoles> kGather = [] {
  Gather<kHoles> gather{};
  for (std::size_t card = 0; card < kHoles; ++card) {
    for (std::size_t hand = 0; hand < 64; ++hand) {
      const std::size_t place = hand * kHoles + card;
      gather.byte[card][hand] = static_cast<std::uint8_t>(place % 64);
      gather.from[card][place / 64] |= std::uint64_t{1} << hand;
    }
  }
  return gather;
}();

template <int kHoles>
POKERMATH_TARGET_VBMI inline Hands64<kHoles> Load64(const std::uint8_t* hands) {
  __m512i bytes[kHoles];
  for (std::size_t i = 0; i < kHoles; ++i) bytes[i] = _mm512_loadu_si512(hands + 64 * i);
  Hands64<kHoles> result;
  for (std::size_t card = 0; card < kHoles; ++card) {
    const __m512i places = _mm512_load_si512(kGather<kHoles>.byte[card].data());
    __m512i cards = _mm512_permutexvar_epi8(places, bytes[0]);
    for (std::size_t i = 1; i < kHoles; ++i) {
      cards = _mm512_mask_permutexvar_epi8(cards, kGather<kHoles>.from[card][i], places, bytes[i]);
    }
    result.card[card] = cards;
  }
  return result;
}

constexpr auto kRanksOfCards = [] {
  std::array<std::uint8_t, 64> ranks{};
  for (std::size_t card = 0; card < 52; ++card) ranks[card] = static_cast<std::uint8_t>(card % 13);
  return ranks;
}();

// Two registers as a table of 128 bytes.
struct Table128 {
  __m512i low;
  __m512i high;

  POKERMATH_TARGET_VBMI explicit Table128(const std::uint8_t* bytes)
      : low(_mm512_load_si512(bytes)), high(_mm512_load_si512(bytes + 64)) {}
  POKERMATH_TARGET_VBMI __m512i Of(__m512i index) const {
    return _mm512_permutex2var_epi8(low, index, high);
  }
};

POKERMATH_TARGET_VBMI inline __m512i ValuesOf64(__m512i index, const std::uint16_t* values) {
  return _mm512_permutex2var_epi16(Load512(values), index, Load512(values + 32));
}

// The values of 32 places. Most boards have few of them.
POKERMATH_TARGET_VBMI inline __m512i ValuesOf(__m256i places, const std::uint16_t* values,
                                              std::size_t value_count) {
  const __m512i index = _mm512_cvtepu8_epi16(places);
  __m512i result = ValuesOf64(index, values);
  for (std::size_t from = 64; from < value_count; from += 64) {
    const __mmask32 is_here =
        _mm512_cmpge_epu16_mask(index, _mm512_set1_epi16(static_cast<short>(from)));
    result = _mm512_mask_blend_epi16(is_here, result, ValuesOf64(index, values + from));
  }
  return result;
}

}  // namespace

template <int kHoles>
POKERMATH_TARGET_VBMI void OmahaBoardKernels::Vbmi(const OmahaBoardValues& board,
                                                   const std::uint8_t* hands, std::size_t count,
                                                   std::uint16_t* values) {
  const Table128 plain(board.plain_.data());
  const Table128 suited(board.suited_.data());
  const __m512i rank_of_card = _mm512_loadu_si512(kRanksOfCards.data());
  const __m512i pair_starts =
      _mm512_broadcast_i32x4(_mm_load_si128(reinterpret_cast<const __m128i*>(kPairStarts)));
  const __m512i first_of_suit = _mm512_set1_epi8(static_cast<char>(13 * std::max(board.suit_, 0)));
  std::size_t done = 0;
  for (; done + 64 <= count; done += 64) {
    const Hands64<kHoles> deal = Load64<kHoles>(hands + kHoles * done);
    __m512i ranks[kHoles];
    __mmask64 of_suit[kHoles] = {};
    for (std::size_t i = 0; i < kHoles; ++i) {
      ranks[i] = _mm512_permutexvar_epi8(deal.card[i], rank_of_card);
      if (board.suit_ >= 0) {
        of_suit[i] = _mm512_cmplt_epu8_mask(_mm512_sub_epi8(deal.card[i], first_of_suit),
                                            _mm512_set1_epi8(13));
      }
    }
    __m512i best = _mm512_setzero_si512();
    for (std::size_t i = 1; i < kHoles; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        const __m512i pair =
            _mm512_add_epi8(_mm512_shuffle_epi8(pair_starts, _mm512_max_epu8(ranks[i], ranks[j])),
                            _mm512_min_epu8(ranks[i], ranks[j]));
        best = _mm512_max_epu8(best, plain.Of(pair));
        if (board.suit_ < 0) continue;
        best = _mm512_mask_max_epu8(best, of_suit[i] & of_suit[j], best, suited.Of(pair));
      }
    }
    const std::uint16_t* by_place = board.values_.data();
    _mm512_storeu_si512(values + done,
                        ValuesOf(_mm512_castsi512_si256(best), by_place, board.value_count_));
    _mm512_storeu_si512(values + done + 32,
                        ValuesOf(_mm512_extracti64x4_epi64(best, 1), by_place, board.value_count_));
  }
  Plain<kHoles>(board, hands + kHoles * done, count - done, values + done);
}

#endif  // __x86_64__

template <int kHoles>
void OmahaBoardKernels::Any([[maybe_unused]] Isa isa, const OmahaBoardValues& board,
                            const std::uint8_t* hands, std::size_t count, std::uint16_t* values) {
#if defined(__x86_64__)
  if (isa == Isa::kAvx512 && HasVbmi()) return Vbmi<kHoles>(board, hands, count, values);
#endif
  Plain<kHoles>(board, hands, count, values);
}

void OmahaBoardKernels::Evaluate(Isa isa, const OmahaBoardValues& board, int holes,
                                 const std::uint8_t* hands, std::size_t count,
                                 std::uint16_t* values) {
  switch (holes) {
    case 4:
      return Any<4>(isa, board, hands, count, values);
    case 5:
      return Any<5>(isa, board, hands, count, values);
    case 6:
      return Any<6>(isa, board, hands, count, values);
    default:
      std::fill_n(values, count, std::uint16_t{0});
  }
}

void OmahaBoardValues::EvaluateBatch(int holes, const std::uint8_t* hands, std::size_t count,
                                     std::uint16_t* values) const {
  OmahaBoardKernels::Evaluate(BestIsa(), *this, holes, hands, count, values);
}

// ---- lows ----

namespace {

template <int kCount>
void EvaluateLows(const std::uint8_t* cards, std::size_t hands, std::uint8_t* values) {
  for (std::size_t i = 0; i < hands; ++i) {
    values[i] = static_cast<std::uint8_t>(EvaluateLow<kCount>(cards + kCount * i));
  }
}

template <int kHoles>
void EvaluateOmahaLows(const std::uint8_t* hands, const std::uint8_t* boards, std::size_t count,
                       std::uint8_t* values) {
  for (std::size_t i = 0; i < count; ++i) {
    values[i] =
        static_cast<std::uint8_t>(EvaluateOmahaLow<kHoles>(hands + kHoles * i, boards + 5 * i));
  }
}

}  // namespace

void EvaluateLowBatch(int count, const std::uint8_t* cards, std::size_t hands,
                      std::uint8_t* values) {
  switch (count) {
    case 5:
      return EvaluateLows<5>(cards, hands, values);
    case 6:
      return EvaluateLows<6>(cards, hands, values);
    case 7:
      return EvaluateLows<7>(cards, hands, values);
    default:
      std::fill_n(values, hands, std::uint8_t{0});
  }
}

void EvaluateOmahaLowBatch(int holes, const std::uint8_t* hands, const std::uint8_t* boards,
                           std::size_t count, std::uint8_t* values) {
  switch (holes) {
    case 4:
      return EvaluateOmahaLows<4>(hands, boards, count, values);
    case 5:
      return EvaluateOmahaLows<5>(hands, boards, count, values);
    case 6:
      return EvaluateOmahaLows<6>(hands, boards, count, values);
    default:
      std::fill_n(values, count, std::uint8_t{0});
  }
}

int LowDigits(int low) {
  // The sets of five ranks from the worst one.
  for (unsigned set = 0xFF; set != 0 && low > 0; --set) {
    if (std::popcount(set) == 5 && --low == 0) return LowValueOf(LowStrength(set));
  }
  return 0;
}

}  // namespace pokermath
