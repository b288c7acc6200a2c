// What players call an Omaha hand: pairs first, then how cards connect, then suits. The first rule
// that holds gives the name.

#include <algorithm>
#include <array>
#include <string>

#include "cards/omaha_sizes.h"
#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/shapes.h"

namespace pokermath {
namespace {

constexpr std::array<const char*, 13> kPlurals = {"deuces", "threes", "fours", "fives", "sixes",
                                                  "sevens", "eights", "nines", "tens",  "jacks",
                                                  "queens", "kings",  "aces"};
constexpr int kFive = 3;
constexpr int kTen = 8;
constexpr int kQueen = 10;
constexpr int kAce = 12;

bool IsWheelRank(int rank) { return rank <= kFive || rank == kAce; }

// Different ranks, the lowest first, and their number.
struct Ranks {
  std::array<int, 13> ranks;
  std::size_t count = 0;

  void Add(int rank) { ranks[count++] = rank; }
  std::span<const int> All() const { return {ranks.data(), count}; }
};

// Ranks that are missing between the lowest and the highest; an ace is low where that is better.
int Gaps(std::span<const int> ranks) {
  const auto missing = [&](int lowest, int highest) {
    return highest - lowest + 1 - static_cast<int>(ranks.size());
  };
  const int gaps = missing(ranks.front(), ranks.back());
  if (ranks.back() != kAce || ranks.size() < 2) return gaps;
  return std::min(gaps, missing(-1, ranks[ranks.size() - 2]));
}

bool IsBroadway(std::span<const int> ranks) {
  return std::ranges::all_of(ranks, [](int rank) { return rank >= kTen; });
}

bool IsWheel(std::span<const int> ranks) { return std::ranges::all_of(ranks, IsWheelRank); }

// What the cards beside a pair are called.
std::string SideCards(std::span<const int> sides, std::span<const int> all) {
  if (sides.size() < 2) return "";
  if (IsBroadway(sides)) return " with broadway cards";
  if (IsWheel(sides)) return " with wheel cards";
  return Gaps(sides) == 0 || Gaps(all) == 0 ? " with connectors" : "";
}

std::string PairedName(const std::array<int, 13>& counts, std::span<const int> sides,
                       std::span<const int> all) {
  constexpr const char* kSets[] = {"", "", "", "trip ", "quad "};
  std::string name;
  for (int rank = kAce; rank >= 0; --rank) {
    const int count = counts[static_cast<std::size_t>(rank)];
    if (count < 3) continue;
    if (!name.empty()) name += " and ";
    name += std::string(kSets[count]) + kPlurals[static_cast<std::size_t>(rank)];
  }
  int pairs = 0;
  for (int rank = kAce; rank >= 0; --rank) {
    if (counts[static_cast<std::size_t>(rank)] != 2) continue;
    const std::string plural = kPlurals[static_cast<std::size_t>(rank)];
    ++pairs;
    if (!name.empty()) {
      name += " and " + plural;
    } else {
      name = rank >= kQueen ? plural : "pair of " + plural;
    }
  }
  if (name.starts_with("trip") || name.starts_with("quad")) return name;
  if (pairs > 1) {
    return (pairs == 2 ? "double" : "triple") + std::string(" pair of ") +
           (name.starts_with("pair of ") ? name.substr(8) : name);
  }
  return name + SideCards(sides, all);
}

bool IsRundownWithDangler(std::span<const int> ranks) {
  const std::size_t size = ranks.size() - 1;
  if (Gaps(ranks.first(size)) == 0 || Gaps(ranks.last(size)) == 0) return true;
  // An ace below: A239.
  return ranks.back() == kAce && ranks[size - 2] == static_cast<int>(size) - 2;
}

bool IsTwoConnectors(std::span<const int> ranks) {
  if (ranks.size() != 4) return false;
  if (ranks[0] + 1 == ranks[1] && ranks[2] + 1 == ranks[3]) return true;
  // An ace below: A287.
  return ranks[3] == kAce && ranks[0] == 0 && ranks[1] + 1 == ranks[2];
}

std::string UnpairedName(std::span<const int> ranks) {
  const int gaps = Gaps(ranks);
  if (IsBroadway(ranks)) return gaps == 0 ? "broadway rundown" : "broadway cards";
  if (IsWheel(ranks)) return gaps == 0 ? "wheel rundown" : "wheel cards";
  if (gaps == 0) return "rundown";
  if (gaps == 1) return "one-gap rundown";
  if (gaps == 2) return "two-gap rundown";
  if (IsRundownWithDangler(ranks)) return "rundown with a dangler";
  if (IsTwoConnectors(ranks)) return "two connectors";
  if (ranks.back() != kAce) return "unconnected cards";
  return std::ranges::count_if(ranks, IsWheelRank) >= 3 ? "ace with wheel cards" : "ace high";
}

template <int cards>
std::string NameOf(std::span<const int, cards> hand) {
  std::array<int, 13> counts{};
  for (const int card : hand) ++counts[static_cast<std::size_t>(card % 13)];
  Ranks single, all;
  for (int rank = 0; rank <= kAce; ++rank) {
    const int count = counts[static_cast<std::size_t>(rank)];
    if (count > 0) all.Add(rank);
    if (count == 1) single.Add(rank);
  }
  std::string name =
      all.count == cards ? UnpairedName(all.All()) : PairedName(counts, single.All(), all.All());
  name += ", ";
  name += kSuitSplits<cards>[SplitOf<cards>(hand)].words;
  return name;
}

}  // namespace

std::string OmahaHandName(std::span<const int> hand) {
  return ForOmahaSize(static_cast<int>(hand.size()), [hand](auto cards) {
    return NameOf<cards>(hand.first<static_cast<std::size_t>(cards)>());
  });
}

}  // namespace pokermath
