// Fills the tables of lows by sets of ranks.

#include "eval/generate/low_tables.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "eval/generate/array_text.h"
#include "eval/omaha_low.h"

namespace pokermath {
namespace {

constexpr unsigned kSets = 256;

// The place, from 1, of a low among all lows, the worst first; 0 for none.
int PlaceOf(int strength) {
  int place = 0;
  for (unsigned set = 0; set < kSets; ++set) {
    const bool is_low = __builtin_popcount(set) == 5;
    place += is_low && LowStrength(set) <= strength ? 1 : 0;
  }
  return place;
}

// The best low of two ranks of a hand and three of a board, or of none of which a hand has two.
int BestLowOf(unsigned hand, unsigned board) {
  int best = 0;
  for (unsigned high = hand; high != 0; high &= high - 1) {
    for (unsigned low = high & (high - 1); low != 0; low &= low - 1) {
      best = std::max(best, BestLow((high & -high) | (low & -low), board));
    }
  }
  return best;
}

}  // namespace

void WriteLowTables(std::ostream& out) {
  std::vector<int> places(kSets + 1);
  for (int strength = 1; strength <= static_cast<int>(kSets); ++strength) {
    places[static_cast<std::size_t>(strength)] = PlaceOf(strength);
  }
  std::vector<int> any;
  std::vector<std::vector<int>> omaha(kSets);
  for (unsigned board = 0; board < kSets; ++board) {
    // Any five may play: two of a set and three of the same.
    any.push_back(places[static_cast<std::size_t>(BestLowOf(board, board))]);
    for (unsigned hand = 0; hand < kSets; ++hand) {
      omaha[board].push_back(places[static_cast<std::size_t>(BestLowOf(hand, board))]);
    }
  }
  std::vector<unsigned> ranks;
  for (int card = 0; card < 52; ++card) ranks.push_back(LowBit(card % 13));
  std::vector<unsigned> pairs(52 * 256);
  for (std::size_t i = 0; i < 52; ++i) {
    for (std::size_t j = 0; j < 52; ++j) pairs[256 * i + j] = ranks[i] | ranks[j];
  }

  out << "// Written by pokermath_generate.\n#include \"pokermath/omaha_evaluators.h\"\n"
         "namespace pokermath {\nconst LowTables kLowTables = {\n.ranks = ";
  WriteBraces(out, ranks);
  out << ",\n.pair_ranks = ";
  WriteBraces(out, pairs);
  out << ",\n.values = ";
  WriteBraces(out, any);
  out << ",\n.omaha = {";
  for (const std::vector<int>& row : omaha) {
    WriteBraces(out, row);
    out << ",\n";
  }
  out << "},\n};\n}  // namespace pokermath\n";
}

}  // namespace pokermath
