// Without flushes two hands that share no card are compared by their ranks alone: by their classes.
// Of the cards of a rank, those are left to come that neither class has. So on how many run-outs
// one hand beats the other is a number for two classes, and it is worked out for all of them first:
// for each run-out of ranks, who is better, and in how many ways it comes.
//
// What a hand gets is then a sum over the classes of the other range, of this number times what
// their hands weigh that share no card with it. That is linear in the sums of weights by which
// cards are taken out (omaha_blocks.h), so these are added up first, each times its number, for the
// sets of ranks that the hand's class has.

#include "kernels/omaha_class_runouts.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "kernels/registers.h"
#include "platform/require.h"

namespace pokermath {
namespace {

// A number for two classes: ways to complete the board.
using Ways = std::int16_t;
static_assert(52 * 51 / 2 < 1 << 15);

// Classes are compared in registers of up to 32.
constexpr std::size_t kPadding = 32;
constexpr std::size_t kPairsOfFour = 6, kTriplesOfFour = 4;
constexpr std::size_t kRankPairs = MultisetsOf(2), kRankTriples = MultisetsOf(3);

// The sums of numbers times weights are whole numbers that doubles hold exactly, and so are those
// of sixteen terms.
static_assert(16.0 * (52 * 51 / 2) * 4294967296.0 < 9007199254740992.0);

// The cards that a board lacks, by their ranks.
struct Runout {
  std::size_t rank1, rank2;
  bool has_lows;
};

// Sums over suits of some or all cards of a class.
struct Parts {
  std::array<std::array<double, 64>, kTriplesOfFour> triples{};  // 012, 013, 023, 123
  std::array<std::array<double, 16>, kPairsOfFour> pairs{};      // 01, 02, 03, 12, 13, 23
  std::array<std::array<double, 4>, 4> singles{};
  double all = 0;
};

// Numbers of the ranks of some cards of a class.
std::array<std::size_t, kTriplesOfFour> TriplesOf(const HandClass<4>& of) {
  return {of.TensorOf(0, 1, 2) / 64, of.TensorOf(0, 1, 3) / 64, of.TensorOf(0, 2, 3) / 64,
          of.TensorOf(1, 2, 3) / 64};
}
std::array<std::size_t, kPairsOfFour> PairsOf(const HandClass<4>& of) {
  return {of.TensorOf(0, 1) / 16, of.TensorOf(0, 2) / 16, of.TensorOf(0, 3) / 16,
          of.TensorOf(1, 2) / 16, of.TensorOf(1, 3) / 16, of.TensorOf(2, 3) / 16};
}

// The classes of a range that have some ranks, and at which places.
struct Member {
  std::uint16_t index;
  std::uint16_t part;
};

// The classes of a range, numbered.
struct ClassesOf {
  explicit ClassesOf(const OmahaTensor<4>& range);

  const OmahaTensor<4>& of;
  std::vector<std::uint16_t> numbers;
  std::size_t padded;
  std::vector<Parts> parts;
  // By the numbers of ranks.
  std::array<std::vector<Member>, kRankTriples> with_triple;
  std::array<std::vector<Member>, kRankPairs> with_pair;
  std::array<std::vector<Member>, 13> with_single;
  // For each class, padded: cards of a rank; value and low on a run-out.
  std::array<std::vector<Ways>, 13> cards;
  std::vector<std::vector<Ways>> values, lows;

  void SetValues(std::size_t runout, std::span<const Ways> values_of_pairs,
                 std::span<const Ways> lows_of_pairs);

 private:
  void AddWeights(std::size_t index);
};

ClassesOf::ClassesOf(const OmahaTensor<4>& range) : of(range) {
  for (std::size_t i = 0; i < kHandClasses<4>; ++i) {
    if (range.BlocksOf(i).held != 0) numbers.push_back(static_cast<std::uint16_t>(i));
  }
  padded = (numbers.size() + kPadding - 1) / kPadding * kPadding;
  parts.resize(numbers.size());
  for (std::vector<Ways>& of_rank : cards) of_rank.resize(padded);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const HandClass<4>& hand_class = HandClasses<4>()[numbers[i]];
    const auto member = [&](std::size_t part) {
      return Member{static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(part)};
    };
    for (std::size_t part = 0; part < kTriplesOfFour; ++part) {
      with_triple[TriplesOf(hand_class)[part]].push_back(member(part));
    }
    for (std::size_t part = 0; part < kPairsOfFour; ++part) {
      with_pair[PairsOf(hand_class)[part]].push_back(member(part));
    }
    for (std::size_t part = 0; part < 4; ++part) {
      with_single[hand_class.ranks[part]].push_back(member(part));
      ++cards[hand_class.ranks[part]][i];
    }
    AddWeights(i);
  }
}

void ClassesOf::AddWeights(std::size_t index) {
  const OmahaTensor<4>::Blocks& blocks = of.BlocksOf(numbers[index]);
  Parts& sums = parts[index];
  for (std::size_t a = 0; a < 4; ++a)
    for (std::size_t b = 0; b < 4; ++b) {
      const auto block = static_cast<unsigned>(a * 4 + b);
      if (!blocks.Has(block)) continue;
      const std::uint32_t* const weights = &of.weights()[blocks.Of(block) * kBlockLanes];
      for (std::size_t c = 0; c < 4; ++c)
        for (std::size_t d = 0; d < 4; ++d) {
          const auto weight = static_cast<double>(weights[c * 4 + d]);
          sums.triples[0][block * 4 + c] += weight;
          sums.triples[1][block * 4 + d] += weight;
          sums.triples[2][a * 16 + c * 4 + d] += weight;
          sums.triples[3][b * 16 + c * 4 + d] += weight;
          sums.pairs[0][block] += weight;
          sums.pairs[1][a * 4 + c] += weight;
          sums.pairs[2][a * 4 + d] += weight;
          sums.pairs[3][b * 4 + c] += weight;
          sums.pairs[4][b * 4 + d] += weight;
          sums.pairs[5][c * 4 + d] += weight;
          sums.singles[0][a] += weight;
          sums.singles[1][b] += weight;
          sums.singles[2][c] += weight;
          sums.singles[3][d] += weight;
          sums.all += weight;
        }
    }
}

void ClassesOf::SetValues(std::size_t runout, std::span<const Ways> values_of_pairs,
                          std::span<const Ways> lows_of_pairs) {
  const auto set = [&](std::vector<std::vector<Ways>>& all, std::span<const Ways> of_pairs) {
    if (of_pairs.empty()) return;
    all.resize(std::max(all.size(), runout + 1));
    all[runout].resize(padded);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      Ways best = 0;
      for (const std::uint8_t pair : HandClasses<4>()[numbers[i]].rank_pairs) {
        best = std::max(best, of_pairs[pair]);
      }
      all[runout][i] = best;
    }
  };
  set(values, values_of_pairs);
  set(lows, lows_of_pairs);
}

// Everything that is asked.
struct Question {
  std::vector<Runout> runouts;
  std::array<std::int16_t, 13> live{};  // cards by rank
  int to_come;
  bool high_low;

  std::size_t contests() const { return high_low ? kOmahaContests : 1; }
};

// The run-outs that can come, with the values of the classes.
void SetRunouts(Question& question, CardSet board, std::span<ClassesOf> sides) {
  std::vector<int> ranks;
  for (const int card : board) ranks.push_back(card % 13);
  ranks.resize(ranks.size() + static_cast<std::size_t>(question.to_come));
  const auto add = [&](int rank1, int rank2) {
    std::array<Ways, kRankPairs> values{}, lows{};
    const OmahaPairValues of_values(ranks, -1, 0);
    const OmahaPairLows of_lows(ranks);
    std::size_t pair = 0;
    for (int high = 0; high < 13; ++high) {
      for (int low = 0; low <= high; ++low, ++pair) {
        values[pair] = static_cast<Ways>(of_values.Of(high, 13 + low));
        if (question.high_low) lows[pair] = static_cast<Ways>(of_lows.Of(high, 13 + low));
      }
    }
    const bool has_lows = std::ranges::max(lows) > 0;
    for (ClassesOf& side : sides) {
      side.SetValues(question.runouts.size(), values,
                     question.high_low ? std::span<const Ways>(lows) : std::span<const Ways>());
    }
    question.runouts.push_back(
        {static_cast<std::size_t>(rank1), static_cast<std::size_t>(rank2), has_lows});
  };
  for (int rank1 = 0; rank1 < 13; ++rank1) {
    ranks.back() = rank1;
    if (question.live[static_cast<std::size_t>(rank1)] == 0) continue;
    if (question.to_come == 1) add(rank1, rank1);
    for (int rank2 = 0; question.to_come == 2 && rank2 <= rank1; ++rank2) {
      const int needed = rank1 == rank2 ? 2 : 1;
      if (question.live[static_cast<std::size_t>(rank2)] < needed) continue;
      ranks[ranks.size() - 2] = rank2;
      add(rank1, rank2);
    }
  }
}

// For a class, against all of the other side: ways in which it is above, and not below.
struct WaysOfClass {
  std::array<std::vector<Ways>, kOmahaContests> below, not_above;
};

template <typename Register>
POKERMATH_KERNEL void CountWays(const Question& question, const ClassesOf& own, std::size_t index,
                                const ClassesOf& others, WaysOfClass& counted) {
  for (std::size_t i = 0; i < others.padded; i += kLanes<Register>) {
    Register left[13];
    for (std::size_t rank = 0; rank < 13; ++rank) {
      Register cards;
      Load(cards, &others.cards[rank][i]);
      cards = static_cast<Ways>(question.live[rank] - own.cards[rank][index]) - cards;
      // Where it is less than none, no two hands share no card.
      left[rank] = cards & (cards > 0);
    }
    Register below[kOmahaContests]{}, not_above[kOmahaContests]{};
    for (std::size_t r = 0; r < question.runouts.size(); ++r) {
      const Runout& runout = question.runouts[r];
      Register ways = left[runout.rank1];
      if (question.to_come == 2) {
        ways = runout.rank1 == runout.rank2 ? (ways * (ways - 1)) >> 1 : ways * left[runout.rank2];
      }
      Register values;
      Load(values, &others.values[r][i]);
      const Ways value = own.values[r][index];
      const auto add = [&](OmahaContest contest, const Register& is_below, const Register& is_above)
                           POKERMATH_INLINE {
                             const auto place = static_cast<std::size_t>(contest);
                             below[place] += ways & is_below;
                             not_above[place] += ways & ~is_above;
                           };
      const Register is_below = values<value, is_above = values> value;
      if (!runout.has_lows) {
        add(OmahaContest::kWholePot, is_below, is_above);
        continue;
      }
      add(OmahaContest::kHigh, is_below, is_above);
      Register lows;
      Load(lows, &others.lows[r][i]);
      const Ways low = own.lows[r][index];
      const Register low_below = lows<low, low_above = lows> low;
      if (low == 0) {
        add(OmahaContest::kNoLow, is_below & ~low_above, is_above | low_above);
      } else {
        add(OmahaContest::kLow, low_below, low_above);
        add(OmahaContest::kHighAndLow, is_below & low_below, is_above | low_above);
      }
    }
    for (std::size_t contest = 0; contest < question.contests(); ++contest) {
      std::memcpy(&counted.below[contest][i], &below[contest], sizeof below[contest]);
      std::memcpy(&counted.not_above[contest][i], &not_above[contest], sizeof not_above[contest]);
    }
  }
}

// Four suits.
using Doubles = double __attribute__((vector_size(32)));
POKERMATH_KERNEL void Read(Doubles& to, const double* from) { std::memcpy(&to, from, sizeof to); }

// Numbers of classes that weights are multiplied by: ways to be above, and not below.
struct Times {
  std::vector<double> below, not_above;
};

// Sums of weights times those.
template <std::size_t size>
struct TwoSums {
  alignas(32) std::array<double, size> below, not_above;
};

// As many at once as registers hold.
template <std::size_t size, typename Part>
POKERMATH_KERNEL void SetSums(TwoSums<size>& sums, std::span<const Member> members,
                              const Times& times, const Part& part) {
  constexpr std::size_t kAtOnce = std::min<std::size_t>(size / 4, 4);
  for (std::size_t i = 0; i < size; i += 4 * kAtOnce) {
    Doubles below[kAtOnce]{}, not_above[kAtOnce]{};
    for (const Member& member : members) {
      const double* const weights = part(member) + i;
      const double times_below = times.below[member.index];
      const double times_not_above = times.not_above[member.index];
      for (std::size_t j = 0; j < kAtOnce; ++j) {
        Doubles four;
        Read(four, weights + 4 * j);
        below[j] += four * times_below;
        not_above[j] += four * times_not_above;
      }
    }
    std::memcpy(&sums.below[i], below, sizeof below);
    std::memcpy(&sums.not_above[i], not_above, sizeof not_above);
  }
}

// What a class is asked against.
struct Against {
  TwoSums<64> triples[kTriplesOfFour];
  TwoSums<16> pairs[kPairsOfFour];
  TwoSums<4> singles[4];
  double all_below = 0, all_not_above = 0;
};

POKERMATH_KERNEL void SetAgainst(Against& against, const HandClass<4>& hand_class,
                                 const ClassesOf& others, const Times& times) {
  const Parts* const parts = others.parts.data();
  for (std::size_t part = 0; part < kTriplesOfFour; ++part) {
    SetSums(against.triples[part], others.with_triple[TriplesOf(hand_class)[part]], times,
            [&](const Member& of)
                POKERMATH_INLINE { return parts[of.index].triples[of.part].data(); });
  }
  for (std::size_t part = 0; part < kPairsOfFour; ++part) {
    SetSums(against.pairs[part], others.with_pair[PairsOf(hand_class)[part]], times,
            [&](const Member& of)
                POKERMATH_INLINE { return parts[of.index].pairs[of.part].data(); });
  }
  for (std::size_t part = 0; part < 4; ++part) {
    SetSums(against.singles[part], others.with_single[hand_class.ranks[part]], times,
            [&](const Member& of)
                POKERMATH_INLINE { return parts[of.index].singles[of.part].data(); });
  }
  for (std::size_t i = 0; i < others.numbers.size(); ++i) {
    against.all_below += parts[i].all * times.below[i];
    against.all_not_above += parts[i].all * times.not_above[i];
  }
}

// The places of sums in a TwoSums.
struct WhichSums {
  std::array<double, 64> TwoSums<64>::*triples;
  std::array<double, 16> TwoSums<16>::*pairs;
  std::array<double, 4> TwoSums<4>::*singles;
  double Against::*all;
};
constexpr WhichSums kBelow = {&TwoSums<64>::below, &TwoSums<16>::below, &TwoSums<4>::below,
                              &Against::all_below};
constexpr WhichSums kNotAbove = {&TwoSums<64>::not_above, &TwoSums<16>::not_above,
                                 &TwoSums<4>::not_above, &Against::all_not_above};

// Of the sixteen hands of a block, what shares no card with each, but for the same hand.
template <WhichSums which>
POKERMATH_KERNEL void SetBlock(std::array<double, kBlockLanes>& block, const Against& against,
                               std::size_t a, std::size_t b) {
  const auto triple = [&](std::size_t part, std::size_t place) POKERMATH_INLINE {
    return (against.triples[part].*which.triples).data() + place;
  };
  const auto pair = [&](std::size_t part, std::size_t place) POKERMATH_INLINE {
    return (against.pairs[part].*which.pairs).data() + place;
  };
  const auto single = [&](std::size_t part, std::size_t place) POKERMATH_INLINE {
    return (against.singles[part].*which.singles).data() + place;
  };
  const double of_both = against.*which.all - *single(0, a) - *single(1, b) + *pair(0, a * 4 + b);
  const auto add_four = [](Doubles& sums, const double* numbers) POKERMATH_INLINE {
    Doubles four;
    Read(four, numbers);
    sums += four;
  };
  const auto take_four = [](Doubles& sums, const double* numbers) POKERMATH_INLINE {
    Doubles four;
    Read(four, numbers);
    sums -= four;
  };
  Doubles columns = {of_both, of_both, of_both, of_both}, rows{};
  add_four(columns, pair(2, a * 4));
  add_four(columns, pair(4, b * 4));
  take_four(columns, single(3, 0));
  take_four(columns, triple(1, a * 16 + b * 4));
  add_four(rows, pair(1, a * 4));
  add_four(rows, pair(3, b * 4));
  take_four(rows, single(2, 0));
  take_four(rows, triple(0, a * 16 + b * 4));
  for (std::size_t c = 0; c < 4; ++c) {
    Doubles sums = columns + rows[c];
    add_four(sums, pair(5, c * 4));
    take_four(sums, triple(2, a * 16 + c * 4));
    take_four(sums, triple(3, b * 16 + c * 4));
    std::memcpy(&block[c * 4], &sums, sizeof sums);
  }
}

// The hands of a class in a contest.
POKERMATH_KERNEL void CountClass(const ClassesOf& own, std::size_t index, const ClassesOf& others,
                                 const Times& times, std::vector<OmahaCounts>& counts) {
  const std::uint16_t number = own.numbers[index];
  const OmahaTensor<4>::Blocks& blocks = own.of.BlocksOf(number);
  Against against;
  SetAgainst(against, HandClasses<4>()[number], others, times);
  // The same hand is taken out once too often where it ties.
  const auto same_class = std::ranges::lower_bound(others.numbers, number);
  const bool has_same = same_class != others.numbers.end() && *same_class == number;
  const double same_times =
      has_same ? times.not_above[static_cast<std::size_t>(same_class - others.numbers.begin())] : 0;
  for (unsigned block = 0; block < 16; ++block) {
    if (!blocks.Has(block)) continue;
    const std::size_t place = blocks.Of(block);
    const std::uint32_t* const twin = &others.of.weights()[own.of.twins()[place] * kBlockLanes];
    std::array<double, kBlockLanes> below, not_above;
    SetBlock<kBelow>(below, against, block / 4, block % 4);
    SetBlock<kNotAbove>(not_above, against, block / 4, block % 4);
    for (std::size_t lane = 0; lane < kBlockLanes; ++lane) {
      const auto whole = [](double count) POKERMATH_INLINE {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(count));
      };
      counts[place * kBlockLanes + lane] = {whole(below[lane]),
                                            whole(not_above[lane] + twin[lane] * same_times)};
    }
  }
}

template <typename Register>
POKERMATH_KERNEL void CountSide(const Question& question, const ClassesOf& own,
                                const ClassesOf& others,
                                std::array<std::vector<OmahaCounts>, kOmahaContests>& counts) {
  WaysOfClass ways;
  for (std::size_t contest = 0; contest < question.contests(); ++contest) {
    ways.below[contest].resize(others.padded);
    ways.not_above[contest].resize(others.padded);
    counts[contest].resize(own.of.blocks() * kBlockLanes);
  }
  Times times;
  for (std::size_t i = 0; i < own.numbers.size(); ++i) {
    CountWays<Register>(question, own, i, others, ways);
    for (std::size_t contest = 0; contest < question.contests(); ++contest) {
      if (std::ranges::max(ways.not_above[contest]) == 0) continue;
      times.below.assign(ways.below[contest].begin(), ways.below[contest].end());
      times.not_above.assign(ways.not_above[contest].begin(), ways.not_above[contest].end());
      CountClass(own, i, others, times, counts[contest]);
    }
  }
}

}  // namespace

OmahaClassRunouts::OmahaClassRunouts(Isa isa, const OmahaTensors<4>& ranges, CardSet board,
                                     CardSet live, int to_come, bool high_low)
    : ranges_(ranges) {
  POKERMATH_REQUIRE(to_come == 1 || to_come == 2);
  Question question;
  question.to_come = to_come;
  question.high_low = high_low;
  for (const int card : live) ++question.live[static_cast<std::size_t>(card % 13)];
  ClassesOf sides[2] = {ClassesOf(ranges[0]), ClassesOf(ranges[1])};
  SetRunouts(question, board, sides);
  for (const std::size_t side : {0u, 1u}) {
    Dispatch<Isa::kAvx2>(isa, [&](auto level) POKERMATH_INLINE {
      using Register = typename RegistersOf<level>::Register;
      CountSide<Register>(question, sides[side], sides[1 - side], counts_[side]);
    });
  }
}

std::vector<OmahaCounts> OmahaClassRunouts::CountsOf(std::size_t side, OmahaContest contest) const {
  const Counts& by_place = counts_[side][static_cast<std::size_t>(contest)];
  std::vector<OmahaCounts> counts;
  counts.reserve(ranges_[side].size());
  for (const std::uint32_t place : ranges_[side].places()) counts.push_back(by_place[place]);
  return counts;
}

}  // namespace pokermath
