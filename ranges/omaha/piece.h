// Pieces of Omaha range text in the making: a pattern with its shapes, and how it is made wider and
// then shorter.

#ifndef POKERMATH_RANGES_OMAHA_PIECE_H_
#define POKERMATH_RANGES_OMAHA_PIECE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "ranges/omaha/bits.h"
#include "ranges/omaha/pattern.h"
#include "ranges/omaha/shapes.h"

namespace pokermath {

/// Whether a piece may have exclusions behind it. It may not where it is one itself.
enum class Exclusions { kNone, kAllowed };

/// Shapes behind a term for some splits: "", ":ds", ":ds!xxxxx:3". Null if no text says it.
template <int cards>
const std::string* ShapesText(Splits splits, Exclusions exclusions);

/// A pattern and the splits of its hands that are meant.
template <int cards>
struct OmahaPiece {
  OmahaPattern<cards> pattern{};
  Splits splits = kAllSplits<cards>;

  /// High ranks first; a text for the splits there must be.
  std::string Text(Exclusions exclusions) const;
};

/// How much has been done, in rows; every walk counts as some more.
class Work {
 public:
  explicit Work(std::int64_t most) : left_(most) {}
  bool Left() const { return left_ > 0; }
  void Spend(std::int64_t rows) { left_ -= rows; }

  /// As WalkPattern.
  template <int cards, bool repeats, typename Visit>
  bool Walk(const std::array<std::uint64_t, static_cast<std::size_t>(cards)>& masks,
            const Visit& visit) {
    constexpr int kRowsOfWalk = 30;
    left_ -= kRowsOfWalk;
    return WalkPattern<cards, repeats>(masks, [&](int number, std::uint64_t row) {
      --left_;
      return visit(number, row);
    });
  }

 private:
  std::int64_t left_;
};

/// Those of a row's hands that have one of the splits.
template <int cards>
std::uint64_t RowOfSplits(Splits splits, int number, std::uint64_t row) {
  if (splits == kAllSplits<cards>) return row;
  std::uint64_t found = 0;
  for (std::size_t split = 0; split < kSuitSplits<cards>.size(); ++split) {
    if ((splits >> split & 1) == 0) continue;
    found |= OmahaBits::Common(OmahaBits::Of(HandsOfSplit<cards>(split)), number, row);
  }
  return found;
}

/// The ranks of an atom and all others that it may have. A pattern is the union of what it is for
/// each rank of an atom, so they can be tried all at once or one by one.
///
/// @param fits  whether a set of ranks may stand there
template <typename Fits>
RankSet WidestRanks(RankSet ranks, const Fits& fits) {
  const auto others = static_cast<RankSet>(kAllRanks & ~ranks);
  if (others == 0 || fits(others)) return kAllRanks;
  for (unsigned rest = others; rest != 0; rest &= rest - 1) {
    const auto rank = static_cast<RankSet>(rest & -rest);
    if (fits(rank)) ranks = static_cast<RankSet>(ranks | rank);
  }
  return ranks;
}

/// The splits that text can say, among them those of `within` and no others than those of `among`;
/// the most or the fewest of them. 0 if there are none.
template <int cards>
Splits NameableSplits(Splits within, Splits among, bool most, Exclusions exclusions);

/// Takes out of a piece the ranks and splits that gain nothing, where that makes its text shorter.
///
/// @param gain  how much a piece covers that no other does
template <int cards, typename Gain>
void Trim(OmahaPiece<cards>& piece, Exclusions exclusions, const Gain& gain) {
  const int all = gain(piece);
  for (std::size_t i = 0; i < cards; ++i) {
    const OmahaAtom before = piece.pattern[i];
    if (before.Text().size() < 3) continue;
    OmahaPiece<cards> less = piece;
    RankSet& ranks = less.pattern[i].ranks;
    for (unsigned rest = before.ranks; rest != 0; rest &= rest - 1) {
      const RankSet with = ranks;
      ranks = static_cast<RankSet>(ranks & ~(rest & -rest));
      if (ranks == 0 || gain(less) != all) ranks = with;
    }
    if (less.pattern[i].Text().size() < before.Text().size()) piece = less;
  }
  OmahaPiece<cards> less = piece;
  for (less.splits = 1; less.splits < piece.splits; ++less.splits) {
    const std::string* text = ShapesText<cards>(less.splits, exclusions);
    if ((less.splits & ~piece.splits) != 0 || text == nullptr) continue;
    if (text->size() >= ShapesText<cards>(piece.splits, exclusions)->size()) continue;
    if (gain(less) == all) piece.splits = less.splits;
  }
}

extern template const std::string* ShapesText<4>(Splits, Exclusions);
extern template const std::string* ShapesText<5>(Splits, Exclusions);
extern template struct OmahaPiece<4>;
extern template struct OmahaPiece<5>;
extern template Splits NameableSplits<4>(Splits, Splits, bool, Exclusions);
extern template Splits NameableSplits<5>(Splits, Splits, bool, Exclusions);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_PIECE_H_
