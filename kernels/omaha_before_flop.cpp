// Leave the suits aside and a board is a multiset of five ranks, with a weight, the number of ways
// to draw it from the cards that are left. What a hand makes with it is the largest of what its
// pairs of ranks make, so hands of the same ranks are compared with the hero once: two rows of
// 6,188 values, weighted and summed.
//
// Flushes are put right afterwards, suit by suit. A board has at most one suit with three cards or
// more; take it apart into its cards of that suit (a set of ranks) and the rest (a multiset). For
// every set and rest we take off what the first count said and add what is true. What changes
// depends on the ranks that both hands have of the suit alone, and hands of the same ranks have few
// such sets.
//
// Who has the best low is a matter of ranks: in Hi/Lo the same sums are split by it.

#include "kernels/omaha_before_flop.h"

#include <algorithm>
#include <bit>
#include <unordered_map>
#include <utility>

#include "kernels/registers.h"

namespace pokermath {
namespace {

// Drawing a multiset that holds k cards of a rank, when one of the n cards of that rank goes away:
// its weight shrinks to (n - k) / n. The division is exact.
POKERMATH_KERNEL void Remove(const std::int16_t* counts, int left, std::int16_t* ways) {
  const auto n = static_cast<std::uint16_t>(left);
  const std::uint16_t inverse = kInverses[left];
  const int shift = kShifts[left];
  for (int i = 0; i < OmahaRow::kMultisets; ++i) {
    const auto k = static_cast<std::uint16_t>(counts[i]);
    const auto product = static_cast<std::uint16_t>(static_cast<std::uint16_t>(ways[i]) *
                                                    static_cast<std::uint16_t>(n - k) * inverse);
    ways[i] = static_cast<std::int16_t>(product >> shift);
  }
}

// What a hand with some ranks makes: the largest of its pairs.
POKERMATH_KERNEL void Maximum(const OmahaRankValues& values, std::span<const int> ranks,
                              std::int16_t* row) {
  std::array<bool, kRankClasses> seen{};
  bool first = true;
  for (std::size_t i = 1; i < ranks.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const int pair = RankClassOf(ranks[i], ranks[j]);
      if (std::exchange(seen[static_cast<std::size_t>(pair)], true)) continue;
      const std::int16_t* of_pair = values.Of(pair).data();
      if (std::exchange(first, false)) {
        std::copy_n(of_pair, OmahaRow::kSize, row);
      } else {
        for (int k = 0; k < OmahaRow::kSize; ++k) row[k] = std::max(row[k], of_pair[k]);
      }
    }
  }
}

std::vector<int> RanksOf(CardSet cards) {
  std::vector<int> ranks;
  for (const int card : cards) ranks.push_back(card % 13);
  std::ranges::sort(ranks);
  return ranks;
}

RankSet OfSuit(CardSet cards, std::size_t suit) {
  return static_cast<RankSet>(cards.bits() >> 13 * suit & kAllRanks);
}

}  // namespace

HighLowTally OmahaDuel::Tally() const {
  const auto with_low = [](const auto& states) { return states[1] + states[2] + states[3]; };
  const auto lost = [&](std::size_t state) { return boards[state] - wins[state] - ties[state]; };
  HighLowTally tally;
  tally.lows = with_low(boards);
  tally.boards = boards[0] + tally.lows;
  tally.whole = {wins[0], ties[0]};
  tally.high = {with_low(wins), with_low(ties)};
  tally.low = {boards[1], boards[2]};
  tally.scoops = wins[0] + wins[1];
  tally.losses = lost(0) + lost(3);
  return tally;
}

// For registers of a width. Masks are -1 where something is true.
template <typename Width, bool lows>
struct OmahaBeforeFlop::Kernel {
  using Register = typename Width::Register;
  static constexpr int kLanesOf = kLanes<Register>;
  static constexpr std::size_t kStates = lows ? kLowStates : 1;

  // 16-bit sums.
  struct Sums {
    std::array<Register, kStates> wins{}, ties{};
  };

  POKERMATH_KERNEL static void Gather(std::array<Register, kStates>& sums,
                                      std::array<std::int64_t, kLowStates>& to) {
    for (std::size_t state = 0; state < kStates; ++state) {
      for (int i = 0; i < kLanesOf; ++i) to[state] += sums[state][i];
      sums[state] = Register{};
    }
  }

  // Adds to the sums of the states.
  POKERMATH_KERNEL static void Add(const Register& number,
                                   const std::array<Register, kStates>& states,
                                   std::array<Register, kStates>& sums) {
    for (std::size_t state = 0; state < kStates; ++state) {
      sums[state] += lows ? number & states[state] : number;
    }
  }

  // What two hands make; without lows there are none.
  struct Rows {
    const std::int16_t *hero, *other, *hero_low, *other_low;
  };

  // Who has the best low.
  POKERMATH_KERNEL static std::array<Register, kStates> StatesOf(const Rows& rows, int place) {
    std::array<Register, kStates> states{};
    if constexpr (lows) {
      Register low1, low2;
      Load(low1, rows.hero_low + place);
      Load(low2, rows.other_low + place);
      const Register none = (low1 | low2) == 0;
      states = {none, low1 > low2, (low1 == low2) & ~none, low1 < low2};
    }
    return states;
  }

  // By ranks alone.
  POKERMATH_KERNEL static void CountRanks(const Rows& rows, const std::int16_t* ways,
                                          OmahaDuel& duel) {
    constexpr int kBlock = 31 * kLanesOf;
    static_assert(31 * (4 * 4 * 4 * 4 * 4) < 1 << 15);  // ways to draw a multiset, at the most
    for (int start = 0; start < OmahaRow::kMultisets; start += kBlock) {
      const int end = std::min(start + kBlock, OmahaRow::kMultisets);
      Sums sums;
      std::array<Register, kStates> all{};
      for (int i = start; i < end; i += kLanesOf) {
        Register hero, other, weight;
        Load(hero, rows.hero + i);
        Load(other, rows.other + i);
        Load(weight, ways + i);
        const auto states = StatesOf(rows, i);
        Add((hero > other) & weight, states, sums.wins);
        Add((hero == other) & weight, states, sums.ties);
        Add(weight, states, all);
      }
      Gather(sums.wins, duel.wins);
      Gather(sums.ties, duel.ties);
      Gather(all, duel.boards);
    }
  }

  // Puts some places right, where hands have a flush or 0.
  POKERMATH_KERNEL static void Correct(const Rows& rows, int place, std::int16_t hero_flush,
                                       std::int16_t other_flush, const std::int16_t* weights,
                                       Sums& sums) {
    Register hero, other, weight;
    Load(hero, rows.hero + place);
    Load(other, rows.other + place);
    Load(weight, weights);
    const Register flush1 = hero_flush - Register{}, flush2 = other_flush - Register{};
    const Register true1 = hero > flush1 ? hero : flush1;
    const Register true2 = other > flush2 ? other : flush2;
    const auto states = StatesOf(rows, place);
    Add(((hero > other) - (true1 > true2)) * weight, states, sums.wins);
    Add(((hero == other) - (true1 == true2)) * weight, states, sums.ties);
  }

  // The boards with three to five cards of a suit, of which the other hand has some ranks.
  POKERMATH_KERNEL static void CountFlushes(const Rows& rows, const Suit& suit, RankSet held,
                                            const OmahaSuitSets::Flushes& flushes,
                                            const std::array<int, 13>& others, OmahaDuel& duel) {
    std::array<std::int16_t, OmahaRow::kRests[0]> twos{};
    std::array<std::int16_t, OmahaRow::kRests[1]> ones{};
    for (std::size_t high = 0, place = 0; high < 13; ++high) {
      ones[high] = static_cast<std::int16_t>(others[high]);
      for (std::size_t low = 0; low < high; ++low) {
        twos[place++] = static_cast<std::int16_t>(others[high] * others[low]);
      }
      twos[place++] = static_cast<std::int16_t>(others[high] * (others[high] - 1) / 2);
    }
    // At most nine ways to draw a rest.
    static_assert(9 * (OmahaRow::kRests[0] / 8) * OmahaRow::kSets[0] < 1 << 15);
    static_assert(3 * (OmahaRow::kRests[1] / 8) * OmahaRow::kSets[1] < 1 << 15);
    const std::vector<RankSet>& sets = OmahaSuitSets::Get().sets();
    const auto end1 = static_cast<std::size_t>(OmahaRow::kSets[0]);
    const auto end2 = end1 + static_cast<std::size_t>(OmahaRow::kSets[1]);
    Sums threes, fours;
    for (const std::uint16_t set : suit.live) {
      if ((sets[set] & held) != 0) continue;
      const std::int16_t flush1 = suit.flushes[set], flush2 = flushes[set];
      if (set < end1) {
        const int first = OmahaRow::kFirst[0] + set * OmahaRow::kRests[0];
        for (int i = 0; i < OmahaRow::kRests[0]; i += kLanesOf) {
          Correct(rows, first + i, flush1, flush2, &twos[static_cast<std::size_t>(i)], threes);
        }
      } else if (set < end2) {
        const int first =
            OmahaRow::kFirst[1] + (set - static_cast<int>(end1)) * OmahaRow::kRests[1];
        for (int i = 0; i < OmahaRow::kRests[1]; i += kLanesOf) {
          Correct(rows, first + i, flush1, flush2, &ones[static_cast<std::size_t>(i)], fours);
        }
      } else {
        const int place = OmahaRow::kFirst[2] + set - static_cast<int>(end2);
        CorrectOne(rows, place, flush1, flush2, duel);
      }
    }
    for (Sums* sums : {&threes, &fours}) {
      Gather(sums->wins, duel.wins);
      Gather(sums->ties, duel.ties);
    }
  }

  // A board of one suit.
  POKERMATH_KERNEL static void CorrectOne(const Rows& rows, int place, int hero_flush,
                                          int other_flush, OmahaDuel& duel) {
    const int hero = rows.hero[place], other = rows.other[place];
    const int true1 = std::max(hero, hero_flush), true2 = std::max(other, other_flush);
    std::size_t state = 0;
    if constexpr (lows) {
      const int low1 = rows.hero_low[place], low2 = rows.other_low[place];
      if (low1 + low2 > 0) state = low1 > low2 ? 1 : low1 == low2 ? 2 : 3;
    }
    duel.wins[state] += (true1 > true2) - (hero > other);
    duel.ties[state] += (true1 == true2) - (hero == other);
  }

  // What a suit does to a hand that holds some ranks of it.
  struct Correction {
    std::size_t suit;
    RankSet held;
    OmahaDuel duel;
  };

  POKERMATH_KERNEL static void Count(const OmahaBeforeFlop& hero, std::span<const CardSet> hands,
                                     std::span<OmahaDuel> duels) {
    const std::vector<int> ranks = RanksOf(hands[0]);
    Row other(OmahaRow::kSize), other_low(lows ? OmahaRow::kSize : 0);
    Maximum(OmahaRankValues::High(), ranks, other.data());
    if constexpr (lows) Maximum(OmahaRankValues::Low(), ranks, other_low.data());
    const Rows rows = {hero.row_[0].data(), other.data(), hero.row_[1].data(), other_low.data()};
    Row ways = hero.ways_;
    RankCounts left = hero.left_;
    for (const int rank : ranks) {
      Remove(RankWays::Get().CountsOf(rank), left[static_cast<std::size_t>(rank)]--, ways.data());
    }
    OmahaDuel plain;
    CountRanks(rows, ways.data(), plain);
    std::vector<Correction> corrections;
    for (std::size_t i = 0; i < hands.size(); ++i) {
      duels[i] = plain;
      for (std::size_t number = 0; number < 4; ++number) {
        const Suit& suit = hero.suits_[number];
        const RankSet held = OfSuit(hands[i], number);
        if (std::popcount(held) < 2 && std::popcount(suit.hero) < 2) continue;
        auto found = std::ranges::find_if(corrections, [&](const Correction& known) {
          return known.suit == number && known.held == held;
        });
        if (found == corrections.end()) {
          found = corrections.insert(found, {number, held, {}});
          std::array<int, 13> others;
          for (std::size_t rank = 0; rank < 13; ++rank) {
            const unsigned taken = suit.hero | suit.dead | held;
            others[rank] = left[rank] - 1 + static_cast<int>(taken >> rank & 1);
          }
          OmahaSuitSets::Flushes flushes{};
          OmahaSuitSets::Get().AddFlushes(held, flushes);
          CountFlushes(rows, suit, held, flushes, others, found->duel);
        }
        for (std::size_t state = 0; state < kStates; ++state) {
          duels[i].wins[state] += found->duel.wins[state];
          duels[i].ties[state] += found->duel.ties[state];
        }
      }
    }
  }
};

OmahaBeforeFlop::OmahaBeforeFlop(Isa isa, CardSet hero, CardSet dead, bool high_low)
    : isa_(isa), high_low_(high_low), taken_(hero | dead) {
  left_.fill(4);
  for (const int card : taken_) --left_[static_cast<std::size_t>(card % 13)];
  constexpr std::int16_t kNone = 0;
  ways_.resize(OmahaRow::kMultisets, kNone);
  std::array<int, 5> board{};
  ForEachMultiset(left_, board, [&](std::int64_t ways) {
    ways_[static_cast<std::size_t>(MultisetNumber(board))] = static_cast<std::int16_t>(ways);
  });
  const std::vector<int> ranks = RanksOf(hero);
  row_[0].resize(OmahaRow::kSize);
  Maximum(OmahaRankValues::High(), ranks, row_[0].data());
  if (high_low) {
    row_[1].resize(OmahaRow::kSize);
    Maximum(OmahaRankValues::Low(), ranks, row_[1].data());
  }
  const std::vector<RankSet>& sets = OmahaSuitSets::Get().sets();
  for (std::size_t number = 0; number < 4; ++number) {
    Suit& suit = suits_[number];
    suit.hero = OfSuit(hero, number);
    suit.dead = OfSuit(dead, number);
    OmahaSuitSets::Get().AddFlushes(suit.hero, suit.flushes);
    for (std::size_t i = 0; i < sets.size(); ++i) {
      if ((sets[i] & (suit.hero | suit.dead)) == 0)
        suit.live.push_back(static_cast<std::uint16_t>(i));
    }
  }
}

std::vector<OmahaDuel> OmahaBeforeFlop::Count(std::span<const CardSet> hands) const {
  std::vector<OmahaDuel> duels(hands.size());
  if (hands.empty()) return duels;
  Dispatch<Isa::kAvx2>(isa_, [&](auto level) POKERMATH_INLINE {
    using Registers = RegistersOf<level>;
    if (high_low_) {
      Kernel<Registers, true>::Count(*this, hands, duels);
    } else {
      Kernel<Registers, false>::Count(*this, hands, duels);
    }
  });
  return duels;
}

std::vector<std::vector<std::size_t>> AlikeByRanks(std::span<const CardSet> hands) {
  std::unordered_map<std::uint64_t, std::size_t> numbers;
  std::vector<std::vector<std::size_t>> alike;
  for (std::size_t i = 0; i < hands.size(); ++i) {
    std::uint64_t counts = 0;  // three bits a rank
    for (const int card : hands[i]) counts += std::uint64_t{1} << 3 * (card % 13);
    const std::size_t number = numbers.try_emplace(counts, alike.size()).first->second;
    if (number == alike.size()) alike.emplace_back();
    alike[number].push_back(i);
  }
  return alike;
}

}  // namespace pokermath
