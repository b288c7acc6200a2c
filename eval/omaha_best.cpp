// The best Omaha hand without trying every choice.
//
// Without a flush a pair of hole cards makes with a board of five what their ranks say: a table
// [6,188 multisets of board ranks][91 pairs of ranks] answers that. A flush needs three board cards
// and two hole cards of one suit; it is looked up by their ranks. When the best value is known, the
// first choice that has it is searched for: few of the pairs have it at all.

#include "eval/omaha_best.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "eval/compact_keys.h"
#include "eval/scales.h"
#include "pokermath/evaluators.h"
#include "pokermath/large_table.h"
#include "pokermath/omaha.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr int kRankPairs = 91;

constexpr int PairOf(int rank1, int rank2) {
  const int high = rank1 > rank2 ? rank1 : rank2;
  const int low = rank1 > rank2 ? rank2 : rank1;
  return high * (high + 1) / 2 + low;
}

// Place of five ranks among all multisets, by a card's place in rising order and its rank.
constexpr auto kPlaces = [] {
  std::array<std::array<int, 13>, 5> places{};
  for (int i = 0; i < 5; ++i) {
    for (int rank = 0; rank < 13; ++rank) {
      int choose = 1;
      for (int k = 0; k <= i; ++k) choose = choose * (rank + i - k) / (k + 1);
      places[static_cast<std::size_t>(i)][static_cast<std::size_t>(rank)] = choose;
    }
  }
  return places;
}();

// The best value without a flush of five board ranks and two hole ranks.
class BoardValues {
 public:
  static const BoardValues& Get() {
    static const BoardValues values;
    return values;
  }

  /// [pair of ranks] for a board of five.
  const std::uint16_t* Of(std::span<const int> board) const {
    int ranks[5];
    for (std::size_t i = 0; i < 5; ++i) ranks[i] = board[i] % 13;
    constexpr int kPairs[9][2] = {{0, 3}, {1, 4}, {0, 2}, {1, 3}, {0, 1},
                                  {2, 4}, {1, 2}, {3, 4}, {2, 3}};
    for (const auto& [a, b] : kPairs) {
      const int smaller = std::min(ranks[a], ranks[b]);
      ranks[b] = std::max(ranks[a], ranks[b]);
      ranks[a] = smaller;
    }
    int place = 0;
    for (std::size_t i = 0; i < 5; ++i) place += kPlaces[i][static_cast<std::size_t>(ranks[i])];
    return &values_[static_cast<std::size_t>(place * kRankPairs)];
  }

 private:
  BoardValues() {
    for (int e = 0; e < 13; ++e)
      for (int d = 0; d <= e; ++d)
        for (int c = 0; c <= d; ++c)
          for (int b = 0; b <= c; ++b)
            for (int a = 0; a <= b; ++a) AddBoard({a, b, c, d, e});
  }
  void AddBoard(const std::array<int, 5>& ranks) {
    std::uint32_t triples[10];
    std::uint32_t* next = triples;
    for (std::size_t a = 0; a < 3; ++a)
      for (std::size_t b = a + 1; b < 4; ++b)
        for (std::size_t c = b + 1; c < 5; ++c) {
          *next++ = kRankKeys[ranks[a]] + kRankKeys[ranks[b]] + kRankKeys[ranks[c]];
        }
    for (int high = 0; high < 13; ++high) {
      for (int low = 0; low <= high; ++low) {
        int best = 0;
        for (const std::uint32_t triple : triples) {
          best = std::max(best, ValueOfRanks<5>(triple + kRankKeys[high] + kRankKeys[low]));
        }
        values_.push_back(static_cast<std::uint16_t>(best));
      }
    }
  }

  LargeTable<std::uint16_t> values_;
};

// Calls visit(a, b, c) for the triples of a board, the first card changing last.
template <typename Visit>
void ForEachTriple(std::size_t cards, Visit visit) {
  for (std::size_t a = 0; a + 2 < cards; ++a)
    for (std::size_t b = a + 1; b + 1 < cards; ++b)
      for (std::size_t c = b + 1; c < cards; ++c) visit(a, b, c);
}

// The suit of which there are three board cards and two hole cards, as ranks of both.
struct FlushSuit {
  unsigned board = 0;
  unsigned hole = 0;
  int suit = -1;

  FlushSuit(std::span<const int> hand, std::span<const int> cards) {
    std::uint64_t board_bits = 0;
    std::uint64_t hole_bits = 0;
    for (const int card : cards) board_bits |= std::uint64_t{1} << card;
    for (const int card : hand) hole_bits |= std::uint64_t{1} << card;
    for (int i = 0; i < 4; ++i) {
      const auto on_board = static_cast<unsigned>(board_bits >> 13 * i & 0x1FFF);
      const auto in_hand = static_cast<unsigned>(hole_bits >> 13 * i & 0x1FFF);
      if (__builtin_popcount(on_board) >= 3 && __builtin_popcount(in_hand) >= 2) {
        board = on_board;
        hole = in_hand;
        suit = i;
      }
    }
  }

  // The best flush of two hole cards.
  int Best(unsigned holes) const {
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
};

}  // namespace

OmahaChoice FindBestOmaha(std::span<const int> hand, std::span<const int> board) {
  const FlushSuit flush(hand, board);
  const std::uint16_t* of_pairs = board.size() == 5 ? BoardValues::Get().Of(board) : nullptr;
  // What a pair makes at best.
  const auto value_of = [&](std::size_t i, std::size_t j) {
    const int rank1 = hand[i] % 13;
    const int rank2 = hand[j] % 13;
    int value = 0;
    if (of_pairs != nullptr) {
      value = of_pairs[PairOf(rank1, rank2)];
    } else {
      const std::uint32_t key = kRankKeys[rank1] + kRankKeys[rank2];
      ForEachTriple(board.size(), [&](std::size_t a, std::size_t b, std::size_t c) {
        value =
            std::max(value, ValueOfRanks<5>(key + kRankKeys[board[a] % 13] +
                                            kRankKeys[board[b] % 13] + kRankKeys[board[c] % 13]));
      });
    }
    if (flush.suit >= 0 && hand[i] / 13 == flush.suit && hand[j] / 13 == flush.suit) {
      value = std::max(value, flush.Best(1u << rank1 | 1u << rank2));
    }
    return value;
  };
  OmahaChoice choice;
  for (std::size_t i = 0; i + 1 < hand.size(); ++i) {
    for (std::size_t j = i + 1; j < hand.size(); ++j) {
      const int value = value_of(i, j);
      if (value <= choice.value) continue;
      choice.value = value;
      choice.hole[0] = static_cast<int>(i);
      choice.hole[1] = static_cast<int>(j);
    }
  }
  // The first triple that makes it.
  const int hole1 = hand[static_cast<std::size_t>(choice.hole[0])];
  const int hole2 = hand[static_cast<std::size_t>(choice.hole[1])];
  bool found = false;
  ForEachTriple(board.size(), [&](std::size_t a, std::size_t b, std::size_t c) {
    if (found) return;
    const int five[5] = {hole1, hole2, board[a], board[b], board[c]};
    if (EvaluateCards<5>(five) != choice.value) return;
    found = true;
    choice.board[0] = static_cast<int>(a);
    choice.board[1] = static_cast<int>(b);
    choice.board[2] = static_cast<int>(c);
  });
  return choice;
}

namespace {

void RecordIndexes(const OmahaChoice& choice, int* record) {
  std::copy(choice.hole, choice.hole + 2, record);
  std::copy(choice.board, choice.board + 3, record + 2);
}

void RecordCards(const OmahaChoice& choice, const int* hand, const int* board, int* record) {
  for (int i = 0; i < 2; ++i) record[i] = hand[choice.hole[i]];
  for (int i = 0; i < 3; ++i) record[2 + i] = board[choice.board[i]];
}

std::span<const int> CardsOf(const int* cards, int count) {
  return {cards, static_cast<std::size_t>(count)};
}

}  // namespace
}  // namespace pokermath

int getCombinationOmahaFsm5Common(int* hand, int handCount, int* board, int boardCount,
                                  int* record) {
  using namespace pokermath;
  const OmahaChoice choice = FindBestOmaha(CardsOf(hand, handCount), CardsOf(board, boardCount));
  RecordIndexes(choice, record);
  return choice.value;
}

int getCombinationOmahaFsm5(int* hand, int* board, int* record) {
  return getCombinationOmahaFsm5Common(hand, 4, board, 5, record);
}

int getCombinationOmahaTurnFsm5(int* hand, int* board, int* record) {
  return getCombinationOmahaFsm5Common(hand, 4, board, 4, record);
}

int getCombinationOmahaFlopFsm5(int* hand, int* board, int* record) {
  return getCombinationOmahaFsm5Common(hand, 4, board, 3, record);
}

int PokerLogic::getCombinationOmaha(int* hand, int* board, int* record) const {
  using namespace pokermath;
  const OmahaChoice choice = FindBestOmaha(CardsOf(hand, 4), CardsOf(board, 5));
  RecordCards(choice, hand, board, record);
  return OtherScale(choice.value);
}

int PokerLogic::getCombinationOmahaTurn(int* hand, int* board, int* record) const {
  using namespace pokermath;
  const OmahaChoice choice = FindBestOmaha(CardsOf(hand, 4), CardsOf(board, 4));
  RecordCards(choice, hand, board, record);
  return OtherScale(choice.value);
}

int PokerLogic::getCombinationOmahaFlop(int* hand, int* board, int* record) const {
  using namespace pokermath;
  const OmahaChoice choice = FindBestOmaha(CardsOf(hand, 4), CardsOf(board, 3));
  RecordCards(choice, hand, board, record);
  return OtherScale(choice.value);
}

int PokerLogic::getCombinationOmahaCommon(int* hand, int handCount, int* board, int boardCount,
                                          int* record) const {
  return pokermath::OtherScale(
      getCombinationOmahaFsm5Common(hand, handCount, board, boardCount, record));
}
