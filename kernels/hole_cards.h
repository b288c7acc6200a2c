// Two hole cards taken apart: their ranks, and what each suit sees of them.
//
// A rank class is what remains of two hole cards without their suits; there are 91. A rank set is a
// bit for each rank.

#ifndef POKERMATH_KERNELS_HOLE_CARDS_H_
#define POKERMATH_KERNELS_HOLE_CARDS_H_

#include <array>
#include <bitset>
#include <cstdint>
#include <span>
#include <utility>

#include "cards/card_list.h"
#include "eval/rank_sets.h"

namespace pokermath {

inline constexpr int kRankClasses = 91;

constexpr int RankClassOf(int rank1, int rank2) {
  const int high = rank1 > rank2 ? rank1 : rank2;
  const int low = rank1 > rank2 ? rank2 : rank1;
  return high * (high + 1) / 2 + low;
}

using RankClassSet = std::bitset<kRankClasses>;

inline constexpr RankSet kNoSet = 0x2000;  ///< stands where there is no set

/// Hole cards as one suit sees them: which are of the suit, and which ranks the others have.
struct SuitView {
  int rank_class = 0;
  RankSet held = 0;             ///< ranks of the cards that are of the suit
  int held_count = 0;           ///< how many these are
  std::array<int, 2> others{};  ///< ranks of the other cards
  constexpr int OtherCount() const { return 2 - held_count; }
};

/// A view's number: its rank class * 4, plus 1 when the lower card is of the suit, plus 2 when the
/// higher one is. For a pair of which one card is of the suit that is 1.
inline constexpr int kSuitViews = kRankClasses * 4;

constexpr int ViewNumber(int card1, int card2, int suit) {
  const int rank1 = card1 % 13;
  const int rank2 = card2 % 13;
  const bool held1 = card1 / 13 == suit;
  const bool held2 = card2 / 13 == suit;
  const int first = RankClassOf(rank1, rank2) * 4;
  if (rank1 == rank2) return first + (held1 || held2 ? 1 : 0);
  const bool low = rank1 < rank2 ? held1 : held2;
  const bool high = rank1 < rank2 ? held2 : held1;
  return first + (low ? 1 : 0) + (high ? 2 : 0);
}

namespace internal {

constexpr std::array<SuitView, kSuitViews> MakeSuitViews() {
  std::array<SuitView, kSuitViews> views{};
  std::size_t number = 0;
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) {
      for (int bits = 0; bits < 4; ++bits) {
        SuitView& view = views[number++];
        view.rank_class = RankClassOf(high, low);
        std::size_t others = 0;
        const int ranks[2] = {low, high};
        for (int i = 0; i < 2; ++i) {
          if ((bits >> i & 1) != 0) {
            view.held = static_cast<RankSet>(view.held | 1 << ranks[i]);
            ++view.held_count;
          } else {
            view.others[others++] = ranks[i];
          }
        }
      }
    }
  }
  return views;
}

}  // namespace internal

inline constexpr std::array<SuitView, kSuitViews> kViews = internal::MakeSuitViews();

inline const SuitView& ViewOf(int card1, int card2, int suit) {
  return kViews[static_cast<std::size_t>(ViewNumber(card1, card2, suit))];
}

/// The ranks of a class, the lower one first: no suit sees them.
inline const std::array<int, 2>& RanksOf(int rank_class) {
  return kViews[static_cast<std::size_t>(rank_class * 4)].others;
}

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_HOLE_CARDS_H_
