// Omaha hands on one board.
//
// There are at most 169 different values of pairs. Their places in order are bytes: with VBMI one
// permute looks a pair up for 64 hands.

#include <algorithm>
#include <array>

#include "eval/omaha_batch.h"
#include "eval/omaha_best.h"
#include "eval/omaha_pairs.h"
#include "eval/omaha_rows.h"
#include "platform/dispatch.h"
#include "platform/intrinsics.h"

namespace pokermath {

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
  return _mm512_permutex2var_epi16(_mm512_loadu_si512(values), index,
                                   _mm512_loadu_si512(values + 32));
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
void OmahaBoardKernels::Any(Isa isa, const OmahaBoardValues& board, const std::uint8_t* hands,
                            std::size_t count, std::uint16_t* values) {
  constexpr Versions<decltype(Plain<kHoles>)> kVersions = {
    .baseline = Plain<kHoles>,
#if defined(__x86_64__)
    .vbmi = Vbmi<kHoles>,
#endif
  };
  kVersions.At(isa)(board, hands, count, values);
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

}  // namespace pokermath
