// Values of short-deck hands by their ranks: five cards through the evaluator of 52 put into
// short-deck order, six and seven as the best of what remains without one of them.

#include "eval/short_deck.h"

#include <algorithm>
#include <vector>

#include "eval/compact_keys.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

constexpr int kRanks = 9;

// Place of a multiset of nine ranks among all of its size: by the place of a card in rising order
// and its rank.
constexpr auto kPlaces = [] {
  std::array<std::array<std::uint16_t, kRanks>, 7> places{};
  for (int i = 0; i < 7; ++i) {
    for (int rank = 0; rank < kRanks; ++rank) {
      int choose = 1;
      for (int k = 0; k <= i; ++k) choose = choose * (rank + i - k) / (k + 1);
      places[static_cast<std::size_t>(i)][static_cast<std::size_t>(rank)] =
          static_cast<std::uint16_t>(choose);
    }
  }
  return places;
}();

// Place of every value in short-deck order among all that short-deck hands have, from 1.
std::vector<std::uint16_t> NumberValues() {
  std::vector<bool> present(7463);
  const auto mark = [&present](int value) {
    present[static_cast<std::size_t>(ToShortDeckOrder(value))] = true;
  };
  const auto mark_ranks = [&](auto& self, int left, int lowest,
                              std::array<int, 13>& counts) -> void {
    if (left == 0) {
      std::uint32_t key = 0;
      unsigned ranks = 0;
      for (std::size_t rank = 0; rank < 13; ++rank) {
        key += static_cast<std::uint32_t>(counts[rank]) * kRankKeys[rank];
        ranks |= counts[rank] > 0 ? 1u << rank : 0u;
      }
      mark(ValueOfRanks<5>(key));
      if (__builtin_popcount(ranks) == 5) mark(kCompactTables.flush_values[ranks]);
      return;
    }
    for (int rank = lowest; rank < 13; ++rank) {
      int& count = counts[static_cast<std::size_t>(rank)];
      if (count == 4) continue;
      ++count;
      self(self, left - 1, rank, counts);
      --count;
    }
  };
  std::array<int, 13> counts{};
  mark_ranks(mark_ranks, 5, kLowestShortDeckCard, counts);
  std::vector<std::uint16_t> numbers(present.size());
  std::uint16_t number = 0;
  for (std::size_t value = 0; value < present.size(); ++value) {
    if (present[value]) numbers[value] = ++number;
  }
  return numbers;
}

}  // namespace

const ShortDeckValues& ShortDeckValues::Get() {
  static const ShortDeckValues values;
  return values;
}

std::size_t ShortDeckValues::PlaceOf(std::uint32_t key) {
  std::size_t place = 0;
  std::size_t card = 0;
  for (std::size_t rank = 0; key != 0; ++rank, key >>= 3) {
    for (std::uint32_t count = key & 7; count > 0; --count) place += kPlaces[card++][rank];
  }
  return place;
}

ShortDeckValues::ShortDeckValues() {
  const std::vector<std::uint16_t> numbers = NumberValues();
  const auto value = [&numbers](int ascending) {
    return numbers[static_cast<std::size_t>(ToShortDeckOrder(ascending))];
  };
  for (unsigned ranks = 0; ranks < 512; ++ranks) {
    if (__builtin_popcount(ranks) < 5) continue;
    std::uint16_t& best = flush_[ranks];
    if (__builtin_popcount(ranks) == 5) {
      best = value(kCompactTables.flush_values[ranks << kLowestShortDeckCard]);
      continue;
    }
    for (unsigned rest = ranks; rest != 0; rest &= rest - 1) {
      best = std::max(best, flush_[ranks & ~(rest & -rest)]);
    }
  }
  const auto fill = [&](auto& self, int cards, int left, int lowest, std::uint32_t key) -> void {
    if (left == 0) {
      std::uint16_t& best = plain_[static_cast<std::size_t>(cards - 5)][PlaceOf(key)];
      std::uint32_t rank_key = 0;
      for (int rank = kLowestShortDeckCard; rank < 13; ++rank) {
        const std::uint32_t count = key / KeyOf(rank) & 7;
        rank_key += count * kRankKeys[rank];
        if (count > 0 && cards > 5) {
          best = std::max(best, static_cast<std::uint16_t>(OfRanks(cards - 1, key - KeyOf(rank))));
        }
      }
      if (cards == 5) best = value(ValueOfRanks<5>(rank_key));
      return;
    }
    for (int rank = lowest; rank < 13; ++rank) {
      if ((key / KeyOf(rank) & 7) < 4) self(self, cards, left - 1, rank, key + KeyOf(rank));
    }
  };
  for (int cards = 5; cards <= 7; ++cards) fill(fill, cards, cards, kLowestShortDeckCard, 0);
}

int EvaluateShortDeck(const int* cards, int count) {
  if (count < 5 || count > 7) return 0;
  std::uint32_t key = 0;
  std::uint64_t bits = 0;
  for (int i = 0; i < count; ++i) {
    const int rank = cards[i] % 13;
    if (rank < kLowestShortDeckCard) return 0;
    key += ShortDeckValues::KeyOf(rank);
    bits |= std::uint64_t{1} << cards[i];
  }
  const ShortDeckValues& values = ShortDeckValues::Get();
  for (int suit = 0; suit < 4; ++suit) {
    const auto ranks = static_cast<unsigned>(bits >> 13 * suit & 0x1FFF);
    if (__builtin_popcount(ranks) >= 5) return values.OfFlush(ranks);
  }
  return values.OfRanks(count, key);
}

}  // namespace pokermath
