// The best Omaha hand without trying every choice.
//
// Without a flush a pair of hole cards makes with a board of five what their ranks say: a table
// [6,188 multisets of board ranks][91 pairs of ranks] answers that. A flush needs three board cards
// and two hole cards of one suit; it is looked up by their ranks. When the best value is known, the
// first choice that has it is searched for: few of the pairs have it at all.

#include "eval/omaha_best.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "cards/card_list.h"
#include "cards/omaha_sizes.h"
#include "eval/compact_keys.h"
#include "eval/omaha_rows.h"
#include "eval/rank_sets.h"
#include "eval/scales.h"
#include "platform/require.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"
#include "pokermath/omaha_evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// A pair of hole cards as a number, the first one the largest.
constexpr int kMostHoles = 64;
constexpr int kPairBits = 12;
constexpr int kLastPair = (1 << kPairBits) - 1;

template <std::size_t kCards>
std::array<int, kCards> RanksOf(std::span<const int> cards) {
  std::array<int, kCards> ranks{};
  for (std::size_t i = 0; i < cards.size(); ++i) ranks[i] = cards[i] % 13;
  return ranks;
}

// The row of a board of five.
const std::uint16_t* RowOf(const std::array<int, 5>& ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += kOmahaKeys[rank];
  return OmahaRows::Get().OfKey(key);
}

// The triples of a board, the first card changing last.
template <int kCards>
constexpr auto kTriples = [] {
  std::array<std::array<int, 3>, kCards*(kCards - 1) * (kCards - 2) / 6> triples{};
  std::size_t size = 0;
  for (int a = 0; a < kCards; ++a)
    for (int b = a + 1; b < kCards; ++b)
      for (int c = b + 1; c < kCards; ++c) triples[size++] = {a, b, c};
  return triples;
}();

// The suit of which there are three board cards and two hole cards, or none.
int FlushSuitOf(std::span<const int> hand, std::span<const int> board) {
  unsigned on_board = 0x7D7D7D7D;
  unsigned in_hand = 0x7E7E7E7E;
  for (const int card : board) on_board += 1u << card / 13 * 8;
  for (const int card : hand) in_hand += 1u << card / 13 * 8;
  const unsigned suits = on_board & in_hand & 0x80808080;
  return suits == 0 ? -1 : __builtin_ctz(suits) / 8;
}

// The best flush of some board ranks, three of which play, and two hole cards.
int BestFlush(unsigned board, unsigned holes) {
  int best = 0;
  for (unsigned a = board; a != 0; a &= a - 1) {
    for (unsigned b = a & (a - 1); b != 0; b &= b - 1) {
      for (unsigned c = b & (b - 1); c != 0; c &= c - 1) {
        const unsigned ranks = (a & -a) | (b & -b) | (c & -c) | holes;
        best = std::max<int>(best, kCompactTables.flush_values[ranks]);
      }
    }
  }
  return best;
}

unsigned RanksOf(std::span<const int> cards, int suit) {
  unsigned ranks = 0;
  for (const int card : cards) ranks |= card / 13 == suit ? 1u << card % 13 : 0u;
  return ranks;
}

// A value in the upper bits and below it the pair of hole cards, the first one the largest: the
// maximum is the first pair of the best value, without a branch to guess.
int Packed(int value, std::size_t i, std::size_t j) {
  return value << kPairBits | static_cast<int>(kLastPair - (i * kMostHoles + j));
}

// Key sums of the triples of a board.
template <int kCards>
auto TripleKeys(std::span<const int> board) {
  std::array<std::uint32_t, kCards> keys;
  for (std::size_t i = 0; i < kCards; ++i) keys[i] = kRankKeys[board[i] % 13];
  std::array<std::uint32_t, kTriples<kCards>.size()> sums;
  for (std::size_t i = 0; i < sums.size(); ++i) {
    const auto& [a, b, c] = kTriples<kCards>[i];
    sums[i] = keys[static_cast<std::size_t>(a)] + keys[static_cast<std::size_t>(b)] +
              keys[static_cast<std::size_t>(c)];
  }
  return sums;
}

// The best pair without a flush.
template <int kCards, typename Ranks, typename Keys>
int BestPlain(const Ranks& ranks, std::span<const int> board, const Keys& keys) {
  const std::uint16_t* of_pairs = nullptr;
  if constexpr (kCards == 5) of_pairs = RowOf(RanksOf<5>(board));
  int best = 0;
  for (std::size_t i = 0; i + 1 < ranks.size(); ++i) {
    for (std::size_t j = i + 1; j < ranks.size(); ++j) {
      int value = 0;
      if constexpr (kCards == 5) {
        value = of_pairs[PairOf(ranks[i], ranks[j])];
      } else {
        const std::uint32_t holes = kRankKeys[ranks[i]] + kRankKeys[ranks[j]];
        for (const std::uint32_t key : keys) value = std::max(value, ValueOfRanks<5>(key + holes));
      }
      best = std::max(best, Packed(value, i, j));
    }
  }
  return best;
}

// The best pair with a flush of a suit, 0 if none has it.
int BestSuited(std::span<const int> hand, std::span<const int> board, int suit) {
  const unsigned ranks = RanksOf(board, suit);
  int best = 0;
  for (std::size_t i = 0; i + 1 < hand.size(); ++i) {
    for (std::size_t j = i + 1; j < hand.size(); ++j) {
      if (hand[i] / 13 != suit || hand[j] / 13 != suit) continue;
      best =
          std::max(best, Packed(BestFlush(ranks, 1u << hand[i] % 13 | 1u << hand[j] % 13), i, j));
    }
  }
  return best;
}

// The same for hands of four, whose loops the compiler unrolls.
template <int kCards, typename Keys>
int BestPlainOf(std::span<const int> hand, std::span<const int> board, const Keys& keys) {
  std::array<int, kMostHoles> ranks;
  if (hand.size() == 4) {
    for (std::size_t i = 0; i < 4; ++i) ranks[i] = hand[i] % 13;
    return BestPlain<kCards>(std::span(ranks).template first<4>(), board, keys);
  }
  for (std::size_t i = 0; i < hand.size(); ++i) ranks[i] = hand[i] % 13;
  return BestPlain<kCards>(std::span<const int>(ranks).first(hand.size()), board, keys);
}

template <int kCards>
int BestValue(std::span<const int> hand, std::span<const int> board) {
  const auto keys = TripleKeys<kCards>(board);
  const int plain = BestPlainOf<kCards>(hand, board, keys);
  const int suit = FlushSuitOf(hand, board);
  return std::max(plain, suit >= 0 ? BestSuited(hand, board, suit) : 0) >> kPairBits;
}

template <int kCards>
OmahaChoice FindBest(std::span<const int> hand, std::span<const int> board) {
  const auto keys = TripleKeys<kCards>(board);
  const int plain = BestPlainOf<kCards>(hand, board, keys);
  const int suit = FlushSuitOf(hand, board);
  const int suited = suit >= 0 ? BestSuited(hand, board, suit) : 0;
  const bool flush = suited >> kPairBits > plain >> kPairBits;
  const int best = flush ? suited : plain;
  const int pair = kLastPair - (best & kLastPair);
  OmahaChoice choice = {best >> kPairBits, {pair / kMostHoles, pair % kMostHoles}, {}};

  // The first triple that makes it.
  const int hole1 = hand[static_cast<std::size_t>(choice.hole[0])];
  const int hole2 = hand[static_cast<std::size_t>(choice.hole[1])];
  const std::uint32_t holes = kRankKeys[hole1 % 13] + kRankKeys[hole2 % 13];
  unsigned found = 0;
  if (flush) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
      const auto& [a, b, c] = kTriples<kCards>[i];
      const int five[5] = {hole1, hole2, board[static_cast<std::size_t>(a)],
                           board[static_cast<std::size_t>(b)], board[static_cast<std::size_t>(c)]};
      found |= (EvaluateCards<5>(five) == choice.value ? 1u : 0u) << i;
    }
  } else {
    for (std::size_t i = 0; i < keys.size(); ++i) {
      found |= (ValueOfRanks<5>(holes + keys[i]) == choice.value ? 1u : 0u) << i;
    }
  }
  std::ranges::copy(kTriples<kCards>[static_cast<std::size_t>(__builtin_ctz(found))], choice.board);
  return choice;
}

}  // namespace

OmahaChoice FindBestOmaha(std::span<const int> hand, std::span<const int> board) {
  if (hand.size() < 2 || hand.size() > kMostHoles) return {};
  switch (board.size()) {
    case 5:
      return FindBest<5>(hand, board);
    case 4:
      return FindBest<4>(hand, board);
    case 3:
      return FindBest<3>(hand, board);
    default:
      return {};
  }
}

int BestOmahaValue(std::span<const int> hand, std::span<const int> board) {
  if (hand.size() < 2 || hand.size() > kMostHoles) return 0;
  if (board.size() == 5 && hand.size() >= 4 && hand.size() <= 6) {
    return ForOmahaSize(static_cast<int>(hand.size()), [=](auto holes) {
      return EvaluateOmaha<holes>(hand.data(), board.data());
    });
  }
  switch (board.size()) {
    case 5:
      return BestValue<5>(hand, board);
    case 4:
      return BestValue<4>(hand, board);
    case 3:
      return BestValue<3>(hand, board);
    default:
      return 0;
  }
}

int BestOmahaStraightFlush(unsigned holes, unsigned board) {
  POKERMATH_REQUIRE((holes & board) == 0);
  const unsigned in_hand = FromAce(holes);
  // Five in a row, by the lowest, that are two of one and three of the other. There is no call, as
  // of a function that counts bits: it would not be in a cache and take a microsecond.
  for (unsigned rows = FiveInRow(FromAce(holes | board)); rows != 0;) {
    const int lowest = 31 ^ __builtin_clz(rows);
    const unsigned played = in_hand >> lowest & 0x1F;
    const unsigned second = played & (played - 1);
    if (second != 0 && (second & (second - 1)) == 0) return kCategoryStarts[8] + 1 + lowest;
    rows ^= 1u << lowest;
  }
  return 0;
}

int BestOmahaValue(CardSet hand, std::uint64_t hand_words, CardSet board,
                   std::uint64_t board_words) {
  POKERMATH_REQUIRE(board.size() == 5);
  const std::uint16_t* const of_pairs =
      OmahaRows::Get().OfCompactKey(board_words >> CompactTables::kKeyShift);
  const int plain = ForOmahaSize(hand.size(), [=](auto holes) {
    std::array<int, holes> cards;
    std::ranges::copy(hand, cards.begin());
    return BestOfPairs<holes>(of_pairs, cards.data());
  });
  // Counts of a suit, four bits each, moved up so that the highest is set from two and from three.
  constexpr std::uint64_t kFromTwo = 0x6666;
  constexpr std::uint64_t kFromThree = 0x5555;
  const std::uint64_t suits =
      (hand_words + kFromTwo) & (board_words + kFromThree) & CompactTables::kFlushBits;
  if (suits == 0) return plain;
  const int first = std::countr_zero(suits) / 4 * 13;
  return std::max(
      plain, BestOmahaFlush(hand.bits() >> first & kAllRanks, board.bits() >> first & kAllRanks));
}

OmahaPairValues::OmahaPairValues(std::span<const int> board) {
  int counts[4] = {};
  for (const int card : board) {
    if (++counts[card / 13] == 3) suit_ = card / 13;
  }
  if (suit_ >= 0) board_ranks_ = RanksOf(board, suit_);
  AddPlain(RanksOf<5>(board), board.size());
}

OmahaPairValues::OmahaPairValues(std::span<const int> ranks, int suit, unsigned suited)
    : suit_(suit), board_ranks_(suited) {
  std::array<int, 5> all{};
  std::ranges::copy(ranks, all.begin());
  AddPlain(all, ranks.size());
}

void OmahaPairValues::AddPlain(const std::array<int, 5>& ranks, std::size_t size) {
  std::array<std::uint32_t, 4> triples;
  std::size_t triple_count = 0;
  if (size < 5) {
    for (std::size_t a = 0; a < size; ++a)
      for (std::size_t b = a + 1; b < size; ++b)
        for (std::size_t c = b + 1; c < size; ++c) {
          triples[triple_count++] = kRankKeys[ranks[a]] + kRankKeys[ranks[b]] + kRankKeys[ranks[c]];
        }
  }
  const std::uint16_t* of_pairs = size == 5 ? RowOf(ranks) : nullptr;
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) {
      int best = 0;
      if (of_pairs != nullptr) {
        best = of_pairs[PairOf(high, low)];
      } else {
        const std::uint32_t holes = kRankKeys[high] + kRankKeys[low];
        for (std::size_t i = 0; i < triple_count; ++i) {
          best = std::max(best, ValueOfRanks<5>(triples[i] + holes));
        }
      }
      const auto h = static_cast<std::size_t>(high);
      const auto l = static_cast<std::size_t>(low);
      plain_[h][l] = plain_[l][h] = static_cast<std::uint16_t>(best);
    }
  }
}

int OmahaPairValues::FlushOf(int rank1, int rank2) const {
  return BestFlush(board_ranks_, 1u << rank1 | 1u << rank2);
}

namespace {

// The HandRanks value of four hole cards and the board behind them.
int HandRanksOf(const int* cards, int board_count) {
  return ToHandRanks(BestOmahaValue(CardsOf(cards, 4), CardsOf(cards + 4, board_count)));
}

// Whether a hand and a board can be played; counts are not checked otherwise.
bool CanPlay(int hand_count, int board_count) {
  return hand_count >= 2 && hand_count <= static_cast<int>(kMostHoles) && board_count >= 3 &&
         board_count <= 5;
}

// The best choice in `record`, as indexes or as cards; a value that is worse than all others, and
// nothing written, where there is none.
int Indexes(const int* hand, int hand_count, const int* board, int board_count, int* record) {
  if (!CanPlay(hand_count, board_count)) return -1;
  const OmahaChoice choice = FindBestOmaha(CardsOf(hand, hand_count), CardsOf(board, board_count));
  std::copy(choice.hole, choice.hole + 2, record);
  std::copy(choice.board, choice.board + 3, record + 2);
  return choice.value;
}

int Cards(const int* hand, const int* board, int board_count, int* record) {
  const OmahaChoice choice = FindBestOmaha(CardsOf(hand, 4), CardsOf(board, board_count));
  for (int i = 0; i < 2; ++i) record[i] = hand[choice.hole[i]];
  for (int i = 0; i < 3; ++i) record[2 + i] = board[choice.board[i]];
  return OtherScale(choice.value);
}

}  // namespace
}  // namespace pokermath

int getCombinationOmahaFsm5Common(int* hand, int handCount, int* board, int boardCount,
                                  int* record) {
  return pokermath::Indexes(hand, handCount, board, boardCount, record);
}

int getCombinationOmahaFsm5(int* hand, int* board, int* record) {
  return pokermath::Indexes(hand, 4, board, 5, record);
}

int getCombinationOmahaTurnFsm5(int* hand, int* board, int* record) {
  return pokermath::Indexes(hand, 4, board, 4, record);
}

int getCombinationOmahaFlopFsm5(int* hand, int* board, int* record) {
  return pokermath::Indexes(hand, 4, board, 3, record);
}

int PokerLogic::getCombinationOmaha(int* hand, int* board, int* record) const {
  return pokermath::Cards(hand, board, 5, record);
}

int PokerLogic::getCombinationOmahaTurn(int* hand, int* board, int* record) const {
  return pokermath::Cards(hand, board, 4, record);
}

int PokerLogic::getCombinationOmahaFlop(int* hand, int* board, int* record) const {
  return pokermath::Cards(hand, board, 3, record);
}

int PokerLogic::getCombinationOmahaCommon(int* hand, int handCount, int* board, int boardCount,
                                          int* record) const {
  constexpr int kNone = 100000;
  const int value = pokermath::Indexes(hand, handCount, board, boardCount, record);
  return value < 0 ? kNone : pokermath::OtherScale(value);
}

int PokerLogic::LookupHandsOmaha(int* cards) const { return pokermath::HandRanksOf(cards, 5); }

int PokerLogic::LookupHandsOmahaFlop(int* cards) const { return pokermath::HandRanksOf(cards, 3); }

int PokerLogic::LookupHandsOmahaTurn(int* cards) const { return pokermath::HandRanksOf(cards, 4); }
