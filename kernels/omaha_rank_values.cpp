#include "kernels/omaha_rank_values.h"

#include <algorithm>
#include <bit>

#include "eval/compact_keys.h"
#include "eval/omaha_low.h"
#include "kernels/decks.h"

namespace pokermath {
namespace {

// All sets of so many ranks.
std::vector<RankSet> SetsOf(int size) {
  std::vector<RankSet> sets;
  ForEachSubset(kAllRanks, size, [&](RankSet set) { sets.push_back(set); });
  return sets;
}

// [place in a row behind the multisets]: the number of its multiset.
std::vector<std::uint16_t> SuitedPlaces() {
  std::vector<std::uint16_t> places(OmahaRow::kSize - OmahaRow::kMultisets);
  for (std::size_t kind = 0; kind < 3; ++kind) {
    std::size_t first = static_cast<std::size_t>(OmahaRow::kFirst[kind] - OmahaRow::kMultisets);
    const std::size_t others = 2 - kind;
    for (const RankSet set : SetsOf(static_cast<int>(kind) + 3)) {
      std::array<int, 2> rest{};
      for (rest[1] = 0; rest[1] < (others > 0 ? 13 : 1); ++rest[1]) {
        for (rest[0] = 0; rest[0] <= (others > 1 ? rest[1] : 0); ++rest[0]) {
          std::array<int, 5> board{};
          std::size_t size = 0;
          for (int rank = 0; rank < 13; ++rank) {
            if ((set >> rank & 1) != 0) board[size++] = rank;
          }
          for (std::size_t i = 0; i < others; ++i) {
            std::size_t place = size++;
            for (; place > 0 && board[place - 1] > rest[1 - i]; --place) {
              board[place] = board[place - 1];
            }
            board[place] = rest[1 - i];
          }
          const std::size_t number =
              others == 2 ? static_cast<std::size_t>(rest[1] * (rest[1] + 1) / 2 + rest[0])
                          : static_cast<std::size_t>(rest[1]);
          places[first + number] = static_cast<std::uint16_t>(MultisetNumber(board));
        }
      }
      first += static_cast<std::size_t>(OmahaRow::kRests[kind]);
    }
  }
  return places;
}

// Visits all multisets of so many ranks.
template <std::size_t size, typename Visit>
void ForEachMultisetOf(const Visit& visit) {
  RankCounts counts;
  counts.fill(static_cast<std::int8_t>(size));
  std::array<int, size> ranks{};
  ForEachMultiset(counts, ranks, [&](std::int64_t) { visit(ranks); });
}

// The numbers of the ten triples of every board, and of the multisets behind them in a row.
struct BoardNumbers {
  BoardNumbers() : triples(MultisetsOf(5)) {
    ForEachMultisetOf<5>([this](const std::array<int, 5>& board) {
      auto triple = triples[static_cast<std::size_t>(MultisetNumber(board))].begin();
      for (std::size_t c = 2; c < 5; ++c)
        for (std::size_t b = 1; b < c; ++b)
          for (std::size_t a = 0; a < b; ++a) {
            *triple++ = static_cast<std::uint16_t>(
                MultisetNumber(std::array{board[a], board[b], board[c]}));
          }
    });
  }
  static const BoardNumbers& Get() {
    static const BoardNumbers numbers;
    return numbers;
  }

  std::vector<std::array<std::uint16_t, 10>> triples;
  std::vector<std::uint16_t> suited = SuitedPlaces();
};

}  // namespace

void OmahaRankValues::Build(int rank_class, Row& row) const {
  const auto [low, high] = RanksOf(rank_class);
  std::array<std::int16_t, MultisetsOf(3)> of_triple{};
  ForEachMultisetOf<3>([&, hole1 = high, hole2 = low](const std::array<int, 3>& board) {
    of_triple[static_cast<std::size_t>(MultisetNumber(board))] =
        static_cast<std::int16_t>(value_(hole1, hole2, board));
  });
  const BoardNumbers& numbers = BoardNumbers::Get();
  constexpr std::int16_t kNothing = 0;
  row.resize(OmahaRow::kSize, kNothing);
  for (std::size_t i = 0; i < numbers.triples.size(); ++i) {
    std::int16_t best = 0;
    for (const std::uint16_t triple : numbers.triples[i]) best = std::max(best, of_triple[triple]);
    row[i] = best;
  }
  for (std::size_t i = 0; i < numbers.suited.size(); ++i) {
    row[OmahaRow::kMultisets + i] = row[numbers.suited[i]];
  }
}

const OmahaRankValues::Row& OmahaRankValues::Of(int rank_class) const {
  return rows_.Get(static_cast<std::size_t>(rank_class), [&](Row& row) { Build(rank_class, row); });
}

const OmahaRankValues& OmahaRankValues::High() {
  static const OmahaRankValues values([](int hole1, int hole2, const std::array<int, 3>& board) {
    std::uint32_t key = kRankKeys[hole1] + kRankKeys[hole2];
    for (const int rank : board) key += kRankKeys[rank];
    return ValueOfRanks<5>(key);
  });
  return values;
}

const OmahaRankValues& OmahaRankValues::Low() {
  static const OmahaRankValues values([](int hole1, int hole2, const std::array<int, 3>& board) {
    unsigned ranks = 0;
    for (const int rank : board) ranks |= LowBit(rank);
    return BestLow(LowBit(hole1) | LowBit(hole2), ranks);
  });
  return values;
}

RankWays::RankWays() {
  constexpr std::int16_t kNone = 0;
  counts_.resize(std::size_t{13} * OmahaRow::kMultisets, kNone);
  ForEachMultisetOf<5>([&](const std::array<int, 5>& board) {
    for (const int rank : board) {
      ++counts_[static_cast<std::size_t>(rank * OmahaRow::kMultisets + MultisetNumber(board))];
    }
  });
}

const RankWays& RankWays::Get() {
  static const RankWays ways;
  return ways;
}

OmahaSuitSets::OmahaSuitSets() {
  for (const int size : {3, 4, 5}) {
    const std::vector<RankSet> sets = SetsOf(size);
    sets_.insert(sets_.end(), sets.begin(), sets.end());
  }
  place_of_.resize(std::size_t{kAllRanks} + 1);
  for (std::size_t i = 0; i < sets_.size(); ++i)
    place_of_[sets_[i]] = static_cast<std::uint16_t>(i);
}

const OmahaSuitSets::Flushes& OmahaSuitSets::OfPair(int high, int low) const {
  const auto number = static_cast<std::size_t>(high * (high - 1) / 2 + low);
  return of_pairs_.Get(number, [&](Flushes& flushes) {
    flushes.fill(0);
    const unsigned two = 1u << high | 1u << low;
    for (std::size_t i = 0; i < sets_.size(); ++i) {
      if ((sets_[i] & two) != 0) continue;
      if (i < OmahaRow::kSets[0]) {
        flushes[i] = DeckValues<Deck::kFull>::OfFlush(two | sets_[i]);
        continue;
      }
      // Three of the set play.
      for (unsigned rest = sets_[i]; rest != 0; rest &= rest - 1) {
        flushes[i] = std::max(flushes[i], flushes[place_of_[sets_[i] & ~(rest & -rest)]]);
      }
    }
  });
}

const OmahaSuitSets& OmahaSuitSets::Get() {
  static const OmahaSuitSets sets;
  return sets;
}

void OmahaSuitSets::AddFlushes(RankSet held, Flushes& flushes) const {
  ForEachSubset(held, 2, [&](RankSet two) {
    const int low = std::countr_zero(two), high = std::bit_width(two) - 1;
    const Flushes& of_pair = OfPair(high, low);
    for (std::size_t i = 0; i < kSize; ++i) flushes[i] = std::max(flushes[i], of_pair[i]);
  });
}

}  // namespace pokermath
