#include "kernels/omaha_rank_values.h"

#include <algorithm>
#include <bit>

#include "eval/omaha_best.h"
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
          for (std::size_t i = 0; i < others; ++i) board[size++] = rest[1 - i];
          std::ranges::sort(board);
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

// Visits all multisets of five ranks.
template <typename Visit>
void ForEachBoard(const Visit& visit) {
  constexpr std::int8_t kFive = 5;
  RankCounts counts;
  counts.fill(kFive);
  std::array<int, 5> board{};
  ForEachMultiset(counts, board, [&](std::int64_t) { visit(board); });
}

}  // namespace

template <typename ValuesOf>
OmahaRankValues::OmahaRankValues(const ValuesOf& values_of) {
  constexpr std::int16_t kNothing = 0;
  for (Row& row : rows_) row.resize(OmahaRow::kSize, kNothing);
  ForEachBoard([&](const std::array<int, 5>& board) {
    const auto values = values_of(board);
    const auto number = static_cast<std::size_t>(MultisetNumber(board));
    for (int high = 0; high < 13; ++high) {
      for (int low = 0; low <= high; ++low) {
        rows_[static_cast<std::size_t>(RankClassOf(high, low))][number] =
            static_cast<std::int16_t>(values.Of(high, low));
      }
    }
  });
  const std::vector<std::uint16_t> places = SuitedPlaces();
  for (Row& row : rows_) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      row[OmahaRow::kMultisets + i] = row[places[i]];
    }
  }
}

const OmahaRankValues& OmahaRankValues::High() {
  static const OmahaRankValues values(
      [](const std::array<int, 5>& board) { return OmahaPairValues(board, -1, 0); });
  return values;
}

const OmahaRankValues& OmahaRankValues::Low() {
  static const OmahaRankValues values(
      [](const std::array<int, 5>& board) { return OmahaPairLows(board); });
  return values;
}

RankWays::RankWays() {
  constexpr std::int16_t kNone = 0;
  counts_.resize(std::size_t{13} * OmahaRow::kMultisets, kNone);
  ForEachBoard([&](const std::array<int, 5>& board) {
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
  std::vector<std::size_t> place_of(std::size_t{kAllRanks} + 1);
  for (std::size_t i = 0; i < sets_.size(); ++i) place_of[sets_[i]] = i;
  for (int high = 1; high < 13; ++high) {
    for (int low = 0; low < high; ++low) {
      Flushes& flushes = of_pairs_.emplace_back();
      const unsigned two = 1u << high | 1u << low;
      for (std::size_t i = 0; i < sets_.size(); ++i) {
        if ((sets_[i] & two) != 0) continue;
        if (std::popcount(sets_[i]) == 3) {
          flushes[i] = DeckValues<Deck::kFull>::OfFlush(two | sets_[i]);
          continue;
        }
        // Three of the set play.
        for (unsigned rest = sets_[i]; rest != 0; rest &= rest - 1) {
          flushes[i] = std::max(flushes[i], flushes[place_of[sets_[i] & ~(rest & -rest)]]);
        }
      }
    }
  }
}

const OmahaSuitSets& OmahaSuitSets::Get() {
  static const OmahaSuitSets sets;
  return sets;
}

void OmahaSuitSets::AddFlushes(RankSet held, Flushes& flushes) const {
  ForEachSubset(held, 2, [&](RankSet two) {
    const int low = std::countr_zero(two), high = std::bit_width(two) - 1;
    const Flushes& of_pair = of_pairs_[static_cast<std::size_t>(high * (high - 1) / 2 + low)];
    for (std::size_t i = 0; i < kSize; ++i) flushes[i] = std::max(flushes[i], of_pair[i]);
  });
}

}  // namespace pokermath
