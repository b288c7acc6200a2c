// The prime-product evaluator.
//
// Five different ranks, suited or not, are found by the OR of their rank bits. Every other hand is
// found by the product of its primes, in a sorted list or through a perfect hash. The best of six
// or seven cards needs no subsets: the compact evaluator knows it, from ranks and suits read off
// the card words.

#include <array>
#include <cstdint>
#include <cstdio>

#include "eval/compact_keys.h"
#include "eval/five_card_hash.h"
#include "eval/five_card_tables.h"
#include "eval/scales.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr std::uint32_t kPrimes[13] = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41};
constexpr std::uint32_t kSuitBits = 0xF000;

// Value of five card words; find(product) knows the hands with a repeated rank.
template <typename Find>
int EvaluateFive(const std::array<int, 5>& words, Find find) {
  std::uint32_t any = 0;
  std::uint32_t all = ~0u;
  std::uint32_t product = 1;
  for (const int signed_word : words) {
    const auto word = static_cast<std::uint32_t>(signed_word);
    any |= word;
    all &= word;
    product *= word & 0xFF;
  }
  const std::uint32_t ranks = any >> 16;
  if ((all & kSuitBits) != 0) return kFlushValues[ranks];
  if (const int value = kUniqueFiveValues[ranks]; value != 0) return value;
  return find(product);
}

int SearchProduct(std::uint32_t product) {
  int low = 0;
  int high = 4887;
  while (low <= high) {
    const int middle = (low + high) >> 1;
    if (product < kProducts[middle]) {
      high = middle - 1;
    } else if (product > kProducts[middle]) {
      low = middle + 1;
    } else {
      return kProductValues[middle];
    }
  }
  std::fprintf(stderr, "ERROR:  no match found; key = %d\n", static_cast<int>(product));
  return 0;
}

int LookUpProduct(std::uint32_t product) {
  const auto [bucket, slot] = HashProduct(product);
  return kHashValues[slot ^ kHashAdjust[bucket]];
}

// Four-bit counters of the suits by suit bits of a card word, hearts in the second and so on.
constexpr std::uint64_t kSuitCounter[16] = {0, 0x1000, 0x0100, 0, 0x0010, 0, 0, 0, 0x0001};

// Descending value of the best five of `count` card words.
template <int count>
int EvaluateWords(const int* words) {
  std::uint32_t key = 0;
  std::uint64_t suits = CompactTables::kSuitStart;
  for (int i = 0; i < count; ++i) {
    const auto word = static_cast<std::uint32_t>(words[i]);
    key += kRankKeys[word >> 8 & 15];
    suits += kSuitCounter[word >> 12 & 15];
  }
  if (const std::uint64_t flush = suits & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
    const std::uint32_t suit_bit = 0x8000u >> (__builtin_ctzll(flush) / 4);
    std::uint32_t mask = 0;
    for (int i = 0; i < count; ++i) {
      const auto word = static_cast<std::uint32_t>(words[i]);
      mask |= (word & suit_bit) != 0 ? word >> 16 : 0;
    }
    return OtherScale(kCompactTables.flush_values[mask]);
  }
  return OtherScale(ValueOfRanks<count>(key));
}

}  // namespace
}  // namespace pokermath

CPokerDeck::CPokerDeck() {
  int card = 0;
  for (std::uint32_t suit_bit = 0x8000; suit_bit >= 0x1000; suit_bit >>= 1) {
    for (std::uint32_t rank = 0; rank < 13; ++rank) {
      words[card++] =
          static_cast<int>(pokermath::kPrimes[rank] | rank << 8 | suit_bit | 1u << (16 + rank));
    }
  }
}

int eval_5cards(int c1, int c2, int c3, int c4, int c5) {
  return pokermath::EvaluateFive({c1, c2, c3, c4, c5}, pokermath::SearchProduct);
}

int eval_5hand_fast(int c1, int c2, int c3, int c4, int c5) {
  return pokermath::EvaluateFive({c1, c2, c3, c4, c5}, pokermath::LookUpProduct);
}

int eval_5hand(int* words) { return eval_5cards(words[0], words[1], words[2], words[3], words[4]); }

int eval_6hand(int* words) { return pokermath::EvaluateWords<6>(words); }

int eval_7hand(int* words) { return pokermath::EvaluateWords<7>(words); }

int PokerLogic::eval_5handHoldem(int* codes) const {
  return eval_5hand_fast(deck[codes[0]], deck[codes[1]], deck[codes[2]], deck[codes[3]],
                         deck[codes[4]]);
}

int PokerLogic::eval_6handHoldem(int* codes) const {
  int words[6];
  for (int i = 0; i < 6; ++i) words[i] = deck[codes[i]];
  return eval_6hand(words);
}

int PokerLogic::getNewCombination(int* hole, int* board, int boardCount) const {
  if (boardCount < 3 || boardCount > 5) return 0;
  int words[7] = {deck[hole[0]], deck[hole[1]]};
  for (int i = 0; i < boardCount; ++i) words[2 + i] = deck[board[i]];
  return boardCount == 5   ? eval_7hand(words)
         : boardCount == 4 ? eval_6hand(words)
                           : eval_5hand(words);
}
