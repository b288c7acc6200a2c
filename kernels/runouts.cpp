// One or two cards to come, without dealing them.
//
// Leave the suits aside and a run-out is a rank, or two ranks. What a hand makes with each depends
// on the ranks of its hole cards and the board, so a table of these blocks, one for every multiset
// of known ranks, answers that. A matchup compares two blocks, each run-out weighted by the number
// of ways to draw it from the unseen cards.
//
// Two ranks are laid out in a circle, so that a block is a few rows of 16 lanes and every run-out
// is there once: lane x of row d holds the ranks x and x + d, modulo 13, for d from 0 to 6.
//
// Flushes are put right afterwards, suit by suit, by the number of cards of the suit that come. A
// hand that flushes is decided by its ranks of that suit alone, as five cards of a suit leave no
// room for a full house.

#include "kernels/runouts.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <vector>

#include "eval/rank_sets.h"
#include "kernels/registers.h"
#include "platform/mutex.h"
#include "pokermath/large_table.h"

namespace pokermath {
namespace {

using Register = Registers32::Register;
constexpr int kRow = kLanes<Register>;
constexpr int kDistances = 7;  // of two ranks in the circle of 13, 0 among them

// Rows of values, each made when it is first asked for, by any thread: a question needs few of
// them.
class KeptRows {
 public:
  KeptRows(int rows, int length)
      : length_(static_cast<std::size_t>(length)),
        made_(static_cast<std::size_t>(rows)),
        values_(made_.size() * length_) {}

  // @param make  called with a row to fill in
  template <typename Make>
  const std::int16_t* Get(int row, const Make& make) {
    const auto number = static_cast<std::size_t>(row);
    std::int16_t* values = &values_[number * length_];
    if (!made_[number].load(std::memory_order_acquire)) [[unlikely]] {
      const std::lock_guard lock(making_);
      if (!made_[number].load(std::memory_order_relaxed)) make(values);
      made_[number].store(true, std::memory_order_release);
    }
    return values;
  }

 private:
  std::size_t length_;
  std::vector<std::atomic<bool>> made_;
  LargeTable<std::int16_t> values_;  // memory that nobody writes costs nothing
  Mutex making_;
};

// The values of `known` ranks with one or two more.
template <Deck deck, int known, int to_come>
class RankBlocks {
 public:
  static constexpr int kRows = to_come == 2 ? kDistances : 1;

  static RankBlocks& Get() {
    static RankBlocks blocks;
    return blocks;
  }
  // By the place of a multiset among all of its size, and the sum of its keys.
  const std::int16_t* Of(int place, std::uint32_t key) {
    return blocks_.Get(place, [key](std::int16_t* block) { Fill(key, block); });
  }

 private:
  [[gnu::noinline]] static void Fill(std::uint32_t key, std::int16_t* block) {
    for (int row = 0; row < kRows; ++row) {
      for (int lane = 0; lane < kRow; ++lane) {
        const int other = (lane + row) % 13;
        const bool present = lane < 13 && std::min(lane, other) >= kLowest;
        *block++ = present ? ValueWith(key, lane, other) : std::int16_t{0};
      }
    }
  }
  static std::int16_t ValueWith(std::uint32_t key, int rank, int other) {
    key += DeckValues<deck>::KeyOf(rank);
    if (to_come == 2) key += DeckValues<deck>::KeyOf(other);
    return DeckValues<deck>::template OfRanks<known + to_come>(key);
  }

  static constexpr int kLowest = LowestRank(deck);
  KeptRows blocks_{Choose(12 - kLowest + known, known), kRows* kRow};
};

}  // namespace

namespace {

// Rank sets of three to six ranks, numbered.
constexpr auto kSetNumbers = [] {
  std::array<std::uint16_t, kAllRanks + 1> numbers{};
  std::uint16_t number = 0;
  for (unsigned set = 0; set <= kAllRanks; ++set) {
    const int ranks = __builtin_popcount(set);
    if (3 <= ranks && ranks <= 6) numbers[set] = number++;
  }
  return numbers;
}();

}  // namespace

// The flushes that a rank set of three to six ranks makes with one more rank or two.
class FlushBlocks {
 public:
  static constexpr int kOneMore = 32;               // lanes: the circle of ranks twice over
  static constexpr int kTwoMore = kOneMore - kRow;  // row 1 is the first: no rank comes twice
  static constexpr int kSize = kTwoMore + kDistances * kRow;

  template <Deck deck>
  static FlushBlocks& Get() {
    static FlushBlocks blocks(DeckValues<deck>::OfFlush);
    return blocks;
  }
  const std::int16_t* Of(RankSet set) {
    return blocks_.Get(kSetNumbers[set], [&](std::int16_t* block) { Fill(set, block); });
  }

 private:
  explicit FlushBlocks(std::int16_t (*value)(unsigned ranks))
      : value_(value), blocks_(*std::ranges::max_element(kSetNumbers) + 1, kSize) {}

  [[gnu::noinline]] void Fill(unsigned set, std::int16_t* block) const {
    for (int lane = 0; lane < kOneMore; ++lane) *block++ = value_(set | 1u << lane % 13);
    for (int row = 1; row < kDistances; ++row) {
      for (int lane = 0; lane < kRow; ++lane) {
        *block++ = value_(set | 1u << lane % 13 | 1u << (lane + row) % 13);
      }
    }
  }

  std::int16_t (*value_)(unsigned ranks);
  KeptRows blocks_;
};

namespace {

// Ranks by lanes: [row][lane] is the rank of the lane as a set, after `row` steps along the circle.
// Lanes without a rank hold kNoSet.
constexpr auto kSets = [] {
  std::array<std::array<std::int16_t, kRow>, kDistances> sets{};
  for (int row = 0; row < kDistances; ++row) {
    for (int lane = 0; lane < kRow; ++lane) {
      sets[static_cast<std::size_t>(row)][static_cast<std::size_t>(lane)] =
          static_cast<std::int16_t>(lane < 13 ? 1 << (lane + row) % 13 : kNoSet);
    }
  }
  return sets;
}();

constexpr void AddRank(RankLanes& lanes, int rank, int number) {
  for (std::size_t lane = static_cast<std::size_t>(rank); lane < lanes.size(); lane += 13) {
    lanes[lane] = static_cast<std::int16_t>(lanes[lane] + number);
  }
}

// Hole cards of each rank: all of a class, and those that a view leaves to the other suits.
constexpr auto kClassRanks = [] {
  std::array<RankLanes, kRankClasses> ranks{};
  for (const SuitView& view : kViews) {
    if (view.held != 0) continue;
    for (const int rank : view.others) {
      AddRank(ranks[static_cast<std::size_t>(view.rank_class)], rank, 1);
    }
  }
  return ranks;
}();
constexpr auto kOtherRanks = [] {
  std::array<RankLanes, kSuitViews> ranks{};
  for (std::size_t i = 0; i < kViews.size(); ++i) {
    for (std::size_t j = 0; j < static_cast<std::size_t>(kViews[i].OtherCount()); ++j) {
      AddRank(ranks[i], kViews[i].others[j], 1);
    }
  }
  return ranks;
}();

// Wins and ties lane by lane.
struct Sums {
  Register wins{};
  Register ties{};

  POKERMATH_KERNEL Counts Total() const { return {.wins = Total(wins), .ties = Total(ties)}; }

 private:
  // All run-outs together are 1,176 at most: 16 bits hold the sum.
  POKERMATH_KERNEL static int Total(const Register& lanes) {
    Registers16::Register low;
    Registers16::Register high;
    std::memcpy(&low, &lanes, sizeof low);
    std::memcpy(&high, reinterpret_cast<const char*>(&lanes) + sizeof low, sizeof high);
    low += high;
    low += __builtin_shufflevector(low, low, 4, 5, 6, 7, 0, 1, 2, 3);
    low += __builtin_shufflevector(low, low, 2, 3, 0, 1, 6, 7, 4, 5);
    return static_cast<std::int16_t>(low[0] + low[1]);
  }
};

// Cards of each rank that two hands leave of some, seen from the ranks `row` steps along the
// circle.
struct Left {
  const RankLanes& before;
  const RankLanes& hand1;
  const RankLanes& hand2;

  POKERMATH_KERNEL void At(int row, Register& left) const {
    Register held1;
    Register held2;
    Load(left, before.data() + row);
    Load(held1, hand1.data() + row);
    Load(held2, hand2.data() + row);
    left -= held1 + held2;
  }
  // Ways to draw the run-outs of a row, all cards being among those counted.
  POKERMATH_KERNEL void Draw(int to_come, int row, Register& ways) const {
    Register ranks;
    Load(ranks, kSets[0].data());
    At(0, ways);
    if (to_come == 2 && row == 0) {
      ways = ways * (ways - 1) >> 1;
    } else if (to_come == 2) {
      Register other;
      At(row, other);
      ways *= other;
    }
    ways &= ranks != kNoSet;
  }
};

// Lanes whose rank, `row` steps along, is not in a set.
POKERMATH_KERNEL void NotIn(std::int16_t set, int row, Register& lanes) {
  Load(lanes, kSets[static_cast<std::size_t>(row)].data());
  lanes = (lanes & set) == 0;
}

POKERMATH_KERNEL Counts Ranks(const KnownBoard& board, int class1, int class2) {
  const auto index1 = static_cast<std::size_t>(class1);
  const auto index2 = static_cast<std::size_t>(class2);
  const Left left{board.unseen, kClassRanks[index1], kClassRanks[index2]};
  const int rows = board.to_come == 2 ? kDistances : 1;
  Sums sums;
  for (int row = 0; row < rows; ++row) {
    Register v1;
    Register v2;
    Register ways;
    Load(v1, board.values[index1] + row * kRow);
    Load(v2, board.values[index2] + row * kRow);
    left.Draw(board.to_come, row, ways);
    sums.wins += (v1 > v2) & ways;
    sums.ties += (v1 == v2) & ways;
  }
  return sums.Total();
}

// Two hands as a suit sees them.
struct Suited {
  const std::int16_t* values1;
  const std::int16_t* values2;
  RankSet set1;  // the board's ranks of the suit and the hand's
  RankSet set2;
  std::int16_t dead;             // ranks of the suit that cannot come, and kNoSet
  Left others;                   // unseen cards of the other suits
  const std::int16_t* flushes1;  // blocks of set1 and set2, of those who may have one
  const std::int16_t* flushes2;
};

// Takes off what the ranks said of the run-outs of a row and adds what is true: f1 and f2 are the
// flushes of those who have one.
template <bool flush1, bool flush2>
POKERMATH_KERNEL void Correct(const Suited& suited, int row, const Register& f1, const Register& f2,
                              const Register& ways, Sums& sums) {
  Register v1;
  Register v2;
  Load(v1, suited.values1 + row * kRow);
  Load(v2, suited.values2 + row * kRow);
  const Register true1 = flush1 ? f1 : v1;
  const Register true2 = flush2 ? f2 : v2;
  // A flush never ties with a hand that has none.
  const Register no_tie{};
  const Register true_tie = flush1 && flush2 ? Register(f1 == f2) : no_tie;
  sums.wins += ((v1 > v2) - (true1 > true2)) * ways;
  sums.ties += ((v1 == v2) - true_tie) * ways;
}

// Run-outs of two cards of the suit.
template <bool flush1, bool flush2>
POKERMATH_KERNEL void CorrectTwo(const Suited& suited, Sums& sums) {
  for (int row = 1; row < kDistances; ++row) {
    Register ways;
    Register alive;
    Register f1{};
    Register f2{};
    NotIn(suited.dead, 0, ways);
    NotIn(suited.dead, row, alive);
    if (flush1) Load(f1, suited.flushes1 + FlushBlocks::kTwoMore + row * kRow);
    if (flush2) Load(f2, suited.flushes2 + FlushBlocks::kTwoMore + row * kRow);
    ways &= alive;
    Correct<flush1, flush2>(suited, row, f1, f2, -ways, sums);
  }
}

// Run-outs with one card of the suit; when two cards come, either may be the one.
template <bool flush1, bool flush2>
POKERMATH_KERNEL void CorrectOne(const Suited& suited, int to_come, Sums& sums) {
  const int rows = to_come == 2 ? kDistances : 1;
  for (int row = 0; row < rows; ++row) {
    for (const int step : {0, row}) {
      Register ways;
      Register f1{};
      Register f2{};
      if (to_come == 2) suited.others.At(row - step, ways);
      Register alive;
      NotIn(suited.dead, step, alive);
      ways = to_come == 2 ? ways & alive : -alive;
      if (flush1) Load(f1, suited.flushes1 + step);
      if (flush2) Load(f2, suited.flushes2 + step);
      Correct<flush1, flush2>(suited, row, f1, f2, ways, sums);
      if (row == 0) break;
    }
  }
}

// Run-outs without a card of the suit.
template <bool flush1, bool flush2>
POKERMATH_KERNEL void CorrectNone(const Suited& suited, int to_come, Sums& sums) {
  const Register zero{};
  const Register f1 =
      zero + (flush1 ? suited.flushes1[__builtin_ctz(suited.set1)] : std::int16_t{0});
  const Register f2 =
      zero + (flush2 ? suited.flushes2[__builtin_ctz(suited.set2)] : std::int16_t{0});
  const int rows = to_come == 2 ? kDistances : 1;
  for (int row = 0; row < rows; ++row) {
    Register ways;
    suited.others.Draw(to_come, row, ways);
    Correct<flush1, flush2>(suited, row, f1, f2, ways, sums);
  }
}

// The corrections where `come` cards of the suit come.
template <bool flush1, bool flush2>
POKERMATH_KERNEL void CorrectSuitCards(const Suited& suited, int to_come, int come, Sums& sums) {
  if (come == 2) {
    CorrectTwo<flush1, flush2>(suited, sums);
  } else if (come == 1) {
    CorrectOne<flush1, flush2>(suited, to_come, sums);
  } else {
    CorrectNone<flush1, flush2>(suited, to_come, sums);
  }
}

POKERMATH_KERNEL Counts Flushes(const KnownBoard& board, int suit, const SuitView& view1,
                                const SuitView& view2) {
  const KnownBoard::Suit& known = board.suits[static_cast<std::size_t>(suit)];
  const auto view_index = [](const SuitView& view) {
    return static_cast<std::size_t>(&view - kViews.data());
  };
  const auto set1 = static_cast<RankSet>(known.held | view1.held);
  const auto set2 = static_cast<RankSet>(known.held | view2.held);
  const auto flushes_of = [&](const SuitView& view, RankSet set) POKERMATH_INLINE {
    const bool may = known.held_count + board.to_come + view.held_count >= 5;
    return may ? board.flushes->Of(set) : nullptr;
  };
  const Suited suited{
      .values1 = board.values[static_cast<std::size_t>(view1.rank_class)],
      .values2 = board.values[static_cast<std::size_t>(view2.rank_class)],
      .set1 = set1,
      .set2 = set2,
      .dead =
          static_cast<std::int16_t>(known.held | view1.held | view2.held | board.absent | kNoSet),
      .others = {known.others, kOtherRanks[view_index(view1)], kOtherRanks[view_index(view2)]},
      .flushes1 = flushes_of(view1, set1),
      .flushes2 = flushes_of(view2, set2)};
  Sums sums;
  for (int come = 0; come <= board.to_come; ++come) {
    const bool flush1 = known.held_count + come + view1.held_count >= 5;
    const bool flush2 = known.held_count + come + view2.held_count >= 5;
    if (flush1 && flush2) {
      CorrectSuitCards<true, true>(suited, board.to_come, come, sums);
    } else if (flush1) {
      CorrectSuitCards<true, false>(suited, board.to_come, come, sums);
    } else if (flush2) {
      CorrectSuitCards<false, true>(suited, board.to_come, come, sums);
    }
  }
  return sums.Total();
}

// Fills in the blocks of rank classes on a board.
template <Deck deck, int kBoard, int to_come>
void SetValues(std::span<const int> cards, const RankClassSet& classes,
               std::array<const std::int16_t*, kRankClasses>& values) {
  constexpr int kLowest = LowestRank(deck);
  auto& blocks = RankBlocks<deck, kBoard + 2, to_come>::Get();
  std::array<int, kBoard> ranks;
  std::uint32_t key = 0;
  for (std::size_t i = 0; i < ranks.size(); ++i) {
    ranks[i] = cards[i] % 13;
    key += DeckValues<deck>::KeyOf(ranks[i]);
  }
  std::ranges::sort(ranks);
  const auto place_of = [](std::size_t before, int rank) {
    return kMultisetPlaces[before][static_cast<std::size_t>(rank - kLowest)];
  };
  for (int high = kLowest; high < 13; ++high) {
    for (int low = kLowest; low <= high; ++low) {
      const auto number = static_cast<std::size_t>(RankClassOf(high, low));
      if (!classes[number]) continue;
      // Each rank goes behind those below it.
      std::size_t below_low = 0;
      std::size_t below_high = 1;
      int place = 0;
      for (std::size_t i = 0; i < ranks.size(); ++i) {
        below_low += ranks[i] < low ? 1 : 0;
        below_high += ranks[i] < high ? 1 : 0;
        const std::size_t before = i + (low <= ranks[i] ? 1 : 0) + (high <= ranks[i] ? 1 : 0);
        place += place_of(before, ranks[i]);
      }
      place += place_of(below_low, low) + place_of(below_high, high);
      values[number] =
          blocks.Of(place, key + DeckValues<deck>::KeyOf(high) + DeckValues<deck>::KeyOf(low));
    }
  }
}

template <Deck deck>
void SetTables(std::span<const int> cards, const RankClassSet& classes, KnownBoard& board) {
  board.flushes = &FlushBlocks::Get<deck>();
  board.absent = AbsentRanks(deck);
  if (cards.size() == 4) {
    SetValues<deck, 4, 1>(cards, classes, board.values);
  } else if (board.to_come == 2) {
    SetValues<deck, 3, 2>(cards, classes, board.values);
  } else {
    SetValues<deck, 3, 1>(cards, classes, board.values);
  }
}

}  // namespace

Runouts::Runouts(Isa isa, Deck deck, std::span<const int> board, int street,
                 const RankClassSet& classes)
    : isa_(isa) {
  board_.to_come = street - static_cast<int>(board.size());
  board_.live = CardsOf(deck) - 4 - static_cast<int>(board.size());
  if (deck == Deck::kShort) {
    SetTables<Deck::kShort>(board, classes, board_);
  } else {
    SetTables<Deck::kFull>(board, classes, board_);
  }
  for (int rank = LowestRank(deck); rank < 13; ++rank) {
    AddRank(board_.unseen, rank, 4);
    for (KnownBoard::Suit& suit : board_.suits) AddRank(suit.others, rank, 3);
  }
  for (const int card : board) {
    const int rank = card % 13;
    AddRank(board_.unseen, rank, -1);
    for (int i = 0; i < 4; ++i) {
      KnownBoard::Suit& suit = board_.suits[static_cast<std::size_t>(i)];
      if (i != card / 13) {
        AddRank(suit.others, rank, -1);
      } else {
        suit.held = static_cast<RankSet>(suit.held | 1 << rank);
        ++suit.held_count;
      }
    }
  }
}

Counts Runouts::CountRanks(int class1, int class2) const {
  return Dispatch<Isa::kAvx2>(isa_,
                              [&](auto) POKERMATH_INLINE { return Ranks(board_, class1, class2); });
}

Counts Runouts::CorrectSuit(int suit, const SuitView& view1, const SuitView& view2) const {
  return Dispatch<Isa::kAvx2>(
      isa_, [&](auto) POKERMATH_INLINE { return Flushes(board_, suit, view1, view2); });
}

int Runouts::CardsToFlush(int suit) const {
  return 5 - board_.to_come - board_.suits[static_cast<std::size_t>(suit)].held_count;
}

int Runouts::Boards() const { return Choose(board_.live, board_.to_come); }

}  // namespace pokermath
